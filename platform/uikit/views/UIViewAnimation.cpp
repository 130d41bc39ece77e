#include <optional>
#include <utility>

#include "platform/animation/CATransaction.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

namespace {

bool animationsEnabled = true;
/// How many animation blocks are being run.
int blocks = 0;

struct Pace {
  double seconds;
  double delay;
  CAMediaTimingFunction timing;
};
/// That of what the blocks move along with.
std::optional<Pace> alongside;

CAMediaTimingFunction timingOf(UIViewAnimationCurve curve) {
  switch (curve) {
    case UIViewAnimationCurve::easeIn:
      return CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn);
    case UIViewAnimationCurve::easeOut:
      return CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut);
    case UIViewAnimationCurve::linear:
      return CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear);
    case UIViewAnimationCurve::easeInOut:
      break;
  }
  return CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut);
}

void animate(const Pace& pace, const std::function<void()>& animations, UIView::Completion completion) {
  CATransaction::begin();
  if (completion) CATransaction::setCompletionBlock(std::move(completion));
  if (!animationsEnabled) CATransaction::setDisableActions(true);
  if (blocks == 0) {
    const Pace& taken = alongside ? *alongside : pace;
    CATransaction::setAnimationDuration(taken.seconds);
    CATransaction::setAnimationDelay(taken.delay);
    CATransaction::setAnimationTimingFunction(taken.timing);
  }
  ++blocks;
  if (animations) animations();
  --blocks;
  CATransaction::commit();
}

}  // namespace

void UIView::animateWithDuration(double seconds, std::function<void()> animations, Completion completion) {
  animate({seconds, 0, timingOf(UIViewAnimationCurve::easeInOut)}, animations, std::move(completion));
}

void UIView::animateWithDuration(double seconds, double delay, UIViewAnimationCurve curve,
                                 std::function<void()> animations, Completion completion) {
  animate({seconds, delay, timingOf(curve)}, animations, std::move(completion));
}

void UIView::animateWithSpring(double seconds, double delay, double damping, double velocity,
                               std::function<void()> animations, Completion completion) {
  // The layer measures the first speed in ways a duration, the caller in ways a second.
  animate({seconds, delay, CAMediaTimingFunction::spring(damping, velocity * seconds)}, animations,
          std::move(completion));
}

void UIView::performWithoutAnimation(const std::function<void()>& actions) {
  CATransaction::begin();
  CATransaction::setDisableActions(true);
  if (actions) actions();
  CATransaction::commit();
}

void UIView::performAlongside(double seconds, UIViewAnimationCurve curve, const std::function<void()>& actions) {
  const auto before = std::exchange(alongside, Pace{seconds, 0, timingOf(curve)});
  if (actions) actions();
  alongside = before;
}

double UIView::inheritedAnimationDuration() { return blocks > 0 ? CATransaction::animationDuration() : 0; }

bool UIView::areAnimationsEnabled() { return animationsEnabled; }
void UIView::setAnimationsEnabled(bool enabled) { animationsEnabled = enabled; }

}  // namespace platform
