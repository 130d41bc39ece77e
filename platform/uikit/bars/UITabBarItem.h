#pragma once

#include "platform/uikit/bars/UIBarItem.h"

namespace platform {

class UITabBarButton;

/// One tab: a picture over a title, and a badge when it has something to tell. Main thread.
class UITabBarItem : public Object<UITabBarItem, UIBarItem> {
 public:
  UITabBarItem();
  ~UITabBarItem() override;
  void init() {}
  void init(const std::string& title, const Ref<UIImage>& image, std::int64_t tag);
  void init(const std::string& title, const Ref<UIImage>& image, const Ref<UIImage>& selectedImage);

  /// None for the plain image, which then is shown in the tint colour.
  const Ref<UIImage>& selectedImage() const { return selectedImage_; }
  void setSelectedImage(const Ref<UIImage>& image);
  const std::optional<std::string>& badgeValue() const { return badgeValue_; }
  void setBadgeValue(std::optional<std::string> value);

 protected:
  void contentDidChange() override;
  void identifierDidChange() override;

 private:
  friend class UITabBar;
  Ref<UIImage> selectedImage_;
  std::optional<std::string> badgeValue_;
  Weak<UITabBarButton> button_;
};

}  // namespace platform
