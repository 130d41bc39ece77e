#include "platform/uikit/lists/UIPickerView.h"

#include <algorithm>

#include "platform/animation/CALayer.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/PickerWheel.h"

namespace platform {

namespace {

constexpr double standardRowHeight = 34;
constexpr double sideMargin = 9;
constexpr CGSize standardSize{320, 216};

}  // namespace

UIPickerView::UIPickerView() = default;

UIPickerView::~UIPickerView() {
  for (const Ref<PickerWheel>& wheel : wheels_) wheel->forgetPicker();
}

void UIPickerView::initWithFrame(CGRect frame) {
  if (frame.isEmpty()) frame.size = standardSize;
  Super::initWithFrame(frame);
  setClipsToBounds(true);
  band_ = make<UIView>();
  band_->setBackgroundColor(UIColor::tertiarySystemFill());
  band_->layer()->setCornerRadius(8);
  band_->setUserInteractionEnabled(false);
  addSubview(band_);
}

void UIPickerView::setDataSource(const Ref<NSObject>& dataSource) {
  dataSource_ = dataSource;
  loaded_ = false;
  setNeedsLayout();
}

void UIPickerView::setDelegate(const Ref<NSObject>& delegate) {
  if (delegate_.lock() == delegate) return;
  delegate_ = delegate;
  loaded_ = false;  // it may tell other titles; what is selected stays
  setNeedsLayout();
}

void UIPickerView::loadIfNeeded() const {
  // What there is, is asked for when somebody first wants to know; for the reader nothing changes by that.
  if (!loaded_) const_cast<UIPickerView*>(this)->load();
}

void UIPickerView::load() {
  static const SEL numberOfComponents = sel("numberOfComponentsInPickerView:");
  static const SEL rowHeightFor = sel("pickerView:rowHeightForComponent:");
  static const SEL numberOfRows = sel("pickerView:numberOfRowsInComponent:");
  loaded_ = true;
  const Ref<NSObject> keeper = shared_from_this();  // whoever is asked may take it away
  const Ref<NSObject> source = dataSource_.lock();
  const Ref<NSObject> delegate = delegate_.lock();
  std::int64_t components =
      askOptional<std::int64_t>(source, numberOfComponents, shared_from_this()).value_or(source ? 1 : 0);
  components = std::clamp<std::int64_t>(components, 0, 20);
  while (static_cast<std::int64_t>(wheels_.size()) > components) {
    wheels_.back()->forgetPicker();
    wheels_.back()->removeFromSuperview();
    wheels_.pop_back();
  }
  while (static_cast<std::int64_t>(wheels_.size()) < components) {
    wheels_.push_back(make<PickerWheel>(*this, static_cast<std::int64_t>(wheels_.size())));
    addSubview(wheels_.back());
  }
  for (std::int64_t component = 0; component < components; ++component) {
    const auto rows = askOptional<std::int64_t>(source, numberOfRows, shared_from_this(), component);
    const auto height = askOptional<double>(delegate, rowHeightFor, shared_from_this(), component);
    wheels_[static_cast<std::size_t>(component)]->reload(rows.value_or(0),
                                                         height ? std::clamp(*height, 8.0, 400.0) : standardRowHeight);
  }
  setNeedsLayout();
}

std::int64_t UIPickerView::numberOfComponents() const {
  loadIfNeeded();
  return static_cast<std::int64_t>(wheels_.size());
}

std::int64_t UIPickerView::numberOfRowsInComponent(std::int64_t component) const {
  if (component < 0 || component >= numberOfComponents()) return 0;
  return wheels_[static_cast<std::size_t>(component)]->rows();
}

std::int64_t UIPickerView::selectedRowInComponent(std::int64_t component) const {
  if (component < 0 || component >= numberOfComponents()) return -1;
  return wheels_[static_cast<std::size_t>(component)]->selected();
}

void UIPickerView::selectRow(std::int64_t row, std::int64_t component, bool animated) {
  if (component < 0 || component >= numberOfComponents()) return;
  if (window()) layoutIfNeeded();
  wheels_[static_cast<std::size_t>(component)]->select(row, animated && window());
}

bool UIPickerView::isTurning(std::int64_t component) const {
  return component >= 0 && component < numberOfComponents() &&
         wheels_[static_cast<std::size_t>(component)]->isTurning();
}

void UIPickerView::reloadAllComponents() {
  loaded_ = false;
  setNeedsLayout();
}

void UIPickerView::reloadComponent(std::int64_t) { reloadAllComponents(); }

Ref<UIView> UIPickerView::viewForRow(std::int64_t row, std::int64_t component) const {
  if (component < 0 || component >= numberOfComponents()) return nullptr;
  return wheels_[static_cast<std::size_t>(component)]->viewForRow(row);
}

void UIPickerView::turned(std::int64_t component, std::int64_t row) {
  static const SEL didSelect = sel("pickerView:didSelectRow:inComponent:");
  sendOptional(delegate_.lock(), didSelect, shared_from_this(), row, component);
}

CGSize UIPickerView::intrinsicContentSize() const { return standardSize; }
CGSize UIPickerView::sizeThatFits(CGSize) const { return standardSize; }

void UIPickerView::didMoveToWindow() {
  Super::didMoveToWindow();
  setNeedsLayout();
}

void UIPickerView::layoutSubviews() {
  static const SEL widthFor = sel("pickerView:widthForComponent:");
  Super::layoutSubviews();
  loadIfNeeded();
  const CGRect all = bounds();
  band_->setFrame({all.minX() + sideMargin, all.midY() - standardRowHeight / 2,
                   std::max(0.0, all.size.width - 2 * sideMargin), standardRowHeight});
  if (wheels_.empty()) return;
  const Ref<NSObject> delegate = delegate_.lock();
  const double room = std::max(0.0, all.size.width - 2 * sideMargin);
  std::vector<double> widths(wheels_.size(), room / static_cast<double>(wheels_.size()));
  if (delegate && delegate->respondsToSelector(widthFor)) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      widths[i] =
          std::clamp(delegate->perform<double>(widthFor, shared_from_this(), static_cast<std::int64_t>(i)), 0.0, room);
    }
  }
  double total = 0;
  for (const double width : widths) total += width;
  double left = all.midX() - std::min(total, room) / 2;
  const double scale = total > room ? room / total : 1;
  for (std::size_t i = 0; i < wheels_.size(); ++i) {
    wheels_[i]->setFrame({left, all.minY(), widths[i] * scale, all.size.height});
    left += widths[i] * scale;
  }
}

}  // namespace platform
