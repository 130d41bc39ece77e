#include "platform/uikit/controls/UISegmentedControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double height = 32;
constexpr double inset = 2;
constexpr double radius = 8;
constexpr double sidePadding = 12;
constexpr double seconds = 0.22;

}  // namespace

void UISegmentedControl::init(const std::vector<std::string>& titles) {
  initWithFrame(CGRect{});
  for (const std::string& title : titles) insertSegment(title, numberOfSegments());
}

void UISegmentedControl::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  layer()->setCornerRadius(radius);
  setBackgroundColor(UIColor::tertiarySystemFill());
  plate_ = make<UIView>();
  plate_->setUserInteractionEnabled(false);
  const Ref<CALayer>& layer = plate_->layer();
  layer->setCornerRadius(radius - inset + 0.5);
  layer->setShadowOpacity(0.12);
  layer->setShadowRadius(4);
  layer->setShadowOffset({0, 2});
  addSubview(plate_);
  showState(false);
}

std::int64_t UISegmentedControl::numberOfSegments() const { return static_cast<std::int64_t>(segments_.size()); }

void UISegmentedControl::insertSegment(const std::string& title, std::int64_t index, bool) {
  Segment segment;
  segment.label = make<UILabel>();
  segment.label->setTextAlignment(NSTextAlignment::center);
  segment.label->setText(title);
  addSubview(segment.label);
  insert(std::move(segment), index);
}

void UISegmentedControl::insertSegment(const Ref<UIImage>& image, std::int64_t index, bool) {
  Segment segment;
  segment.picture = make<UIImageView>(image);
  segment.picture->setContentMode(UIViewContentMode::scaleAspectFit);
  addSubview(segment.picture);
  insert(std::move(segment), index);
}

void UISegmentedControl::insert(Segment segment, std::int64_t index) {
  if (index < 0 || index > numberOfSegments()) index = numberOfSegments();
  segment.divider = make<UIView>();
  segment.divider->setBackgroundColor(UIColor::separator());
  insertSubview(segment.divider, 0);
  segments_.insert(segments_.begin() + index, std::move(segment));
  if (selected_ >= index) ++selected_;
  invalidateIntrinsicContentSize();
  showState(false);
}

void UISegmentedControl::removeSegment(std::int64_t index, bool) {
  if (index < 0 || index >= numberOfSegments()) return;
  const Segment gone = segments_[static_cast<std::size_t>(index)];
  segments_.erase(segments_.begin() + index);
  if (gone.label) gone.label->removeFromSuperview();
  if (gone.picture) gone.picture->removeFromSuperview();
  gone.divider->removeFromSuperview();
  if (selected_ == index) selected_ = noSegment;
  if (selected_ > index) --selected_;
  held_ = noSegment;
  invalidateIntrinsicContentSize();
  showState(false);
}

void UISegmentedControl::removeAllSegments() {
  while (!segments_.empty()) removeSegment(numberOfSegments() - 1);
}

std::optional<std::string> UISegmentedControl::titleForSegment(std::int64_t index) const {
  if (index < 0 || index >= numberOfSegments()) return std::nullopt;
  const Ref<UILabel>& label = segments_[static_cast<std::size_t>(index)].label;
  return label ? label->text() : std::nullopt;
}

void UISegmentedControl::setTitle(const std::string& title, std::int64_t index) {
  if (index < 0 || index >= numberOfSegments()) return;
  if (const Ref<UILabel>& label = segments_[static_cast<std::size_t>(index)].label) label->setText(title);
  invalidateIntrinsicContentSize();
}

bool UISegmentedControl::isEnabledForSegment(std::int64_t index) const {
  return index >= 0 && index < numberOfSegments() && segments_[static_cast<std::size_t>(index)].enabled;
}

void UISegmentedControl::setEnabled(bool enabled, std::int64_t index) {
  if (index < 0 || index >= numberOfSegments()) return;
  segments_[static_cast<std::size_t>(index)].enabled = enabled;
  showState(false);
}

void UISegmentedControl::setSelectedSegmentIndex(std::int64_t index) {
  if (index < 0 || index >= numberOfSegments()) index = noSegment;
  if (selected_ == index) return;
  selected_ = index;
  showState(false);
}

void UISegmentedControl::setSelectedSegmentTintColor(std::optional<UIColor> color) {
  selectedTint_ = color;
  showState(false);
}

// ---- Layout and look

CGSize UISegmentedControl::intrinsicContentSize() const {
  double widest = 0;
  for (const Segment& segment : segments_) {
    const double own = segment.label ? segment.label->sizeThatFits({}).width : segment.picture->sizeThatFits({}).width;
    widest = std::max(widest, own);
  }
  return {static_cast<double>(segments_.size()) * std::ceil(widest + 2 * sidePadding), height};
}

CGSize UISegmentedControl::sizeThatFits(CGSize) const { return intrinsicContentSize(); }

CGRect UISegmentedControl::segmentRect(std::int64_t index) const {
  const CGRect all = bounds();
  const double width = segments_.empty() ? 0 : all.size.width / static_cast<double>(segments_.size());
  return {all.minX() + static_cast<double>(index) * width, all.minY(), width, all.size.height};
}

std::int64_t UISegmentedControl::segmentAt(CGPoint point) const {
  for (std::int64_t i = 0; i < numberOfSegments(); ++i) {
    if (segmentRect(i).contains(point)) return segments_[static_cast<std::size_t>(i)].enabled ? i : noSegment;
  }
  return noSegment;
}

void UISegmentedControl::layoutSubviews() {
  Super::layoutSubviews();
  showState(false);
}

void UISegmentedControl::showState(bool animated) {
  const auto change = [this] {
    plate_->setAlpha(selected_ == noSegment ? 0 : 1);
    plate_->setBackgroundColor(selectedTint_.value_or(UIColor::white()));
    if (selected_ != noSegment) {
      const double squeeze = held_ == selected_ ? inset + 1 : inset;
      plate_->setFrame(segmentRect(selected_).insetBy(squeeze, squeeze));
    }
    const double hairline = 1 / UIScreen::main().scale();
    for (std::int64_t i = 0; i < numberOfSegments(); ++i) {
      const Segment& segment = segments_[static_cast<std::size_t>(i)];
      const CGRect rect = segmentRect(i);
      const bool chosen = i == selected_;
      double alpha = isEnabled() && segment.enabled ? 1 : 0.35;
      if (i == held_ && !chosen) alpha = 0.4;
      if (segment.label) {
        segment.label->setFont(UIFont::systemFont(13, chosen ? UIFontWeightSemibold : UIFontWeightMedium));
        segment.label->setFrame(rect.insetBy(4, 0));
        segment.label->setAlpha(alpha);
      } else {
        segment.picture->setFrame(rect.insetBy(6, 6));
        segment.picture->setAlpha(alpha);
      }
      const bool besidePlate = chosen || i == selected_ + 1;
      segment.divider->setFrame({rect.minX(), rect.minY() + 8, hairline * 2, std::max(0.0, rect.size.height - 16)});
      segment.divider->setAlpha(i == 0 || (besidePlate && selected_ != noSegment) ? 0 : 1);
    }
  };
  if (animated && window()) {
    UIView::animateWithDuration(seconds, change);
  } else {
    change();
  }
}

void UISegmentedControl::stateDidChange() {
  Super::stateDidChange();
  showState(false);
}

// ---- Touches

bool UISegmentedControl::beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  held_ = segmentAt(touch->locationInView(this));
  showState(true);
  return true;
}

bool UISegmentedControl::continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const std::int64_t under = segmentAt(touch->locationInView(this));
  if (under == held_) return true;
  held_ = under;
  showState(true);
  return true;
}

void UISegmentedControl::endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const std::int64_t chosen = segmentAt(touch->locationInView(this));
  held_ = noSegment;
  const bool changes = chosen != noSegment && chosen != selected_;
  if (changes) selected_ = chosen;
  showState(true);
  if (changes) sendActionsForControlEvents(UIControlEvents::valueChanged);
}

void UISegmentedControl::cancelTracking(const Ref<UIEvent>&) {
  held_ = noSegment;
  showState(true);
}

}  // namespace platform
