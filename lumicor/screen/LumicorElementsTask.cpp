#include "lumicor/screen/LumicorElementsTask.h"

#include <array>
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
#include "platform/uikit/views/NamedViewWalk.h"

namespace lumicor {

namespace {

constexpr std::string_view trackerViewIdentifier = "lumicorTrackerView";
constexpr std::string_view collectionMark = "LumicorCollectionView";
constexpr int mostTreeChanges = 1000;

/// Shared by all readings of the process, emptied by getAllElements.
struct ScrollRegistry {
  LumicorScrollDetails details;
  LumicorScrollDetails::iterator next = details.end();  ///< behind the last one: names often come in order

  void clear() {
    details.clear();
    next = details.end();
  }
  std::int64_t count() const { return std::ssize(details); }
  void set(const std::string& name, const LumicorScrollView& record) {
    next = std::next(details.insert_or_assign(next, name, record));
  }
};

ScrollRegistry& scrollRegistry() {
  static ScrollRegistry registry;
  return registry;
}

Ref<UIWindow> firstKeyWindow() {
  for (const Ref<UIWindow>& window : UIApplication::shared().windows()) {
    if (window->isKeyWindow()) return window;
  }
  return nullptr;
}

void appendElement(std::vector<LumicroElement>& elements, std::string&& identifier, CGPoint origin, CGSize size,
                   LumicorElementKind&& kind) {
  elements.emplace_back(std::move(identifier), LumicorUtils::truncated(origin.x), LumicorUtils::truncated(origin.y),
                        LumicorUtils::truncated(size.width), LumicorUtils::truncated(size.height),
                        std::move(kind.value), kind.type, kind.inputType);
}

/// Which screen views belong to, for as long as no tree changes: what lies inside a view whose screen is known is
/// answered by that view. A few are remembered, the latest.
class OwningScreens {
 public:
  /// The class name of the view's screen, or none.
  const std::string* nameFor(UIView& view) {
    if (changes_ != UIView::hierarchyChanges()) known_ = {};
    changes_ = UIView::hierarchyChanges();
    passed_.clear();
    if (view.answersAsItIs()) passed_.push_back(&view);
    const std::string* const name = search(view.nextResponder());
    // The nearest last: the next one who asks is likely to be inside it.
    for (auto at = passed_.rbegin(); at != passed_.rend(); ++at) place(*at) = {*at, name};
    return name;
  }

 private:
  struct Known {
    const UIResponder* view = nullptr;
    const std::string* name = nullptr;
  };
  Known& place(const UIResponder* view) {
    return known_[(reinterpret_cast<std::uintptr_t>(view) >> 6) % known_.size()];
  }

  const std::string* search(Ref<UIResponder> at) {
    for (; at; at = at->nextResponder()) {
      if (const Known& known = place(at.get()); known.view == at.get()) return known.name;
      const auto* const view = dynamic_cast<const UIView*>(at.get());
      const auto* const controller = view ? nullptr : dynamic_cast<const UIViewController*>(at.get());
      if (controller && !dynamic_cast<const UINavigationController*>(controller)) {
        return &NSStringFromClass(controller->classForCoder());
      }
      if (view && view->answersAsItIs()) {
        passed_.push_back(view);
      } else {
        passed_.clear();  // it may send the next one who asks elsewhere
      }
    }
    return nullptr;
  }

  std::array<Known, 61> known_;
  std::vector<const UIResponder*> passed_;
  std::uint64_t changes_ = 0;
};

/// Where a scroll container of the current screen stands; none for other views and other screens, and for a content
/// that is pulled beyond its beginning.
std::optional<LumicorScrollView> scrollRecord(UIView& view, OwningScreens& screens) {
  if (!isScrollContainer(view)) return std::nullopt;
  const CGPoint offset = static_cast<UIScrollView&>(view).contentOffset();
  const std::int64_t x = LumicorUtils::truncated(offset.x);
  const std::int64_t y = LumicorUtils::truncated(offset.y);
  if (x < 0 || y < 0) return std::nullopt;
  const std::string* const screen = screens.nameFor(view);
  if (!screen || *screen != Lumicor::shared().getCurrentView()) return std::nullopt;
  return LumicorScrollView{scrollRegistry().count(), x, y};
}

/// One reading of a tree. Scroll positions go to the registry.
class Reading {
 public:
  Reading(UIView& root, std::string_view actionName)
      : root_(root),
        actionName_(actionName),
        isCollection_(actionName.find(collectionMark) != std::string_view::npos) {}

  /// One element for each named view, none without a key window. Asking a view may change the tree (a picker makes its
  /// rows when it is first asked for one): then the tree is gone through again for what is left of it.
  std::vector<LumicroElement> elements() && {
    window_ = firstKeyWindow();
    if (!window_) return {};
    elements_.reserve(expectedElements);  // elements are large: most are made where they stay
    read_.reserve(expectedElements);
    for (int treeChanges = 0; !readOnce(); ++treeChanges) {
      if (treeChanges < mostTreeChanges) continue;
      readWhatIsInHand();
      break;
    }
    expectedElements = elements_.size();
    if (elements_.capacity() > 2 * elements_.size()) elements_.shrink_to_fit();
    return std::move(elements_);
  }

 private:
  /// False when the tree changed and there may be more to read.
  bool readOnce() {
    done_.insert(read_.begin(), read_.end());
    read_.clear();
    NamedViewWalk walk(root_);
    while (UIView* const view = walk.next()) {
      if (!done_.empty() && done_.contains(view->serialNumber())) continue;
      read_.push_back(view->serialNumber());
      read(*view, walk.name());
    }
    return !walk.isCutShort();
  }

  /// A host that changes the screen whenever it is asked would be asked without end.
  void readWhatIsInHand() {
    LumicorDebugHelper::log("The screen kept changing while it was read: what comes to it from here on is left out");
    done_.insert(read_.begin(), read_.end());
    std::vector<std::pair<Ref<NSObject>, std::string>> left;
    NamedViewWalk walk(root_);
    while (UIView* const view = walk.next()) {
      if (!done_.contains(view->serialNumber())) left.emplace_back(view->shared_from_this(), walk.name());
    }
    for (const auto& [view, name] : left) read(static_cast<UIView&>(*view), name);
  }

  void read(UIView& view, const std::string& name) {
    if (name == trackerViewIdentifier) return;
    std::string identifier = name;  // the view may be renamed while it is asked
    const CGRect bounds = view.bounds();
    const CGPoint origin = view.convertRect(bounds, window_.get()).origin;
    const auto record = scrollRecord(view, screens_);
    appendElement(elements_, std::move(identifier), origin, bounds.size, elementKindOf(view));
    ScrollRegistry& registry = scrollRegistry();
    if (record) registry.set(elements_.back().elementId(), *record);
    // Once more for every named view, so that its index tells how many there were before the last one.
    if (isCollection_) registry.set(actionName_, {registry.count(), 0, 0});
  }

  static inline std::size_t expectedElements = 0;  ///< as many as the last time

  UIView& root_;
  const std::string actionName_;
  const bool isCollection_;
  Ref<UIWindow> window_;
  OwningScreens screens_;
  std::vector<LumicroElement> elements_;
  std::vector<std::uint64_t> read_;         ///< serial numbers of the views read since the tree last changed
  std::unordered_set<std::uint64_t> done_;  ///< and of those before
};

}  // namespace

LumicorScreenElements LumicorElementsTask::traverseStoryboardView(const Ref<UIView>& view,
                                                                  std::string_view actionName) {
  std::vector<LumicroElement> elements = Reading(*view, actionName).elements();
  return {std::move(elements), scrollRegistry().details};
}

LumicorScreenElements LumicorElementsTask::getAllElements(const Ref<UIView>& view, std::string_view actionName) {
  scrollRegistry().clear();
  LumicorScreenElements screen = traverseStoryboardView(view, actionName);
  OwningScreens screens;
  std::size_t regions = 0;
  for (const auto& [label, region] : Lumicor::shared().swiftUICoordinates()) {
    if (!region.isVisible) continue;
    // A region has no view of its own: it takes the kind and the scroll position of the whole screen's.
    appendElement(screen.elements, std::string(label), region.rect.origin, region.rect.size, elementKindOf(*view));
    if (const auto record = scrollRecord(*view, screens)) screen.scrollDetails.try_emplace(label, *record);
    ++regions;
  }
  LumicorDebugHelper::log("SwiftUI elements added: " + std::to_string(regions));
  return screen;
}

}  // namespace lumicor
