#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "examples/teashop/views/QuantityControl.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIViewController.h"

namespace teashop {

/// One tea: what it is, how many packets, and the button that puts them into the cart.
class ProductScreen final : public platform::Object<ProductScreen, platform::UIViewController> {
 public:
  ProductScreen(ShopRef shop, const Product& product) : shop_(std::move(shop)), product_(product) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<ProductScreen>& table);

 private:
  void addToCart();
  void quantityChanged();

  ShopRef shop_;
  const Product& product_;
  platform::Ref<QuantityControl> quantity_;
  platform::Ref<PrimaryButton> add_;
  platform::Ref<platform::UILabel> added_;
};

}  // namespace teashop
