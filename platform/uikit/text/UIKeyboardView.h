#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/dispatch/DispatchWorkItem.h"
#include "platform/uikit/text/KeyboardLayout.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

/// The balloon above a letter that is held down. Drawn in its bounds, the key at the bottom.
class UIKeyboardBalloon : public Object<UIKeyboardBalloon, UIView> {
 public:
  void initWithFrame(CGRect frame) override;
  /// Stands over the key (frame in the superview); held inside the width.
  void showOver(const KeyboardKey& key, double width);
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;

 private:
  std::string text_;
  CGRect key_;  // in the balloon's own coordinates
};

/// The keys: it draws them, follows the fingers and says which keys they press. Main thread.
class UIKeyboardView : public Object<UIKeyboardView, UIView> {
 public:
  enum class Shift { off, once, locked };

  void initWithFrame(CGRect frame) override;
  /// Back to the letters, for a responder with these wishes.
  void show(const UITextInputTraits& traits);
  const UITextInputTraits& traits() const { return traits_; }
  /// Called with every key that was pressed.
  void setOnKey(std::function<void(const UIKey&)> onKey) { onKey_ = std::move(onKey); }
  /// Capitals for the next letter, or no more: what stands before the caret says so. A person's own shift stays.
  void suggestShift(bool wanted);

  const KeyboardLayout& keys() const { return layout_; }
  KeyboardPlane plane() const { return plane_; }
  Shift shift() const { return shift_; }

  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void layoutSubviews() override;
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;

 private:
  void rebuild();
  void press(const Ref<UITouch>& touch);
  void release(const UITouch& touch, bool types);
  void typeKey(const KeyboardKey& key);
  void pressShift(double time);
  void changePlane(const std::string& name);
  void repeatBackspace(double delay);
  void updateBalloon();
  bool isHeld(const KeyboardKey& key) const;

  UITextInputTraits traits_;
  KeyboardLayout layout_;
  KeyboardPlane plane_ = KeyboardPlane::letters;
  Shift shift_ = Shift::off;
  bool suggested_ = false;
  double lastShiftTime_ = -1;
  std::map<const UITouch*, std::string> held_;  // the names of the keys under the fingers
  const UITouch* lastHeld_ = nullptr;
  Ref<DispatchWorkItem> backspaceRepeat_;
  Ref<UIKeyboardBalloon> balloon_;
  std::function<void(const UIKey&)> onKey_;
};

}  // namespace platform
