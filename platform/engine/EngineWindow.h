#pragma once

#include <cstdint>
#include <string>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

enum class WindowTouchPhase { began, moved, ended, cancelled };

struct WindowTouch {
  std::int64_t identifier = 0;  ///< tells fingers apart; the mouse is 0
  WindowTouchPhase phase = WindowTouchPhase::began;
  CGPoint location;
  double timestamp = 0;  ///< media time
};

struct WindowKey {
  enum class Name { none, returnKey, tab, backspace, forwardDelete, escape, left, right, up, down, home, end };
  Name name = Name::none;
  std::string text;  ///< what it types, UTF-8; empty for none
  bool shift = false;
  bool command = false;
  bool option = false;
};

struct WindowScroll {
  CGPoint location;
  /// How far the content should follow, in points.
  CGVector delta;
};

/// Who a window tells what the person does. Main thread; locations in points from the window's top left.
class EngineWindowDelegate {
 public:
  virtual ~EngineWindowDelegate() = default;
  virtual void windowTouched(const WindowTouch& touch) = 0;
  virtual void windowKeyPressed(const WindowKey& key) = 0;
  virtual void windowScrolled(const WindowScroll& scroll) = 0;
  /// The person closed it. The window stays until its owner drops it.
  virtual void windowClosed() = 0;
};

/// A window of the desktop, or its stand-in without one: fixed in size, showing one bitmap. Owner: its maker, which
/// outlives neither engine nor delegate. Main thread.
class EngineWindow {
 public:
  virtual ~EngineWindow() = default;
  virtual void setTitle(const std::string& title) = 0;
  /// Shows the bitmap, of the window's points times the scale in pixels; only `changed` (pixels) differs from what was
  /// shown before. Copied.
  virtual void present(const Bitmap& bitmap, const CGRect& changed) = 0;
  virtual CGSize sizeInPoints() const = 0;
  virtual double scale() const = 0;
};

}  // namespace platform
