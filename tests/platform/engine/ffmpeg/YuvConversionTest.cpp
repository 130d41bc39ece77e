#include <cmath>
#include <cstdlib>
#include <vector>

#include "platform/engine/ffmpeg/YuvConversion.h"

namespace platform {
namespace {

struct Colour {
  double red, green, blue;
};

std::uint32_t pixelAt(int x, int y) {
  const auto part = [&](int a, int b) { return static_cast<std::uint32_t>((x * a + y * b) % 256); };
  return 0xff000000u | part(37, 11) << 16 | part(5, 71) << 8 | part(101, 3);
}

/// The mean of a square of source pixels.
Colour meanAt(int x, int y, int size) {
  Colour sum{0, 0, 0};
  for (int dy = 0; dy < size; ++dy) {
    for (int dx = 0; dx < size; ++dx) {
      const std::uint32_t pixel = pixelAt(x + dx, y + dy);
      sum.red += (pixel >> 16) & 255;
      sum.green += (pixel >> 8) & 255;
      sum.blue += pixel & 255;
    }
  }
  const double count = size * size;
  return {sum.red / count, sum.green / count, sum.blue / count};
}

/// As ITU-R BT.709 has it, in the range of video.
double light(const Colour& c) { return 16 + 219.0 / 255 * (0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue); }
double bluish(const Colour& c) {
  return 128 + 224.0 / 255 * (c.blue - 0.2126 * c.red - 0.7152 * c.green - 0.0722 * c.blue) / 1.8556;
}
double reddish(const Colour& c) {
  return 128 + 224.0 / 255 * (c.red - 0.2126 * c.red - 0.7152 * c.green - 0.0722 * c.blue) / 1.5748;
}

class Planes {
 public:
  Planes(int width, int height)
      : width_(width), y_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    u_.resize(y_.size() / 4);
    v_.resize(y_.size() / 4);
  }
  YuvPlanes all() { return {y_.data(), u_.data(), v_.data(), width_, width_ / 2}; }
  int y(int column, int row) const { return y_[static_cast<std::size_t>(row * width_ + column)]; }
  int u(int column, int row) const { return u_[static_cast<std::size_t>(row * width_ / 2 + column)]; }
  int v(int column, int row) const { return v_[static_cast<std::size_t>(row * width_ / 2 + column)]; }

 private:
  int width_;
  std::vector<std::uint8_t> y_, u_, v_;
};

TEST(YuvConversion, IsWithinRoundingOfTheStandardAtEveryFactor) {
  constexpr int width = 14, height = 10;
  for (int factor = 1; factor <= YuvConversion::mostFactor; ++factor) {
    constexpr int stride = YuvConversion::mostPixels;
    std::vector<std::uint32_t> source(static_cast<std::size_t>(stride) * height * 4);
    for (int y = 0; y < height * factor; ++y) {
      for (int x = 0; x < width * factor; ++x) source[static_cast<std::size_t>(y * stride + x)] = pixelAt(x, y);
    }
    Planes planes(width, height);
    YuvConversion::convert(source.data(), stride, factor, width, height, planes.all());
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        EXPECT_NEAR(planes.y(x, y), light(meanAt(x * factor, y * factor, factor)), 1.5)
            << factor << " " << x << " " << y;
      }
    }
    for (int y = 0; y < height / 2; ++y) {
      for (int x = 0; x < width / 2; ++x) {
        const Colour mean = meanAt(2 * x * factor, 2 * y * factor, 2 * factor);
        EXPECT_NEAR(planes.u(x, y), bluish(mean), 1.5) << factor << " " << x << " " << y;
        EXPECT_NEAR(planes.v(x, y), reddish(mean), 1.5) << factor << " " << x << " " << y;
      }
    }
  }
}

TEST(YuvConversion, KeepsToTheRangeOfVideo) {
  const struct {
    std::uint32_t pixel;
    int y, u, v;
  } corners[] = {{0xff000000u, 16, 128, 128},
                 {0xffffffffu, 235, 128, 128},
                 {0xffff0000u, 63, 102, 240},
                 {0xff0000ffu, 32, 240, 118}};
  for (const auto& corner : corners) {
    const std::vector<std::uint32_t> source(16, corner.pixel);
    Planes planes(2, 2);
    YuvConversion::convert(source.data(), 4, 2, 2, 2, planes.all());
    EXPECT_NEAR(planes.y(1, 1), corner.y, 1);
    EXPECT_NEAR(planes.u(0, 0), corner.u, 1);
    EXPECT_NEAR(planes.v(0, 0), corner.v, 1);
  }
}

TEST(YuvConversion, CompletesOddSidesWithTheirLastRowAndColumn) {
  const std::uint32_t source[] = {0xff000000u, 0xff000000u, 0xffffffffu,  //
                                  0xff000000u, 0xff000000u, 0xffffffffu,  //
                                  0xff000000u, 0xff000000u, 0xffffffffu};
  Planes planes(4, 4);
  YuvConversion::convert(source, 3, 1, 3, 3, planes.all());
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(planes.y(1, row), 16);
    EXPECT_NEAR(planes.y(3, row), 235, 1);
  }
}

}  // namespace
}  // namespace platform
