#include "platform/graphics/PictureBudget.h"

#include <algorithm>

#include "platform/dispatch/Clock.h"

namespace platform {

PictureBudget PictureBudget::forAddresses() {
  return {.pixels = 4096 * 4096,
          .frames = 600,
          .decodedBytes = 64 << 20,
          .scans = 100,
          .scannedPixels = 200'000'000,
          .attachments = 8,
          .seconds = 3};
}

std::size_t PictureBudget::admittedFrames(const PictureFacts& facts) const {
  if (facts.claimsMoreThanItHas) return 0;
  // Sizes are below 2^32, so that a quotient is the way to compare without an overflow.
  if (facts.width > pixels / facts.height || facts.scans > scans || facts.attachments > attachments) return 0;
  const std::int64_t area = facts.width * facts.height;
  if (static_cast<std::int64_t>(facts.scans) > scannedPixels / area) return 0;
  const auto fitting = static_cast<std::size_t>(decodedBytes / (area * facts.bytesPerPixel));
  return std::min({facts.frames(), frames, fitting});
}

ImageLimits PictureBudget::limits() const { return {pixels, Clock::nanoseconds() + Clock::nanosecondsOf(seconds)}; }

}  // namespace platform
