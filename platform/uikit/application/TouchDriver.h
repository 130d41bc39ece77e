#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// A person's hands: touches and key strokes with natural timing, through the same door as those of a window system.
/// What it does happens in the order it was asked for, one after the other, paced by the clock (real or virtual); each
/// action may tell when it is done. Points are screen coordinates. Main thread. Dropping it stops it and lifts its
/// finger.
class TouchDriver {
 public:
  using Done = std::function<void()>;

  TouchDriver();
  ~TouchDriver();
  TouchDriver(const TouchDriver&) = delete;
  TouchDriver& operator=(const TouchDriver&) = delete;

  /// Down for 0.08 s. `count` taps follow each other within the time of a double tap.
  void tap(CGPoint point, int count = 1, Done done = nullptr);
  /// The middle of the view, as it lies when the finger goes down. A view in no window is not touched.
  void tap(const Ref<UIView>& view, Done done = nullptr);
  void longPress(CGPoint point, double seconds = 0.8, Done done = nullptr);
  /// Down at the first point, along the others evenly in time at 60 steps a second, a short rest, up.
  void drag(std::vector<CGPoint> points, double seconds, Done done = nullptr);
  /// A quick drag whose finger leaves while it moves: (dx, dy) in points over the time.
  void flick(CGPoint from, double dx, double dy, double seconds = 0.12, Done done = nullptr);
  /// Drags inside the view so that its content moves by (dx, dy): positive shows what lies further right and down.
  void scroll(const Ref<UIView>& view, double dx, double dy, double seconds = 0.4, Done done = nullptr);
  /// Types into the first responder, character by character ("\n" is return, "\b" backspace): on the software keyboard
  /// when it is there and has the key, else as key strokes.
  void type(const std::string& text, Done done = nullptr);
  void wait(double seconds, Done done = nullptr);

  bool isBusy() const;
  /// Seconds between two characters. Default 0.12.
  void setTypingInterval(double seconds);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
