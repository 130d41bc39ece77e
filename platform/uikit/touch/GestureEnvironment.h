#pragma once

#include <vector>

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

/// Decides among the gesture recognisers that watch the same fingers: who recognises, who waits for whom, who fails
/// because another one was first. One for the process; TouchDispatcher feeds it. Main thread.
class GestureEnvironment {
 public:
  static GestureEnvironment& shared();

  /// Shows a touch to a recogniser, unless that has come to its end already.
  void send(const Ref<UIGestureRecognizer>& recognizer, const Ref<UITouch>& touch, const Ref<UIEvent>& event);
  /// A recogniser moves its state, or wishes to: because of a touch, a timer or a program.
  void noteChange(const Ref<UIGestureRecognizer>& recognizer, UIGestureRecognizerState wanted);
  /// Settles what happened since the last call as far as it can be, and lets views have the touches set free by it.
  void settle();
  /// A recogniser that lost its view, or was disabled, is cancelled or fails.
  void stop(const Ref<UIGestureRecognizer>& recognizer);

  /// It has seen this touch and may still recognise.
  bool isUndecided(const UIGestureRecognizer& recognizer, const Ref<UITouch>& touch) const;

 private:
  using State = UIGestureRecognizerState;
  using Recognizer = Ref<UIGestureRecognizer>;
  /// One recogniser from its first touch until it is reset.
  struct Run {
    Recognizer recognizer;
    UITouches seen;
    State wish = State::possible;  ///< began or ended while it waits for a decision
  };
  enum class Verdict { granted, refused, wait };

  Run* find(const UIGestureRecognizer& recognizer);
  Run& ensureRun(const Recognizer& recognizer);
  std::vector<Recognizer> running() const;
  UITouches touchesSeenBy(const UIGestureRecognizer& recognizer) const;
  bool shareTouch(const UIGestureRecognizer& a, const UIGestureRecognizer& b) const;
  bool wishes(const UIGestureRecognizer& recognizer) const;

  bool requiresFailure(const Recognizer& recognizer, const Recognizer& other) const;
  Verdict judge(const Recognizer& recognizer);
  bool viewsAllow(const Recognizer& recognizer) const;
  void grant(const Recognizer& winner);
  void fail(UIGestureRecognizer& recognizer);
  bool decideWishes();
  bool fireActions();
  bool resetFinished();

  std::vector<Run> runs_;
  std::vector<Recognizer> toFire_;
  int sending_ = 0;
  bool settling_ = false;
};

}  // namespace platform
