#include "tools/inspect/Inspection.h"

#include <algorithm>
#include <iterator>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementsTask.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace inspect {

using namespace platform;
using namespace lumicor;

namespace {

using Elements = std::vector<LumicroElement>;

LumicroElement noElement() {
  return {
      "", "", 0, 0, 0, 0, "", false, "", "", "", "Default", LumicorType::TYPE_DEFAULT, LumicorInputType::TYPE_DEFAULT};
}

/// What shows in the window beside the screen's view: the other branches of every view above it, front ones last.
Elements elementsBeside(const UIView& screen) {
  Elements beside;
  if (!screen.window()) return beside;
  const CGRect window = screen.window()->bounds();
  const UIView* inside = &screen;
  for (Ref<UIView> outer = screen.superview(); outer; outer = outer->superview()) {
    for (const Ref<UIView>& branch : outer->subviews()) {
      if (branch.get() == inside || branch->isHidden() || branch->alpha() < 0.01) continue;
      Elements read = LumicorElementsTask::traverseStoryboardView(branch, "").elements;
      std::ranges::copy_if(read, std::back_inserter(beside), [&](const LumicroElement& element) {
        return window.intersects({static_cast<double>(element.x()), static_cast<double>(element.y()),
                                  static_cast<double>(element.width()), static_cast<double>(element.height())});
      });
    }
    inside = outer.get();
  }
  return beside;
}

/// An item stands for the button that was read in its place: the reading does not know items.
void appendButtons(Elements& elements, const std::vector<Ref<UIBarButtonItem>>& items) {
  for (const Ref<UIBarButtonItem>& item : items) {
    const Ref<UIView> view = item->view();
    if (!item->accessibilityIdentifier() || !view || !view->window()) continue;
    const CGRect frame = view->convertRect(view->bounds(), nullptr);
    LumicroElement element(*item->accessibilityIdentifier(), "", LumicorUtils::truncated(frame.minX()),
                           LumicorUtils::truncated(frame.minY()), LumicorUtils::truncated(frame.width()),
                           LumicorUtils::truncated(frame.height()), "", false, "", "", item->title().value_or(""),
                           "Default", LumicorType::TYPE_BAR_BUTTON_ITEM, LumicorInputType::TYPE_BAR_BUTTON_ITEM);
    std::erase_if(elements, [&](const LumicroElement& read) {
      return read.elementId() == element.elementId() && read.x() == element.x() && read.y() == element.y();
    });
    elements.push_back(std::move(element));
  }
}

Elements elementsAround(UIViewController& screen) {
  Elements around = elementsBeside(*screen.view());
  const auto navigation = screen.navigationController();
  if (!navigation) return around;
  if (const auto item = navigation->navigationBar()->topItem(); item && !navigation->isNavigationBarHidden()) {
    appendButtons(around, item->leftBarButtonItems());
    appendButtons(around, item->rightBarButtonItems());
  }
  if (!navigation->isToolbarHidden()) appendButtons(around, navigation->toolbar()->items());
  return around;
}

const LumicroElement* named(const Elements& elements, const std::string& identifier) {
  const auto found = std::ranges::find(elements, identifier, &LumicroElement::elementId);
  return found == elements.end() ? nullptr : &*found;
}

}  // namespace

std::optional<Inspection> inspectionOf(const Ref<UIViewController>& screen, const std::string& acted) {
  const std::string viewName = NSStringFromClass(screen->classForCoder());
  Lumicor::shared().setCurrentView(viewName);
  LumicorScreenElements read = LumicorElementsTask::getAllElements(screen->view(), "inspect");
  Elements around = elementsAround(*screen);
  LumicroElement actionElement = noElement();
  if (!acted.empty()) {
    const LumicroElement* element = named(read.elements, acted);
    if (!element) element = named(around, acted);
    if (!element) return std::nullopt;
    actionElement = *element;
  }
  const CGSize size = screen->view()->bounds().size;
  return Inspection{{viewName,
                     LumicorUtils::truncated(size.height),
                     LumicorUtils::truncated(size.width),
                     LumicorUtils::getViewOrientation(),
                     std::move(read.elements),
                     {},
                     std::move(actionElement),
                     std::move(read.scrollDetails),
                     "Default",
                     "Default",
                     0},
                    std::move(around)};
}

}  // namespace inspect
