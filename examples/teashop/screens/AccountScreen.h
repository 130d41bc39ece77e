#pragma once

#include "examples/teashop/Shop.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UITableView.h"

namespace teashop {

/// The customer's corner: the orders, newest first, and the way to the timer, the preferences and the terms.
class AccountScreen final : public platform::Object<AccountScreen, platform::UIViewController> {
 public:
  explicit AccountScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;

  static void exportMethods(platform::MethodTable<AccountScreen>& table);

 private:
  std::int64_t numberOfSections(const platform::Ref<platform::UITableView>& table);
  std::int64_t numberOfRows(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  std::string titleForHeader(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  platform::Ref<platform::UITableViewCell> cellForRow(const platform::Ref<platform::UITableView>& table,
                                                      const platform::IndexPath& path);
  void didSelectRow(const platform::Ref<platform::UITableView>& table, const platform::IndexPath& path);
  void showOrder(platform::UITableViewCell& cell, std::int64_t row) const;

  ShopRef shop_;
  platform::Ref<platform::UITableView> table_;
};

}  // namespace teashop
