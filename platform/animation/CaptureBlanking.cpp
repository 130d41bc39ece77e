#include "platform/animation/CaptureBlanking.h"

#include <algorithm>

#include "platform/animation/CALayer.h"
#include "platform/animation/LayerCompositor.h"

namespace platform {

std::vector<CGRect> CaptureBlanking::areas(const CALayer& root, const CGAffineTransform& rootToPixels,
                                           double mediaTime) {
  std::vector<CGRect> areas;
  if (CALayer::layersHiddenFromCapture().empty()) return areas;
  for (const CALayer* above = root.owner(); above; above = above->owner()) {
    if (above->hiddenFromCapture_) return {rootToPixels.apply(root.bounds()).integral()};
  }
  for (const CALayer* const layer : CALayer::layersHiddenFromCapture()) {
    const CGRect area = areaOf(*layer, root, rootToPixels, mediaTime);
    if (!area.isEmpty()) areas.push_back(area);
  }
  return areas;
}

CGRect CaptureBlanking::areaOf(const CALayer& layer, const CALayer& root, const CGAffineTransform& rootToPixels,
                               double mediaTime) {
  std::vector<const CALayer*> way;  // from the layer up
  for (const CALayer* at = &layer; at != &root; at = at->superlayer()) {
    if (!at) return {};
    way.push_back(at);
  }
  way.push_back(&root);
  CGAffineTransform parentToPixels = rootToPixels;
  std::optional<CGRect> clip;
  bool isMoving = false;
  for (auto at = way.rbegin(); at != way.rend(); ++at) {
    const CALayer& model = **at;
    const Ref<CALayer> presented = model.hasAnimations() ? model.presentationAt(mediaTime) : nullptr;
    const CALayer& shown = presented ? *presented : model;
    if (model.isHidden() || shown.opacity() <= 0) return {};
    if (&model == &layer) break;
    isMoving = isMoving || presented;
    if (&model != &root) parentToPixels = LayerCompositor::place(shown, parentToPixels, isMoving);
    if (!shown.masksToBounds()) continue;
    const CGRect inside = parentToPixels.apply(shown.bounds());
    clip = clip ? clip->intersection(inside) : inside;
  }
  const CGRect own = &layer == &root ? rootToPixels.apply(root.bounds())
                                     : LayerCompositor(mediaTime).areaOf(layer, parentToPixels, isMoving);
  const CGRect seen = clip ? own.intersection(*clip) : own;
  // Edges of half-covered pixels belong to it.
  return seen.isEmpty() ? CGRect() : seen.insetBy(-1, -1).integral();
}

void CaptureBlanking::blank(Bitmap& bitmap, const std::vector<CGRect>& areas) {
  const CGRect all(0, 0, bitmap.width(), bitmap.height());
  for (const CGRect& area : areas) {
    const CGRect part = area.intersection(all);
    for (int y = static_cast<int>(part.minY()); y < static_cast<int>(part.maxY()); ++y) {
      std::fill(bitmap.row(y) + static_cast<int>(part.minX()), bitmap.row(y) + static_cast<int>(part.maxX()),
                0xff000000u);
    }
  }
}

}  // namespace platform
