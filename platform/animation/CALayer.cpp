#include "platform/animation/CALayer.h"

#include <algorithm>

#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CATransaction.h"
#include "platform/animation/LayerAnimations.h"
#include "platform/animation/LayerDisplay.h"
#include "platform/dispatch/Clock.h"
#include "platform/graphics/DrawingRecord.h"
#include "platform/graphics/UIImage.h"
#include "platform/runtime/FatalError.h"

namespace platform {

CALayer::CALayer() = default;

namespace {

/// Layers below ones that are going away, waiting to be let go one after the other: trees may be of any depth.
std::vector<Ref<CALayer>>* orphans = nullptr;

}  // namespace

CALayer::~CALayer() {
  if (hiddenFromCapture_) std::erase(layersHiddenFromCapture(), this);
  std::vector<Ref<CALayer>> own;
  const bool isFirst = orphans == nullptr;
  if (isFirst) orphans = &own;
  for (Ref<CALayer>& sublayer : sublayers_) {
    sublayer->superlayer_ = nullptr;
    orphans->push_back(std::move(sublayer));
  }
  sublayers_.clear();
  if (mask_) {
    mask_->maskedLayer_ = nullptr;
    orphans->push_back(std::move(mask_));
  }
  if (!isFirst) return;
  while (!own.empty()) {
    const Ref<CALayer> orphan = std::move(own.back());
    own.pop_back();
  }
  orphans = nullptr;
}

// ---- Changes

AnimatableValue CALayer::valueBeforeChange(const char* keyPath) const {
  if (!keyPath || !CATransaction::currentAction()) return {};
  return hasAnimations() ? presentationLayer()->valueForKeyPath(keyPath) : valueForKeyPath(keyPath);
}

void CALayer::didChange(const char* keyPath, const AnimatableValue& from) {
  const CATransaction::Action* const action = keyPath ? CATransaction::currentAction() : nullptr;
  if (!action) return changed();
  // Without a value to go to it goes to the layer's own, wherever that is moved meanwhile.
  auto animation = make<CABasicAnimation>(keyPath);
  animation->setFromValue(from);
  animation->setDuration(action->duration);
  animation->setBeginTime(Clock::mediaTime() + action->delay);
  animation->setTimingFunction(action->timing);
  animation->setRepeatCount(action->repeatCount);
  animation->setAutoreverses(action->autoreverses);
  animation->setFillMode(CAMediaTimingFillMode::backwards);
  addAnimation(animation, keyPath);
}

void CALayer::changed() {
  ++layerChanges_;
  changed_ = true;
  CALayer* layer = this;
  while (CALayer* const above = layer->owner()) {
    above->subtreeChanged_ = true;
    if (layer->maskedLayer_) above->changed_ = true;
    layer = above;
  }
  if (layer->display_) layer->display_->rootChanged();
}

// ---- Look

void CALayer::setBackgroundColor(std::optional<UIColor> color) {
  change(state_, &State::backgroundColor, std::move(color), "backgroundColor");
}
void CALayer::setCornerRadius(double radius) { change(state_, &State::cornerRadius, radius, "cornerRadius"); }
void CALayer::setCornerCurve(CALayerCornerCurve curve) { change(state_, &State::cornerCurve, curve, nullptr); }
void CALayer::setBorderWidth(double width) { change(state_, &State::borderWidth, width, "borderWidth"); }
void CALayer::setBorderColor(const UIColor& color) { change(state_, &State::borderColor, color, "borderColor"); }
void CALayer::setOpacity(double opacity) { change(state_, &State::opacity, std::clamp(opacity, 0.0, 1.0), "opacity"); }
void CALayer::setHidden(bool hidden) { change(state_, &State::hidden, hidden, nullptr); }
std::vector<const CALayer*>& CALayer::layersHiddenFromCapture() {
  static auto* const layers = new std::vector<const CALayer*>;
  return *layers;
}
void CALayer::setHiddenFromCapture(bool hidden) {
  if (hidden == hiddenFromCapture_) return;
  hiddenFromCapture_ = hidden;
  hidden ? layersHiddenFromCapture().push_back(this) : static_cast<void>(std::erase(layersHiddenFromCapture(), this));
  changed();
}
void CALayer::setMasksToBounds(bool masks) { change(state_, &State::masksToBounds, masks, nullptr); }
void CALayer::setShadowOpacity(double opacity) { change(state_, &State::shadowOpacity, opacity, "shadowOpacity"); }
void CALayer::setShadowRadius(double radius) { change(state_, &State::shadowRadius, radius, "shadowRadius"); }
void CALayer::setShadowOffset(CGSize offset) { change(state_, &State::shadowOffset, offset, "shadowOffset"); }
void CALayer::setShadowColor(const UIColor& color) { change(state_, &State::shadowColor, color, "shadowColor"); }
void CALayer::setShadowPath(std::optional<CGPath> path) {
  change(state_, &State::shadowPath, std::move(path), nullptr);
}
void CALayer::setContentsGravity(CALayerContentsGravity gravity) {
  change(state_, &State::contentsGravity, gravity, nullptr);
}

void CALayer::setContents(Ref<UIImage> image) {
  if (state_.contents == image) return;
  state_.contentsStart = Clock::mediaTime();
  change(state_, &State::contents, std::move(image), nullptr);
}

void CALayer::setMask(Ref<CALayer> mask) {
  if (mask == mask_) return;
  if (mask_) mask_->maskedLayer_ = nullptr;
  if (mask) {
    mask->removeFromSuperlayer();
    if (mask->maskedLayer_) mask->maskedLayer_->setMask(nullptr);
    for (const CALayer* above = this; above; above = above->owner()) {
      if (above == mask.get()) fatalError("a layer cannot mask itself");
    }
    mask->maskedLayer_ = this;
  }
  mask_ = std::move(mask);
  changed();
}

// ---- Tree

void CALayer::insertSublayer(const Ref<CALayer>& layer, std::size_t index) {
  if (!layer) return;
  for (const CALayer* above = this; above; above = above->owner()) {
    if (above == layer.get()) fatalError("a layer cannot be put into itself");
  }
  const Ref<CALayer> keeper = layer;  // it may be an element of the list that it leaves
  keeper->removeFromSuperlayer();
  if (keeper->maskedLayer_) keeper->maskedLayer_->setMask(nullptr);
  const auto place = static_cast<std::ptrdiff_t>(std::min(index, sublayers_.size()));
  sublayers_.insert(sublayers_.begin() + place, keeper);
  keeper->superlayer_ = this;
  if (keeper->needsDisplay_ || keeper->subtreeNeedsDisplay_) {
    for (CALayer* above = this; above; above = above->owner()) above->subtreeNeedsDisplay_ = true;
  }
  keeper->changed();
}

void CALayer::insertSublayerBelow(const Ref<CALayer>& layer, const CALayer* sibling) {
  if (layer.get() == sibling) return;
  layer->removeFromSuperlayer();
  const auto found = std::find_if(sublayers_.begin(), sublayers_.end(),
                                  [&](const Ref<CALayer>& known) { return known.get() == sibling; });
  insertSublayer(layer, static_cast<std::size_t>(found - sublayers_.begin()));
}

void CALayer::insertSublayerAbove(const Ref<CALayer>& layer, const CALayer* sibling) {
  if (layer.get() == sibling) return;
  layer->removeFromSuperlayer();
  const auto found = std::find_if(sublayers_.begin(), sublayers_.end(),
                                  [&](const Ref<CALayer>& known) { return known.get() == sibling; });
  insertSublayer(layer, static_cast<std::size_t>(found - sublayers_.begin()) + 1);
}

void CALayer::removeFromSuperlayer() {
  if (superlayer_) superlayer_->detach(*this);
}

void CALayer::detach(CALayer& sublayer) {
  const auto found = std::find_if(sublayers_.begin(), sublayers_.end(),
                                  [&](const Ref<CALayer>& known) { return known.get() == &sublayer; });
  if (found == sublayers_.end()) return;
  // What it covered shows again; nothing else of this layer changes.
  vacatedBounds_ = vacatedBounds_.unionWith(sublayer.shownBounds_);
  sublayer.changed();
  sublayer.shownBounds_ = {};
  sublayer.superlayer_ = nullptr;
  const Ref<CALayer> keeper = std::move(*found);
  sublayers_.erase(found);
}

const CALayer& CALayer::root() const {
  const CALayer* layer = this;
  while (const CALayer* const above = layer->owner()) layer = above;
  return *layer;
}

// ---- Animation

void CALayer::addAnimation(const Ref<CAAnimation>& animation, const std::string& key) {
  if (!animation) return;
  const Ref<NSObject> keeper = shared_from_this();
  if (!animations_) animations_ = std::make_unique<LayerAnimations>(*this);
  animations_->add(animation, key);
  changed();
}

bool CALayer::hasAnimations() const { return animations_ && !animations_->isEmpty(); }

Ref<CAAnimation> CALayer::animationForKey(const std::string& key) const {
  return animations_ ? animations_->find(key) : nullptr;
}

std::vector<std::string> CALayer::animationKeys() const {
  return animations_ ? animations_->keys() : std::vector<std::string>();
}

void CALayer::removeAnimationForKey(const std::string& key) {
  const Ref<NSObject> keeper = shared_from_this();
  if (animations_) animations_->remove(key);
  changed();
}

void CALayer::removeAllAnimations() {
  const Ref<NSObject> keeper = shared_from_this();
  if (animations_) animations_->removeAll();
  changed();
}

Ref<CALayer> CALayer::presentationAt(std::optional<double> mediaTime) const {
  Ref<CALayer> copy = copyForPresentation();
  if (animations_) animations_->apply(mediaTime ? *mediaTime : Clock::mediaTime(), *copy);
  return copy;
}

Ref<CALayer> CALayer::copyForPresentation() const {
  auto copy = make<CALayer>();
  copyStateTo(*copy);
  return copy;
}

void CALayer::copyStateTo(CALayer& other) const {
  other.state_ = state_;
  other.drawing_ = drawing_;
  other.name_ = name_;
}

}  // namespace platform
