#include "tests/platform/graphics/GIFFile.h"

namespace platform::test {

namespace {

// With codes of 8 bits every pixel is its own byte, as long as the table is emptied before it grows beyond them.
constexpr int codeSize = 7;
constexpr char clearCode = static_cast<char>(0x80);
constexpr char endCode = static_cast<char>(0x81);
constexpr int pixelsBetweenClears = 100;

}  // namespace

void GIFFile::append16(std::string& to, int value) {
  to.push_back(static_cast<char>(value & 255));
  to.push_back(static_cast<char>(value >> 8 & 255));
}

void GIFFile::appendFrame(int width, int height, int delay, const std::string& pixels) {
  if (delay >= 0) {
    frames_ += std::string("\x21\xF9\x04\x00", 4);
    append16(frames_, delay);
    frames_ += std::string(2, '\0');
  }
  frames_ += std::string("\x2C\0\0\0\0", 5);
  append16(frames_, width);
  append16(frames_, height);
  frames_.push_back('\0');
  frames_.push_back(static_cast<char>(codeSize));
  for (std::size_t at = 0; at < pixels.size(); at += 255) {
    const std::string block = pixels.substr(at, 255);
    frames_.push_back(static_cast<char>(block.size()));
    frames_ += block;
  }
  frames_.push_back('\0');
}

GIFFile& GIFFile::add(std::uint32_t color, int delay) {
  const char index = static_cast<char>(palette_.size());
  palette_.push_back(color);
  std::string codes;
  for (int i = 0; i < width_ * height_; ++i) {
    if (i % pixelsBetweenClears == 0) codes.push_back(clearCode);
    codes.push_back(index);
  }
  codes.push_back(endCode);
  appendFrame(width_, height_, delay, codes);
  return *this;
}

GIFFile& GIFFile::addDamaged(int width, int height) {
  appendFrame(width, height, 10, "");
  return *this;
}

std::string GIFFile::bytes() const {
  std::string file = "GIF89a";
  append16(file, width_);
  append16(file, height_);
  file += std::string("\xF6\0\0", 3);  // 128 colours follow
  for (std::size_t i = 0; i < 128; ++i) {
    const std::uint32_t color = i < palette_.size() ? palette_[i] : 0;
    for (const int shift : {16, 8, 0}) file.push_back(static_cast<char>(color >> shift & 255));
  }
  return file + frames_ + ';';
}

}  // namespace platform::test
