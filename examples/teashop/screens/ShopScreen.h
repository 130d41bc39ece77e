#pragma once

#include "examples/teashop/Shop.h"
#include "platform/uikit/UITableView.h"
#include "platform/uikit/UIViewController.h"

namespace teashop {

/// The list of teas. A row opens its tea.
class ShopScreen final : public platform::Object<ShopScreen, platform::UIViewController> {
 public:
  explicit ShopScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;

  static void exportMethods(platform::MethodTable<ShopScreen>& table);

 private:
  std::int64_t numberOfRows(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  platform::Ref<platform::UITableViewCell> cellForRow(const platform::Ref<platform::UITableView>& table,
                                                      const platform::IndexPath& path);
  void didSelectRow(const platform::Ref<platform::UITableView>& table, const platform::IndexPath& path);

  ShopRef shop_;
  platform::Ref<platform::UITableView> table_;
};

}  // namespace teashop
