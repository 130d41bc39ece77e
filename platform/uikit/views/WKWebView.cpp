#include "platform/uikit/views/WKWebView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double iconSide = 44;
constexpr double gap = 12;

const Ref<UIImage>& globe() {
  static const Ref<UIImage> picture =
      UIGraphicsImageRenderer(CGSize{iconSide, iconSide}).imageWithActions([](CGContext& context) {
        constexpr double middle = iconSide / 2;
        constexpr double radius = middle - 2;
        context.setStrokeColor(UIColor::systemGray3());
        context.setLineWidth(1.6);
        context.addEllipse({middle - radius, middle - radius, 2 * radius, 2 * radius});
        context.addEllipse({middle - radius * 0.42, middle - radius, radius * 0.84, 2 * radius});
        context.moveTo({middle, middle - radius});
        context.addLineTo({middle, middle + radius});
        for (const double latitude : {-0.45, 0.0, 0.45}) {
          const double half = radius * std::sqrt(1 - latitude * latitude);
          context.moveTo({middle - half, middle + radius * latitude});
          context.addLineTo({middle + half, middle + radius * latitude});
        }
        context.strokePath();
      });
  return picture;
}

}  // namespace

void WKWebView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::systemBackground());
  setClipsToBounds(true);
  icon_ = make<UIImageView>(globe());
  address_ = make<UILabel>();
  address_->setFont(UIFont::systemFont(15));
  address_->setTextColor(UIColor::secondaryLabel());
  address_->setTextAlignment(NSTextAlignment::center);
  address_->setNumberOfLines(3);
  address_->setLineBreakMode(NSLineBreakMode::byTruncatingMiddle);
  addSubview(icon_);
  addSubview(address_);
  icon_->setHidden(true);
}

void WKWebView::loadURL(std::optional<platform::URL> url) {
  url_ = std::move(url);
  address_->setText(url_ ? std::optional(url_->absoluteString()) : std::nullopt);
  icon_->setHidden(!url_);
  setNeedsLayout();
}

void WKWebView::layoutSubviews() {
  Super::layoutSubviews();
  const CGRect all = bounds();
  const double width = std::max(0.0, all.size.width - 48);
  const double text = address_->sizeThatFits({width, 0}).height;
  const double top = all.midY() - (iconSide + gap + text) / 2;
  icon_->setFrame({all.midX() - iconSide / 2, top, iconSide, iconSide});
  address_->setFrame({all.midX() - width / 2, top + iconSide + gap, width, text});
}

}  // namespace platform
