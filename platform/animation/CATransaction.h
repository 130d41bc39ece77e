#pragma once

#include <functional>
#include <memory>

#include "platform/animation/CAMediaTimingFunction.h"

namespace platform {

/// Tells a closure once when every animation that was made inside a transaction is over: on the main queue, true when
/// all ran to their end. Main thread.
class CompletionGroup {
 public:
  explicit CompletionGroup(std::function<void(bool finished)> completion) : completion_(std::move(completion)) {}
  void enter() { ++pending_; }
  void leave(bool finished);
  /// No more will enter; without any it is told as soon as the main queue comes round.
  void close();

 private:
  void tell();
  std::function<void(bool)> completion_;
  int pending_ = 1;
  bool finished_ = true;
};

/// Changes of layers made together, and how they are animated. Outside of any transaction, and inside one without a
/// duration, properties change at once. Transactions nest: an inner one starts with the outer one's settings, except
/// the completion. Main thread.
///
///     CATransaction::begin();
///     CATransaction::setAnimationDuration(0.3);
///     CATransaction::setCompletionBlock([](bool finished) { ... });
///     layer->setOpacity(0);  // fades from what shows now
///     CATransaction::commit();
class CATransaction {
 public:
  static void begin();
  /// A commit without a begin is a fatal programming error.
  static void commit();

  static bool disableActions();
  /// True: properties change at once, whatever else is set.
  static void setDisableActions(bool disable);
  static double animationDuration();
  static void setAnimationDuration(double seconds);
  /// Seconds before the animations start; the old look stays until then.
  static void setAnimationDelay(double seconds);
  static void setAnimationTimingFunction(const CAMediaTimingFunction& function);
  static void setAnimationRepeat(double count, bool autoreverses);
  static void setCompletionBlock(std::function<void(bool finished)> completion);

  /// How a property set right now is animated.
  struct Action {
    double duration = 0.25;
    double delay = 0;
    CAMediaTimingFunction timing;
    double repeatCount = 1;
    bool autoreverses = false;
  };
  /// None when it is not.
  static const Action* currentAction();
  /// The group that an animation added right now belongs to, or none.
  static std::shared_ptr<CompletionGroup> currentCompletion();
};

}  // namespace platform
