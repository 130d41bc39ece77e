#pragma once

#include <cmath>
#include <cstdio>
#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "platform/dispatch/Clock.h"
#include "platform/uikit/touch/UIGestureRecognizer.h"
#include "platform/uikit/touch/UITouch.h"
#include "platform/uikit/views/UIView.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

/// What happened, in order.
using Log = std::vector<std::string>;

/// A view that notes the touches it hears of: "box began 5,5".
class TouchedView : public Object<TouchedView, UIView> {
 public:
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>&) override { note("began", touches); }
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>&) override { note("moved", touches); }
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>&) override { note("ended", touches); }
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>&) override { note("cancelled", touches); }

  std::string name;
  Log* log = nullptr;
  std::function<void(const std::string& phase)> onTouch;

 private:
  void note(const std::string& phase, const UITouches& touches) {
    const CGPoint at = touches.front()->locationInView(this);
    char text[80];
    std::snprintf(text, sizeof text, " %s %g,%g", phase.c_str(), std::round(at.x), std::round(at.y));
    log->push_back(name + text);
    if (onTouch) onTouch(phase);
  }
};

/// A target that notes the recogniser's state: "tap ended".
class GestureTarget : public Object<GestureTarget, NSObject> {
 public:
  void fired(const Ref<NSObject>& sender) {
    static const char* const states[] = {"possible", "began", "changed", "ended", "cancelled", "failed"};
    const auto state = as<UIGestureRecognizer>(sender)->state();
    log->push_back(name + " " + states[static_cast<int>(state)]);
    if (onFired) onFired();
  }
  void firedAlone() { log->push_back(name + " alone"); }
  static void exportMethods(MethodTable<GestureTarget>& table) {
    table.add<&GestureTarget::fired>("fired:").add<&GestureTarget::firedAlone>("firedAlone");
  }

  std::string name;
  Log* log = nullptr;
  std::function<void()> onFired;
};

/// Fingers on the fixture's window and a log of what came of them.
class TouchTest : public AppFixture {
 protected:
  Ref<TouchedView> addBox(const std::string& name, CGRect frame, const Ref<UIView>& superview = nullptr) {
    auto box = make<TouchedView>(frame);
    box->name = name;
    box->log = &log;
    (superview ? superview : content())->addSubview(box);
    return box;
  }
  template <class Recognizer>
  Ref<Recognizer> watch(const std::string& name, const Ref<UIView>& view) {
    auto target = make<GestureTarget>();
    target->name = name;
    target->log = &log;
    targets.push_back(target);
    auto recognizer = make<Recognizer>(target, sel("fired:"));
    view->addGestureRecognizer(recognizer);
    return recognizer;
  }

  void down(double x, double y, std::int64_t finger = 1) { send(finger, UITouchPhase::began, {x, y}); }
  void move(double x, double y, std::int64_t finger = 1) { send(finger, UITouchPhase::moved, {x, y}); }
  void up(double x, double y, std::int64_t finger = 1) { send(finger, UITouchPhase::ended, {x, y}); }
  void tapAt(double x, double y) {
    down(x, y);
    advance(0.05);
    up(x, y);
  }
  /// In steps of ten milliseconds.
  void slide(CGPoint from, CGPoint to, double seconds) {
    const int steps = static_cast<int>(std::lround(seconds * 100));
    for (int i = 1; i <= steps; ++i) {
      advance(0.01);
      move(from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps);
    }
  }
  Log taken() { return std::exchange(log, {}); }

  Log log;
  std::vector<Ref<GestureTarget>> targets;

 private:
  void send(std::int64_t finger, UITouchPhase phase, CGPoint at) {
    window()->deliverTouch(finger, phase, at, Clock::mediaTime());
  }
};

}  // namespace platform::test
