#pragma once

#include <optional>
#include <set>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/TableChanges.h"

namespace platform {

/// Which rows of a table or items of a collection are chosen. Main thread.
class ListSelection {
 public:
  bool allows = true;
  bool allowsMultiple = false;

  bool contains(IndexPath path) const { return paths_.contains(path); }
  std::vector<IndexPath> paths() const { return {paths_.begin(), paths_.end()}; }
  std::optional<IndexPath> first() const { return paths_.empty() ? std::nullopt : std::optional(*paths_.begin()); }
  void insert(IndexPath path) { paths_.insert(path); }
  /// False when it was not chosen.
  bool erase(IndexPath path) { return paths_.erase(path) > 0; }
  void clear() { paths_.clear(); }

  /// What must go before this one is chosen; without one, everything.
  std::vector<IndexPath> others(std::optional<IndexPath> chosen) const {
    std::vector<IndexPath> found;
    if (chosen && allowsMultiple) return found;
    for (const IndexPath path : paths_) {
      if (path != chosen) found.push_back(path);
    }
    return found;
  }
  /// What is chosen stays chosen where it goes; what is deleted is chosen no more.
  void follow(const TableChanges& changes) {
    std::set<IndexPath> now;
    for (const IndexPath path : paths_) {
      if (const std::optional<IndexPath> to = changes.newPath(path)) now.insert(*to);
    }
    paths_ = std::move(now);
  }

 private:
  std::set<IndexPath> paths_;
};

}  // namespace platform
