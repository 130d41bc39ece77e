#include "examples/teashop/screens/AccountScreen.h"

#include "examples/teashop/views/Theme.h"
#include "platform/layout/NSLayoutAnchor.h"
#include "platform/layout/NSLayoutConstraint.h"

namespace teashop {

using namespace platform;

namespace {
constexpr const char* orderCell = "OrderCell";
}

void AccountScreen::exportMethods(MethodTable<AccountScreen>& table) {
  table.add<&AccountScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&AccountScreen::cellForRow>("tableView:cellForRowAtIndexPath:");
}

void AccountScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Account");
  view()->setBackgroundColor(theme::paper);
  table_ = make<UITableView>(view()->bounds());
  table_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  table_->setAccessibilityIdentifier("orderList");
  table_->setBackgroundColor(theme::paper);
  table_->setAllowsSelection(false);
  table_->setDataSource(self());
  empty_ = makeLabel("No orders yet.\nWhat you order is kept here.", theme::body(), theme::inkSoft);
  empty_->setTextAlignment(NSTextAlignment::center);
  view()->addSubview(table_);
  view()->addSubview(empty_);
  NSLayoutConstraint::activateConstraints({
      empty_->centerXAnchor().constraintEqualToAnchor(view()->centerXAnchor()),
      empty_->centerYAnchor().constraintEqualToAnchor(view()->centerYAnchor()),
  });
}

void AccountScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  table_->reloadData();
  empty_->setHidden(!shop_->orders.orders().empty());
}

std::int64_t AccountScreen::numberOfRows(const Ref<UITableView>&, std::int64_t) {
  return static_cast<std::int64_t>(shop_->orders.orders().size());
}

Ref<UITableViewCell> AccountScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = table->dequeueReusableCell(orderCell);
  if (!cell) cell = make<UITableViewCell>(UITableViewCellStyle::subtitle, orderCell);
  const auto& orders = shop_->orders.orders();
  const Order& order = orders[orders.size() - 1 - static_cast<std::size_t>(path.row())];
  cell->setAccessibilityIdentifier("order-" + std::to_string(order.number));
  cell->setBackgroundColor(theme::card);
  cell->textLabel()->setText("Order " + std::to_string(order.number) + " \u00b7 " + priceText(order.total));
  cell->textLabel()->setFont(theme::headline());
  cell->textLabel()->setTextColor(theme::ink);
  cell->detailTextLabel()->setText("to " + order.delivery.name + ", " + order.delivery.city);
  cell->detailTextLabel()->setTextColor(theme::inkSoft);
  return cell;
}

}  // namespace teashop
