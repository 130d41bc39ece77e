#include "platform/uikit/lists/TableChanges.h"

#include <algorithm>

namespace platform {

bool TableChanges::isEmpty() const {
  return deletedSections.empty() && insertedSections.empty() && reloadedSections.empty() && deleted.empty() &&
         inserted.empty() && reloaded.empty() && moved.empty();
}

void TableChanges::prepare() {
  sectionsGone_.assign(deletedSections.begin(), deletedSections.end());
  sectionsCome_.assign(insertedSections.begin(), insertedSections.end());
  gone_.clear();
  come_.clear();
  movedTo_.clear();
  std::set<IndexPath> away = deleted;
  std::set<IndexPath> here = inserted;
  for (const auto& [from, to] : moved) {
    if (deleted.contains(from) || inserted.contains(to)) continue;
    away.insert(from);
    here.insert(to);
    movedTo_[to] = from;
  }
  for (const IndexPath path : away) gone_[path.section()].gone.push_back(path.row());
  for (const IndexPath path : here) come_[path.section()].come.push_back(path.row());
}

bool TableChanges::fit(const std::vector<std::int64_t>& before, const std::vector<std::int64_t>& after) {
  prepare();
  const auto oldCount = static_cast<std::int64_t>(before.size());
  const auto newCount = static_cast<std::int64_t>(after.size());
  const auto size = [](const auto& list) { return static_cast<std::int64_t>(list.size()); };
  const auto within = [](const std::vector<std::int64_t>& sorted, std::int64_t count) {
    return sorted.empty() || (sorted.front() >= 0 && sorted.back() < count);
  };
  if (newCount != oldCount - size(sectionsGone_) + size(sectionsCome_)) return false;
  if (!within(sectionsGone_, oldCount) || !within(sectionsCome_, newCount)) return false;
  for (const std::int64_t section : reloadedSections) {
    if (section < 0 || section >= oldCount) return false;
  }
  for (const IndexPath path : reloaded) {
    if (path.section() < 0 || path.section() >= oldCount || path.row() < 0 ||
        path.row() >= before[static_cast<std::size_t>(path.section())]) {
      return false;
    }
  }
  for (const auto& [section, rows] : gone_) {
    if (section < 0 || section >= oldCount || !within(rows.gone, before[static_cast<std::size_t>(section)]))
      return false;
  }
  for (const auto& [section, rows] : come_) {
    if (section < 0 || section >= newCount || !within(rows.come, after[static_cast<std::size_t>(section)]))
      return false;
  }
  for (std::int64_t section = 0; section < oldCount; ++section) {
    const std::optional<std::int64_t> now = newSection(section);
    if (!now || reloadedSections.contains(section)) continue;
    const std::int64_t expected =
        before[static_cast<std::size_t>(section)] - size(goneFrom(section).gone) + size(comeTo(*now).come);
    if (after[static_cast<std::size_t>(*now)] != expected) return false;
  }
  return true;
}

const TableChanges::Rows& TableChanges::goneFrom(std::int64_t oldSection) const {
  static const Rows none;
  const auto found = gone_.find(oldSection);
  return found == gone_.end() ? none : found->second;
}

const TableChanges::Rows& TableChanges::comeTo(std::int64_t newSection) const {
  static const Rows none;
  const auto found = come_.find(newSection);
  return found == come_.end() ? none : found->second;
}

/// The index after the entries `gone` (sorted, old indices) have left and the entries `come` (sorted, new indices) have
/// taken their places. The way back is the same with the two lists exchanged.
std::optional<std::int64_t> TableChanges::forward(std::int64_t index, const std::vector<std::int64_t>& gone,
                                                  const std::vector<std::int64_t>& come) {
  const auto at = std::lower_bound(gone.begin(), gone.end(), index);
  if (at != gone.end() && *at == index) return std::nullopt;
  index -= at - gone.begin();
  for (const std::int64_t place : come) {
    if (place > index) break;
    ++index;
  }
  return index;
}

std::optional<std::int64_t> TableChanges::newSection(std::int64_t old) const {
  return forward(old, sectionsGone_, sectionsCome_);
}

std::optional<std::int64_t> TableChanges::oldSection(std::int64_t now) const {
  return forward(now, sectionsCome_, sectionsGone_);
}

std::optional<IndexPath> TableChanges::newPath(IndexPath old) const {
  for (const auto& [to, from] : movedTo_) {
    if (from == old) return to;
  }
  const std::optional<std::int64_t> section = newSection(old.section());
  if (!section || reloadedSections.contains(old.section())) return std::nullopt;
  const std::optional<std::int64_t> row = forward(old.row(), goneFrom(old.section()).gone, comeTo(*section).come);
  return row ? std::optional(IndexPath(*row, *section)) : std::nullopt;
}

std::optional<IndexPath> TableChanges::oldPath(IndexPath now) const {
  if (const auto found = movedTo_.find(now); found != movedTo_.end()) return found->second;
  const std::optional<std::int64_t> section = oldSection(now.section());
  if (!section || reloadedSections.contains(*section)) return std::nullopt;
  const std::optional<std::int64_t> row = forward(now.row(), comeTo(now.section()).come, goneFrom(*section).gone);
  return row ? std::optional(IndexPath(*row, *section)) : std::nullopt;
}

}  // namespace platform
