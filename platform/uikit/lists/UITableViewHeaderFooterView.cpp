#include "platform/uikit/lists/UITableViewHeaderFooterView.h"

#include <cmath>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double groupedTop = 18;
constexpr double besideText = 6;
constexpr double footerTop = 7;

}  // namespace

void UITableViewHeaderFooterView::initWithReuseIdentifier(const std::string& reuseIdentifier) {
  reuseIdentifier_ = reuseIdentifier;
  initWithFrame(CGRect{});
  contentView_ = make<UIView>();
  addSubview(contentView_);
  textLabel_ = make<UILabel>();
  textLabel_->setNumberOfLines(0);
  contentView_->addSubview(textLabel_);
  setRole(role_, margin_);
}

void UITableViewHeaderFooterView::setRole(Role role, double margin) {
  role_ = role;
  margin_ = margin;
  const bool plain = role == Role::plainHeader;
  textLabel_->setFont(plain ? UIFont::systemFont(15, UIFontWeightSemibold) : UIFont::systemFont(13));
  textLabel_->setTextColor(plain ? UIColor::label() : UIColor::secondaryLabel());
  // A plain header stays at the top while rows pass below it.
  if (plain && !backgroundColor()) {
    setBackgroundColor(UIColor::systemGray6());
    hasStandardGround_ = true;
  } else if (!plain && hasStandardGround_) {
    setBackgroundColor(std::nullopt);
    hasStandardGround_ = false;
  }
  setNeedsLayout();
}

double UITableViewHeaderFooterView::heightOf(const std::string& title, Role role, double margin, double width) {
  TextStyle style;
  style.font = role == Role::plainHeader ? UIFont::systemFont(15, UIFontWeightSemibold) : UIFont::systemFont(13);
  const double text = std::ceil(TextLayout::measure(title, style, std::max(1.0, width - 2 * margin)).height);
  switch (role) {
    case Role::plainHeader:
      return text + 2 * besideText;
    case Role::groupedHeader:
      return groupedTop + text + besideText;
    case Role::footer:
      return footerTop + text + besideText;
  }
  return text;
}

CGSize UITableViewHeaderFooterView::sizeThatFits(CGSize size) const {
  const std::optional<std::string> title = textLabel_->text();
  return {size.width, title && !title->empty() ? heightOf(*title, role_, margin_, size.width) : 0};
}

void UITableViewHeaderFooterView::layoutSubviews() {
  Super::layoutSubviews();
  contentView_->setFrame(bounds());
  const CGRect room = bounds().insetBy(margin_, 0);
  const double height = textLabel_->sizeThatFits({room.size.width, 0}).height;
  double top = room.minY() + (room.size.height - height) / 2;
  if (role_ == Role::groupedHeader) top = room.maxY() - height - besideText;
  if (role_ == Role::footer) top = room.minY() + footerTop;
  textLabel_->setFrame({room.minX(), top, room.size.width, height});
}

}  // namespace platform
