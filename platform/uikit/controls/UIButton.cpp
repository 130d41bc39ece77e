#include "platform/uikit/controls/UIButton.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double heldAlpha = 0.25;  // of what a finger holds, when the state has no look of its own
constexpr double disabledAlpha = 0.35;
constexpr double fadeBackSeconds = 0.3;
constexpr double verticalPadding = 7;  // above and below a title without content insets
constexpr double leastWidth = 30;

Ref<UIImage> closePicture() {
  constexpr double side = 30;
  return UIGraphicsImageRenderer(CGSize{side, side}).imageWithActions([](CGContext& context) {
    context.setFillColor(UIColor::systemFill());
    context.fillEllipse({0, 0, side, side});
    context.setStrokeColor(UIColor::secondaryLabel());
    context.setLineWidth(2.2);
    context.setLineCap(CGLineCap::round);
    context.moveTo({10.5, 10.5});
    context.addLineTo({19.5, 19.5});
    context.moveTo({19.5, 10.5});
    context.addLineTo({10.5, 19.5});
    context.strokePath();
  });
}

}  // namespace

UIButton::UIButton() = default;
UIButton::~UIButton() = default;

void UIButton::init(UIButtonType type) {
  type_ = type;
  initWithFrame(CGRect{});
  if (type == UIButtonType::close) {
    setImage(closePicture()->imageWithRenderingMode(UIImageRenderingMode::alwaysOriginal), UIControlState::normal);
  }
}

void UIButton::initWithFrame(CGRect frame) { Super::initWithFrame(frame); }

// ---- The looks of the states

template <class T>
T UIButton::lookFor(unsigned state, T Look::*part) const {
  if (const auto own = looks_.find(state); own != looks_.end() && own->second.*part) return own->second.*part;
  const auto normal = looks_.find(UIControlState::normal);
  return normal == looks_.end() ? T{} : normal->second.*part;
}

void UIButton::setTitle(std::optional<std::string> title, unsigned state) {
  looks_[state].title = std::move(title);
  lookDidChange();
}
std::optional<std::string> UIButton::title(unsigned state) const { return lookFor(state, &Look::title); }

void UIButton::setAttributedTitle(const Ref<NSAttributedString>& title, unsigned state) {
  looks_[state].attributedTitle = title;
  lookDidChange();
}
Ref<NSAttributedString> UIButton::attributedTitle(unsigned state) const {
  return lookFor(state, &Look::attributedTitle);
}

void UIButton::setTitleColor(std::optional<UIColor> color, unsigned state) {
  looks_[state].titleColor = color;
  applyLook(false);
}
std::optional<UIColor> UIButton::titleColor(unsigned state) const { return lookFor(state, &Look::titleColor); }

void UIButton::setImage(const Ref<UIImage>& image, unsigned state) {
  looks_[state].image = image;
  lookDidChange();
}
Ref<UIImage> UIButton::image(unsigned state) const { return lookFor(state, &Look::image); }

void UIButton::setBackgroundImage(const Ref<UIImage>& image, unsigned state) {
  looks_[state].backgroundImage = image;
  lookDidChange();
}
Ref<UIImage> UIButton::backgroundImage(unsigned state) const { return lookFor(state, &Look::backgroundImage); }

void UIButton::setBackgroundColor(std::optional<UIColor> color, unsigned state) {
  looks_[state].backgroundColor = color;
  applyLook(false);
}
std::optional<UIColor> UIButton::backgroundColor(unsigned state) const {
  return lookFor(state, &Look::backgroundColor);
}
std::optional<UIColor> UIButton::backgroundColor() const { return backgroundColor(UIControlState::normal); }
void UIButton::setBackgroundColor(std::optional<UIColor> color) { setBackgroundColor(color, UIControlState::normal); }

std::optional<std::string> UIButton::currentTitle() const { return title(state()); }
Ref<UIImage> UIButton::currentImage() const { return image(state()); }

UIColor UIButton::currentTitleColor() const {
  if (const std::optional<UIColor> color = titleColor(state())) return *color;
  return type_ == UIButtonType::system ? tintColor() : UIColor::white();
}

// ---- Parts

Ref<UILabel> UIButton::titleLabel() {
  if (!titleLabel_) {
    titleLabel_ = make<UILabel>();
    titleLabel_->setTextAlignment(NSTextAlignment::center);
    titleLabel_->setLineBreakMode(NSLineBreakMode::byTruncatingMiddle);
    addSubview(titleLabel_);
  }
  return titleLabel_;
}

Ref<UIImageView> UIButton::imageView() {
  if (!imageView_) {
    imageView_ = make<UIImageView>();
    imageView_->setContentMode(UIViewContentMode::scaleAspectFit);
    insertSubview(imageView_, backgroundView_ ? 1 : 0);
  }
  return imageView_;
}

void UIButton::setContentEdgeInsets(UIEdgeInsets insets) {
  contentInsets_ = insets;
  lookDidChange();
}
void UIButton::setTitleEdgeInsets(UIEdgeInsets insets) {
  titleInsets_ = insets;
  setNeedsLayout();
}
void UIButton::setImageEdgeInsets(UIEdgeInsets insets) {
  imageInsets_ = insets;
  setNeedsLayout();
}
void UIButton::setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment) {
  alignment_ = alignment;
  setNeedsLayout();
}

// ---- Showing the state

void UIButton::lookDidChange() {
  applyLook(false);
  invalidateIntrinsicContentSize();
  setNeedsLayout();
}

void UIButton::stateDidChange() {
  Super::stateDidChange();
  applyLook(!isHighlighted() && window());
}

void UIButton::tintColorDidChange() {
  Super::tintColorDidChange();
  applyLook(false);
}

void UIButton::applyLook(bool animated) {
  const unsigned now = state();
  const auto own = looks_.find(now);
  const auto hasOwn = [&](auto part) { return own != looks_.end() && own->second.*part; };

  const Ref<NSAttributedString> attributed = attributedTitle(now);
  const std::optional<std::string> title = this->title(now);
  if (title || attributed || titleLabel_) {
    const Ref<UILabel> label = titleLabel();
    const CGSize before = label->intrinsicContentSize();
    if (attributed) {
      label->setAttributedText(attributed);
    } else {
      label->setText(title);
    }
    label->setTextColor(currentTitleColor());
    if (label->intrinsicContentSize() != before) {
      setNeedsLayout();
      invalidateIntrinsicContentSize();
    }
  }
  Ref<UIImage> image = this->image(now);
  if (image || imageView_) {
    if (image && type_ == UIButtonType::system && image->renderingMode() == UIImageRenderingMode::automatic) {
      image = image->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate);
    }
    imageView()->setImage(image);
  }
  const Ref<UIImage> background = backgroundImage(now);
  if (background && !backgroundView_) {
    backgroundView_ = make<UIImageView>();
    insertSubview(backgroundView_, 0);
    setNeedsLayout();
  }
  if (backgroundView_) backgroundView_->setImage(background);

  const bool held = now & UIControlState::highlighted;
  const bool disabled = now & UIControlState::disabled;
  const auto alphaFor = [&](bool hasLook) {
    if (hasLook) return 1.0;
    if (disabled) return disabledAlpha;
    return held ? heldAlpha : 1.0;
  };
  const bool titleSaysIt = hasOwn(&Look::titleColor) || hasOwn(&Look::title) || hasOwn(&Look::attributedTitle) ||
                           hasOwn(&Look::backgroundColor) || hasOwn(&Look::backgroundImage);
  const bool imageSaysIt = hasOwn(&Look::image) || (held && !adjustsImageWhenHighlighted_);
  const auto change = [&] {
    Super::setBackgroundColor(backgroundColor(now));
    if (titleLabel_) titleLabel_->setAlpha(alphaFor(titleSaysIt));
    if (imageView_) imageView_->setAlpha(alphaFor(imageSaysIt));
    if (backgroundView_) backgroundView_->setAlpha(alphaFor(hasOwn(&Look::backgroundImage)));
  };
  if (animated) {
    UIView::animateWithDuration(fadeBackSeconds, change);
  } else {
    change();
  }
}

// ---- Layout

CGSize UIButton::contentSize(CGSize within) const {
  CGSize size;
  if (imageView_ && imageView_->image()) size = imageView_->image()->size();
  if (titleLabel_) {
    const double room = within.width > 0 ? std::max(1.0, within.width - size.width) : 0;
    const CGSize title = titleLabel_->sizeThatFits({titleLabel_->numberOfLines() == 1 ? 0 : room, 0});
    size = {size.width + title.width, std::max(size.height, title.height)};
  }
  return size;
}

CGSize UIButton::sizeThatFits(CGSize size) const {
  const UIEdgeInsets& insets = contentInsets_;
  const double room = size.width > 0 ? size.width - insets.left - insets.right : 0;
  CGSize fitting = contentSize({room, 0});
  const bool padded = insets == UIEdgeInsets{} && titleLabel_ && fitting.height > 0;
  if (padded) {
    const bool pictureAlone = !titleLabel_->text() || titleLabel_->text()->empty();
    if (!pictureAlone) fitting.height += 2 * verticalPadding;
    fitting.width = std::max(fitting.width, leastWidth);
  }
  return {fitting.width + insets.left + insets.right, fitting.height + insets.top + insets.bottom};
}

CGSize UIButton::intrinsicContentSize() const { return sizeThatFits({}); }

void UIButton::layoutSubviews() {
  Super::layoutSubviews();
  const CGRect all = bounds();
  if (backgroundView_) backgroundView_->setFrame(all);
  const CGRect room = all.insetBy(contentInsets_);
  const Ref<UIImage> picture = imageView_ ? imageView_->image() : nullptr;
  CGSize image = picture ? picture->size() : CGSize{};
  if (image.width > room.size.width || image.height > room.size.height) {
    const double scale = std::min(room.size.width / image.width, room.size.height / image.height);
    image = {image.width * scale, image.height * scale};
  }
  const double titleRoom = std::max(0.0, room.size.width - image.width);
  CGSize title;
  if (titleLabel_) {
    title = titleLabel_->sizeThatFits({titleLabel_->numberOfLines() == 1 ? 0 : titleRoom, 0});
    title = {std::min(title.width, titleRoom), std::min(title.height, room.size.height)};
  }
  double left = room.minX();
  const double spare = room.size.width - image.width - title.width;
  if (alignment_ == UIControlContentHorizontalAlignment::center) left += std::floor(spare) / 2;
  if (alignment_ == UIControlContentHorizontalAlignment::right) left += spare;
  const auto shifted = [](CGRect rect, const UIEdgeInsets& by) {
    return rect.offsetBy((by.left - by.right) / 2, (by.top - by.bottom) / 2);
  };
  const auto centredY = [&](double height) { return room.minY() + std::floor(room.size.height - height) / 2; };
  if (imageView_) {
    imageView_->setFrame(shifted({left, centredY(image.height), image.width, image.height}, imageInsets_));
  }
  if (titleLabel_) {
    const bool fills = alignment_ == UIControlContentHorizontalAlignment::fill;
    const double width = fills ? titleRoom : title.width;
    titleLabel_->setFrame(shifted({left + image.width, centredY(title.height), width, title.height}, titleInsets_));
  }
}

double UIButton::firstBaselineOffset() const {
  if (!titleLabel_) return Super::firstBaselineOffset();
  const CGSize own = bounds().size;
  const double height = own.height > 0 ? own.height : sizeThatFits({}).height;
  const double titleHeight = titleLabel_->sizeThatFits({}).height;
  return (height - titleHeight) / 2 + titleLabel_->font().ascender() +
         std::max(0.0, titleHeight - titleLabel_->font().lineHeight()) / 2;
}

double UIButton::lastBaselineOffset() const { return firstBaselineOffset(); }

}  // namespace platform
