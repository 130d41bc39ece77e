#pragma once

#include "examples/teashop/Shop.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// Finds teas by their name, kind, taste and origin, while one types.
class SearchScreen final : public platform::Object<SearchScreen, platform::UIViewController> {
 public:
  explicit SearchScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewDidAppear(bool animated) override;

  static void exportMethods(platform::MethodTable<SearchScreen>& table);

 private:
  void search(const std::string& words);
  void textDidChange(const platform::Ref<platform::UISearchBar>& bar, const std::string& text);
  void searchClicked(const platform::Ref<platform::UISearchBar>& bar);
  void cancelClicked(const platform::Ref<platform::UISearchBar>& bar);
  std::int64_t numberOfRows(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  platform::Ref<platform::UITableViewCell> cellForRow(const platform::Ref<platform::UITableView>& table,
                                                      const platform::IndexPath& path);
  void didSelectRow(const platform::Ref<platform::UITableView>& table, const platform::IndexPath& path);

  ShopRef shop_;
  std::vector<const Product*> found_;
  platform::Ref<platform::UISearchBar> bar_;
  platform::Ref<platform::UILabel> note_;
  platform::Ref<platform::UITableView> table_;
  bool hasAppeared_ = false;
};

}  // namespace teashop
