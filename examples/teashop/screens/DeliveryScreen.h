#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "platform/uikit/UITextField.h"
#include "platform/uikit/UIViewController.h"

namespace teashop {

/// Where the tea goes. The order can be placed once every field is filled.
class DeliveryScreen final : public platform::Object<DeliveryScreen, platform::UIViewController> {
 public:
  explicit DeliveryScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<DeliveryScreen>& table);

 private:
  platform::Ref<platform::UITextField> makeField(const std::string& caption, const std::string& placeholder,
                                                 const std::string& identifier,
                                                 const platform::NSLayoutYAxisAnchor& below);
  void fieldChanged();
  bool shouldReturn(const platform::Ref<platform::UITextField>& field);
  void placeOrder();
  void endEditing();
  bool isComplete() const;

  ShopRef shop_;
  platform::Ref<platform::UITextField> name_;
  platform::Ref<platform::UITextField> street_;
  platform::Ref<platform::UITextField> city_;
  platform::Ref<PrimaryButton> place_;
};

}  // namespace teashop
