#include "platform/uikit/bars/UIBarItem.h"

#include <utility>

#include "platform/graphics/UIImage.h"

namespace platform {

UIBarItem::UIBarItem() = default;
UIBarItem::~UIBarItem() = default;

void UIBarItem::exportMethods(MethodTable<UIBarItem>& table) {
  table.add<&UIBarItem::isEnabled>("isEnabled")
      .add<&UIBarItem::setEnabled>("setEnabled:")
      .add<&UIBarItem::accessibilityIdentifier>("accessibilityIdentifier")
      .add<&UIBarItem::setAccessibilityIdentifier>("setAccessibilityIdentifier:");
}

void UIBarItem::setTitle(std::optional<std::string> title) {
  if (title_ == title) return;
  title_ = std::move(title);
  contentDidChange();
}

void UIBarItem::setImage(const Ref<UIImage>& image) {
  if (image_ == image) return;
  image_ = image;
  contentDidChange();
}

void UIBarItem::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  contentDidChange();
}

void UIBarItem::setAccessibilityIdentifier(std::optional<std::string> identifier) {
  identifier_ = std::move(identifier);
  identifierDidChange();
}

}  // namespace platform
