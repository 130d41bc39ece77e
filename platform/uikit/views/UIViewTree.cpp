#include <algorithm>

#include "platform/uikit/touch/GestureEnvironment.h"
#include "platform/uikit/touch/TouchDispatcher.h"
#include "platform/uikit/views/LayoutHost.h"
#include "platform/uikit/views/UIViewStorage.h"

// The tree: who is in whom, who is in which window. Trees may be of any depth, so nothing here recurses.

namespace platform {

namespace {

Ref<UIView> shared(UIView* view) {
  return view ? std::static_pointer_cast<UIView>(view->weak_from_this().lock()) : nullptr;
}

/// Subviews of views that are going away, waiting to be let go one after the other.
std::vector<Ref<UIView>>* orphans = nullptr;

}  // namespace

UIView::~UIView() {
  for (const Ref<UIGestureRecognizer>& recognizer : storage_->gestureRecognizers) recognizer->view_ = nullptr;
  layer_->setDelegate(nullptr);
  forgetTintColor();

  std::vector<Ref<UIView>> own;
  const bool isFirst = orphans == nullptr;
  if (isFirst) orphans = &own;
  for (Ref<UIView>& child : subviews_) {
    if (child.use_count() > 1) {
      LayoutHost::shared().willLeaveSuperview(*child);
      hierarchyChanged();
    }
    child->superview_ = nullptr;
    orphans->push_back(std::move(child));
  }
  subviews_.clear();
  if (!isFirst) return;
  while (!own.empty()) {
    const Ref<UIView> orphan = std::move(own.back());
    own.pop_back();
    if (orphan.use_count() > 1) {  // somebody keeps it: it lives on outside any window
      orphan->layer_->removeFromSuperlayer();
      orphan->enterWindow(nullptr);
    }
  }
  orphans = nullptr;
}

Ref<UIView> UIView::superview() const { return shared(superview_); }
const std::vector<Ref<UIView>>& UIView::subviews() const { return subviews_; }

Ref<UIWindow> UIView::window() const { return storage_->window ? storage_->window->hostWindow() : nullptr; }

Ref<UIView> UIView::windowView() const { return storage_->window ? storage_->window->hostWindowView() : nullptr; }

bool UIView::isDescendantOfView(const UIView* view) const {
  const UIView* at = this;
  while (at && at != view) at = at->superview_;
  return at != nullptr && view != nullptr;
}

Ref<UIView> UIView::viewWithTag(std::int64_t tag) {
  std::vector<UIView*> open{this};
  while (!open.empty()) {
    UIView* const view = open.back();
    open.pop_back();
    if (view->storage_->tag == tag) return shared(view);
    const auto& children = view->subviews();
    for (auto child = children.rbegin(); child != children.rend(); ++child) open.push_back(child->get());
  }
  return nullptr;
}

// ---- Adding, moving, removing

void UIView::addSubview(const Ref<UIView>& view) { insertSubview(view, subviews_.size()); }

void UIView::insertSubview(const Ref<UIView>& view, std::size_t index) {
  if (!view) return;
  if (view.get() == this || (!view->subviews_.empty() && isDescendantOfView(view.get()))) {
    fatalError("a view cannot become a subview of itself");
  }
  const Ref<UIView> keeper = view;  // the caller's reference may be the old superview's own
  const Ref<UIView> newSuperview = self();
  if (keeper->superview_ == this) {
    keeper->moveInto(*this, index);
    return;
  }

  const Ref<UIWindow> newWindow = window();
  const bool changesWindow = keeper->storage_->window != storage_->window;
  if (const Ref<UIView> old = keeper->superview()) old->willRemoveSubview(keeper);
  keeper->willMoveToSuperview(newSuperview);
  if (changesWindow) keeper->announceWindow(newWindow);
  keeper->detach();
  keeper->moveInto(*this, index);
  LayoutHost::shared().didEnterSuperview(*keeper);
  keeper->enterWindow(storage_->window);
  keeper->updateSafeAreaInsets();
  keeper->didMoveToSuperview();
  didAddSubview(keeper);
  keeper->inheritTintColor();
}

void UIView::insertSubviewBelow(const Ref<UIView>& view, const Ref<UIView>& sibling) {
  const auto& all = subviews_;
  const auto place = std::find(all.begin(), all.end(), sibling);
  if (place == all.end() || view == sibling) return;
  insertSubview(view, static_cast<std::size_t>(place - all.begin()));
}

void UIView::insertSubviewAbove(const Ref<UIView>& view, const Ref<UIView>& sibling) {
  const auto& all = subviews_;
  const auto place = std::find(all.begin(), all.end(), sibling);
  if (place == all.end() || view == sibling) return;
  insertSubview(view, static_cast<std::size_t>(place - all.begin()) + 1);
}

void UIView::bringSubviewToFront(const Ref<UIView>& view) {
  if (view && view->superview_ == this) insertSubview(view, subviews_.size());
}

void UIView::sendSubviewToBack(const Ref<UIView>& view) {
  if (view && view->superview_ == this) insertSubview(view, 0);
}

int UIView::frontLevel() const { return storage_->frontLevel; }

void UIView::setFrontLevel(int level) {
  if (storage_->frontLevel == level) return;
  storage_->frontLevel = level;
  if (const Ref<UIView> around = superview()) around->bringSubviewToFront(self());
}

/// The place nearest to `index` that keeps the subviews in the order of their levels. The view itself is not among
/// them.
std::size_t UIView::placeByLevel(std::size_t index, int level) const {
  const auto levelAt = [this](std::size_t place) { return subviews_[place]->storage_->frontLevel; };
  std::size_t end = subviews_.size();
  while (end > 0 && levelAt(end - 1) > level) --end;
  index = std::min(index, end);
  while (index < end && levelAt(index) < level) ++index;
  return index;
}

void UIView::removeFromSuperview() {
  const Ref<UIView> old = superview();
  if (!old) return;
  const Ref<UIView> keeper = self();
  old->willRemoveSubview(keeper);
  willMoveToSuperview(nullptr);
  if (storage_->window) announceWindow(nullptr);
  detach();
  enterWindow(nullptr);
  updateSafeAreaInsets();
  didMoveToSuperview();
  inheritTintColor();
}

// ---- Names below

/// To be called when this view may hold a name that it did not hold there before.
void UIView::noteNameHere() {
  for (UIView* above = superview_; above; above = above->superview_) {
    const bool isKnownAbove = above->mayHoldName();
    above->namesBelow_ |= namesUncertain;
    if (isKnownAbove) return;
  }
}

/// To be called when a subview came, went, changed its place or lost its last name.
void UIView::noteSubviewsChanged() {
  if (namesBelow_ != 0) namesBelow_ |= namesUncertain;
}

void UIView::findNamesBelow() {
  const std::size_t groupSize = (subviews_.size() + nameGroups - 1) / nameGroups;
  namesBelow_ = 0;
  firstNamed_ = nullptr;
  for (std::size_t i = 0; i < subviews_.size(); ++i) {
    if (!subviews_[i]->mayHoldName()) continue;
    namesBelow_ |= std::uint64_t{1} << (i / groupSize);
    if (!firstNamed_) firstNamed_ = subviews_[i].get();
  }
  if (!mayHoldName() && superview_) superview_->noteSubviewsChanged();
}

/// Takes the view out of its superview's lists, and nothing more.
void UIView::detach() {
  UIView* const old = superview_;
  if (!old) return;
  hierarchyChanged();
  const Ref<UIView> keeper = self();
  LayoutHost::shared().willLeaveSuperview(*this);
  superview_ = nullptr;
  std::erase(old->subviews_, keeper);
  old->noteSubviewsChanged();
  layer_->removeFromSuperlayer();
}

/// Puts the view in front of `index` of the subviews that are there, its layer at the fitting place among theirs.
void UIView::moveInto(UIView& superview, std::size_t index) {
  hierarchyChanged();
  const Ref<UIView> keeper = self();
  auto& all = superview.subviews_;
  index = std::min(index, all.size());
  if (const auto old = std::find(all.begin(), all.end(), keeper); old != all.end()) {
    if (static_cast<std::size_t>(old - all.begin()) < index) --index;
    all.erase(old);
  }
  index = superview.placeByLevel(index, storage_->frontLevel);
  all.insert(all.begin() + static_cast<std::ptrdiff_t>(index), keeper);
  superview_ = &superview;
  superview.noteSubviewsChanged();
  if (mayHoldName()) noteNameHere();

  const Ref<CALayer>& layer = storage_->layer;
  if (index + 1 < all.size()) {
    superview.layer_->insertSublayerBelow(layer, all[index + 1]->layer_);
  } else if (index > 0) {
    superview.layer_->insertSublayerAbove(layer, all[index - 1]->layer_);
  } else {
    superview.layer_->addSublayer(layer);
  }
}

// ---- Windows

namespace {

/// The view and everything below it, superviews before their subviews, kept alive.
std::vector<Ref<UIView>> wholeTree(const Ref<UIView>& root) {
  std::vector<Ref<UIView>> views{root};
  for (std::size_t i = 0; i < views.size(); ++i) {
    const auto children = views[i]->subviews();
    views.insert(views.end(), children.begin(), children.end());
  }
  return views;
}

}  // namespace

/// Tells the whole tree below that it is about to go to a window, or to none.
void UIView::announceWindow(const Ref<UIWindow>& window) {
  for (const Ref<UIView>& view : wholeTree(self())) {
    view->willMoveToWindow(window);
    if (const Ref<RootViewHost> host = view->storage_->host.lock()) host->viewWillMoveToWindow(window);
  }
}

/// Makes the window that of the whole tree below, and lets touches, gestures and editing go that belonged to the old.
void UIView::enterWindow(WindowHost* window) {
  if (storage_->window == window) return;
  const bool leaves = storage_->window != nullptr;
  const std::vector<Ref<UIView>> views = wholeTree(self());
  for (const Ref<UIView>& view : views) view->storage_->window = window;
  for (const Ref<UIView>& view : views) {
    if (view->storage_->window != window) continue;  // moved on by a hook below
    if (leaves) view->leaveWindow();
    view->didMoveToWindow();
    if (const Ref<RootViewHost> host = view->storage_->host.lock()) host->viewDidMoveToWindow(view->window());
  }
}

void UIView::leaveWindow() {
  TouchDispatcher::shared().viewLeftWindow(*this);
  const auto recognizers = storage_->gestureRecognizers;
  for (const Ref<UIGestureRecognizer>& recognizer : recognizers) GestureEnvironment::shared().stop(recognizer);
  if (isFirstResponder()) dropFirstResponder();
}

void UIView::willMoveToSuperview(const Ref<UIView>&) {}
void UIView::didAddSubview(const Ref<UIView>&) {}
void UIView::willRemoveSubview(const Ref<UIView>&) {}
void UIView::willMoveToWindow(const Ref<UIWindow>&) {}

}  // namespace platform
