#pragma once

namespace lumicor {

/// The order, from the back to the front, of what the assistant puts into the host's window. All of it lies above
/// whatever the host presents there, now or later (see UIView::setFrontLevel).
struct LumicorFrontLevel {
  static constexpr int closeTarget = 1;
  static constexpr int floatingButton = 2;
  static constexpr int controlBar = 3;
  /// Messages, veils and what stands on them: among themselves the later one is in front.
  static constexpr int notice = 4;
};

}  // namespace lumicor
