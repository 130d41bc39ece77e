// The façade's entry points for selections: what a host tells of its lists is registered like what the hooks see.

#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UITableView.h"

namespace lumicor {

std::string collectionActionName(const std::string& identifier, std::int64_t sections, const IndexPath& indexPath) {
  if (sections == 0) return "collectionView";
  return "LumicorCollectionView-" + identifier + "-" + std::to_string(indexPath.section()) + "-" +
         std::to_string(indexPath.item());
}

void Lumicor::didSelectRow(const Ref<UITableView>& tableView, const IndexPath& indexPath) {
  if (!isInitialized_ || !isTracking) return;
  if (const auto cell = tableView->cellForRowAtIndexPath(indexPath))
    LumicorTrackingTask::registerUserAction("tableView", cell);
}

void Lumicor::didSelectItem(const Ref<UICollectionView>& collectionView, const IndexPath& indexPath) {
  if (!isInitialized_ || !isTracking) return;
  const auto cell = collectionView->cellForItemAtIndexPath(indexPath);
  const std::optional<std::string> identifier = collectionView->accessibilityIdentifier();
  if (!cell || !identifier) return;
  LumicorTrackingTask::registerUserAction(
      collectionActionName(*identifier, collectionView->numberOfSections(), indexPath), cell);
}

}  // namespace lumicor
