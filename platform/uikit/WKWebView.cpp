#include "platform/uikit/WKWebView.h"

#include <algorithm>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/uikit/UILabel.h"

namespace platform {

namespace {

constexpr double iconSide = 44;
constexpr double gap = 12;

}  // namespace

void WKWebView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::systemBackground());
  setClipsToBounds(true);
  icon_ = make<UIView>();
  icon_->layer()->setCornerRadius(iconSide / 2);
  icon_->layer()->setBorderWidth(2);
  icon_->layer()->setBorderColor(UIColor::systemGray3());
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
