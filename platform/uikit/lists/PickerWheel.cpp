#include "platform/uikit/lists/PickerWheel.h"

#include <algorithm>
#include <cmath>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/touch/UITouch.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

/// The drum's radius in heights of the wheel, and how much of it is seen.
constexpr double drumRadius = 0.55;
constexpr double foreshortening = 0.92;
constexpr double farthestAngle = 1.4;

}  // namespace

void PickerWheel::init(UIPickerView& picker, std::int64_t component) {
  picker_ = &picker;
  component_ = component;
  initWithFrame(CGRect{});
  setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
  setShowsVerticalScrollIndicator(false);
  setShowsHorizontalScrollIndicator(false);
  setDecelerationRate(0.995);
  setDelegate(self());
}

void PickerWheel::exportMethods(MethodTable<PickerWheel>& table) {
  table.add<&PickerWheel::motionEnded>("scrollViewDidEndDecelerating:");
  table.add<&PickerWheel::motionEnded>("scrollViewDidEndScrollingAnimation:");
  table.add<&PickerWheel::dragEnded>("scrollViewDidEndDragging:willDecelerate:");
}

void PickerWheel::reload(std::int64_t rows, double rowHeight) {
  turnedByHand_ = false;  // what it was turned to may be something else now
  for (const auto& [row, view] : views_) view->removeFromSuperview();
  views_.clear();
  rows_ = std::clamp<std::int64_t>(rows, 0, 10'000'000);
  rowHeight_ = rowHeight;
  const std::int64_t row = rows_ == 0 ? -1 : std::clamp<std::int64_t>(selected_, 0, rows_ - 1);
  selected_ = row;
  setContentSize({bounds().size.width, static_cast<double>(rows_) * rowHeight_});
  setContentOffset({0, offsetOf(std::max<std::int64_t>(row, 0))}, false);
  setNeedsLayout();
}

double PickerWheel::offsetOf(std::int64_t row) const {
  return (static_cast<double>(row) + 0.5) * rowHeight_ - bounds().size.height / 2;
}

std::int64_t PickerWheel::rowAtMiddle() const {
  if (rows_ == 0) return -1;
  const double middle = contentOffset().y + bounds().size.height / 2;
  return std::clamp<std::int64_t>(static_cast<std::int64_t>(std::floor(middle / rowHeight_)), 0, rows_ - 1);
}

CGPoint PickerWheel::restingOffset(CGPoint proposed) {
  if (rows_ == 0) return proposed;
  const double middle = proposed.y + bounds().size.height / 2;
  const double row = std::clamp(std::floor(middle / rowHeight_), 0.0, static_cast<double>(rows_ - 1));
  return {proposed.x, offsetOf(static_cast<std::int64_t>(row))};
}

void PickerWheel::select(std::int64_t row, bool animated) {
  if (row < 0 || row >= rows_) return;
  turnedByHand_ = false;
  selected_ = row;
  setContentOffset({0, offsetOf(row)}, animated);
}

Ref<UIView> PickerWheel::viewForRow(std::int64_t row) const {
  const auto found = views_.find(row);
  return found == views_.end() ? nullptr : found->second;
}

// ---- Turning

void PickerWheel::dragEnded(const Ref<NSObject>&, bool decelerates) {
  turnedByHand_ = true;
  if (!decelerates) cameToRest();
}

void PickerWheel::motionEnded(const Ref<NSObject>&) { cameToRest(); }

void PickerWheel::cameToRest() {
  if (isTracking() && isHeld()) return;
  const std::int64_t row = rowAtMiddle();
  if (!turnedByHand_ || row < 0) return;
  turnedByHand_ = false;
  selected_ = row;
  if (picker_) picker_->turned(component_, row);
}

void PickerWheel::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isHeld()) return Super::touchesEnded(touches, event);
  if (touches.empty() || rows_ == 0) return;
  // The place on the drum that is seen where the finger is.
  const double middle = contentOffset().y + bounds().size.height / 2;
  const double radius = std::max(1.0, bounds().size.height * drumRadius);
  const double seen = (touches.front()->locationInView(this).y - middle) / (radius * foreshortening);
  const double away = std::asin(std::clamp(seen, -1.0, 1.0)) * radius;
  const auto row = static_cast<std::int64_t>(std::floor((middle + away) / rowHeight_));
  if (row < 0 || row >= rows_ || row == selected_) return;
  turnedByHand_ = true;
  setContentOffset({0, offsetOf(row)}, true);
}

/// Left between two rows: the nearest one comes to the middle.
void PickerWheel::settle() {
  const std::int64_t row = rowAtMiddle();
  if (row < 0) return;
  turnedByHand_ = true;
  if (contentOffset().y == offsetOf(row)) return cameToRest();
  setContentOffset({0, offsetOf(row)}, true);
}

Ref<UIView> PickerWheel::hitTest(CGPoint point, const Ref<UIEvent>& event) {
  return Super::hitTest(point, event) ? self() : nullptr;  // rows take no touches of their own
}

// ---- Showing

Ref<UIView> PickerWheel::makeRow(std::int64_t row) {
  static const SEL viewForRow = sel("pickerView:viewForRow:forComponent:reusingView:");
  static const SEL titleForRow = sel("pickerView:titleForRow:forComponent:");
  const Ref<NSObject> picker = picker_->shared_from_this();
  const Ref<NSObject> delegate = picker_->delegate();
  const auto own = askOptional<Ref<UIView>>(delegate, viewForRow, picker, row, component_, Ref<NSObject>());
  if (own && *own) return *own;
  const Ref<UILabel> label = make<UILabel>();
  label->setFont(UIFont::systemFont(21));
  label->setTextAlignment(NSTextAlignment::center);
  label->setAdjustsFontSizeToFitWidth(true);
  label->setText(askOptional<std::string>(delegate, titleForRow, picker, row, component_));
  return label;
}

/// Rows away from the middle lie on the far side of a drum: lower, and fainter.
void PickerWheel::bend(UIView& view, std::int64_t row) const {
  const double middle = contentOffset().y + bounds().size.height / 2;
  const double away = (static_cast<double>(row) + 0.5) * rowHeight_ - middle;
  const double radius = std::max(1.0, bounds().size.height * drumRadius);
  const double angle = std::clamp(away / radius, -farthestAngle, farthestAngle);
  const double squeeze = std::max(0.2, std::cos(angle));
  const double shown = radius * std::sin(angle) * foreshortening;
  view.setTransform(CGAffineTransform::scale(0.9 + 0.1 * squeeze, squeeze));
  view.setCenter({bounds().midX(), middle + shown});
  const double near = std::abs(away) < rowHeight_ / 2 ? 1 : 0.55;
  view.setAlpha(near * std::pow(squeeze, 1.5));
}

void PickerWheel::layoutSubviews() {
  Super::layoutSubviews();
  if (!picker_ || loading_) return;
  const double height = bounds().size.height;
  const double inset = std::max(0.0, (height - rowHeight_) / 2);
  if (contentInset().top != inset) {
    setContentInset({inset, 0, inset, 0});
    setContentSize({bounds().size.width, static_cast<double>(rows_) * rowHeight_});
    if (selected_ >= 0) setContentOffset({0, offsetOf(selected_)}, false);
  }
  loading_ = true;
  const double reach = height * 0.85;  // the drum shows a little more than its height of rows
  const double middle = contentOffset().y + height / 2;
  const auto rowAt = [this](double y) { return static_cast<std::int64_t>(std::floor(y / rowHeight_)); };
  const std::int64_t first = std::max<std::int64_t>(0, rowAt(middle - reach));
  const std::int64_t last = std::min(rows_ - 1, rowAt(middle + reach));
  for (auto at = views_.begin(); at != views_.end();) {
    if (at->first < first || at->first > last) {
      at->second->removeFromSuperview();
      at = views_.erase(at);
    } else {
      ++at;
    }
  }
  for (std::int64_t row = first; row <= last; ++row) {
    if (!views_.contains(row)) {
      const Ref<UIView> view = makeRow(row);
      view->setFrame({0, 0, bounds().size.width, rowHeight_});
      addSubview(view);
      views_[row] = view;
    }
    UIView& view = *views_[row];
    view.setBounds({0, 0, bounds().size.width, rowHeight_});
    bend(view, row);
  }
  loading_ = false;
}

}  // namespace platform
