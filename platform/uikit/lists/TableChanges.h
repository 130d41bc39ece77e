#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "platform/foundation/IndexPath.h"

namespace platform {

/// A batch of changes to sections and rows, and where everything goes through it. Deleted, reloaded and moved-away
/// paths count as before the changes, inserted and moved-to paths as after them. Used by tables and collections. Main
/// thread.
class TableChanges {
 public:
  std::set<std::int64_t> deletedSections;
  std::set<std::int64_t> insertedSections;
  std::set<std::int64_t> reloadedSections;
  std::set<IndexPath> deleted;
  std::set<IndexPath> inserted;
  std::set<IndexPath> reloaded;
  std::map<IndexPath, IndexPath> moved;

  bool isEmpty() const;
  /// Reloads and moves expressed once as what they mean; then the changes fit the counts before and after, or they do
  /// not (then nobody may ask where anything goes).
  bool fit(const std::vector<std::int64_t>& before, const std::vector<std::int64_t>& after);

  std::optional<std::int64_t> newSection(std::int64_t old) const;
  std::optional<std::int64_t> oldSection(std::int64_t now) const;
  /// Where a row goes; none when it is deleted.
  std::optional<IndexPath> newPath(IndexPath old) const;
  /// Where a row comes from; none when it is inserted.
  std::optional<IndexPath> oldPath(IndexPath now) const;
  bool isReloaded(IndexPath old) const { return reloaded.contains(old); }
  /// Rows that leave an old section and rows that come to a new one, in order.
  const std::vector<std::int64_t>& rowsGone(std::int64_t oldSection) const { return goneFrom(oldSection).gone; }
  const std::vector<std::int64_t>& rowsCome(std::int64_t newSection) const { return comeTo(newSection).come; }

 private:
  void prepare();
  static std::optional<std::int64_t> forward(std::int64_t index, const std::vector<std::int64_t>& gone,
                                             const std::vector<std::int64_t>& come);
  struct Rows {
    std::vector<std::int64_t> gone;
    std::vector<std::int64_t> come;
  };
  const Rows& goneFrom(std::int64_t oldSection) const;
  const Rows& comeTo(std::int64_t newSection) const;

  std::vector<std::int64_t> sectionsGone_;
  std::vector<std::int64_t> sectionsCome_;
  std::map<std::int64_t, Rows> gone_;  // by old section
  std::map<std::int64_t, Rows> come_;  // by new section
  std::map<IndexPath, IndexPath> movedTo_;
};

}  // namespace platform
