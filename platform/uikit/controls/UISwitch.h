#pragma once

#include <optional>
#include <string>

#include "platform/uikit/controls/UIControl.h"

namespace platform {

/// On or off. A tap or a drag of the knob changes it and sends valueChanged; a program's change sends nothing.
/// 51 by 31 points. Main thread.
class UISwitch : public Object<UISwitch, UIControl> {
 public:
  void initWithFrame(CGRect frame) override;

  virtual bool isOn() const { return on_; }
  void setOn(bool on) { setOn(on, false); }
  virtual void setOn(bool on, bool animated);
  /// What the switch is for; not drawn.
  virtual std::optional<std::string> title() const { return title_; }
  void setTitle(std::optional<std::string> title) { title_ = std::move(title); }
  std::optional<UIColor> onTintColor() const { return onTintColor_; }
  void setOnTintColor(std::optional<UIColor> color);
  std::optional<UIColor> thumbTintColor() const { return thumbTintColor_; }
  void setThumbTintColor(std::optional<UIColor> color);

  void setFrame(CGRect frame) override;
  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void stateDidChange() override;
  bool beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool followsDragging() const override { return true; }

 private:
  void place(bool animated);
  void change(bool on);

  Ref<UIView> track_;
  Ref<UIView> knob_;
  std::optional<std::string> title_;
  std::optional<UIColor> onTintColor_;
  std::optional<UIColor> thumbTintColor_;
  bool on_ = false;
  bool dragged_ = false;
  double grip_ = 0;
};

}  // namespace platform
