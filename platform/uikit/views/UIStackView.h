#pragma once

#include <map>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

enum class UIStackViewDistribution { fill, fillEqually, fillProportionally, equalSpacing, equalCentering };
enum class UIStackViewAlignment { fill, leading, top = leading, center, trailing, bottom = trailing };

/// Lays views out in a row or column by constraints that it makes itself. Hidden ones take no room. Main thread.
class UIStackView : public Object<UIStackView, UIView> {
 public:
  using UIView::init;
  void init(std::vector<Ref<UIView>> arrangedSubviews);
  void initWithFrame(CGRect frame) override;

  const std::vector<Ref<UIView>>& arrangedSubviews() const { return arranged_; }
  void addArrangedSubview(const Ref<UIView>& view);
  void insertArrangedSubview(const Ref<UIView>& view, std::size_t index);
  /// The view stays a subview.
  void removeArrangedSubview(const Ref<UIView>& view);

  UILayoutAxis axis() const { return axis_; }
  void setAxis(UILayoutAxis axis);
  UIStackViewDistribution distribution() const { return distribution_; }
  void setDistribution(UIStackViewDistribution distribution);
  UIStackViewAlignment alignment() const { return alignment_; }
  void setAlignment(UIStackViewAlignment alignment);
  double spacing() const { return spacing_; }
  void setSpacing(double spacing);
  /// The distance after one view, in place of the spacing.
  void setCustomSpacing(double spacing, const Ref<UIView>& view);
  bool isLayoutMarginsRelativeArrangement() const { return usesMargins_; }
  void setLayoutMarginsRelativeArrangement(bool uses);

  void updateConstraints() override;
  void layoutSubviews() override;
  void willRemoveSubview(const Ref<UIView>& subview) override;
  /// Closes the gap that a hidden view leaves.
  void subviewVisibilityDidChange() override { setNeedsLayout(); }

 private:
  void arrangementDidChange();
  std::vector<Ref<UIView>> visible() const;
  std::vector<bool> hiddenStates() const;
  void constrainAlong(const std::vector<Ref<UIView>>& views);
  void constrainAcross(const std::vector<Ref<UIView>>& views);

  std::vector<Ref<UIView>> arranged_;
  std::map<const UIView*, double> customSpacings_;
  std::vector<Ref<NSLayoutConstraint>> made_;
  std::vector<Ref<UILayoutGuide>> guides_;
  std::vector<bool> builtFor_;
  UILayoutAxis axis_ = UILayoutAxis::horizontal;
  UIStackViewDistribution distribution_ = UIStackViewDistribution::fill;
  UIStackViewAlignment alignment_ = UIStackViewAlignment::fill;
  double spacing_ = 0;
  bool usesMargins_ = false;
  bool stale_ = true;
};

}  // namespace platform
