#pragma once

#include <optional>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

class _UIBarBackground;

/// A row of bar buttons at a screen's bottom. Flexible spaces share what room is left. Main thread.
class UIToolbar : public Object<UIToolbar, UIView> {
 public:
  UIToolbar();
  ~UIToolbar() override;
  void initWithFrame(CGRect frame) override;

  static constexpr double standardHeight = 44;

  virtual const std::vector<Ref<UIBarButtonItem>>& items() const { return items_; }
  void setItems(std::vector<Ref<UIBarButtonItem>> items, bool animated = false);
  std::optional<UIColor> barTintColor() const { return barTintColor_; }
  void setBarTintColor(std::optional<UIColor> color);
  /// How far the ground reaches beyond the bottom edge, under the home indicator. Set by the navigation controller.
  void setBottomExtension(double points);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;

 private:
  std::vector<Ref<UIBarButtonItem>> items_;
  std::optional<UIColor> barTintColor_;
  double bottomExtension_ = 0;
  Ref<_UIBarBackground> background_;
};

}  // namespace platform
