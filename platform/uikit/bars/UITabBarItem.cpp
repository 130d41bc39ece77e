#include "platform/uikit/bars/UITabBarItem.h"

#include <utility>

#include "platform/graphics/UIImage.h"
#include "platform/uikit/bars/UITabBarButton.h"

namespace platform {

UITabBarItem::UITabBarItem() = default;
UITabBarItem::~UITabBarItem() = default;

void UITabBarItem::init(const std::string& title, const Ref<UIImage>& image, std::int64_t tag) {
  setTitle(title);
  setImage(image);
  setTag(tag);
}

void UITabBarItem::init(const std::string& title, const Ref<UIImage>& image, const Ref<UIImage>& selectedImage) {
  setTitle(title);
  setImage(image);
  setSelectedImage(selectedImage);
}

void UITabBarItem::setSelectedImage(const Ref<UIImage>& image) {
  selectedImage_ = image;
  contentDidChange();
}

void UITabBarItem::setBadgeValue(std::optional<std::string> value) {
  badgeValue_ = std::move(value);
  contentDidChange();
}

void UITabBarItem::contentDidChange() {
  if (const Ref<UITabBarButton> button = button_.lock()) button->update();
}

void UITabBarItem::identifierDidChange() {
  if (const Ref<UITabBarButton> button = button_.lock()) button->setAccessibilityIdentifier(accessibilityIdentifier());
}

}  // namespace platform
