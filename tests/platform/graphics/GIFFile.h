#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform::test {

/// Writes small GIF files: frames of one colour, each with its delay.
class GIFFile {
 public:
  GIFFile(int width, int height) : width_(width), height_(height) {}
  /// The colour is 0xRRGGBB, the delay in hundredths of a second; a negative one leaves the frame without a delay.
  GIFFile& add(std::uint32_t color, int delay);
  /// A frame that says it is of that size, without any pixels to it.
  GIFFile& addDamaged(int width, int height);
  std::string bytes() const;

 private:
  static void append16(std::string& to, int value);
  void appendFrame(int width, int height, int delay, const std::string& pixels);
  int width_, height_;
  std::vector<std::uint32_t> palette_;
  std::string frames_;
};

}  // namespace platform::test
