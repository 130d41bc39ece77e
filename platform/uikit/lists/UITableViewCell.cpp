#include "platform/uikit/lists/UITableViewCell.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/animation/CAShapeLayer.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double margin = 16;
constexpr double besidePicture = 12;
constexpr double verticalPadding = 11;
constexpr double betweenLines = 2;
constexpr double leastHeight = 44;
constexpr double fadeSeconds = 0.3;

const Ref<UIImage>& chevron() {
  static const Ref<UIImage> picture = UIGraphicsImageRenderer(CGSize{8, 14}).imageWithActions([](CGContext& context) {
    context.setStrokeColor(UIColor::systemGray3());
    context.setLineWidth(2);
    context.setLineCap(CGLineCap::round);
    context.setLineJoin(CGLineJoin::round);
    context.moveTo({1.5, 1.5});
    context.addLineTo({6.5, 7});
    context.addLineTo({1.5, 12.5});
    context.strokePath();
  });
  return picture;
}

const Ref<UIImage>& checkmark() {
  static const Ref<UIImage> picture = UIGraphicsImageRenderer(CGSize{16, 13})
                                          .imageWithActions([](CGContext& context) {
                                            context.setLineWidth(2.2);
                                            context.setLineCap(CGLineCap::round);
                                            context.setLineJoin(CGLineJoin::round);
                                            context.moveTo({1.5, 7});
                                            context.addLineTo({5.8, 11.3});
                                            context.addLineTo({14.2, 1.7});
                                            context.strokePath();
                                          })
                                          ->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate);
  return picture;
}

const Ref<UIImage>& infoMark() {
  static const Ref<UIImage> picture = UIGraphicsImageRenderer(CGSize{22, 22})
                                          .imageWithActions([](CGContext& context) {
                                            context.setLineWidth(1.6);
                                            context.addEllipse({1.5, 1.5, 19, 19});
                                            context.strokePath();
                                            context.fillEllipse({9.8, 5.4, 2.4, 2.4});
                                            context.setLineCap(CGLineCap::round);
                                            context.setLineWidth(1.9);
                                            context.moveTo({11, 10.2});
                                            context.addLineTo({11, 16.2});
                                            context.strokePath();
                                          })
                                          ->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate);
  return picture;
}

/// A rectangle whose upper or lower corners are round.
CGPath roundedAbove(CGRect rect, double radius, bool above, bool below) {
  CGPath path;
  const double top = above ? radius : 0;
  const double bottom = below ? radius : 0;
  constexpr double quarter = 3.14159265358979323846 / 2;
  path.move({rect.minX(), rect.minY() + top});
  if (above) path.arc({rect.minX() + top, rect.minY() + top}, top, 2 * quarter, 3 * quarter, true);
  path.line({rect.maxX() - top, rect.minY()});
  if (above) path.arc({rect.maxX() - top, rect.minY() + top}, top, 3 * quarter, 4 * quarter, true);
  path.line({rect.maxX(), rect.maxY() - bottom});
  if (below) path.arc({rect.maxX() - bottom, rect.maxY() - bottom}, bottom, 0, quarter, true);
  path.line({rect.minX() + bottom, rect.maxY()});
  if (below) path.arc({rect.minX() + bottom, rect.maxY() - bottom}, bottom, quarter, 2 * quarter, true);
  path.close();
  return path;
}

}  // namespace

UITableViewCell::UITableViewCell() = default;
UITableViewCell::~UITableViewCell() = default;

void UITableViewCell::initWithStyle(UITableViewCellStyle style, const std::string& reuseIdentifier) {
  style_ = style;
  reuseIdentifier_ = reuseIdentifier;
  initWithFrame({0, 0, 320, leastHeight});
  setBackgroundColor(UIColor::systemBackground());
  contentView_ = make<UIView>(bounds());
  addSubview(contentView_);
}

void UITableViewCell::prepareForReuse() {
  setHighlighted(false, false);
  setSelected(false, false);
}

// ---- Parts

Ref<UILabel> UITableViewCell::textLabel() {
  if (!textLabel_) {
    textLabel_ = make<UILabel>();
    textLabel_->setFont(UIFont::systemFont(style_ == UITableViewCellStyle::value2 ? 13 : 17));
    if (style_ == UITableViewCellStyle::value2) {
      textLabel_->setTextColor(tintColor());
      textLabel_->setTextAlignment(NSTextAlignment::right);
    }
    contentView_->addSubview(textLabel_);
    setNeedsLayout();
  }
  return textLabel_;
}

Ref<UILabel> UITableViewCell::detailTextLabel() {
  if (!detailTextLabel_ && style_ != UITableViewCellStyle::standard) {
    detailTextLabel_ = make<UILabel>();
    const bool beside = style_ == UITableViewCellStyle::value1;
    detailTextLabel_->setFont(UIFont::systemFont(beside ? 17 : 13));
    const bool quiet = style_ != UITableViewCellStyle::value2;
    detailTextLabel_->setTextColor(quiet ? UIColor::secondaryLabel() : UIColor::label());
    if (beside) detailTextLabel_->setTextAlignment(NSTextAlignment::right);
    contentView_->addSubview(detailTextLabel_);
    setNeedsLayout();
  }
  return detailTextLabel_;
}

Ref<UIImageView> UITableViewCell::imageView() {
  if (!imageView_) {
    imageView_ = make<UIImageView>();
    imageView_->setContentMode(UIViewContentMode::scaleAspectFit);
    contentView_->addSubview(imageView_);
    setNeedsLayout();
  }
  return imageView_;
}

void UITableViewCell::setBackgroundView(const Ref<UIView>& view) {
  if (backgroundView_) backgroundView_->removeFromSuperview();
  backgroundView_ = view;
  if (view) insertSubview(view, 0);
  setNeedsLayout();
}

void UITableViewCell::setSelectedBackgroundView(const Ref<UIView>& view) {
  if (highlight_) highlight_->removeFromSuperview();
  highlight_ = nullptr;
  selectedBackgroundView_ = view;
  showSelection(false);
}

void UITableViewCell::setAccessoryType(UITableViewCellAccessoryType type) {
  if (accessoryType_ == type) return;
  accessoryType_ = type;
  updateAccessory();
}

void UITableViewCell::setAccessoryView(const Ref<UIView>& view) {
  if (accessoryView_) accessoryView_->removeFromSuperview();
  accessoryView_ = view;
  updateAccessory();
}

void UITableViewCell::updateAccessory() {
  if (standardAccessory_) standardAccessory_->removeFromSuperview();
  standardAccessory_ = nullptr;
  if (accessoryView_) {
    addSubview(accessoryView_);
  } else if (accessoryType_ == UITableViewCellAccessoryType::detailDisclosureButton) {
    const Ref<UIButton> button = make<UIButton>(UIButtonType::system);
    button->setImage(infoMark(), UIControlState::normal);
    button->addTarget(self(), sel("accessoryButtonTapped"), UIControlEvents::touchUpInside);
    button->setFrame({0, 0, 44, leastHeight});
    standardAccessory_ = button;
  } else if (accessoryType_ != UITableViewCellAccessoryType::none) {
    const bool isChevron = accessoryType_ == UITableViewCellAccessoryType::disclosureIndicator;
    standardAccessory_ = make<UIImageView>(isChevron ? chevron() : checkmark());
  }
  if (standardAccessory_) addSubview(standardAccessory_);
  setNeedsLayout();
}

void UITableViewCell::exportMethods(MethodTable<UITableViewCell>& table) {
  table.add<&UITableViewCell::accessoryButtonTapped>("accessoryButtonTapped");
}

void UITableViewCell::accessoryButtonTapped() {
  static const SEL tapped = sel("tableView:accessoryButtonTappedForRowWithIndexPath:");
  Ref<UIView> at = superview();
  while (at && !as<UITableView>(at)) at = at->superview();
  const Ref<UITableView> table = as<UITableView>(at);
  if (!table) return;
  const std::optional<IndexPath> path = table->indexPathForCell(self());
  if (path) sendOptional(table->delegate(), tapped, table, *path);
}

void UITableViewCell::setSelectionStyle(UITableViewCellSelectionStyle style) {
  selectionStyle_ = style;
  showSelection(false);
}

void UITableViewCell::setSeparatorInset(std::optional<UIEdgeInsets> insets) {
  separatorInset_ = insets;
  setNeedsLayout();
}

// ---- Selection

void UITableViewCell::setSelected(bool selected, bool animated) {
  if (selected_ == selected) return;
  selected_ = selected;
  showSelection(animated);
}

void UITableViewCell::setHighlighted(bool highlighted, bool animated) {
  if (highlighted_ == highlighted) return;
  highlighted_ = highlighted;
  showSelection(animated);
}

void UITableViewCell::showSelection(bool animated) {
  const bool shows = (selected_ || highlighted_) && selectionStyle_ != UITableViewCellSelectionStyle::none;
  for (const Ref<UILabel>& label : {textLabel_, detailTextLabel_}) {
    if (label) label->setHighlighted(shows);
  }
  if (imageView_) imageView_->setHighlighted(shows);
  if (!shows && !highlight_) return;
  if (!highlight_) {
    highlight_ = selectedBackgroundView_ ? selectedBackgroundView_ : make<UIView>();
    if (!selectedBackgroundView_) highlight_->setBackgroundColor(UIColor::systemGray4());
    highlight_->setAlpha(0);
    insertSubview(highlight_, backgroundView_ ? 1 : 0);
    highlight_->setFrame(bounds());
  }
  const auto change = [this, shows] { highlight_->setAlpha(shows ? 1 : 0); };
  if (animated) {
    UIView::animateWithDuration(fadeSeconds, change);
  } else {
    UIView::performWithoutAnimation(change);
  }
}

// ---- Layout

double UITableViewCell::accessoryWidth() const {
  const Ref<UIView>& accessory = accessoryView_ ? accessoryView_ : standardAccessory_;
  if (!accessory) return 0;
  CGSize size = accessory->bounds().size;
  if (size.width <= 0) size = accessory->sizeThatFits({});
  const bool reachesEdge = !accessoryView_ && accessoryType_ == UITableViewCellAccessoryType::detailDisclosureButton;
  return size.width + (reachesEdge ? 5 : margin);
}

CGSize UITableViewCell::layoutLabels(CGRect content, bool apply) const {
  const auto has = [](const Ref<UILabel>& label) { return label && label->text() && !label->text()->empty(); };
  double left = content.minX() + margin;
  const double right = content.maxX() - margin;
  double height = 0;
  if (imageView_ && imageView_->image()) {
    CGSize size = imageView_->image()->size();
    const double most = std::max(1.0, std::max(content.size.height, leastHeight) - 2);
    if (size.height > most) size = {size.width * most / size.height, most};
    if (apply) imageView_->setFrame({left, content.midY() - size.height / 2, size.width, size.height});
    left += size.width + besidePicture;
    height = size.height + 2;
  }
  const double room = std::max(1.0, right - left);
  const auto fit = [&](const Ref<UILabel>& label, double width) {
    const CGSize size = has(label) ? label->sizeThatFits({width, 0}) : CGSize{};
    return CGSize{std::min(size.width, width), size.height};
  };
  const auto place = [&](const Ref<UILabel>& label, CGRect frame) {
    if (apply && label) label->setFrame(frame);
  };
  if (style_ == UITableViewCellStyle::value1) {
    const CGSize title = fit(textLabel_, room);
    const double gap = has(detailTextLabel_) ? 8 : 0;
    const CGSize detail = fit(detailTextLabel_, std::max(room * 0.3, room - title.width - gap));
    const double titleWidth = std::min(title.width, room - detail.width - gap);
    place(textLabel_, {left, content.midY() - title.height / 2, titleWidth, title.height});
    place(detailTextLabel_, {right - detail.width, content.midY() - detail.height / 2, detail.width, detail.height});
    height = std::max({height, title.height, detail.height});
  } else if (style_ == UITableViewCellStyle::value2) {
    constexpr double column = 91;
    const CGSize title = fit(textLabel_, column);
    const CGSize detail = fit(detailTextLabel_, std::max(1.0, room - column - 6));
    place(textLabel_, {left, content.midY() - title.height / 2, column, title.height});
    place(detailTextLabel_, {left + column + 6, content.midY() - detail.height / 2, detail.width, detail.height});
    height = std::max({height, title.height, detail.height});
  } else {
    const CGSize title = fit(textLabel_, room);
    const CGSize detail = fit(detailTextLabel_, room);
    const double gap = title.height > 0 && detail.height > 0 ? betweenLines : 0;
    const double all = title.height + gap + detail.height;
    const double top = content.midY() - all / 2;
    place(textLabel_, {left, top, room, title.height});
    place(detailTextLabel_, {left, top + title.height + gap, room, detail.height});
    height = std::max(height, all);
  }
  return {content.size.width, height};
}

CGSize UITableViewCell::sizeThatFits(CGSize size) const {
  const double width = size.width - accessoryWidth();
  const double text = layoutLabels({0, 0, width, 0}, false).height;
  const bool twoLines = style_ == UITableViewCellStyle::subtitle && detailTextLabel_;
  const double padded = std::ceil(text) + (twoLines ? 2 * verticalPadding : 2 * (verticalPadding - 1));
  return {size.width, std::max(leastHeight, text > 0 ? padded : 0)};
}

void UITableViewCell::layoutSubviews() {
  Super::layoutSubviews();
  const CGRect all = bounds();
  const double beside = accessoryWidth();
  contentView_->setFrame({all.minX(), all.minY(), std::max(0.0, all.size.width - beside), all.size.height});
  if (backgroundView_) backgroundView_->setFrame(all);
  if (highlight_) highlight_->setFrame(all);
  const Ref<UIView>& accessory = accessoryView_ ? accessoryView_ : standardAccessory_;
  if (accessory) {
    CGSize size = accessory->bounds().size;
    if (size.width <= 0) size = accessory->sizeThatFits({});
    accessory->setFrame({all.maxX() - beside, all.midY() - size.height / 2, size.width, size.height});
  }
  if (textLabel_ || detailTextLabel_ || imageView_) {
    // A host that builds its own content with constraints does not have its labels moved under it.
    if (contentView_->constraints().empty()) layoutLabels(contentView_->bounds(), true);
  }
  if (separator_) {
    const double hairline = 1 / UIScreen::main().scale();
    const UIEdgeInsets insets = separatorInset_.value_or(placement_.separatorInset);
    double left = insets.left;
    if (!separatorInset_ && imageView_ && imageView_->image())
      left = contentView_->convertPoint(CGPoint{imageView_->frame().maxX() + besidePicture, 0}, this).x;
    separator_->setFrame({left, all.maxY() - hairline, std::max(0.0, all.size.width - left - insets.right), hairline});
    bringSubviewToFront(separator_);
  }
  updateCorners();
}

void UITableViewCell::setPlacement(const Placement& placement) {
  if (placement_ == placement) return;
  placement_ = placement;
  if (placement.separator && !separator_) {
    separator_ = make<UIView>();
    separator_->setUserInteractionEnabled(false);
    addSubview(separator_);
  }
  if (separator_) {
    separator_->setHidden(!placement.separator);
    separator_->setBackgroundColor(placement.separatorColor);
  }
  setNeedsLayout();
}

void UITableViewCell::updateCorners() {
  const double radius = placement_.cornerRadius;
  if (radius <= 0 || (!placement_.first && !placement_.last)) {
    if (layer()->mask()) layer()->setMask(nullptr);
    return;
  }
  const Ref<CAShapeLayer> mask = make<CAShapeLayer>();
  mask->setFrame(bounds());
  mask->setPath(roundedAbove(bounds(), radius, placement_.first, placement_.last));
  layer()->setMask(mask);
}

void UITableViewCell::tintColorDidChange() {
  Super::tintColorDidChange();
  if (style_ == UITableViewCellStyle::value2 && textLabel_) textLabel_->setTextColor(tintColor());
}

}  // namespace platform
