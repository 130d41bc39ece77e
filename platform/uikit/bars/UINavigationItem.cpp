#include "platform/uikit/bars/UINavigationItem.h"

#include <utility>

#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"

namespace platform {

UINavigationItem::UINavigationItem() = default;
UINavigationItem::~UINavigationItem() = default;

void UINavigationItem::changed(bool animated) {
  if (const Ref<UINavigationBar> bar = bar_.lock()) bar->itemDidChange(*this, animated);
}

void UINavigationItem::setTitle(std::optional<std::string> title) {
  if (title_ == title) return;
  title_ = std::move(title);
  changed(false);
}

void UINavigationItem::setTitleView(const Ref<UIView>& view) {
  if (titleView_ == view) return;
  titleView_ = view;
  changed(false);
}

void UINavigationItem::setLeftBarButtonItems(Items items, bool animated) {
  std::erase(items, nullptr);
  left_ = std::move(items);
  changed(animated);
}

void UINavigationItem::setRightBarButtonItems(Items items, bool animated) {
  std::erase(items, nullptr);
  right_ = std::move(items);
  changed(animated);
}

void UINavigationItem::setLeftBarButtonItem(const Ref<UIBarButtonItem>& item, bool animated) {
  setLeftBarButtonItems({item}, animated);
}

void UINavigationItem::setRightBarButtonItem(const Ref<UIBarButtonItem>& item, bool animated) {
  setRightBarButtonItems({item}, animated);
}

void UINavigationItem::setHidesBackButton(bool hides, bool animated) {
  hidesBackButton_ = hides;
  changed(animated);
}

void UINavigationItem::setLeftItemsSupplementBackButton(bool supplement) {
  leftItemsSupplementBackButton_ = supplement;
  changed(false);
}

void UINavigationItem::setBackButtonTitle(std::optional<std::string> title) {
  backButtonTitle_ = std::move(title);
  changed(false);
}

void UINavigationItem::setBackBarButtonItem(const Ref<UIBarButtonItem>& item) {
  backBarButtonItem_ = item;
  changed(false);
}

void UINavigationItem::setLargeTitleDisplayMode(UINavigationItemLargeTitleDisplayMode mode) {
  largeTitle_ = mode;
  changed(false);
}

}  // namespace platform
