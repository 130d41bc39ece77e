#include "platform/uikit/bars/UITabBarButton.h"

#include <algorithm>

#include "platform/animation/CALayer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double pictureMiddle = 19;  // from the top
constexpr double titleTop = 34;
constexpr double titleHeight = 12;
constexpr double badgeHeight = 18;

}  // namespace

void UITabBarButton::init(const Ref<UITabBarItem>& item) {
  item_ = item;
  initWithFrame({});
  setAccessibilityIdentifier(item->accessibilityIdentifier());
}

void UITabBarButton::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  picture_ = make<UIImageView>();
  picture_->setContentMode(UIViewContentMode::center);
  addSubview(picture_);
  title_ = make<UILabel>();
  title_->setFont(UIFont::systemFont(10, UIFontWeightMedium));
  title_->setTextAlignment(NSTextAlignment::center);
  addSubview(title_);
  badge_ = make<UIView>();
  badge_->setBackgroundColor(UIColor::systemRed());
  badge_->layer()->setCornerRadius(badgeHeight / 2);
  badge_->setUserInteractionEnabled(false);
  addSubview(badge_);
  badgeText_ = make<UILabel>();
  badgeText_->setFont(UIFont::systemFont(13));
  badgeText_->setTextColor(UIColor::white());
  badgeText_->setTextAlignment(NSTextAlignment::center);
  badge_->addSubview(badgeText_);
}

void UITabBarButton::update() {
  const Ref<UITabBarItem> item = item_.lock();
  const Ref<UITabBar> bar = as<UITabBar>(superview());
  if (!item || !bar) return;
  setEnabled(item->isEnabled());
  UIColor color = isSelected() ? bar->tintColor() : bar->unselectedItemTintColor();
  if (!isEnabled()) color = UIColor::tertiaryLabel();
  const Ref<UIImage> image = isSelected() && item->selectedImage() ? item->selectedImage() : item->image();
  picture_->setImage(image && image->renderingMode() == UIImageRenderingMode::automatic
                         ? image->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate)
                         : image);
  picture_->setTintColor(color);
  title_->setText(item->title());
  title_->setTextColor(color);
  setAccessibilityLabel(item->accessibilityLabel() ? item->accessibilityLabel() : item->title());
  badge_->setHidden(!item->badgeValue());
  badgeText_->setText(item->badgeValue());
  setNeedsLayout();
}

void UITabBarButton::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  const CGSize picture = picture_->image() ? picture_->image()->size() : CGSize{};
  picture_->setFrame(
      {(size.width - picture.width) / 2, pictureMiddle - picture.height / 2, picture.width, picture.height});
  title_->setFrame({0, titleTop, size.width, titleHeight});
  const double text = badgeText_->sizeThatFits({CGFloatMax, badgeHeight}).width;
  const double width = std::max(badgeHeight, text + 10);
  badge_->setFrame({size.width / 2 + 4, 2, width, badgeHeight});
  badgeText_->setFrame(badge_->bounds());
}

}  // namespace platform
