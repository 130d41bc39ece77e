#include "lumicor/screen/LumicorElementsTask.h"

#include <optional>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementKind.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIViewController.h"

namespace lumicor {

namespace {

constexpr std::string_view trackerViewIdentifier = "lumicorTrackerView";
constexpr std::string_view collectionMark = "LumicorCollectionView";
constexpr std::size_t expectedElements = 64;

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
void appendElement(std::vector<LumicroElement>& elements, std::string identifier, CGPoint origin, CGSize size,
                   LumicorElementKind kind) {
  elements.emplace_back(std::move(identifier), std::string(), LumicorUtils::truncated(origin.x),
                        LumicorUtils::truncated(origin.y), LumicorUtils::truncated(size.width),
                        LumicorUtils::truncated(size.height), std::string(), false, std::string(), std::string(),
                        std::move(kind.value), std::string("Default"), kind.type, kind.inputType);
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

/// One reading of one tree.
class Traversal {
 public:
  explicit Traversal(std::string_view actionName)
      : window_(firstKeyWindow()),
        actionName_(actionName),
        isCollection_(actionName.find(collectionMark) != actionName.npos) {
    elements_.reserve(expectedElements);
  }

  std::vector<LumicroElement> read(UIView& root) {
    std::vector<UIView*> pending = {&root};
    while (!pending.empty()) {
      UIView& view = *pending.back();
      pending.pop_back();
      if (window_) visit(view);
      const std::vector<Ref<UIView>>& subviews = view.subviews();
      for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) pending.push_back(subview->get());
    }
    return std::move(elements_);
  }

 private:
  void visit(UIView& view) {
    std::optional<std::string> identifier = view.accessibilityIdentifier();
    if (!identifier || *identifier == trackerViewIdentifier) return;
    const CGRect bounds = view.bounds();
    const CGRect inWindow = view.convertRect(bounds, window_.get());
    appendElement(elements_, *std::move(identifier), inWindow.origin, bounds.size, elementKindOf(view));
    if (auto record = scrollRecord(view)) {
      scrollRegistry().insert_or_assign(elements_.back().elementId(), *record);
    }
    if (isCollection_) {
      LumicorScrollDetails& registry = scrollRegistry();
      registry.insert_or_assign(actionName_, LumicorScrollView{std::ssize(registry), 0, 0});
    }
  }

  Ref<UIWindow> window_;
  std::string actionName_;
  bool isCollection_;
  std::vector<LumicroElement> elements_;
};

}  // namespace

LumicorScreenElements LumicorElementsTask::traverseStoryboardView(const Ref<UIView>& view,
                                                                  std::string_view actionName) {
  std::vector<LumicroElement> elements = Traversal(actionName).read(*view);
  return {std::move(elements), scrollRegistry()};
}

LumicorScreenElements LumicorElementsTask::getAllElements(const Ref<UIView>& view, std::string_view actionName) {
  scrollRegistry().clear();
  LumicorScreenElements screen = traverseStoryboardView(view, actionName);
  std::size_t regions = 0;
  for (const auto& [label, region] : Lumicor::shared().swiftUICoordinates()) {
    if (!region.isVisible) continue;
    // A region has no view of its own: it takes the kind and the scroll position of the whole screen's.
    appendElement(screen.elements, label, region.rect.origin, region.rect.size, elementKindOf(*view));
    if (const auto record = scrollRecord(*view)) screen.scrollDetails.try_emplace(label, *record);
    ++regions;
  }
  LumicorDebugHelper::log("SwiftUI elements added: " + std::to_string(regions));
  return screen;
}

}  // namespace lumicor
