#include "platform/uikit/constraints/ViewLayout.h"

#include <algorithm>

#include "platform/animation/FrameClock.h"
#include "platform/uikit/constraints/AutoresizingMask.h"
#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/views/UIViewStorage.h"

namespace platform {

ViewLayout::ViewLayout() = default;

ViewLayout::~ViewLayout() {
  engine_.reset();
  for (const auto& constraint : constraints_) constraint->holder_ = nullptr;
  for (const auto& guide : guides_) guide->view_ = nullptr;
  if (safeAreaGuide_) safeAreaGuide_->view_ = nullptr;
  if (marginsGuide_) marginsGuide_->view_ = nullptr;
}

// ---- Where things are

UIViewLayoutStorage& ViewLayout::storageOf(const UIView& view) { return view.storage_->layout; }

ViewLayout& ViewLayout::of(UIView& view) {
  auto& state = storageOf(view).state;
  if (!state) state = std::make_shared<ViewLayout>();
  return *state;
}

ViewLayout* ViewLayout::ifAny(const UIView& view) { return storageOf(view).state.get(); }
UIView* ViewLayout::superviewOf(const UIView& view) { return view.superview_; }

UIView& ViewLayout::rootOf(UIView& view) {
  UIView* at = &view;
  while (UIView* const above = superviewOf(*at)) at = above;
  return *at;
}

UIView* ViewLayout::commonAncestor(UIView& a, UIView& b) {
  const auto depthOf = [](const UIView* view) {
    std::size_t depth = 0;
    while ((view = superviewOf(*view))) ++depth;
    return depth;
  };
  UIView* first = &a;
  UIView* second = &b;
  std::size_t firstDepth = depthOf(first);
  std::size_t secondDepth = depthOf(second);
  for (; firstDepth > secondDepth; --firstDepth) first = superviewOf(*first);
  for (; secondDepth > firstDepth; --secondDepth) second = superviewOf(*second);
  while (first != second) {
    first = superviewOf(*first);
    second = superviewOf(*second);
  }
  return first;
}

LayoutEngine* ViewLayout::engineOf(UIView& view) {
  const UIView& root = rootOf(view);
  if (!storageOf(root).subtreeHasConstraints) return nullptr;
  const ViewLayout* const state = ifAny(root);
  return state ? state->engine_.get() : nullptr;
}

LayoutEngine* ViewLayout::ensureEngine(UIView& root) {
  if (!storageOf(root).subtreeHasConstraints) return nullptr;
  ViewLayout& state = of(root);
  if (!state.engine_) {
    state.engine_ = std::make_unique<LayoutEngine>(root);
    state.engine_->adopt(root);
  }
  return state.engine_.get();
}

CGRect ViewLayout::plainFrame(const UIView& view) {
  const CALayer& layer = *view.layer_;
  const CGSize size = layer.bounds().size;
  const CGPoint anchor = layer.anchorPoint();
  const CGPoint position = layer.position();
  return {position.x - size.width * anchor.x, position.y - size.height * anchor.y, size.width, size.height};
}

void ViewLayout::setPlainFrame(UIView& view, CGRect frame) {
  const CGRect bounds = view.bounds();
  const CGPoint anchor = view.layer_->anchorPoint();
  if (bounds.size != frame.size) view.setBounds({bounds.origin, frame.size});
  view.setCenter({frame.origin.x + frame.size.width * anchor.x, frame.origin.y + frame.size.height * anchor.y});
}

// ---- Marks

void ViewLayout::wake(const UIView& view) {
  if (view.storage_->window) FrameClock::shared().setNeedsFrame();
}

void ViewLayout::markNeedsLayout(UIView& view) {
  storageOf(view).needsLayout = true;
  for (UIView* at = superviewOf(view); at && !storageOf(*at).descendantNeedsLayout; at = superviewOf(*at)) {
    storageOf(*at).descendantNeedsLayout = true;
  }
  wake(view);
}

void ViewLayout::markNeedsUpdateConstraints(UIView& view) {
  storageOf(view).needsUpdateConstraints = true;
  UIView* at = superviewOf(view);
  for (; at && !storageOf(*at).descendantNeedsUpdateConstraints; at = superviewOf(*at)) {
    storageOf(*at).descendantNeedsUpdateConstraints = true;
  }
  wake(view);
}

// ---- Hooks

void ViewLayout::didChangeGeometry(UIView& view, CGSize oldSize) {
  if (LayoutEngine* const engine = engineOf(view)) engine->frameDidChange(view);
  const CGSize size = view.layer_->bounds().size;
  if (size == oldSize) return;
  markNeedsLayout(view);
  resizeSubviews(view, oldSize);
}

void ViewLayout::resizeSubviews(UIView& view, CGSize oldSize) {
  const CGSize size = view.layer_->bounds().size;
  const std::vector<Ref<UIView>> subviews = view.subviews_;
  for (const Ref<UIView>& subview : subviews) {
    const UIViewLayoutStorage& storage = storageOf(*subview);
    if (storage.autoresizingMask == UIViewAutoresizing::none || !storage.translatesAutoresizingMask) continue;
    CGRect frame = plainFrame(*subview);
    const auto resize = [&](bool vertical, double& before, double& length, double oldLength, double newLength) {
      const auto share =
          autoresizingShare(storage.autoresizingMask, vertical, before, length, oldLength - before - length);
      before += share.before * (newLength - oldLength);
      length += share.size * (newLength - oldLength);
    };
    resize(false, frame.origin.x, frame.size.width, oldSize.width, size.width);
    resize(true, frame.origin.y, frame.size.height, oldSize.height, size.height);
    setPlainFrame(*subview, frame);
  }
}

void ViewLayout::willLeaveSuperview(UIView& view) {
  for (UIView* holder = superviewOf(view); holder; holder = superviewOf(*holder)) {
    const ViewLayout* const state = ifAny(*holder);
    if (!state || state->constraints_.empty()) continue;
    std::vector<Ref<NSLayoutConstraint>> cut;
    for (const auto& constraint : state->constraints_) {
      if (constraint->speaksOfViewIn(view)) cut.push_back(constraint);
    }
    for (const auto& constraint : cut) constraint->setActive(false);
  }
  if (LayoutEngine* const engine = engineOf(view)) engine->drop(view);
}

void ViewLayout::didEnterSuperview(UIView& view) {
  UIView& superview = *superviewOf(view);
  if (ViewLayout* const state = ifAny(view)) state->engine_.reset();
  if (storageOf(view).subtreeHasConstraints) {
    for (UIView* at = &superview; at && !storageOf(*at).subtreeHasConstraints; at = superviewOf(*at)) {
      storageOf(*at).subtreeHasConstraints = true;
    }
    if (LayoutEngine* const engine = engineOf(view)) engine->adopt(view);
  }
  const UIViewLayoutStorage& storage = storageOf(view);
  if (storage.needsUpdateConstraints || storage.descendantNeedsUpdateConstraints) {
    for (UIView* at = &superview; at && !storageOf(*at).descendantNeedsUpdateConstraints; at = superviewOf(*at)) {
      storageOf(*at).descendantNeedsUpdateConstraints = true;
    }
  }
  if (storage.needsLayout || storage.descendantNeedsLayout) {
    for (UIView* at = &superview; at && !storageOf(*at).descendantNeedsLayout; at = superviewOf(*at)) {
      storageOf(*at).descendantNeedsLayout = true;
    }
  }
  markNeedsLayout(superview);
}

void ViewLayout::didChangeSafeArea(UIView& view) {
  // Looking for the engine climbs the tree: not for views whose guides nobody asked for.
  const ViewLayout* const state = ifAny(view);
  if (!state || (!state->safeAreaGuide_ && !state->marginsGuide_)) return;
  if (LayoutEngine* const engine = engineOf(view)) engine->insetsDidChange(view);
}

// ---- Constraints and guides of a view

void ViewLayout::hold(UIView& holder, const Ref<NSLayoutConstraint>& constraint) {
  of(holder).constraints_.push_back(constraint);
  for (UIView* at = &holder; at && !storageOf(*at).subtreeHasConstraints; at = superviewOf(*at)) {
    storageOf(*at).subtreeHasConstraints = true;
  }
  if (LayoutEngine* const engine = engineOf(holder)) {
    engine->addConstraint(constraint);
    wake(holder);
  } else {
    markNeedsLayout(holder);
  }
}

void ViewLayout::letGo(UIView& holder, NSLayoutConstraint& constraint) {
  auto& all = of(holder).constraints_;
  const auto at = std::find_if(all.begin(), all.end(), [&](const auto& held) { return held.get() == &constraint; });
  if (at == all.end()) return;
  const Ref<NSLayoutConstraint> keeper = std::move(*at);
  all.erase(at);
  if (LayoutEngine* const engine = engineOf(holder)) engine->removeConstraint(constraint);
  wake(holder);
}

void ViewLayout::constantDidChange(UIView& holder, NSLayoutConstraint& constraint) {
  if (LayoutEngine* const engine = engineOf(holder)) engine->constantDidChange(constraint);
  wake(holder);
}

void ViewLayout::priorityDidChange(UIView& holder, NSLayoutConstraint& constraint) {
  if (LayoutEngine* const engine = engineOf(holder)) engine->priorityDidChange(constraint);
  wake(holder);
}

void ViewLayout::addGuide(UIView& view, const Ref<UILayoutGuide>& guide) {
  if (!guide || guide->view_ == &view) return;
  if (guide->view_) removeGuide(*guide->view_, guide);
  guide->view_ = &view;
  of(view).guides_.push_back(guide);
}

void ViewLayout::removeGuide(UIView& view, const Ref<UILayoutGuide>& guide) {
  if (!guide || guide->view_ != &view) return;
  const Ref<UILayoutGuide> keeper = guide;
  for (UIView* holder = &view; holder; holder = superviewOf(*holder)) {
    const ViewLayout* const state = ifAny(*holder);
    if (!state) continue;
    std::vector<Ref<NSLayoutConstraint>> cut;
    for (const auto& constraint : state->constraints_) {
      if (constraint->firstItem() == keeper || constraint->secondItem() == keeper) cut.push_back(constraint);
    }
    for (const auto& constraint : cut) constraint->setActive(false);
  }
  if (LayoutEngine* const engine = engineOf(view)) engine->dropGuide(*keeper);
  std::erase(of(view).guides_, keeper);
  keeper->view_ = nullptr;
}

UIEdgeInsets ViewLayout::insetsOf(UIView& view, bool safeArea) {
  const UIEdgeInsets safe = view.safeAreaInsets();
  if (safeArea) return safe;
  const UIEdgeInsets& margins = storageOf(view).layoutMargins;
  return {safe.top + margins.top, safe.left + margins.left, safe.bottom + margins.bottom, safe.right + margins.right};
}

Ref<UILayoutGuide>& ViewLayout::ownGuide(Ref<UILayoutGuide>& guide, UIView& view, bool safeArea) {
  if (!guide) {
    guide = make<UILayoutGuide>(safeArea ? UILayoutGuide::Source::safeArea : UILayoutGuide::Source::margins);
    guide->view_ = &view;
  }
  return guide;
}

std::vector<Ref<UILayoutGuide>> ViewLayout::insetGuides() const {
  std::vector<Ref<UILayoutGuide>> made;
  if (safeAreaGuide_) made.push_back(safeAreaGuide_);
  if (marginsGuide_) made.push_back(marginsGuide_);
  return made;
}

Ref<UILayoutGuide> ViewLayout::safeAreaGuide(UIView& view) {
  ViewLayout& state = of(view);
  return state.ownGuide(state.safeAreaGuide_, view, true);
}

Ref<UILayoutGuide> ViewLayout::marginsGuide(UIView& view) {
  ViewLayout& state = of(view);
  return state.ownGuide(state.marginsGuide_, view, false);
}

}  // namespace platform
