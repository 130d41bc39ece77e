#include "examples/teashop/screens/AccountScreen.h"

#include "examples/teashop/screens/PreferencesScreen.h"
#include "examples/teashop/screens/TermsScreen.h"
#include "examples/teashop/screens/TimerScreen.h"
#include "examples/teashop/views/Theme.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace teashop {

using namespace platform;

namespace {

constexpr const char* orderCell = "OrderCell";
constexpr const char* linkCell = "LinkCell";

/// A row that leads to another screen.
struct Link {
  const char* identifier;
  const char* title;
  const char* symbol;
  Ref<UIViewController> (*makeScreen)(const ShopRef& shop);
};

constexpr Link timer = {"accountTimer", "Brewing timer", "clock",
                        [](const ShopRef&) -> Ref<UIViewController> { return make<TimerScreen>(); }};
constexpr Link preferences = {
    "accountPreferences", "Preferences", "leaf",
    [](const ShopRef& shop) -> Ref<UIViewController> { return make<PreferencesScreen>(shop); }};
constexpr Link terms = {"accountTerms", "Terms and delivery", "info.circle",
                        [](const ShopRef&) -> Ref<UIViewController> { return make<TermsScreen>(); }};

struct Section {
  const char* title;
  std::vector<Link> links;  ///< none for the orders
};

const std::vector<Section>& sections() {
  static const std::vector<Section> all = {{"Orders", {}}, {"Your tea", {timer, preferences}}, {"About", {terms}}};
  return all;
}

const Section& sectionAt(std::int64_t index) { return sections()[static_cast<std::size_t>(index)]; }

}  // namespace

void AccountScreen::exportMethods(MethodTable<AccountScreen>& table) {
  table.add<&AccountScreen::numberOfSections>("numberOfSectionsInTableView:")
      .add<&AccountScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&AccountScreen::titleForHeader>("tableView:titleForHeaderInSection:")
      .add<&AccountScreen::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&AccountScreen::didSelectRow>("tableView:didSelectRowAtIndexPath:");
}

void AccountScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Account");
  view()->setBackgroundColor(theme::paper);
  table_ = make<UITableView>(view()->bounds(), UITableViewStyle::insetGrouped);
  table_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  table_->setAccessibilityIdentifier("accountList");
  table_->setBackgroundColor(theme::paper);
  table_->setDataSource(self());
  table_->setDelegate(self());
  view()->addSubview(table_);
}

void AccountScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  table_->reloadData();
}

std::int64_t AccountScreen::numberOfSections(const Ref<UITableView>&) {
  return static_cast<std::int64_t>(sections().size());
}

std::int64_t AccountScreen::numberOfRows(const Ref<UITableView>&, std::int64_t section) {
  const auto& links = sectionAt(section).links;
  if (!links.empty()) return static_cast<std::int64_t>(links.size());
  return std::max<std::int64_t>(1, static_cast<std::int64_t>(shop_->orders.orders().size()));
}

std::string AccountScreen::titleForHeader(const Ref<UITableView>&, std::int64_t section) {
  return sectionAt(section).title;
}

Ref<UITableViewCell> AccountScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  const auto& links = sectionAt(path.section()).links;
  const char* const reuse = links.empty() ? orderCell : linkCell;
  auto cell = table->dequeueReusableCell(reuse);
  if (!cell)
    cell =
        make<UITableViewCell>(links.empty() ? UITableViewCellStyle::subtitle : UITableViewCellStyle::standard, reuse);
  cell->setBackgroundColor(theme::card);
  cell->textLabel()->setTextColor(theme::ink);
  if (links.empty()) {
    showOrder(*cell, path.row());
    return cell;
  }
  const Link& link = links[static_cast<std::size_t>(path.row())];
  cell->setAccessibilityIdentifier(link.identifier);
  cell->textLabel()->setText(link.title);
  cell->imageView()->setImage(UISystemSymbol::image(link.symbol));
  cell->imageView()->setTintColor(theme::leaf);
  cell->setAccessoryType(UITableViewCellAccessoryType::disclosureIndicator);
  return cell;
}

void AccountScreen::showOrder(UITableViewCell& cell, std::int64_t row) const {
  const auto& orders = shop_->orders.orders();
  cell.setSelectionStyle(UITableViewCellSelectionStyle::none);
  cell.detailTextLabel()->setTextColor(theme::inkSoft);
  if (orders.empty()) {
    cell.setAccessibilityIdentifier("noOrders");
    cell.textLabel()->setText("No orders yet");
    cell.detailTextLabel()->setText("What you order is kept here.");
    return;
  }
  const Order& order = orders[orders.size() - 1 - static_cast<std::size_t>(row)];
  cell.setAccessibilityIdentifier("order-" + std::to_string(order.number));
  cell.textLabel()->setText("Order " + std::to_string(order.number) + " \u00b7 " + priceText(order.total));
  cell.detailTextLabel()->setText("to " + order.delivery.name + ", " + order.delivery.city);
}

void AccountScreen::didSelectRow(const Ref<UITableView>& table, const IndexPath& path) {
  lumicor::Lumicor::shared().didSelectRow(table, path);
  const auto& links = sectionAt(path.section()).links;
  if (links.empty()) return table->deselectRow(path, false);
  navigationController()->pushViewController(links[static_cast<std::size_t>(path.row())].makeScreen(shop_), true);
}

}  // namespace teashop
