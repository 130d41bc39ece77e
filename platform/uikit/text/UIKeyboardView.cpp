#include "platform/uikit/text/UIKeyboardView.h"

#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/touch/UITouch.h"

// What the fingers do to the keys; how keys look is in KeyboardDrawing.cpp.

namespace platform {

namespace {

/// Two taps on shift within this time lock it.
constexpr double shiftLockInterval = 0.35;
constexpr double firstRepeat = 0.5;
constexpr double laterRepeats = 0.1;

using Kind = KeyboardKey::Kind;

}  // namespace

void UIKeyboardView::initWithFrame(CGRect frame) {
  UIView::initWithFrame(frame);
  setMultipleTouchEnabled(true);
  balloon_ = make<UIKeyboardBalloon>();
  balloon_->setHidden(true);
  addSubview(balloon_);
  rebuild();
}

void UIKeyboardView::show(const UITextInputTraits& traits) {
  traits_ = traits;
  plane_ = KeyboardPlane::letters;
  shift_ = Shift::off;
  suggested_ = false;
  lastShiftTime_ = -1;
  rebuild();
}

void UIKeyboardView::suggestShift(bool wanted) {
  if (wanted == suggested_) return;
  suggested_ = wanted;
  if (shift_ == Shift::locked) return;
  shift_ = wanted ? Shift::once : Shift::off;
  rebuild();
}

void UIKeyboardView::rebuild() {
  layout_ = KeyboardLayout::make(traits_, plane_, shift_ != Shift::off, bounds().size.width);
  updateBalloon();
  setNeedsDisplay();
}

void UIKeyboardView::layoutSubviews() {
  UIView::layoutSubviews();
  rebuild();
}

bool UIKeyboardView::isHeld(const KeyboardKey& key) const {
  for (const auto& [touch, name] : held_) {
    if (name == key.name) return true;
  }
  return false;
}

// ---- Fingers

void UIKeyboardView::touchesBegan(const UITouches& touches, const Ref<UIEvent>&) {
  for (const Ref<UITouch>& touch : touches) {
    // The next finger commits what the one before still holds: fast typing overlaps.
    std::vector<const UITouch*> before;
    for (const auto& [other, name] : held_) before.push_back(other);
    for (const UITouch* other : before) release(*other, true);
    press(touch);
  }
}

void UIKeyboardView::press(const Ref<UITouch>& touch) {
  const KeyboardKey* found = layout_.keyAt(touch->locationInView(this));
  if (!found) return;
  const KeyboardKey key = *found;
  held_[touch.get()] = key.name;
  lastHeld_ = touch.get();
  switch (key.kind) {
    case Kind::shift:
      pressShift(touch->timestamp());
      break;
    case Kind::backspace:
      typeKey(key);
      repeatBackspace(firstRepeat);
      break;
    default:
      break;
  }
  updateBalloon();
  setNeedsDisplay();
}

void UIKeyboardView::touchesMoved(const UITouches& touches, const Ref<UIEvent>&) {
  for (const Ref<UITouch>& touch : touches) {
    const auto held = held_.find(touch.get());
    if (held == held_.end() || held->second.empty()) continue;
    const KeyboardKey* from = layout_.keyNamed(held->second);
    const KeyboardKey* to = layout_.keyAt(touch->locationInView(this));
    // A finger slides among characters; the keys that do something keep it.
    if (!from || !to || from == to || from->kind != Kind::character || to->kind != Kind::character) continue;
    held->second = to->name;
    updateBalloon();
    setNeedsDisplay();
  }
}

void UIKeyboardView::touchesEnded(const UITouches& touches, const Ref<UIEvent>&) {
  for (const Ref<UITouch>& touch : touches) {
    release(*touch, true);
    held_.erase(touch.get());
  }
}

void UIKeyboardView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>&) {
  for (const Ref<UITouch>& touch : touches) {
    release(*touch, false);
    held_.erase(touch.get());
  }
}

void UIKeyboardView::release(const UITouch& touch, bool types) {
  const auto held = held_.find(&touch);
  if (held == held_.end()) return;
  const KeyboardKey* found = layout_.keyNamed(held->second);
  held->second.clear();
  if (lastHeld_ == &touch) lastHeld_ = nullptr;
  if (backspaceRepeat_) backspaceRepeat_->cancel();
  backspaceRepeat_ = nullptr;
  updateBalloon();
  setNeedsDisplay();
  if (!found || !types) return;
  const KeyboardKey key = *found;  // typing may build the keys anew
  if (key.kind == Kind::plane) {
    changePlane(key.name);
  } else if (key.kind != Kind::shift && key.kind != Kind::backspace) {
    typeKey(key);
  }
}

// ---- Keys

void UIKeyboardView::typeKey(const KeyboardKey& key) {
  lastShiftTime_ = -1;
  UIKey typed;
  if (key.kind == Kind::returnKey) {
    typed = {UIKey::Code::returnKey, "\n"};
  } else if (key.kind == Kind::backspace) {
    typed = {UIKey::Code::backspace, ""};
  } else {
    typed.text = key.name;
  }
  if (key.kind == Kind::character && shift_ == Shift::once) {
    shift_ = Shift::off;
    suggested_ = false;
    rebuild();
  }
  const bool returnsToLetters = key.kind == Kind::space || key.name == "'";
  if (returnsToLetters && plane_ != KeyboardPlane::letters) changePlane("ABC");
  if (onKey_) onKey_(typed);
}

void UIKeyboardView::pressShift(double time) {
  const bool again = time - lastShiftTime_ <= shiftLockInterval;
  lastShiftTime_ = again ? -1 : time;
  if (again && shift_ != Shift::locked) {
    shift_ = Shift::locked;
  } else {
    shift_ = shift_ == Shift::off ? Shift::once : Shift::off;
  }
  rebuild();
}

void UIKeyboardView::changePlane(const std::string& name) {
  if (name == "ABC") {
    plane_ = KeyboardPlane::letters;
  } else {
    plane_ = name == "123" ? KeyboardPlane::numbers : KeyboardPlane::symbols;
  }
  rebuild();
}

void UIKeyboardView::repeatBackspace(double delay) {
  backspaceRepeat_ = DispatchQueue::main().asyncAfter(delay, [weak = weakSelf()] {
    const Ref<UIKeyboardView> view = weak.lock();
    if (!view) return;
    view->repeatBackspace(laterRepeats);
    if (const KeyboardKey* key = view->layout_.keyNamed("\b")) view->typeKey(KeyboardKey(*key));
  });
}

void UIKeyboardView::updateBalloon() {
  const auto held = lastHeld_ ? held_.find(lastHeld_) : held_.end();
  const KeyboardKey* key = held == held_.end() ? nullptr : layout_.keyNamed(held->second);
  const bool shows = key && key->kind == Kind::character && !KeyboardLayout::isPad(traits_.keyboardType) &&
                     key->name.size() <= 4 && key->name != ".com";
  balloon_->setHidden(!shows);
  if (shows) balloon_->showOver(*key, bounds().size.width);
}

}  // namespace platform
