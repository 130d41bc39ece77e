#pragma once

#include <functional>
#include <string>

#include "lumicor/capture/ClosureSleeve.h"
#include "platform/uikit/views/UIView.h"

namespace platform {
class UIButton;
class UILabel;
class UIStackView;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// The bar with which a person starts and stops a demonstration: a caption and one button. It lies over the host, clear
/// of the safe area and in front of whatever is presented; touches beside it pass. Nothing of it is an element of a
/// screen, and using it is no action. Main thread.
class LumicorTrackingControlView final : public Object<LumicorTrackingControlView, UIView> {
 public:
  inline static const std::string identifier = "lumicorTrackerView";

  void initWithFrame(CGRect frame) override;
  /// Puts it over the window, in the middle below the upper edge of its safe area: over a title that nobody presses,
  /// and where the keyboard does not come.
  void placeIn(const Ref<UIView>& window);

  const Ref<UILabel>& textView() const { return textView_; }
  /// Made on first use.
  const Ref<UIButton>& clickButton();
  /// What the button runs; takes the place of what it ran before.
  void setClickListener(std::function<void()> listener);

  /// What the button says, whether it can be pressed, and what stands after "Tracking: ".
  void setState(const std::string& buttonTitle, bool isEnabled, const std::string& caption);
  /// Whether a view is the bar or lies inside.
  bool contains(const Ref<UIView>& view) const;

 private:
  void setUpStacks();

  Ref<UILabel> textView_;
  Ref<UIButton> clickButton_;
  Ref<UIStackView> outer_;
  Ref<UIStackView> inner_;
  Ref<ClosureSleeve> clickListener_;
};

}  // namespace lumicor
