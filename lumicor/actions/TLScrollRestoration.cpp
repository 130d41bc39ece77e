#include "lumicor/actions/TLScrollRestoration.h"

#include "lumicor/actions/TLPickerRow.h"
#include "lumicor/actions/TLStepTarget.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UITextView.h"

namespace lumicor {

namespace {

constexpr std::string_view collectionMark = "LumicorCollectionView";

template <class View>
bool isA(const UIView& view) {
  return dynamic_cast<const View*>(&view) != nullptr;
}

Ref<UIView> screenView() {
  const Ref<UIViewController> screen = Lumicor::shared().getCurrentViewController();
  return screen ? screen->view() : nullptr;
}

Ref<UIScrollView> scrollableNamed(const std::string& viewId) {
  for (const TLViewTest test : {&isA<UITableView>, &isA<UIScrollView>, &isA<UICollectionView>}) {
    if (const Ref<UIView> found = viewWithIdentifier(screenView(), viewId, test)) return as<UIScrollView>(found);
  }
  return nullptr;
}

/// "LumicorCollectionView-<identifier>-<section>-<item>": the item goes to the horizontal centre.
void scrollToCollectionItem(std::string_view viewId) {
  const std::vector<std::string_view> parts = partsAtDashes(viewId);
  if (parts.size() < 2) fatalError("a collection scroll target has fewer than two parts");
  const auto collection = as<UICollectionView>(viewWithIdentifier(screenView(), parts[1], &isA<UICollectionView>));
  if (!collection) return;
  if (parts.size() < 4) fatalError("a collection scroll target has fewer than four parts");
  const auto section = LumicorUtils::decimalInteger(parts[2]);
  const auto item = LumicorUtils::decimalInteger(parts[3]);
  if (!section || !item) return;
  collection->scrollToItem(IndexPath{*item, *section}, UICollectionViewScrollPosition::centeredHorizontally, false);
  collection->layoutIfNeeded();
}

}  // namespace

TLScrollOutcome restoreScrollPosition(const TLScrollActionDetails& details, const std::string& viewName) {
  const CGPoint offset{static_cast<double>(details.offsets.x), static_cast<double>(details.offsets.y)};
  if (const auto scrollable = scrollableNamed(details.viewId)) {
    scrollable->setContentOffset(offset, false);
    scrollable->layoutIfNeeded();  // what came into view has its cells before the target is looked up
    return TLScrollOutcome::restored;
  }
  if (const auto text = as<UITextView>(TLStepTarget::findView(details.viewId, viewName))) {
    text->setContentOffset(offset, false);
    return TLScrollOutcome::stalled;
  }
  if (details.viewId.find(collectionMark) == std::string::npos) return TLScrollOutcome::failed;
  scrollToCollectionItem(details.viewId);
  return TLScrollOutcome::restored;
}

}  // namespace lumicor
