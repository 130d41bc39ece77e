#include "examples/teashop/screens/FilterScreen.h"

#include <cmath>

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"

namespace teashop {

using namespace platform;

namespace {

constexpr Pence lowestPrice = 500;
constexpr Pence priceStep = 50;

std::string countText(std::size_t count) {
  return count == 0 ? "No tea" : "Show " + std::to_string(count) + (count == 1 ? " tea" : " teas");
}

}  // namespace

void FilterScreen::exportMethods(MethodTable<FilterScreen>& table) {
  table.add<&FilterScreen::changed>("changed")
      .add<&FilterScreen::reset>("reset")
      .add<&FilterScreen::cancel>("cancel")
      .add<&FilterScreen::applyAndClose>("apply");
}

void FilterScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Filter");
  view()->setBackgroundColor(theme::paper);
  auto cancel = make<UIBarButtonItem>(UIBarButtonSystemItem::cancel, self(), sel("cancel"));
  cancel->setAccessibilityIdentifier("filterCancel");
  navigationItem()->setLeftBarButtonItem(cancel);
  auto done = make<UIBarButtonItem>(UIBarButtonSystemItem::done, self(), sel("apply"));
  done->setAccessibilityIdentifier("filterApply");
  navigationItem()->setRightBarButtonItem(done);
  buildControls();
  buildToolbar();
  showFilter();
}

void FilterScreen::buildControls() {
  kind_ = make<UISegmentedControl>(std::vector<std::string>{"All", "Green", "Black", "Oolong", "White", "Herbal"});
  kind_->setAccessibilityIdentifier("filterKind");
  price_ = make<UISlider>();
  price_->setMinimumValue(lowestPrice);
  price_->setMaximumValue(TeaFilter::highestPrice);
  price_->setAccessibilityIdentifier("filterPrice");
  priceValue_ = makeLabel("", UIFont::systemFont(15, UIFontWeightSemibold), theme::leaf);
  priceValue_->setAccessibilityIdentifier("filterPriceValue");
  keepWidth(priceValue_);
  caffeineFree_ = make<UISwitch>();
  caffeineFree_->setTitle("Without caffeine");
  caffeineFree_->setAccessibilityIdentifier("filterCaffeineFree");
  inStock_ = make<UISwitch>();
  inStock_->setTitle("In stock");
  inStock_->setAccessibilityIdentifier("filterInStock");
  for (const Ref<UIControl>& control : std::initializer_list<Ref<UIControl>>{kind_, price_, caffeineFree_, inStock_}) {
    control->setTranslatesAutoresizingMaskIntoConstraints(false);
    control->addTarget(self(), sel("changed"), UIControlEvents::valueChanged);
  }
  auto caption = makeLabel("Kind", theme::headline(), theme::ink);
  auto rows = makeColumn({caption, kind_, line("Price up to", priceValue_), price_,
                          line("Without caffeine", caffeineFree_), line("In stock only", inStock_)},
                         14);
  rows->setCustomSpacing(32, kind_);
  rows->setCustomSpacing(26, price_);
  rows->setAccessibilityIdentifier("filterRows");
  view()->addSubview(rows);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      rows->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 24),
      rows->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      rows->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
  });
}

Ref<UIView> FilterScreen::line(const std::string& caption, const Ref<UIView>& control) {
  auto row = makeRow({makeLabel(caption, theme::headline(), theme::ink), control}, 12);
  setHeight(row, 34);
  return row;
}

void FilterScreen::buildToolbar() {
  auto bar = make<UIToolbar>();
  bar->setTranslatesAutoresizingMaskIntoConstraints(false);
  auto reset = make<UIBarButtonItem>("Reset", UIBarButtonItemStyle::plain, self(), sel("reset"));
  reset->setAccessibilityIdentifier("filterReset");
  count_ = make<UIButton>(CGRect{0, 0, 140, 34});
  count_->setBackgroundColor(theme::leaf);
  count_->layer()->setCornerRadius(17);
  count_->setTitleColor(UIColor::white(), UIControlState::normal);
  count_->titleLabel()->setFont(UIFont::systemFont(15, UIFontWeightSemibold));
  count_->addTarget(self(), sel("apply"), UIControlEvents::touchUpInside);
  count_->setAccessibilityIdentifier("filterShow");
  auto count = make<UIBarButtonItem>(count_);
  count->setAccessibilityIdentifier("filterCount");
  bar->setItems({reset, UIBarButtonItem::flexibleSpaceItem(), count});
  view()->addSubview(bar);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      bar->leadingAnchor().constraintEqualToAnchor(view()->leadingAnchor()),
      bar->trailingAnchor().constraintEqualToAnchor(view()->trailingAnchor()),
      bar->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor()),
      bar->heightAnchor().constraintEqualToConstant(52),
  });
  bar->setBottomExtension(40);
}

void FilterScreen::showFilter() {
  std::int64_t segment = 0;
  for (std::size_t i = 0; i < std::size(teaKinds); ++i) {
    if (filter_.kind == teaKinds[i]) segment = static_cast<std::int64_t>(i) + 1;
  }
  kind_->setSelectedSegmentIndex(segment);
  price_->setValue(static_cast<float>(filter_.mostPrice));
  caffeineFree_->setOn(filter_.caffeineFree);
  inStock_->setOn(filter_.inStock);
  priceValue_->setText(priceText(filter_.mostPrice));
  const std::size_t teas = teaCount(shelves(filter_));
  count_->setTitle(countText(teas), UIControlState::normal);
  count_->setEnabled(teas > 0);
  count_->setAlpha(teas > 0 ? 1 : 0.4);
}

void FilterScreen::changed() {
  const std::int64_t segment = kind_->selectedSegmentIndex();
  filter_.kind = segment > 0 ? std::optional(teaKinds[segment - 1]) : std::nullopt;
  filter_.mostPrice = static_cast<Pence>(std::lround(price_->value() / static_cast<float>(priceStep))) * priceStep;
  filter_.caffeineFree = caffeineFree_->isOn();
  filter_.inStock = inStock_->isOn();
  const float held = price_->value();
  showFilter();
  price_->setValue(held);  // the knob stays under the finger, also between two steps
}

void FilterScreen::reset() {
  filter_ = {};
  showFilter();
}

void FilterScreen::cancel() { dismissViewController(true); }

void FilterScreen::applyAndClose() {
  apply_(filter_);
  dismissViewController(true);
}

}  // namespace teashop
