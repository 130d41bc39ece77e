#include "lumicor/screen/LumicorElementsTask.h"

#include <optional>
#include <unordered_set>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementKind.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UIScrollView.h"

namespace lumicor {

namespace {

constexpr std::string_view trackerViewIdentifier = "lumicorTrackerView";
constexpr std::string_view collectionMark = "LumicorCollectionView";
constexpr int mostTreeChanges = 1000;

/// Shared by all readings of the process, emptied by getAllElements.
LumicorScrollDetails& scrollRegistry() {
  static LumicorScrollDetails registry;
  return registry;
}

Ref<UIWindow> firstKeyWindow() {
  for (const Ref<UIWindow>& window : UIApplication::shared().windows()) {
    if (window->isKeyWindow()) return window;
  }
  return nullptr;
}

/// An element as it is read from the screen: what only a recorded action knows stays empty.
void appendElement(std::vector<LumicroElement>& elements, std::string&& identifier, CGPoint origin, CGSize size,
                   LumicorElementKind&& kind) {
  elements.emplace_back(std::move(identifier), "", LumicorUtils::truncated(origin.x), LumicorUtils::truncated(origin.y),
                        LumicorUtils::truncated(size.width), LumicorUtils::truncated(size.height), "", false, "", "",
                        std::move(kind.value), "Default", kind.type, kind.inputType);
}

/// The class name of the screen that a view belongs to, or none.
const std::string* owningScreenName(UIView& view) {
  for (Ref<UIResponder> at = view.nextResponder(); at; at = at->nextResponder()) {
    const auto* const controller = dynamic_cast<UIViewController*>(at.get());
    if (controller && !dynamic_cast<const UINavigationController*>(controller)) {
      return &NSStringFromClass(controller->classForCoder());
    }
  }
  return nullptr;
}

/// Where a scroll container of the current screen stands; none for other views and other screens, and for a content
/// that is pulled beyond its beginning.
std::optional<LumicorScrollView> scrollRecord(UIView& view) {
  if (!isScrollContainer(view)) return std::nullopt;
  const CGPoint offset = static_cast<UIScrollView&>(view).contentOffset();
  const std::int64_t x = LumicorUtils::truncated(offset.x);
  const std::int64_t y = LumicorUtils::truncated(offset.y);
  if (x < 0 || y < 0) return std::nullopt;
  const std::string* const screen = owningScreenName(view);
  if (!screen || *screen != Lumicor::shared().getCurrentView()) return std::nullopt;
  return LumicorScrollView{std::ssize(scrollRegistry()), x, y};
}

struct NamedView {
  UIView* view;
  std::string identifier;
};

/// The views that the host has named, depth first and back to front, a view before its subviews. Uses no stack for
/// depth. The tracker's own view is left out, what lies in it is not.
std::vector<NamedView> namedViews(UIView& root) {
  std::vector<NamedView> named;
  std::vector<UIView*> pending = {&root};
  while (!pending.empty()) {
    UIView& view = *pending.back();
    pending.pop_back();
    std::optional<std::string> identifier = view.accessibilityIdentifier();
    if (identifier && *identifier != trackerViewIdentifier) named.push_back({&view, *std::move(identifier)});
    const std::vector<Ref<UIView>>& subviews = view.subviews();
    for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) pending.push_back(subview->get());
  }
  return named;
}

/// Views that were read, by address alone: they may be gone. A new view in the place of one that is gone passes for it.
using ReadViews = std::unordered_set<const UIView*>;

/// What is left to read when classifying a view has changed the tree (a picker makes its rows when it is first asked
/// for one): the named views that there are now, without those that were read.
std::vector<NamedView> remainingViews(UIView& root, const ReadViews& done) {
  std::vector<NamedView> named = namedViews(root);
  std::erase_if(named, [&](const NamedView& found) { return done.contains(found.view); });
  return named;
}

/// One element for each named view, none without a key window. Scroll positions go to the registry.
std::vector<LumicroElement> readElements(UIView& root, const std::string& actionName) {
  std::vector<LumicroElement> elements;
  const Ref<UIWindow> window = firstKeyWindow();
  if (!window) return elements;
  const bool isCollection = actionName.find(collectionMark) != std::string::npos;
  LumicorScrollDetails& registry = scrollRegistry();
  ReadViews done;
  int treeChanges = 0;
  std::vector<NamedView> named = namedViews(root);
  elements.reserve(named.size());  // elements are large: they are made where they stay
  for (std::size_t i = 0; i < named.size();) {
    UIView& view = *named[i].view;
    const std::uint64_t changes = UIView::hierarchyChanges();
    const CGRect bounds = view.bounds();
    const CGPoint origin = view.convertRect(bounds, window.get()).origin;
    const auto record = scrollRecord(view);
    appendElement(elements, std::move(named[i].identifier), origin, bounds.size, elementKindOf(view));
    if (record) registry.insert_or_assign(elements.back().elementId(), *record);
    // Once more for every named view, so that its index tells how many there were before the last one.
    if (isCollection) registry.insert_or_assign(actionName, LumicorScrollView{std::ssize(registry), 0, 0});
    ++i;
    if (UIView::hierarchyChanges() == changes) continue;
    if (++treeChanges > mostTreeChanges) break;  // a host that adds views whenever it is asked for one
    for (std::size_t read = 0; read < i; ++read) done.insert(named[read].view);
    named = remainingViews(root, done);
    i = 0;
  }
  return elements;
}

}  // namespace

LumicorScreenElements LumicorElementsTask::traverseStoryboardView(const Ref<UIView>& view,
                                                                  std::string_view actionName) {
  std::vector<LumicroElement> elements = readElements(*view, std::string(actionName));
  return {std::move(elements), scrollRegistry()};
}

LumicorScreenElements LumicorElementsTask::getAllElements(const Ref<UIView>& view, std::string_view actionName) {
  scrollRegistry().clear();
  LumicorScreenElements screen = traverseStoryboardView(view, actionName);
  std::size_t regions = 0;
  for (const auto& [label, region] : Lumicor::shared().swiftUICoordinates()) {
    if (!region.isVisible) continue;
    // A region has no view of its own: it takes the kind and the scroll position of the whole screen's.
    appendElement(screen.elements, std::string(label), region.rect.origin, region.rect.size, elementKindOf(*view));
    if (const auto record = scrollRecord(*view)) screen.scrollDetails.try_emplace(label, *record);
    ++regions;
  }
  LumicorDebugHelper::log("SwiftUI elements added: " + std::to_string(regions));
  return screen;
}

}  // namespace lumicor
