#include "platform/uikit/touch/GestureEnvironment.h"

#include <algorithm>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/touch/TouchDispatcher.h"

namespace platform {

namespace {

using State = UIGestureRecognizerState;
using Recognizer = Ref<UIGestureRecognizer>;

bool isTerminal(State state) { return state == State::ended || state == State::cancelled || state == State::failed; }

bool hasRecognized(State state) { return state == State::began || state == State::changed || state == State::ended; }

/// Asks the delegate of `recognizer` about the other one; no without a delegate that answers.
bool delegateSays(const Recognizer& recognizer, SEL question, const Recognizer& other) {
  return askOptional<bool>(recognizer->delegate(), question, recognizer, other).value_or(false);
}

bool mayRunTogether(const Recognizer& a, const Recognizer& b) {
  static const SEL question = sel("gestureRecognizer:shouldRecognizeSimultaneouslyWithGestureRecognizer:");
  return delegateSays(a, question, b) || delegateSays(b, question, a);
}

bool prevents(const Recognizer& a, const Recognizer& b) {
  return a->canPreventGestureRecognizer(b) && b->canBePreventedByGestureRecognizer(a) && !mayRunTogether(a, b);
}

}  // namespace

GestureEnvironment& GestureEnvironment::shared() {
  static GestureEnvironment* const environment = new GestureEnvironment;
  return *environment;
}

// ---- Runs

GestureEnvironment::Run* GestureEnvironment::find(const UIGestureRecognizer& recognizer) {
  const auto run =
      std::find_if(runs_.begin(), runs_.end(), [&](const Run& known) { return known.recognizer.get() == &recognizer; });
  return run == runs_.end() ? nullptr : &*run;
}

GestureEnvironment::Run& GestureEnvironment::ensureRun(const Recognizer& recognizer) {
  if (Run* run = find(*recognizer)) return *run;
  return runs_.emplace_back(Run{recognizer, {}, State::possible});
}

std::vector<Recognizer> GestureEnvironment::running() const {
  std::vector<Recognizer> recognizers;
  for (const Run& run : runs_) recognizers.push_back(run.recognizer);
  return recognizers;
}

UITouches GestureEnvironment::touchesSeenBy(const UIGestureRecognizer& recognizer) const {
  const Run* run = const_cast<GestureEnvironment*>(this)->find(recognizer);
  return run ? run->seen : UITouches{};
}

bool GestureEnvironment::shareTouch(const UIGestureRecognizer& a, const UIGestureRecognizer& b) const {
  const UITouches seenByB = touchesSeenBy(b);
  const UITouches seenByA = touchesSeenBy(a);
  return std::find_first_of(seenByA.begin(), seenByA.end(), seenByB.begin(), seenByB.end()) != seenByA.end();
}

bool GestureEnvironment::wishes(const UIGestureRecognizer& recognizer) const {
  const Run* run = const_cast<GestureEnvironment*>(this)->find(recognizer);
  return run && run->wish != State::possible;
}

bool GestureEnvironment::isUndecided(const UIGestureRecognizer& recognizer, const Ref<UITouch>& touch) const {
  if (recognizer.state() != State::possible) return false;
  const UITouches seen = touchesSeenBy(recognizer);
  return std::find(seen.begin(), seen.end(), touch) != seen.end();
}

// ---- Touches in

void GestureEnvironment::send(const Recognizer& recognizer, const Ref<UITouch>& touch, const Ref<UIEvent>& event) {
  UITouches& live = recognizer->touches_;
  const bool isNew = touch->phase() == UITouchPhase::began;
  if (isNew) {
    if (isTerminal(recognizer->state_)) return;
    Run& run = ensureRun(recognizer);
    if (run.wish == State::ended) return;
    run.seen.push_back(touch);
    live.push_back(touch);
  } else if (std::find(live.begin(), live.end(), touch) == live.end()) {
    return;
  }
  recognizer->lastLocation_ = touch->locationInView(nullptr);
  recognizer->lastWindow_ = touch->window_;

  const UITouches touches{touch};
  ++sending_;
  if (!isTerminal(recognizer->state_)) {
    switch (touch->phase()) {
      case UITouchPhase::began:
        recognizer->touchesBegan(touches, event);
        break;
      case UITouchPhase::ended:
        recognizer->touchesEnded(touches, event);
        break;
      case UITouchPhase::cancelled:
        recognizer->touchesCancelled(touches, event);
        break;
      default:
        recognizer->touchesMoved(touches, event);
    }
  }
  --sending_;
  if (touch->phase() == UITouchPhase::ended || touch->phase() == UITouchPhase::cancelled) std::erase(live, touch);
}

void GestureEnvironment::noteChange(const Recognizer& recognizer, State wanted) {
  State& state = recognizer->state_;
  if (isTerminal(state)) return;
  Run& run = ensureRun(recognizer);
  if (state == State::possible) {
    // A lifted finger does not undo what was recognised and only waits for others.
    if (wanted == State::failed && run.wish == State::ended) return;
    if (wanted == State::failed || wanted == State::cancelled) {
      state = State::failed;
      run.wish = State::possible;
    } else if (wanted != State::possible && run.wish == State::possible) {
      run.wish = wanted == State::ended ? State::ended : State::began;
    }
  } else if (wanted != State::possible && wanted != State::began) {
    state = wanted == State::failed ? State::cancelled : wanted;
    toFire_.push_back(recognizer);
  }
  if (sending_ == 0) settle();
}

void GestureEnvironment::stop(const Recognizer& recognizer) {
  if (!find(*recognizer)) return;
  recognizer->touches_.clear();
  noteChange(recognizer, State::cancelled);
}

// ---- Decisions

void GestureEnvironment::settle() {
  if (settling_ || sending_ > 0) return;
  settling_ = true;
  bool moved = true;
  while (moved) {
    moved = fireActions();
    moved = decideWishes() || moved;
    moved = resetFinished() || moved;
  }
  settling_ = false;
  TouchDispatcher::shared().flush();
}

bool GestureEnvironment::decideWishes() {
  bool decided = false;
  for (const Recognizer& recognizer : running()) {
    if (!wishes(*recognizer)) continue;
    const Verdict verdict = judge(recognizer);
    if (verdict == Verdict::wait || !wishes(*recognizer)) continue;  // a delegate may have stopped it meanwhile
    if (verdict == Verdict::granted) grant(recognizer);
    if (verdict == Verdict::refused) fail(*recognizer);
    decided = true;
  }
  return decided;
}

/// Set by the program, or by a delegate while both watch the same finger.
bool GestureEnvironment::requiresFailure(const Recognizer& recognizer, const Recognizer& other) const {
  const auto& required = recognizer->failureRequirements_;
  if (std::any_of(required.begin(), required.end(), [&](const auto& known) { return known.lock() == other; })) {
    return true;
  }
  static const SEL shouldRequire = sel("gestureRecognizer:shouldRequireFailureOfGestureRecognizer:");
  static const SEL shouldBeRequired = sel("gestureRecognizer:shouldBeRequiredToFailByGestureRecognizer:");
  return shareTouch(*recognizer, *other) &&
         (delegateSays(recognizer, shouldRequire, other) || delegateSays(other, shouldBeRequired, recognizer));
}

GestureEnvironment::Verdict GestureEnvironment::judge(const Recognizer& recognizer) {
  bool wait = false;
  for (const Recognizer& other : running()) {
    if (other == recognizer) continue;
    const bool otherIsFirst = requiresFailure(recognizer, other);
    if (otherIsFirst && hasRecognized(other->state_)) return Verdict::refused;
    const bool sharing = shareTouch(*recognizer, *other);
    if (sharing && hasRecognized(other->state_) && prevents(other, recognizer)) return Verdict::refused;
    if (other->state_ != State::possible) continue;
    // One that wins against this one, but not the other way round, is decided first, too. Two that would wait for each
    // other do not.
    const bool otherIsStronger =
        sharing && wishes(*other) && prevents(other, recognizer) && !prevents(recognizer, other);
    const bool otherWaits = wishes(*other) && requiresFailure(other, recognizer);
    wait = wait || ((otherIsFirst || otherIsStronger) && !otherWaits);
  }
  if (wait) return Verdict::wait;

  static const SEL shouldBegin = sel("gestureRecognizerShouldBegin:");
  if (!askOptional<bool>(recognizer->delegate(), shouldBegin, recognizer).value_or(true)) return Verdict::refused;
  return viewsAllow(recognizer) ? Verdict::granted : Verdict::refused;
}

bool GestureEnvironment::viewsAllow(const Recognizer& recognizer) const {
  for (const Ref<UITouch>& touch : touchesSeenBy(*recognizer)) {
    for (Ref<TouchSurface> view = touch->view_.lock(); view; view = view->surfaceAround()) {
      if (!view->gestureRecognizerShouldBegin(recognizer)) return false;
      if (view.get() == recognizer->view_) break;
    }
  }
  return true;
}

void GestureEnvironment::grant(const Recognizer& winner) {
  Run* const run = find(*winner);
  winner->state_ = std::exchange(run->wish, State::possible);
  for (const Recognizer& other : running()) {
    if (other == winner || other->state_ != State::possible) continue;
    if (requiresFailure(other, winner) || (shareTouch(*winner, *other) && prevents(winner, other))) fail(*other);
  }
  if (winner->cancelsTouchesInView_) TouchDispatcher::shared().silence(touchesSeenBy(*winner));
  toFire_.push_back(winner);
}

void GestureEnvironment::fail(UIGestureRecognizer& recognizer) {
  if (Run* run = find(recognizer)) run->wish = State::possible;
  recognizer.state_ = State::failed;
}

bool GestureEnvironment::fireActions() {
  const std::vector<Recognizer> recognizers = std::exchange(toFire_, {});
  for (const Recognizer& recognizer : recognizers) {
    const auto actions = recognizer->actions_;
    for (const UIGestureRecognizer::Action& action : actions) {
      const Ref<NSObject> target = action.target.lock();
      if (!target) continue;
      if (action.action.name().find(':') == std::string::npos) {
        target->perform(action.action);
      } else {
        target->perform(action.action, recognizer);
      }
    }
  }
  return !recognizers.empty();
}

bool GestureEnvironment::resetFinished() {
  bool any = false;
  for (const Recognizer& recognizer : running()) {
    if (!isTerminal(recognizer->state_) || !recognizer->touches_.empty()) continue;
    if (std::find(toFire_.begin(), toFire_.end(), recognizer) != toFire_.end()) continue;
    std::erase_if(runs_, [&](const Run& run) { return run.recognizer == recognizer; });
    recognizer->state_ = State::possible;
    recognizer->reset();
    any = true;
  }
  return any;
}

}  // namespace platform
