#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// What is in the cart, what it comes to, and the button that pays.
class CartScreen final : public platform::Object<CartScreen, platform::UIViewController> {
 public:
  explicit CartScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;

  static void exportMethods(platform::MethodTable<CartScreen>& table);

 private:
  std::int64_t numberOfRows(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  platform::Ref<platform::UITableViewCell> cellForRow(const platform::Ref<platform::UITableView>& table,
                                                      const platform::IndexPath& path);
  void pay();
  void askToClear();
  void showCart();

  ShopRef shop_;
  platform::Ref<platform::UITableView> table_;
  platform::Ref<platform::UILabel> empty_;
  platform::Ref<platform::UILabel> total_;
  platform::Ref<PrimaryButton> pay_;
};

}  // namespace teashop
