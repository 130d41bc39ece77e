#include "platform/uikit/lists/ScrollIndicators.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/animation/CATransaction.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/lists/UIScrollView.h"

namespace platform {

namespace {

constexpr double thickness = 3;
constexpr double margin = 3;        // from the edge, and at both ends
constexpr double shortest = 36;     // of a bar while the content is in range
constexpr double shortestBent = 8;  // of a bar that the content pulled beyond its edge presses together
constexpr double visibleSeconds = 0.6;
constexpr double fadeSeconds = 0.25;

struct Bar {
  double start = 0;
  double length = 0;
};

/// The bar along one side: `at` is the offset in the content, `room` what is visible of `content` points.
Bar barAlong(double at, double room, double content) {
  const double track = room - 2 * margin;
  if (content <= room + 0.5 || track <= shortest) return {};
  double length = std::max(shortest, track * room / content);
  const double beyond = std::max({0.0, -at, at + room - content});
  length = std::max(shortestBent, length - beyond);
  const double part = std::clamp(at / (content - room), 0.0, 1.0);
  return {margin + (track - length) * part, length};
}

}  // namespace

CGRect ScrollIndicators::verticalBar(const Place& place) {
  const double room = place.bounds.size.height - place.insets.top - place.insets.bottom;
  const Bar bar = barAlong(place.bounds.origin.y + place.insets.top, room, place.contentSize.height);
  if (bar.length <= 0) return {};
  return {place.bounds.maxX() - place.insets.right - margin - thickness,
          place.bounds.origin.y + place.insets.top + bar.start, thickness, bar.length};
}

CGRect ScrollIndicators::horizontalBar(const Place& place) {
  const double room = place.bounds.size.width - place.insets.left - place.insets.right;
  const Bar bar = barAlong(place.bounds.origin.x + place.insets.left, room, place.contentSize.width);
  if (bar.length <= 0) return {};
  return {place.bounds.origin.x + place.insets.left + bar.start,
          place.bounds.maxY() - place.insets.bottom - margin - thickness, bar.length, thickness};
}

void ScrollIndicators::ensureLayers(UIScrollView& view) {
  for (Ref<CALayer>* bar : {&vertical_, &horizontal_}) {
    if (*bar) continue;
    *bar = CALayer::layer();
    (*bar)->setCornerRadius(thickness / 2);
    (*bar)->setBackgroundColor(UIColor(0, 0, 0, 0.35));
    (*bar)->setOpacity(0);
  }
  const auto& layers = view.layer()->sublayers();
  const std::size_t count = layers.size();
  if (count >= 2 && layers[count - 1] == horizontal_ && layers[count - 2] == vertical_) return;
  view.layer()->addSublayer(vertical_);
  view.layer()->addSublayer(horizontal_);
}

void ScrollIndicators::show(UIScrollView& view, const Place& place) {
  const bool vertically = showsVertical && !verticalBar(place).isEmpty();
  const bool horizontally = showsHorizontal && !horizontalBar(place).isEmpty();
  if (!vertically && !horizontally) return;
  ensureLayers(view);
  CATransaction::begin();
  CATransaction::setDisableActions(true);
  vertical_->setOpacity(vertically ? 1 : 0);
  horizontal_->setOpacity(horizontally ? 1 : 0);
  const bool appears = !std::exchange(visible_, true);
  if (appears) follow(view, place);  // at once where they belong, whatever moves around them
  CATransaction::commit();
  if (!appears) follow(view, place);
  fadeLater();
}

void ScrollIndicators::follow(UIScrollView& view, const Place& place) {
  if (!visible_) return;
  ensureLayers(view);
  vertical_->setFrame(verticalBar(place));
  horizontal_->setFrame(horizontalBar(place));
}

void ScrollIndicators::fadeLater() {
  if (fading_) fading_->cancel();
  // The layers are shared: the work holds them, not this object.
  fading_ =
      DispatchQueue::main().asyncAfter(visibleSeconds, [bars = std::array<Weak<CALayer>, 2>{vertical_, horizontal_}] {
        CATransaction::begin();
        CATransaction::setAnimationDuration(fadeSeconds);
        for (const Weak<CALayer>& weak : bars) {
          if (const Ref<CALayer> bar = weak.lock()) bar->setOpacity(0);
        }
        CATransaction::commit();
      });
}

}  // namespace platform
