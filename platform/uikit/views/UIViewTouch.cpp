#include <algorithm>

#include "platform/uikit/touch/GestureEnvironment.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UIViewStorage.h"

// What a finger meets: hit testing, gesture recognisers, the responder chain.

namespace platform {

namespace {

/// A view below this opacity takes no touches.
constexpr double leastVisibleAlpha = 0.01;

bool takesTouchAt(const UIView& view, CGPoint point, const Ref<UIEvent>& event) {
  return !view.isHidden() && view.alpha() >= leastVisibleAlpha && view.isUserInteractionEnabled() &&
         view.pointInside(point, event);
}

/// Levels of views that hitTest calls go down before the search goes on without calls, and so without asking overridden
/// hitTest members. No interface built by people is that deep.
constexpr int deepestCalls = 400;
int hitTestDepth = 0;

/// hitTest of the base class for a tree of any depth.
Ref<UIView> searchBelow(const Ref<UIView>& root, CGPoint rootPoint, const Ref<UIEvent>& event) {
  struct Level {
    Ref<UIView> view;
    CGPoint point;
    std::size_t next;  // subviews before this one are still to be looked at, front first
  };
  if (!takesTouchAt(*root, rootPoint, event)) return nullptr;
  std::vector<Level> path{{root, rootPoint, root->subviews().size()}};
  while (path.back().next > 0) {
    Level& level = path.back();
    const auto& children = level.view->subviews();
    level.next = std::min(level.next, children.size());
    if (level.next == 0) break;
    const Ref<UIView> child = children[--level.next];
    const CGPoint point = child->layer()->transformToSuperlayer().inverted().apply(level.point);
    if (takesTouchAt(*child, point, event)) path.push_back({child, point, child->subviews().size()});
  }
  return path.back().view;
}

}  // namespace

bool UIView::isUserInteractionEnabled() const { return storage_->userInteractionEnabled; }
void UIView::setUserInteractionEnabled(bool enabled) { storage_->userInteractionEnabled = enabled; }
bool UIView::isMultipleTouchEnabled() const { return storage_->multipleTouchEnabled; }
void UIView::setMultipleTouchEnabled(bool enabled) { storage_->multipleTouchEnabled = enabled; }

bool UIView::pointInside(CGPoint point, const Ref<UIEvent>&) const { return bounds().contains(point); }

Ref<UIView> UIView::hitTest(CGPoint point, const Ref<UIEvent>& event) {
  if (hitTestDepth >= deepestCalls) return searchBelow(self(), point, event);
  if (!takesTouchAt(*this, point, event)) return nullptr;
  const auto children = subviews();
  ++hitTestDepth;
  Ref<UIView> hit;
  for (auto child = children.rbegin(); child != children.rend() && !hit; ++child) {
    hit = (*child)->hitTest((*child)->layer()->transformToSuperlayer().inverted().apply(point), event);
  }
  --hitTestDepth;
  return hit ? hit : self();
}

// ---- Gestures

void UIView::addGestureRecognizer(const Ref<UIGestureRecognizer>& recognizer) {
  if (!recognizer || recognizer->view_ == this) return;
  if (const Ref<UIView> other = recognizer->view()) other->removeGestureRecognizer(recognizer);
  storage_->gestureRecognizers.push_back(recognizer);
  recognizer->view_ = this;
}

void UIView::removeGestureRecognizer(const Ref<UIGestureRecognizer>& recognizer) {
  if (!recognizer || recognizer->view_ != this) return;
  const Ref<UIGestureRecognizer> keeper = recognizer;
  std::erase(storage_->gestureRecognizers, keeper);
  keeper->view_ = nullptr;
  GestureEnvironment::shared().stop(keeper);
}

const std::vector<Ref<UIGestureRecognizer>>& UIView::gestureRecognizers() const { return storage_->gestureRecognizers; }

Ref<UIView> UITouch::view() const { return std::static_pointer_cast<UIView>(view_.lock()); }

Ref<UIView> UIGestureRecognizer::view() const {
  return view_ ? std::static_pointer_cast<UIView>(view_->weak_from_this().lock()) : nullptr;
}

bool UIView::gestureRecognizerShouldBegin(const Ref<UIGestureRecognizer>& recognizer) {
  if (recognizer->view_ == this || !claimsTaps()) return true;
  const auto tap = as<UITapGestureRecognizer>(recognizer);
  return !tap || tap->numberOfTapsRequired() > 1 || tap->numberOfTouchesRequired() > 1;
}

// ---- Responder

Ref<UIResponder> UIView::nextResponder() {
  if (Ref<RootViewHost> host = storage_->host.lock()) return host;
  return superview();
}

bool UIView::becomeFirstResponder() { return isFirstResponder() || (window() && UIResponder::becomeFirstResponder()); }

bool UIView::endEditing(bool force) {
  const Ref<UIResponder> responder = UIResponder::firstResponder();
  const auto editing = as<UIView>(responder);
  if (!editing || !editing->isDescendantOfView(this)) return true;
  if (editing->resignFirstResponder()) return true;
  if (force) dropFirstResponder();
  return force;
}

}  // namespace platform
