#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/TableChanges.h"

namespace platform {

/// The cells that a table or a collection shows, by path. Main thread.
template <class Cell>
class VisibleCells : public std::map<IndexPath, Ref<Cell>> {
 public:
  /// None for one that is not shown.
  Ref<Cell> cellAt(IndexPath path) const {
    const auto found = this->find(path);
    return found == this->end() ? nullptr : found->second;
  }
  std::optional<IndexPath> pathOf(const Ref<Cell>& cell) const {
    for (const auto& [path, shown] : *this) {
      if (cell && shown == cell) return path;
    }
    return std::nullopt;
  }

  using Leaving = std::vector<std::pair<Ref<Cell>, IndexPath>>;
  /// Gives the cells their new paths. Those whose rows are gone, or are replaced, leave: they come back with their old
  /// paths.
  Leaving carry(const TableChanges& changes) {
    Leaving leaving;
    VisibleCells carried;
    for (const auto& [path, cell] : *this) {
      const std::optional<IndexPath> now = changes.newPath(path);
      if (now && !changes.isReloaded(path)) {
        carried[*now] = cell;
      } else {
        leaving.emplace_back(cell, path);
      }
    }
    *this = std::move(carried);
    return leaving;
  }
};

}  // namespace platform
