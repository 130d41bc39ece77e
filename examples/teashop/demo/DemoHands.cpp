#include "examples/teashop/demo/DemoHands.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double longestTyping = 60;
constexpr double longestTouch = 5;
constexpr double scrollStep = 120;
constexpr double pauseAfterScroll = 0.5;
constexpr int mostScrolls = 8;

CGPoint middleOf(const UIView& view) {
  const CGRect frame = view.convertRect(view.bounds(), nullptr);
  return {frame.midX(), frame.midY()};
}

/// What a finger would meet there.
Ref<UIView> touchedAt(CGPoint point) {
  const auto windows = UIApplication::shared().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (auto touched = (*window)->hitTest(point, nullptr)) return touched;
  }
  return nullptr;
}

bool canBeTouched(const Ref<UIView>& view) {
  const Ref<UIView> touched = touchedAt(middleOf(*view));
  return touched && (touched->isDescendantOfView(view.get()) || view->isDescendantOfView(touched.get()));
}

Ref<UIScrollView> listAround(const Ref<UIView>& view) {
  for (Ref<UIView> at = view->superview(); at; at = at->superview()) {
    if (auto list = as<UIScrollView>(at)) return list;
  }
  return nullptr;
}

}  // namespace

void DemoHands::finish(double longest) {
  RunLoop::advanceUntil([this] { return !driver_.isBusy(); }, longest);
}

void DemoHands::wait(double seconds) { RunLoop::advance(seconds); }

bool DemoHands::bringIntoSight(const Ref<UIView>& view) {
  for (int i = 0; i < mostScrolls && !canBeTouched(view); ++i) {
    const auto list = listAround(view);
    if (!list) return false;
    const bool isBelow = middleOf(*view).y > middleOf(*list).y;
    driver_.scroll(list, 0, isBelow ? scrollStep : -scrollStep);
    finish(longestTouch);
    wait(pauseAfterScroll);
  }
  return canBeTouched(view);
}

bool DemoHands::tap(const Ref<UIView>& view) {
  if (!view || !bringIntoSight(view)) return false;
  driver_.tap(view);
  finish(longestTouch);
  return true;
}

void DemoHands::type(const std::string& text) {
  driver_.type(text);
  finish(longestTyping);
}

void DemoHands::turn(const Ref<UIView>& picker, std::int64_t row, std::int64_t component) {
  const auto wheels = as<UIPickerView>(picker);
  const Ref<UIView> label = wheels ? wheels->viewForRow(row, component) : nullptr;
  if (!label) return;
  driver_.tap(middleOf(*label));
  finish(longestTouch);
}

}  // namespace teashop
