#pragma once

#include "platform/uikit/views/FrameTicker.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

enum class UIActivityIndicatorViewStyle { medium, large };

/// A wheel of spokes that turns while something goes on. Main thread.
class UIActivityIndicatorView : public Object<UIActivityIndicatorView, UIView> {
 public:
  using UIView::init;
  void init(UIActivityIndicatorViewStyle style);
  void initWithFrame(CGRect frame) override;

  bool isAnimating() const { return animating_; }
  void startAnimating();
  void stopAnimating();
  bool hidesWhenStopped() const { return hidesWhenStopped_; }
  void setHidesWhenStopped(bool hides);
  UIColor color() const { return color_; }
  void setColor(const UIColor& color);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void didMoveToWindow() override;

 private:
  void turn();

  UIActivityIndicatorViewStyle style_ = UIActivityIndicatorViewStyle::medium;
  UIColor color_ = UIColor::systemGray();
  FrameTicker ticker_;
  int spoke_ = 0;
  bool animating_ = false;
  bool hidesWhenStopped_ = true;
};

}  // namespace platform
