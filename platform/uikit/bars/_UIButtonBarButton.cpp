#include "platform/uikit/bars/_UIButtonBarButton.h"

#include <algorithm>

#include "platform/graphics/UIImage.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace platform {

namespace {

constexpr double padding = 8;
constexpr double backPadding = 3;  // before the chevron, whose picture has a margin of its own
constexpr double minimumWidth = 36;
constexpr double heldAlpha = 0.3;

}  // namespace

void _UIButtonBarButton::init(const Ref<UIBarButtonItem>& item) {
  item_ = item;
  initWithFrame({});
  setAccessibilityIdentifier(item->accessibilityIdentifier());
  update();
}

void _UIButtonBarButton::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  picture_ = make<UIImageView>();
  picture_->setContentMode(UIViewContentMode::center);
  picture_->setUserInteractionEnabled(false);
  addSubview(picture_);
  label_ = make<UILabel>();
  label_->setLineBreakMode(NSLineBreakMode::byTruncatingTail);
  addSubview(label_);
  ruler_ = make<UILabel>();
}

void _UIButtonBarButton::setShowsBackIndicator(bool shows) {
  showsBackIndicator_ = shows;
  update();
}

Ref<NSObject> _UIButtonBarButton::actionSender() {
  const Ref<UIBarButtonItem> item = item_.lock();
  return item ? Ref<NSObject>(item) : Super::actionSender();
}

void _UIButtonBarButton::sendAction(SEL action, Ref<NSObject> target, Ref<UIEvent> event) {
  Super::sendAction(action, target ? target : Ref<NSObject>(targetForAction(action)), event);
}

void _UIButtonBarButton::update() {
  const Ref<UIBarButtonItem> item = item_.lock();
  if (!item) return;
  setEnabled(item->isEnabled());
  setTintColor(item->tintColor());
  setAccessibilityLabel(item->accessibilityLabel() ? item->accessibilityLabel() : item->title());

  static const Ref<UIImage> chevron = UISystemSymbol::image("chevron.left", 21, UISymbolWeight::semibold);
  const Ref<UIImage> image = showsBackIndicator_ ? chevron : item->image();
  picture_->setImage(image && image->renderingMode() == UIImageRenderingMode::automatic
                         ? image->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate)
                         : image);
  picture_->setHidden(!image);
  const bool isDone = item->style() == UIBarButtonItemStyle::done;
  label_->setFont(UIFont::systemFont(17, isDone ? UIFontWeightSemibold : UIFontWeightRegular));
  label_->setText(!image || showsBackIndicator_ ? item->title() : std::nullopt);
  label_->setHidden(!label_->text() || label_->text()->empty());

  removeTarget(nullptr, SEL(), UIControlEvents::touchUpInside);
  const Ref<NSObject> target = item->target();
  if (item->action() && (target || !item->sendsToTarget())) {
    addTarget(target, item->action(), UIControlEvents::touchUpInside);
  }
  stateDidChange();
  invalidateIntrinsicContentSize();
  setNeedsLayout();
  if (const Ref<UIView> bar = superview()) bar->setNeedsLayout();
}

void _UIButtonBarButton::stateDidChange() {
  const double alpha = isHighlighted() ? heldAlpha : 1;
  const UIColor color = isEnabled() ? tintColor() : UIColor::tertiaryLabel();
  label_->setTextColor(color);
  label_->setAlpha(alpha);
  picture_->setTintColor(color);
  picture_->setAlpha(alpha);
}

void _UIButtonBarButton::tintColorDidChange() {
  Super::tintColorDidChange();
  if (label_) stateDidChange();
}

double _UIButtonBarButton::widthWithTitle(const std::string& title) const {
  ruler_->setFont(label_->font());
  ruler_->setText(title);
  const double text = title.empty() ? 0 : ruler_->sizeThatFits({CGFloatMax, 0}).width;
  return backPadding + picture_->image()->size().width + text + padding;
}

CGSize _UIButtonBarButton::sizeThatFits(CGSize) const {
  const Ref<UIBarButtonItem> item = item_.lock();
  constexpr double height = 44;
  if (item && item->width() > 0) return {item->width(), height};
  if (showsBackIndicator_) return {widthWithTitle(label_->text().value_or("")), height};
  double width = 0;
  if (!picture_->isHidden()) width += picture_->image()->size().width;
  if (!label_->isHidden()) width += label_->sizeThatFits({CGFloatMax, height}).width;
  return {std::max(minimumWidth, width + 2 * padding), height};
}

CGSize _UIButtonBarButton::intrinsicContentSize() const { return sizeThatFits({}); }

void _UIButtonBarButton::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  const CGSize image = picture_->isHidden() ? CGSize{} : picture_->image()->size();
  const CGSize text = label_->isHidden() ? CGSize{} : label_->sizeThatFits({CGFloatMax, size.height});
  if (showsBackIndicator_) {
    picture_->setFrame({backPadding, (size.height - image.height) / 2, image.width, image.height});
    const double left = backPadding + image.width;
    label_->setFrame(
        {left, (size.height - text.height) / 2, std::max(0.0, std::min(text.width, size.width - left)), text.height});
    return;
  }
  picture_->setFrame({(size.width - image.width) / 2, (size.height - image.height) / 2, image.width, image.height});
  const double width = std::min(text.width, size.width);
  label_->setFrame({(size.width - width) / 2, (size.height - text.height) / 2, width, text.height});
}

}  // namespace platform
