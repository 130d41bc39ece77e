#pragma once

namespace platform {

/// How one axis of an autoresizing mask splits what the superview grows by: the parts that go to the margin before the
/// view and to the view itself; the rest goes to the margin behind it.
struct AutoresizingShare {
  double before = 0;
  double size = 0;
};

/// `mask` is that of the view; margins and size are what they are before the superview grows. Flexible parts take their
/// share by their lengths, or equally when they have none. Without a flexible part the far margin takes it all.
AutoresizingShare autoresizingShare(unsigned mask, bool vertical, double before, double size, double after);

}  // namespace platform
