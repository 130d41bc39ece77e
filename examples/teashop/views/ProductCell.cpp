#include "examples/teashop/views/ProductCell.h"

#include "examples/teashop/views/Theme.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"

namespace teashop {

using namespace platform;

void ProductCell::initWithStyle(UITableViewCellStyle style, const std::string& reuse) {
  Super::initWithStyle(style, reuse);
  setBackgroundColor(theme::card);
  cup_ = make<TeaCupView>();
  cup_->setTranslatesAutoresizingMaskIntoConstraints(false);
  name_ = makeLabel("", theme::headline(), theme::ink);
  detail_ = makeLabel("", theme::caption(), theme::inkSoft);
  price_ = makeLabel("", UIFont::systemFont(15, UIFontWeightSemibold), theme::leaf);
  price_->setContentHuggingPriority(751, UILayoutAxis::horizontal);
  price_->setContentCompressionResistancePriority(751, UILayoutAxis::horizontal);
  const auto& content = contentView();
  auto words = make<UIView>();
  words->setTranslatesAutoresizingMaskIntoConstraints(false);
  words->addSubview(name_);
  words->addSubview(detail_);
  for (const Ref<UIView>& view : std::initializer_list<Ref<UIView>>{cup_, words, price_}) content->addSubview(view);
  // Not quite required: a row is measured with an estimated height first.
  auto leastRoom = cup_->topAnchor().constraintGreaterThanOrEqualToAnchor(content->topAnchor(), 14);
  leastRoom->setPriority(999);
  NSLayoutConstraint::activateConstraints({
      cup_->leadingAnchor().constraintEqualToAnchor(content->leadingAnchor(), theme::margin),
      cup_->centerYAnchor().constraintEqualToAnchor(content->centerYAnchor()),
      cup_->widthAnchor().constraintEqualToConstant(52),
      cup_->heightAnchor().constraintEqualToConstant(52),
      words->leadingAnchor().constraintEqualToAnchor(cup_->trailingAnchor(), 14),
      words->trailingAnchor().constraintLessThanOrEqualToAnchor(price_->leadingAnchor(), -10),
      words->centerYAnchor().constraintEqualToAnchor(content->centerYAnchor()),
      words->topAnchor().constraintGreaterThanOrEqualToAnchor(content->topAnchor(), 16),
      name_->topAnchor().constraintEqualToAnchor(words->topAnchor()),
      name_->leadingAnchor().constraintEqualToAnchor(words->leadingAnchor()),
      name_->trailingAnchor().constraintEqualToAnchor(words->trailingAnchor()),
      detail_->topAnchor().constraintEqualToAnchor(name_->bottomAnchor(), 4),
      detail_->leadingAnchor().constraintEqualToAnchor(words->leadingAnchor()),
      detail_->trailingAnchor().constraintEqualToAnchor(words->trailingAnchor()),
      detail_->bottomAnchor().constraintEqualToAnchor(words->bottomAnchor()),
      price_->trailingAnchor().constraintEqualToAnchor(content->trailingAnchor(), -theme::margin),
      price_->centerYAnchor().constraintEqualToAnchor(content->centerYAnchor()),
      leastRoom,
  });
}

void ProductCell::show(const Product& product, const std::string& detail, const std::string& price) {
  cup_->setLiquor(colorOf(product.liquor));
  name_->setText(product.name);
  detail_->setText(detail);
  price_->setText(price);
}

void ProductCell::showProduct(const Product& product) {
  setAccessibilityIdentifier("product-" + product.id);
  show(product, product.taste, priceText(product.price));
}

void ProductCell::showResult(const Product& product) {
  setAccessibilityIdentifier("result-" + product.id);
  show(product, std::string(kindName(product.kind)) + " tea \u00b7 " + product.origin, priceText(product.price));
}

void ProductCell::showLine(const Cart::Line& line) {
  setAccessibilityIdentifier("cart-" + line.product->id);
  show(*line.product, std::to_string(line.quantity) + " \u00d7 " + priceText(line.product->price),
       priceText(line.product->price * line.quantity));
}

}  // namespace teashop
