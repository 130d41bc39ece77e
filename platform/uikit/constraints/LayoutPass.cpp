#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIViewStorage.h"

// The passes of ViewLayout: updateConstraints, solving, layoutSubviews. Trees may be of any depth, so nothing recurses.

namespace platform {

namespace {

/// Views that keep asking for layout while they are laid out are left waiting after so many rounds.
constexpr int roundLimit = 12;

bool waits(const UIViewLayoutStorage& storage) {
  return storage.needsLayout || storage.descendantNeedsLayout || storage.needsUpdateConstraints ||
         storage.descendantNeedsUpdateConstraints;
}

Ref<UIView> shared(UIView& view) { return std::static_pointer_cast<UIView>(view.weak_from_this().lock()); }

}  // namespace

bool ViewLayout::needsPass(const UIView& view) {
  if (waits(storageOf(view))) return true;
  const UIView& root = rootOf(const_cast<UIView&>(view));
  if (!storageOf(root).subtreeHasConstraints) return false;
  const ViewLayout* const state = ifAny(root);
  return !state || !state->engine_ || state->engine_->isDirty();
}

void ViewLayout::runPasses(UIView& view) {
  const UIView* const superview = superviewOf(view);
  if (!needsPass(view) && !(superview && storageOf(*superview).needsLayout)) return;
  const Ref<UIView> keeper = shared(view);
  const Ref<UIView> root = shared(rootOf(view));
  if (!root) return;  // it is being taken apart
  for (int round = 0; round < roundLimit; ++round) {
    updateConstraintsBelow(view);
    if (LayoutEngine* const engine = ensureEngine(*root)) engine->update();
    UIView* top = &view;
    for (UIView* above = superviewOf(view); above && storageOf(*above).needsLayout; above = superviewOf(*above)) {
      top = above;
    }
    if (!waits(storageOf(*top))) return;
    layOut(*root, *top);
    if (!needsPass(view)) return;
  }
  std::fprintf(stderr, "Layout of %s does not come to rest\n", view.description().c_str());
}

void ViewLayout::updateConstraintsBelow(UIView& view) {
  std::vector<Ref<UIView>> open{shared(view)};
  std::vector<Ref<UIView>> asked;  // superviews before their subviews
  while (!open.empty()) {
    const Ref<UIView> at = std::move(open.back());
    open.pop_back();
    UIViewLayoutStorage& storage = storageOf(*at);
    if (storage.needsUpdateConstraints) asked.push_back(at);
    storage.needsUpdateConstraints = false;
    if (!std::exchange(storage.descendantNeedsUpdateConstraints, false)) continue;
    for (const Ref<UIView>& subview : at->subviews_) {
      const UIViewLayoutStorage& below = storageOf(*subview);
      if (below.needsUpdateConstraints || below.descendantNeedsUpdateConstraints) open.push_back(subview);
    }
  }
  for (auto at = asked.rbegin(); at != asked.rend(); ++at) (*at)->updateConstraints();
}

void ViewLayout::layOut(UIView& root, UIView& top) {
  std::vector<Ref<UIView>> open{shared(top)};
  while (!open.empty()) {
    const Ref<UIView> view = std::move(open.back());
    open.pop_back();
    if (view.get() != &root && !superviewOf(*view)) continue;  // taken out by a layoutSubviews before
    UIViewLayoutStorage& storage = storageOf(*view);
    if (std::exchange(storage.needsLayout, false)) {
      const Ref<RootViewHost> host = view->storage_->host.lock();
      if (host) host->viewWillLayoutSubviews();
      view->layoutSubviews();
      if (host) host->viewDidLayoutSubviews();
    }
    if (!std::exchange(storage.descendantNeedsLayout, false)) continue;
    const auto& subviews = view->subviews_;
    for (auto at = subviews.rbegin(); at != subviews.rend(); ++at) {
      const UIViewLayoutStorage& below = storageOf(**at);
      if (below.needsLayout || below.descendantNeedsLayout) open.push_back(*at);
    }
  }
}

void ViewLayout::placeSubviews(UIView& view) {
  const auto isPlaced = [](const Ref<UIView>& subview) { return !storageOf(*subview).translatesAutoresizingMask; };
  const auto& all = view.subviews_;
  if (std::none_of(all.begin(), all.end(), isPlaced) && !view.sizesContentByConstraints()) return;
  LayoutEngine* const engine = ensureEngine(rootOf(view));
  if (!engine) return;
  engine->update();
  const std::vector<Ref<UIView>> subviews = all;
  for (const Ref<UIView>& subview : subviews) {
    if (!isPlaced(subview)) continue;
    const std::optional<CGRect> frame = engine->frameOf(*subview);
    if (frame && !LayoutEngine::isSame(*frame, plainFrame(*subview))) setPlainFrame(*subview, *frame);
  }
  if (const std::optional<CGSize> content = engine->contentSizeOf(view)) view.setContentSizeFromConstraints(*content);
}

}  // namespace platform
