#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

/// What the headers of a compressed picture say, found without decoding a pixel: one pass over the bytes, whatever they
/// claim. A plain value; any thread.
struct PictureFacts {
  enum class Format : std::uint8_t { png, jpeg, gif };
  /// More frames of a GIF than this are not counted.
  static constexpr std::size_t maximumFrames = 4096;

  Format format = Format::png;
  /// Pixels, of the area that all frames are drawn on.
  std::int64_t width = 0;
  std::int64_t height = 0;
  /// Bytes a pixel takes while it is decoded: eight where a component has sixteen bits.
  std::int64_t bytesPerPixel = 4;
  /// Passes over the picture: those of a progressive JPEG, else one.
  std::size_t scans = 1;
  /// Compressed texts and profiles of a PNG, each of which unfolds to what its writer likes.
  std::size_t attachments = 0;
  /// A part beside the pixels says it is longer than the file: room would be made for it before that is noticed.
  bool claimsMoreThanItHas = false;
  /// Seconds that each frame of a GIF shows; empty for another picture.
  std::vector<double> delays;

  std::size_t frames() const { return format == Format::gif ? delays.size() : 1; }

  /// None for data that is no PNG, JPEG or GIF, or that ends before it tells its size.
  static std::optional<PictureFacts> of(std::string_view data);
};

}  // namespace platform
