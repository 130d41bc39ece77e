#pragma once

#include <functional>

#include "examples/teashop/model/TeaFilter.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

/// Which teas to show: kind, price, caffeine, stock. Nothing changes until it is applied. Shown as a sheet in a
/// navigation controller of its own.
class FilterScreen final : public platform::Object<FilterScreen, platform::UIViewController> {
 public:
  using Apply = std::function<void(const TeaFilter&)>;
  FilterScreen(TeaFilter filter, Apply apply) : filter_(filter), apply_(std::move(apply)) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<FilterScreen>& table);

 private:
  void buildControls();
  void buildToolbar();
  /// A caption at the left and a control at the right.
  platform::Ref<platform::UIView> line(const std::string& caption, const platform::Ref<platform::UIView>& control);
  void showFilter();
  void changed();
  void reset();
  void cancel();
  void applyAndClose();

  TeaFilter filter_;
  Apply apply_;
  platform::Ref<platform::UISegmentedControl> kind_;
  platform::Ref<platform::UISlider> price_;
  platform::Ref<platform::UILabel> priceValue_;
  platform::Ref<platform::UISwitch> caffeineFree_;
  platform::Ref<platform::UISwitch> inStock_;
  platform::Ref<platform::UIButton> count_;
};

}  // namespace teashop
