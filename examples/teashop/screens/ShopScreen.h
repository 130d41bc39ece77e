#pragma once

#include "examples/teashop/Shop.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

/// The teas by kind. A row opens its tea, a long press offers to make it a favourite; the bar leads to the search and
/// to the filter.
class ShopScreen final : public platform::Object<ShopScreen, platform::UIViewController> {
 public:
  explicit ShopScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;

  static void exportMethods(platform::MethodTable<ShopScreen>& table);

 private:
  void showTeas();
  void openSearch();
  void openFilter();
  void pressed(const platform::Ref<platform::NSObject>& sender);
  void askAboutFavourite(const Product& tea);
  std::int64_t numberOfSections(const platform::Ref<platform::UITableView>& table);
  std::int64_t numberOfRows(const platform::Ref<platform::UITableView>& table, std::int64_t section);
  platform::Ref<platform::UITableViewHeaderFooterView> header(const platform::Ref<platform::UITableView>& table,
                                                              std::int64_t section);
  platform::Ref<platform::UITableViewCell> cellForRow(const platform::Ref<platform::UITableView>& table,
                                                      const platform::IndexPath& path);
  void didSelectRow(const platform::Ref<platform::UITableView>& table, const platform::IndexPath& path);
  const Product& teaAt(const platform::IndexPath& path) const;

  ShopRef shop_;
  TeaFilter shown_;
  std::vector<TeaShelf> shelves_;
  platform::Ref<platform::UITableView> table_;
  platform::Ref<platform::UIView> note_;
  platform::Ref<platform::UILabel> noteText_;
};

}  // namespace teashop
