#include "examples/teashop/screens/CartScreen.h"

#include "examples/teashop/screens/DeliveryScreen.h"
#include "examples/teashop/views/ProductCell.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

void CartScreen::exportMethods(MethodTable<CartScreen>& table) {
  table.add<&CartScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&CartScreen::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&CartScreen::askToClear>("askToClear")
      .add<&CartScreen::pay>("pay");
}

void CartScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Cart");
  view()->setBackgroundColor(theme::paper);
  auto clear = make<UIBarButtonItem>(UIBarButtonSystemItem::trash, self(), sel("askToClear"));
  clear->setAccessibilityIdentifier("cartClear");
  navigationItem()->setRightBarButtonItem(clear);
  table_ = make<UITableView>();
  table_->setTranslatesAutoresizingMaskIntoConstraints(false);
  table_->setAccessibilityIdentifier("cartList");
  table_->setBackgroundColor(theme::paper);
  table_->registerClass<ProductCell>(ProductCell::reuseIdentifier);
  table_->setSeparatorInset({0, 86, 0, 0});
  table_->setAllowsSelection(false);
  table_->setDataSource(self());
  empty_ = makeLabel("Your cart is empty.\nThe teas are one tab to the left.", theme::body(), theme::inkSoft);
  empty_->setTextAlignment(NSTextAlignment::center);
  auto totalCaption = makeLabel("Total", theme::body(), theme::inkSoft);
  total_ = makeLabel("", UIFont::systemFont(22, UIFontWeightSemibold), theme::ink);
  total_->setAccessibilityIdentifier("cartTotal");
  pay_ = make<PrimaryButton>();
  pay_->setTitle("Pay", UIControlState::normal);
  pay_->setAccessibilityIdentifier("pay");
  pay_->addTarget(self(), sel("pay"), UIControlEvents::touchUpInside);
  for (const Ref<UIView>& part : std::initializer_list<Ref<UIView>>{table_, empty_, totalCaption, total_, pay_}) {
    view()->addSubview(part);
  }
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      table_->topAnchor().constraintEqualToAnchor(safe->topAnchor()),
      table_->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor()),
      table_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor()),
      table_->bottomAnchor().constraintEqualToAnchor(total_->topAnchor(), -16),
      empty_->centerXAnchor().constraintEqualToAnchor(table_->centerXAnchor()),
      empty_->centerYAnchor().constraintEqualToAnchor(table_->centerYAnchor()),
      totalCaption->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      totalCaption->lastBaselineAnchor().constraintEqualToAnchor(total_->lastBaselineAnchor()),
      total_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      total_->bottomAnchor().constraintEqualToAnchor(pay_->topAnchor(), -14),
      total_->heightAnchor().constraintEqualToConstant(28),
      pay_->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      pay_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      pay_->heightAnchor().constraintEqualToConstant(52),
      pay_->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor(), -16),
  });
}

void CartScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  showCart();
}

void CartScreen::showCart() {
  table_->reloadData();
  empty_->setHidden(!shop_->cart.isEmpty());
  total_->setText(priceText(shop_->cart.total()));
  pay_->setEnabled(!shop_->cart.isEmpty());
  navigationItem()->rightBarButtonItem()->setEnabled(!shop_->cart.isEmpty());
}

std::int64_t CartScreen::numberOfRows(const Ref<UITableView>&, std::int64_t) {
  return static_cast<std::int64_t>(shop_->cart.lines().size());
}

Ref<UITableViewCell> CartScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = as<ProductCell>(table->dequeueReusableCell(ProductCell::reuseIdentifier, path));
  cell->showLine(shop_->cart.lines()[static_cast<std::size_t>(path.row())]);
  return cell;
}

void CartScreen::askToClear() {
  auto question =
      make<UIAlertController>("Empty the cart?", std::optional<std::string>("The teas stay in the shop, of course."));
  question->addAction(make<UIAlertAction>("Empty it", UIAlertActionStyle::destructive, [weak = weakSelf()] {
    const Ref<CartScreen> screen = weak.lock();
    if (!screen) return;
    screen->shop_->cart.clear();
    screen->showCart();
  }));
  question->addAction(make<UIAlertAction>("Keep it", UIAlertActionStyle::cancel));
  presentViewController(question, true);
}

void CartScreen::pay() {
  if (shop_->cart.isEmpty()) return;
  navigationController()->pushViewController(make<DeliveryScreen>(shop_), true);
}

}  // namespace teashop
