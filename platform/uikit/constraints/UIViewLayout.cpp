#include <cmath>

#include "platform/runtime/FatalError.h"
#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIViewStorage.h"

// The layout half of a view: masks, constraints, content sizes, passes.

namespace platform {

namespace {

std::size_t indexOf(UILayoutAxis axis) { return axis == UILayoutAxis::horizontal ? 0 : 1; }

}  // namespace

// ---- Masks and margins

unsigned UIView::autoresizingMask() const { return storage_->layout.autoresizingMask; }

void UIView::setAutoresizingMask(unsigned mask) {
  if (storage_->layout.autoresizingMask == mask) return;
  storage_->layout.autoresizingMask = mask;
  if (LayoutEngine* const engine = ViewLayout::engineOf(*this)) engine->frameDidChange(*this);
}

UIEdgeInsets UIView::layoutMargins() const { return storage_->layout.layoutMargins; }

void UIView::setLayoutMargins(UIEdgeInsets margins) {
  if (storage_->layout.layoutMargins == margins) return;
  storage_->layout.layoutMargins = margins;
  if (LayoutEngine* const engine = ViewLayout::engineOf(*this)) engine->insetsDidChange(*this);
  setNeedsLayout();
}

bool UIView::translatesAutoresizingMaskIntoConstraints() const { return storage_->layout.translatesAutoresizingMask; }

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
  if (storage_->layout.translatesAutoresizingMask == translates) return;
  storage_->layout.translatesAutoresizingMask = translates;
  if (LayoutEngine* const engine = ViewLayout::engineOf(*this)) engine->translationDidChange(*this);
  ViewLayout::wake(*this);
}

// ---- Passes

void UIView::setNeedsLayout() { ViewLayout::markNeedsLayout(*this); }

void UIView::layoutIfNeeded() { ViewLayout::runPasses(*this); }

void UIView::layoutSubviews() { ViewLayout::placeSubviews(*this); }

void UIView::setNeedsUpdateConstraints() { ViewLayout::markNeedsUpdateConstraints(*this); }

void UIView::updateConstraints() {}

// ---- Content

CGSize UIView::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, UIViewNoIntrinsicMetric}; }

std::optional<double> UIView::intrinsicHeightForWidth(double) const { return std::nullopt; }

void UIView::invalidateIntrinsicContentSize() {
  if (LayoutEngine* const engine = ViewLayout::engineOf(*this)) engine->contentSizeDidChange(*this);
  ViewLayout::wake(*this);
}

UILayoutPriority UIView::contentHuggingPriority(UILayoutAxis axis) const {
  return storage_->layout.hugging[indexOf(axis)];
}

void UIView::setContentHuggingPriority(UILayoutPriority priority, UILayoutAxis axis) {
  if (!std::isfinite(priority)) fatalError("UIView: a content hugging priority is not finite");
  storage_->layout.hugging[indexOf(axis)] = priority;
  invalidateIntrinsicContentSize();
}

UILayoutPriority UIView::contentCompressionResistancePriority(UILayoutAxis axis) const {
  return storage_->layout.compressionResistance[indexOf(axis)];
}

void UIView::setContentCompressionResistancePriority(UILayoutPriority priority, UILayoutAxis axis) {
  if (!std::isfinite(priority)) fatalError("UIView: a compression resistance priority is not finite");
  storage_->layout.compressionResistance[indexOf(axis)] = priority;
  invalidateIntrinsicContentSize();
}

double UIView::firstBaselineOffset() const { return bounds().size.height; }
double UIView::lastBaselineOffset() const { return bounds().size.height; }

CGSize UIView::systemLayoutSizeFitting(CGSize targetSize, UILayoutPriority horizontal, UILayoutPriority vertical) {
  ViewLayout::updateConstraintsBelow(*this);
  LayoutEngine engine(*this, LayoutEngine::Fitting{{targetSize.width, targetSize.height},
                                                   {static_cast<double>(horizontal), static_cast<double>(vertical)}});
  engine.adopt(*this);
  engine.update();
  return engine.fittingSize();
}

// ---- Constraints

std::vector<Ref<NSLayoutConstraint>> UIView::constraints() const {
  const ViewLayout* const state = ViewLayout::ifAny(*this);
  return state ? state->constraints() : std::vector<Ref<NSLayoutConstraint>>{};
}

void UIView::addConstraint(const Ref<NSLayoutConstraint>& constraint) { constraint->setActive(true); }

void UIView::removeConstraint(const Ref<NSLayoutConstraint>& constraint) { constraint->setActive(false); }

NSLayoutXAxisAnchor UIView::leftAnchor() { return {weakSelf(), NSLayoutAttribute::left}; }
NSLayoutXAxisAnchor UIView::rightAnchor() { return {weakSelf(), NSLayoutAttribute::right}; }
NSLayoutXAxisAnchor UIView::leadingAnchor() { return {weakSelf(), NSLayoutAttribute::leading}; }
NSLayoutXAxisAnchor UIView::trailingAnchor() { return {weakSelf(), NSLayoutAttribute::trailing}; }
NSLayoutXAxisAnchor UIView::centerXAnchor() { return {weakSelf(), NSLayoutAttribute::centerX}; }
NSLayoutYAxisAnchor UIView::topAnchor() { return {weakSelf(), NSLayoutAttribute::top}; }
NSLayoutYAxisAnchor UIView::bottomAnchor() { return {weakSelf(), NSLayoutAttribute::bottom}; }
NSLayoutYAxisAnchor UIView::centerYAnchor() { return {weakSelf(), NSLayoutAttribute::centerY}; }
NSLayoutYAxisAnchor UIView::firstBaselineAnchor() { return {weakSelf(), NSLayoutAttribute::firstBaseline}; }
NSLayoutYAxisAnchor UIView::lastBaselineAnchor() { return {weakSelf(), NSLayoutAttribute::lastBaseline}; }
NSLayoutDimension UIView::widthAnchor() { return {weakSelf(), NSLayoutAttribute::width}; }
NSLayoutDimension UIView::heightAnchor() { return {weakSelf(), NSLayoutAttribute::height}; }

Ref<UILayoutGuide> UIView::safeAreaLayoutGuide() { return ViewLayout::safeAreaGuide(*this); }
Ref<UILayoutGuide> UIView::layoutMarginsGuide() { return ViewLayout::marginsGuide(*this); }
void UIView::addLayoutGuide(const Ref<UILayoutGuide>& guide) { ViewLayout::addGuide(*this, guide); }
void UIView::removeLayoutGuide(const Ref<UILayoutGuide>& guide) { ViewLayout::removeGuide(*this, guide); }

}  // namespace platform
