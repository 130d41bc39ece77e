#include "platform/uikit/views/UIView.h"

#include "platform/animation/CaptureBlanking.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIViewStorage.h"

// The view itself: how it is made, looks and is named. Tree, geometry, touches, animation and layout are in sources of
// their own.

namespace platform {

namespace {

constexpr UIColor systemBlue(0, 122.0 / 255, 1, 1);

/// How many views have a tint of their own: while none has, nobody's tint can change by moving about.
std::size_t ownTints = 0;

}  // namespace

/// Lets the layer draw what its view draws.
class UIViewDrawing final : public CALayerDelegate {
 public:
  explicit UIViewDrawing(UIView& view) : view_(view) {}
  bool layerDrawsItself(const CALayer&) override { return view_.drawsItself(); }
  void drawLayer(CALayer& layer, CGContext& context) override { view_.draw(layer.bounds(), context); }

 private:
  UIView& view_;
};

namespace {
std::uint64_t viewsMade = 0;
}

UIView::UIView() : serialNumber_(++viewsMade), storage_(std::make_unique<Storage>()) {
  layer_ = storage_->layer.get();
  storage_->drawing = std::make_unique<UIViewDrawing>(*this);
  layer_->setDelegate(storage_->drawing.get());
}

void UIView::initWithFrame(CGRect frame) {
  setFrame(frame);
  if (drawsItself()) setNeedsDisplay();
}

void UIView::exportMethods(MethodTable<UIView>& table) {
  table.add<&UIView::setNeedsDisplay>("setNeedsDisplay");
  table.add<&UIView::setNeedsLayout>("setNeedsLayout");
  table.add<&UIView::layoutIfNeeded>("layoutIfNeeded");
  table.add<&UIView::removeFromSuperview>("removeFromSuperview");
  table.add<&UIView::endEditing>("endEditing:");
}

// ---- Look

std::optional<UIColor> UIView::backgroundColor() const { return layer_->backgroundColor(); }
void UIView::setBackgroundColor(std::optional<UIColor> color) { layer_->setBackgroundColor(color); }
double UIView::alpha() const { return layer_->opacity(); }
void UIView::setAlpha(double alpha) { layer_->setOpacity(alpha); }
bool UIView::isHidden() const { return layer_->isHidden(); }
void UIView::setHidden(bool hidden) {
  if (hidden == isHidden()) return;
  layer_->setHidden(hidden);
  if (superview_) superview_->subviewVisibilityDidChange();
}
bool UIView::isHiddenFromCapture() const { return layer_->isHiddenFromCapture(); }
void UIView::setHiddenFromCapture(bool hidden) { layer_->setHiddenFromCapture(hidden); }
bool UIView::clipsToBounds() const { return layer_->masksToBounds(); }
void UIView::setClipsToBounds(bool clips) { layer_->setMasksToBounds(clips); }
const Ref<CALayer>& UIView::layer() const { return storage_->layer; }

void UIView::draw(CGRect, CGContext&) {}
void UIView::setNeedsDisplay() { layer_->setNeedsDisplay(); }

UIViewContentMode UIView::contentMode() const { return storage_->contentMode; }
void UIView::setContentMode(UIViewContentMode mode) { storage_->contentMode = mode; }

// ---- Tint

UIColor UIView::tintColor() const {
  if (ownTints == 0) return systemBlue;
  for (const UIView* view = this; view; view = view->superview_) {
    if (view->storage_->tintColor) return *view->storage_->tintColor;
  }
  return systemBlue;
}

void UIView::setTintColor(std::optional<UIColor> color) {
  std::optional<UIColor>& own = storage_->tintColor;
  if (own == color) return;
  ownTints += (color ? 1u : 0u) - (own ? 1u : 0u);
  own = color;
  spreadTintColor();
}

/// After a move: its tint may now be another superview's.
void UIView::inheritTintColor() {
  if (ownTints > 0 && !storage_->tintColor) spreadTintColor();
}

void UIView::spreadTintColor() {
  std::vector<Ref<UIView>> open{self()};
  while (!open.empty()) {
    const Ref<UIView> view = std::move(open.back());
    open.pop_back();
    view->tintColorDidChange();
    for (const Ref<UIView>& child : view->subviews_) {
      if (!child->storage_->tintColor) open.push_back(child);
    }
  }
}

void UIView::tintColorDidChange() {}

void UIView::forgetTintColor() {
  if (storage_->tintColor) --ownTints;
}

Ref<UIView> UIView::snapshotViewAfterScreenUpdates(bool afterScreenUpdates) {
  if (afterScreenUpdates) layoutIfNeeded();
  auto picture = make<UIView>(frame());
  picture->setUserInteractionEnabled(false);
  picture->layer()->setContents(renderLayer(*layer(), bounds().size, UIScreen::main().scale()));
  // What is private in this view is so in its picture.
  const CGRect& own = layer()->bounds();
  const auto toPicture = CGAffineTransform::translation(-own.minX(), -own.minY());
  for (const CGRect& area : CaptureBlanking::areas(*layer(), toPicture, Clock::mediaTime())) {
    const Ref<CALayer> cover = CALayer::layer();
    cover->setFrame(area.intersection({CGPointZero, own.size}));
    cover->setHiddenFromCapture(true);
    picture->layer()->addSublayer(cover);
  }
  return picture;
}

// ---- Names

std::int64_t UIView::tag() const { return storage_->tag; }
void UIView::setTag(std::int64_t tag) { storage_->tag = tag; }

std::optional<std::string> UIView::accessibilityIdentifier() const {
  const std::string* const identifier = accessibilityIdentifier_.get();
  return identifier ? std::optional(*identifier) : std::nullopt;
}
void UIView::setAccessibilityIdentifier(std::optional<std::string> identifier) {
  const bool mightHoldName = mayHoldName();
  accessibilityIdentifier_ = identifier ? std::make_unique<std::string>(*std::move(identifier)) : nullptr;
  if (mayHoldName() == mightHoldName || !superview_) return;
  mightHoldName ? superview_->noteSubviewsChanged() : noteNameHere();
}
std::optional<std::string> UIView::accessibilityLabel() const { return storage_->accessibilityLabel; }
void UIView::setAccessibilityLabel(std::optional<std::string> label) {
  storage_->accessibilityLabel = std::move(label);
}

}  // namespace platform
