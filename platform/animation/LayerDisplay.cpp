#include "platform/animation/LayerDisplay.h"

#include <cmath>

#include "platform/animation/CALayer.h"
#include "platform/animation/CaptureBlanking.h"
#include "platform/animation/FrameClock.h"
#include "platform/animation/LayerAnimations.h"
#include "platform/animation/LayerCompositor.h"
#include "platform/dispatch/Clock.h"
#include "platform/engine/Engine.h"
#include "platform/graphics/UIImage.h"
#include "platform/runtime/FatalError.h"

namespace platform {

LayerDisplay::LayerDisplay(Ref<CALayer> root, CGSize size, double scale)
    : root_(std::move(root)),
      size_(size),
      scale_(scale),
      bitmap_(static_cast<int>(std::lround(size.width * scale)), static_cast<int>(std::lround(size.height * scale))) {
  if (root_->display_) fatalError("a layer tree can have one display at a time");
  root_->display_ = this;
  FrameClock::shared().setNeedsFrame();
}

LayerDisplay::~LayerDisplay() { root_->display_ = nullptr; }

void LayerDisplay::rootChanged() {
  if (!isUpdating_) FrameClock::shared().setNeedsFrame();
}

void LayerDisplay::invalidate() {
  everything_ = true;
  rootChanged();
}

bool LayerDisplay::needsUpdate() const {
  return everything_ || !moving_.empty() || root_->changed_ || root_->subtreeChanged_;
}

CGAffineTransform LayerDisplay::rootToPixels() const {
  const CGPoint origin = root_->bounds().origin;
  return CGAffineTransform::translation(-origin.x, -origin.y).then(CGAffineTransform::scale(scale_, scale_));
}

/// True when the root's background leaves nothing of what was there: clearing the place first would be work for
/// nothing.
bool LayerDisplay::rootCovers(const CGRect& pixels) const {
  const CALayer& root = *root_;
  const std::optional<UIColor>& color = root.backgroundColor();
  const bool isOpaque = color && color->alpha() >= 1 && root.opacity() >= 1;
  const bool isWhole = root.cornerRadius() <= 0 && !root.mask() && !root.isHidden() && !root.hasAnimations();
  return isOpaque && isWhole && rootToPixels().apply(root.bounds()).contains(pixels);
}

std::vector<CGRect> LayerDisplay::areasHiddenFromCapture() const {
  return CaptureBlanking::areas(*root_, rootToPixels(), mediaTime_);
}

CGRect LayerDisplay::update() {
  isUpdating_ = true;
  mediaTime_ = Clock::mediaTime();
  root_->displayIfNeeded();
  for (const Weak<CALayer>& moving : moving_) {
    if (const Ref<CALayer> layer = moving.lock()) layer->changed();
  }
  moving_.clear();
  const CGRect all(0, 0, bitmap_.width(), bitmap_.height());
  dirty_ = {};
  collect(*root_, {rootToPixels(), all, everything_, false});
  if (everything_) dirty_ = all;
  everything_ = false;
  // Edges of half-covered pixels belong to what changed.
  const CGRect dirty = dirty_.isEmpty() ? CGRect() : dirty_.insetBy(-1, -1).integral().intersection(all);
  if (!dirty.isEmpty()) {
    if (!rootCovers(dirty)) {
      bitmap_.clear(static_cast<int>(dirty.minX()), static_cast<int>(dirty.minY()), static_cast<int>(dirty.width()),
                    static_cast<int>(dirty.height()));
    }
    const std::unique_ptr<Canvas> canvas = Engine::shared().makeCanvas(bitmap_);
    canvas->clip(dirty);
    if (!root_->isHidden()) LayerCompositor(mediaTime_).paintRoot(*canvas, *root_, rootToPixels(), dirty);
  }
  isUpdating_ = false;
  if (!moving_.empty()) FrameClock::shared().setNeedsFrame();
  return dirty;
}

void LayerDisplay::collect(CALayer& layer, const Visit& visit) {
  if (!layer.changed_ && !layer.subtreeChanged_ && !visit.isParentChanged) return;
  const bool isChanged = layer.changed_ || visit.isParentChanged;
  const bool isNews = layer.changed_ && !visit.isParentChanged;  // else the parent counts it in
  layer.changed_ = layer.subtreeChanged_ = false;
  dirty_ = dirty_.unionWith(layer.vacatedBounds_);
  layer.vacatedBounds_ = {};
  if (isNews) dirty_ = dirty_.unionWith(layer.shownBounds_);
  layer.shownBounds_ = {};
  if (layer.isHidden() || visit.depth > LayerCompositor::deepestLevel) return;

  const bool isMoving = noteMoving(layer) || visit.isParentMoving;
  if (layer.mask_) noteMask(*layer.mask_);
  Ref<CALayer> presented;
  if (layer.hasAnimations()) presented = layer.presentationAt(mediaTime_);
  const CALayer& shown = presented ? *presented : layer;
  const CGAffineTransform toPixels =
      &layer == root_.get() ? visit.parentToPixels : LayerCompositor::place(shown, visit.parentToPixels, isMoving);
  CGRect area = LayerCompositor::ownArea(shown, toPixels).intersection(visit.clip);
  CGRect clip = visit.clip;
  if (shown.masksToBounds()) clip = clip.intersection(toPixels.apply(shown.bounds()));
  for (const Ref<CALayer>& sublayer : layer.sublayers_) {
    collect(*sublayer, {toPixels, clip, isChanged, isMoving, visit.depth + 1});
    area = area.unionWith(sublayer->shownBounds_);
  }
  layer.shownBounds_ = area;
  if (isNews) dirty_ = dirty_.unionWith(area);
}

bool LayerDisplay::noteMoving(CALayer& layer) {
  const bool isPlaying = layer.contents() && !layer.contents()->images().empty();
  const bool isAnimated = layer.hasAnimations() && layer.animations_->isMoving(mediaTime_);
  if (isPlaying || isAnimated) moving_.push_back(std::static_pointer_cast<CALayer>(layer.shared_from_this()));
  return layer.hasAnimations();
}

void LayerDisplay::noteMask(CALayer& mask) {
  mask.changed_ = mask.subtreeChanged_ = false;
  noteMoving(mask);
  for (const Ref<CALayer>& sublayer : mask.sublayers_) noteMask(*sublayer);
}

}  // namespace platform
