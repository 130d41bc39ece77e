#include "examples/teashop/screens/ShopScreen.h"

#include "examples/teashop/screens/ProductScreen.h"
#include "examples/teashop/views/ProductCell.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/UINavigationController.h"

namespace teashop {

using namespace platform;

void ShopScreen::exportMethods(MethodTable<ShopScreen>& table) {
  table.add<&ShopScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&ShopScreen::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&ShopScreen::didSelectRow>("tableView:didSelectRowAtIndexPath:");
}

void ShopScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Teas");
  view()->setBackgroundColor(theme::paper);
  table_ = make<UITableView>(view()->bounds());
  table_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  table_->setAccessibilityIdentifier("productList");
  table_->setBackgroundColor(theme::paper);
  table_->registerClass<ProductCell>(ProductCell::reuseIdentifier);
  table_->setSeparatorInset({0, 86, 0, 0});
  table_->setDataSource(self());
  table_->setDelegate(self());
  view()->addSubview(table_);
}

void ShopScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  if (const auto selected = table_->indexPathForSelectedRow()) table_->deselectRow(*selected, animated);
}

std::int64_t ShopScreen::numberOfRows(const Ref<UITableView>&, std::int64_t) {
  return static_cast<std::int64_t>(catalogue().size());
}

Ref<UITableViewCell> ShopScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = as<ProductCell>(table->dequeueReusableCell(ProductCell::reuseIdentifier, path));
  cell->showProduct(catalogue()[static_cast<std::size_t>(path.row())]);
  cell->setAccessoryType(UITableViewCellAccessoryType::disclosureIndicator);
  return cell;
}

void ShopScreen::didSelectRow(const Ref<UITableView>&, const IndexPath& path) {
  const Product& product = catalogue()[static_cast<std::size_t>(path.row())];
  navigationController()->pushViewController(make<ProductScreen>(shop_, product), true);
}

}  // namespace teashop
