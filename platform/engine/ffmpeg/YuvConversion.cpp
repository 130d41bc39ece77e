#include "platform/engine/ffmpeg/YuvConversion.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

using Line = std::array<std::uint32_t, YuvConversion::mostPixels + 1>;

// Two parts of a pixel, 16 bits each, that can be added up without meeting.
constexpr std::uint32_t evenParts = 0x00ff00ffu;
constexpr std::uint64_t evenPartsOfTwo = 0x00ff00ff00ff00ffu;

/// The mean of two by two pixels; `first` and `second` are rows one below the other.
void halve(const std::uint32_t* first, const std::uint32_t* second, int width, std::uint32_t* target) {
  for (int x = 0; x < width; ++x) {
    const std::uint64_t a = first[2 * x] | static_cast<std::uint64_t>(first[2 * x + 1]) << 32;
    const std::uint64_t b = second[2 * x] | static_cast<std::uint64_t>(second[2 * x + 1]) << 32;
    const std::uint64_t even = (a & evenPartsOfTwo) + (b & evenPartsOfTwo);
    const std::uint64_t odd = ((a >> 8) & evenPartsOfTwo) + ((b >> 8) & evenPartsOfTwo);
    const auto evenSum = static_cast<std::uint32_t>(even + (even >> 32)) + 0x00020002u;
    const auto oddSum = static_cast<std::uint32_t>(odd + (odd >> 32)) + 0x00020002u;
    target[x] = ((evenSum >> 2) & evenParts) | ((oddSum >> 2) & evenParts) << 8;
  }
}

std::uint32_t meanOf(const std::uint32_t* source, std::ptrdiff_t stride, int factor) {
  std::uint32_t red = 0, green = 0, blue = 0;
  for (int y = 0; y < factor; ++y) {
    for (int x = 0; x < factor; ++x) {
      const std::uint32_t pixel = source[y * stride + x];
      red += (pixel >> 16) & 255;
      green += (pixel >> 8) & 255;
      blue += pixel & 255;
    }
  }
  const auto count = static_cast<std::uint32_t>(factor * factor);
  const auto mean = [count](std::uint32_t sum) { return (sum + count / 2) / count; };
  return mean(red) << 16 | mean(green) << 8 | mean(blue);
}

/// One line of the target, its last pixel repeated once.
const std::uint32_t* scaledLine(const std::uint32_t* source, std::ptrdiff_t stride, int factor, int width, Line& line) {
  if (factor == 1) {
    if (width % 2 == 0) return source;
    std::copy_n(source, width, line.data());
  } else if (factor == 2) {
    halve(source, source + stride, width, line.data());
  } else {
    for (int x = 0; x < width; ++x) line[static_cast<std::size_t>(x)] = meanOf(source + x * factor, stride, factor);
  }
  line[static_cast<std::size_t>(width)] = line[static_cast<std::size_t>(width) - 1];
  return line.data();
}

void lightOf(const std::uint32_t* line, int width, std::uint8_t* target) {
  for (int x = 0; x < width; ++x) {
    const auto red = static_cast<std::uint16_t>((line[x] >> 16) & 255);
    const auto green = static_cast<std::uint16_t>((line[x] >> 8) & 255);
    const auto blue = static_cast<std::uint16_t>(line[x] & 255);
    const auto sum = static_cast<std::uint16_t>(47 * red + 157 * green + 16 * blue + (16 << 8) + 128);
    target[x] = static_cast<std::uint8_t>(sum >> 8);
  }
}

void colourOf(const std::uint32_t* line, int width, std::uint8_t* u, std::uint8_t* v) {
  for (int x = 0; x < width; ++x) {
    const auto red = static_cast<std::int16_t>((line[x] >> 16) & 255);
    const auto green = static_cast<std::int16_t>((line[x] >> 8) & 255);
    const auto blue = static_cast<std::int16_t>(line[x] & 255);
    const auto bluish = static_cast<std::int16_t>(112 * blue - 26 * red - 86 * green + 128);
    const auto reddish = static_cast<std::int16_t>(112 * red - 102 * green - 10 * blue + 128);
    u[x] = static_cast<std::uint8_t>((bluish >> 8) + 128);
    v[x] = static_cast<std::uint8_t>((reddish >> 8) + 128);
  }
}

}  // namespace

void YuvConversion::convert(const std::uint32_t* source, std::ptrdiff_t sourceStride, int factor, int width, int height,
                            const YuvPlanes& planes) {
  const int evenWidth = width + width % 2;
  Line upperLine, lowerLine, means;
  for (int y = 0; y < height; y += 2) {
    const std::uint32_t* const rows = source + y * factor * sourceStride;
    const std::uint32_t* const upper = scaledLine(rows, sourceStride, factor, width, upperLine);
    const std::uint32_t* const lower =
        y + 1 < height ? scaledLine(rows + factor * sourceStride, sourceStride, factor, width, lowerLine) : upper;
    lightOf(upper, evenWidth, planes.y + y * planes.yStride);
    lightOf(lower, evenWidth, planes.y + (y + 1) * planes.yStride);
    halve(upper, lower, evenWidth / 2, means.data());
    colourOf(means.data(), evenWidth / 2, planes.u + y / 2 * planes.uvStride, planes.v + y / 2 * planes.uvStride);
  }
}

}  // namespace platform
