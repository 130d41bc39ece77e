#include "platform/uikit/touch/UIResponder.h"

#include <deque>

#include "platform/uikit/touch/ApplicationHost.h"
#include "platform/uikit/touch/UITouch.h"

namespace platform {

namespace {

using Handler = void (UIResponder::*)(const UITouches&, const Ref<UIEvent>&);

/// Touches on their way up the responder chain. Handlers that leave them alone ask for the next responder here instead
/// of calling it, so that the chain may be of any length.
struct Ascent {
  Handler handler;
  const UITouches* touches;
  std::deque<Ref<UIResponder>> next;
};
Ascent* currentAscent = nullptr;

void passOn(UIResponder& from, Handler handler, const UITouches& touches, const Ref<UIEvent>& event) {
  Ref<UIResponder> next = from.nextResponder();
  if (!next) return;
  if (currentAscent && currentAscent->handler == handler && currentAscent->touches == &touches) {
    currentAscent->next.push_back(std::move(next));
    return;
  }
  Ascent ascent{handler, &touches, {}};
  Ascent* const outer = std::exchange(currentAscent, &ascent);
  ascent.next.push_back(std::move(next));
  while (!ascent.next.empty()) {
    const Ref<UIResponder> responder = std::move(ascent.next.front());
    ascent.next.pop_front();
    ((*responder).*handler)(touches, event);
  }
  currentAscent = outer;
}

}  // namespace

// ---- First responder

namespace {

Weak<UIResponder>& first() {
  static auto* const responder = new Weak<UIResponder>();
  return *responder;
}

/// Hand-overs under way, which nest: the keyboard stays up meanwhile.
int handOvers = 0;

void tellOfChange() {
  if (handOvers == 0) ApplicationHost::shared().firstResponderDidChange();
}

}  // namespace

Ref<UIResponder> UIResponder::firstResponder() { return first().lock(); }

bool UIResponder::isFirstResponder() const { return firstResponder().get() == this; }

bool UIResponder::becomeFirstResponder() {
  if (isFirstResponder()) return true;
  const Ref<UIResponder> keeper = self();
  if (!canBecomeFirstResponder()) return false;

  ++handOvers;
  const Ref<UIResponder> before = firstResponder();
  const bool free = !before || (before->canResignFirstResponder() && before->resignFirstResponder());
  if (free && !firstResponder()) first() = keeper;
  --handOvers;
  tellOfChange();
  return isFirstResponder();
}

bool UIResponder::resignFirstResponder() {
  if (!isFirstResponder()) return true;
  if (!canResignFirstResponder()) return false;
  first().reset();
  tellOfChange();
  return true;
}

void UIResponder::dropFirstResponder() {
  const Ref<UIResponder> responder = firstResponder();
  if (responder) responder->resignFirstResponder();
  if (first().lock() != responder) return;
  first().reset();
  tellOfChange();
}

// ---- Events: what nobody handles goes up the chain

void UIResponder::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  passOn(*this, &UIResponder::touchesBegan, touches, event);
}
void UIResponder::touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) {
  passOn(*this, &UIResponder::touchesMoved, touches, event);
}
void UIResponder::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  passOn(*this, &UIResponder::touchesEnded, touches, event);
}
void UIResponder::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  passOn(*this, &UIResponder::touchesCancelled, touches, event);
}

bool UIResponder::keyPressed(const UIKey&) { return false; }

Ref<UIResponder> UIResponder::targetForAction(SEL action) {
  for (Ref<UIResponder> responder = self(); responder; responder = responder->nextResponder()) {
    if (responder->respondsToSelector(action)) return responder;
  }
  return nullptr;
}

}  // namespace platform
