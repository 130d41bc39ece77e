#include "platform/uikit/constraints/AutoresizingMask.h"

#include <algorithm>

#include "platform/uikit/views/UIView.h"

namespace platform {

AutoresizingShare autoresizingShare(unsigned mask, bool vertical, double before, double size, double after) {
  using Mask = UIViewAutoresizing;
  const bool flexible[3] = {
      (mask & (vertical ? Mask::flexibleTopMargin : Mask::flexibleLeftMargin)) != 0,
      (mask & (vertical ? Mask::flexibleHeight : Mask::flexibleWidth)) != 0,
      (mask & (vertical ? Mask::flexibleBottomMargin : Mask::flexibleRightMargin)) != 0,
  };
  const double lengths[3] = {before, size, after};
  double sum = 0;
  int count = 0;
  for (int i = 0; i < 3; ++i) {
    if (!flexible[i]) continue;
    ++count;
    sum += std::max(0.0, lengths[i]);
  }
  const auto share = [&](int i) {
    if (!flexible[i]) return 0.0;
    return sum > 0 ? std::max(0.0, lengths[i]) / sum : 1.0 / count;
  };
  return {share(0), share(1)};
}

}  // namespace platform
