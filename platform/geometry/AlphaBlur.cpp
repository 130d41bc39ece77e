#include "platform/geometry/AlphaBlur.h"

#include <algorithm>
#include <cmath>

#include "platform/geometry/Bitmap.h"

namespace platform {

namespace {

/// Beyond this a shadow is one even haze anyway.
constexpr double maximumDeviation = 200;

/// The widths of three running means that together come nearest to the bell curve.
void boxWidths(double deviation, int (&widths)[3]) {
  const double ideal = std::sqrt(4 * deviation * deviation + 1);  // of three equal ones: 12 s^2 / 3 + 1
  int low = static_cast<int>(ideal);
  if (low % 2 == 0) --low;
  const double share = (12 * deviation * deviation - 3.0 * low * low - 12.0 * low - 9) / (-4.0 * low - 4);
  const int count = static_cast<int>(std::lround(share));
  for (int i = 0; i < 3; ++i) widths[i] = i < count ? low : low + 2;
}

/// A running mean of odd width along `count` values that lie `stride` apart.
void blurLine(const std::uint8_t* from, std::uint8_t* to, int count, std::ptrdiff_t stride, int width) {
  const int half = width / 2;
  const std::uint32_t factor = (1u << 24) / static_cast<std::uint32_t>(width);
  std::uint32_t sum = 0;
  for (int i = 0; i < std::min(half, count); ++i) sum += from[i * stride];
  for (int i = 0; i < count; ++i) {
    if (i + half < count) sum += from[(i + half) * stride];
    to[i * stride] = static_cast<std::uint8_t>((static_cast<std::uint64_t>(sum) * factor + (1u << 23)) >> 24);
    if (i - half >= 0) sum -= from[(i - half) * stride];
  }
}

}  // namespace

AlphaMap::AlphaMap(int w, int h) {
  if (w <= 0 || h <= 0 || static_cast<std::int64_t>(w) * h > Bitmap::maximumPixels) return;
  width = w;
  height = h;
  alpha.resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
}

int AlphaMap::blurMargin(double deviation) {
  return static_cast<int>(std::ceil(3 * std::clamp(deviation, 0.0, maximumDeviation))) + 2;
}

void AlphaMap::blur(double deviation) {
  deviation = std::min(deviation, maximumDeviation);
  if (!(deviation > 0.05) || alpha.empty()) return;
  int widths[3];
  boxWidths(deviation, widths);
  std::vector<std::uint8_t> other(alpha.size());
  for (const int box : widths) {
    if (box <= 1) continue;
    for (int y = 0; y < height; ++y)
      blurLine(&alpha[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)],
               &other[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)], width, 1, box);
    for (int x = 0; x < width; ++x) {
      blurLine(&other[static_cast<std::size_t>(x)], &alpha[static_cast<std::size_t>(x)], height, width, box);
    }
  }
}

}  // namespace platform
