#include "platform/uikit/bars/UITabBar.h"

#include <algorithm>
#include <utility>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/TabBarHost.h"
#include "platform/uikit/bars/UITabBarButton.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/bars/_UIBarBackground.h"

namespace platform {

UITabBar::UITabBar() = default;
UITabBar::~UITabBar() = default;

void UITabBar::exportMethods(MethodTable<UITabBar>& table) {
  table.add<&UITabBar::buttonTapped>("_tabBarItemClicked:");
}

void UITabBar::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  background_ = make<_UIBarBackground>(_UIBarBackground::Edge::top);
  addSubview(background_);
}

void UITabBar::setItems(std::vector<Ref<UITabBarItem>> items, bool) {
  std::erase(items, nullptr);
  if (items == items_) return;
  items_ = std::move(items);
  for (const Ref<UITabBarButton>& button : buttons_) button->removeFromSuperview();
  buttons_.clear();
  for (const Ref<UITabBarItem>& item : items_) {
    auto button = make<UITabBarButton>(item);
    button->addTarget(self(), sel("_tabBarItemClicked:"), UIControlEvents::touchUpInside);
    item->button_ = button;
    buttons_.push_back(button);
    addSubview(button);
  }
  if (std::find(items_.begin(), items_.end(), selected_) == items_.end()) selected_ = nullptr;
  update();
}

void UITabBar::setSelectedItem(const Ref<UITabBarItem>& item) {
  if (item && std::find(items_.begin(), items_.end(), item) == items_.end()) return;
  selected_ = item;
  update();
}

void UITabBar::buttonTapped(Ref<NSObject> sender) {
  const auto button = as<UITabBarButton>(sender);
  const Ref<UITabBarItem> item = button ? button->item() : nullptr;
  if (!item) return;
  if (const Ref<TabBarHost> host = host_.lock()) return host->itemTapped(item);
  setSelectedItem(item);
  static const SEL didSelect = sel("tabBar:didSelectItem:");
  sendOptional(delegate(), didSelect, self(), item);
}

Ref<UIView> UITabBar::viewForItem(const Ref<UITabBarItem>& item) const {
  for (const Ref<UITabBarButton>& button : buttons_) {
    if (button->item() == item) return button;
  }
  return nullptr;
}

void UITabBar::setBarTintColor(std::optional<UIColor> color) {
  barTintColor_ = color;
  background_->setColor(color);
}

UIColor UITabBar::unselectedItemTintColor() const { return unselectedTint_.value_or(UIColor::systemGray()); }

void UITabBar::setUnselectedItemTintColor(std::optional<UIColor> color) {
  unselectedTint_ = color;
  update();
}

void UITabBar::setHidden(bool hidden) {
  if (isHidden() == hidden) return;
  Super::setHidden(hidden);
  if (const Ref<TabBarHost> host = host_.lock()) host->barVisibilityDidChange();
}

void UITabBar::tintColorDidChange() {
  Super::tintColorDidChange();
  update();
}

void UITabBar::update() {
  for (const Ref<UITabBarButton>& button : buttons_) {
    button->setSelected(button->item() == selected_);
    button->update();
  }
  setNeedsLayout();
}

CGSize UITabBar::sizeThatFits(CGSize size) const { return {size.width, standardHeight + safeAreaInsets().bottom}; }
CGSize UITabBar::intrinsicContentSize() const {
  return {UIViewNoIntrinsicMetric, standardHeight + safeAreaInsets().bottom};
}

void UITabBar::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  background_->setFrame({{}, size});
  const double share = buttons_.empty() ? 0 : size.width / static_cast<double>(buttons_.size());
  double x = 0;
  for (const Ref<UITabBarButton>& button : buttons_) {
    button->setFrame({x, 1, share, standardHeight - 1});
    x += share;
  }
}

}  // namespace platform
