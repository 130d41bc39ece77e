#include "platform/uikit/lists/TableContent.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/uikit/views/UILabel.h"

// Which rows, headers and footers are on the screen, and the cells that show them.

namespace platform {

namespace {

constexpr double groupRadius = 10;

bool holdsFirstResponder(const UIView& view) {
  const Ref<UIView> responder = as<UIView>(UIResponder::firstResponder());
  return responder && responder->isDescendantOfView(&view);
}

}  // namespace

// ---- Cells

Ref<UITableViewCell> TableContent::makeCell(IndexPath path) {
  static const SEL cellForRow = sel("tableView:cellForRowAtIndexPath:");
  Ref<UITableViewCell> cell;
  UIView::performWithoutAnimation([&] {
    cell = askSource<Ref<UITableViewCell>>(cellForRow, path).value_or(nullptr);
    if (!cell) cell = make<UITableViewCell>();
  });
  return cell;
}

/// Puts a new cell among the others, in the order of the rows, where its row stands (or comes from).
void TableContent::display(IndexPath path, const Ref<UITableViewCell>& cell) {
  static const SEL willDisplay = sel("tableView:willDisplayCell:forRowAtIndexPath:");
  UIView::performWithoutAnimation([&] {
    CGRect start = rowRect(geometry, path);
    double alpha = 1;
    if (transition_) {
      const std::optional<IndexPath> old = transition_->changes->oldPath(path);
      if (transition_->replaced.contains(path)) {
        alpha = 0;
      } else if (old && transition_->before->contains(*old)) {
        start = rowRect(*transition_->before, *old);
      } else {
        alpha = 0;
        const double width = start.size.width;
        switch (transition_->animation) {
          case UITableViewRowAnimation::left:
            start = start.offsetBy(-width, 0);
            break;
          case UITableViewRowAnimation::right:
            start = start.offsetBy(width, 0);
            break;
          case UITableViewRowAnimation::top:
          case UITableViewRowAnimation::automatic:
            start = start.offsetBy(0, -start.size.height / 2);
            break;
          case UITableViewRowAnimation::bottom:
            start = start.offsetBy(0, start.size.height / 2);
            break;
          case UITableViewRowAnimation::fade:
          case UITableViewRowAnimation::middle:
          case UITableViewRowAnimation::none:
            break;
        }
      }
    }
    cell->setHidden(false);
    cell->setAlpha(alpha);
    cell->setAutoresizingMask(UIViewAutoresizing::none);
    cell->setTranslatesAutoresizingMaskIntoConstraints(true);
    cell->setFrame(start);
    cell->setSelected(selected.contains(path), false);
    const auto next = visible.upper_bound(path);
    const Ref<UIView> above = next == visible.end() ? nullptr : next->second;
    const auto own = visible.lower_bound(path);
    const Ref<UIView> below = own == visible.begin() ? nullptr : std::prev(own)->second;
    if (below && below->superview().get() == &table) {
      table.insertSubviewAbove(cell, below);
    } else if (above && above->superview().get() == &table) {
      table.insertSubviewBelow(cell, above);
    } else {
      table.insertSubview(cell, background && background->superview().get() == &table ? 1 : 0);
    }
  });
  tell(willDisplay, cell, path);
}

/// A new cell that takes part in a movement moves as it will look: what it holds does not come flying in.
void TableContent::layOutBeforeItMoves(IndexPath path, UITableViewCell& cell) {
  if (UIView::inheritedAnimationDuration() <= 0) return;
  UIView::performWithoutAnimation([&] {
    CGRect start = cell.frame();
    start.size = rowRect(geometry, path).size;
    cell.setFrame(start);
    cell.layoutIfNeeded();
  });
}

void TableContent::place(IndexPath path, UITableViewCell& cell) {
  const bool grouped = style != UITableViewStyle::plain;
  UITableViewCell::Placement placement;
  placement.first = path.row() == 0;
  placement.last = path.row() + 1 == geometry.numberOfRows(path.section());
  placement.separator = separatorStyle == UITableViewCellSeparatorStyle::singleLine && !(grouped && placement.last);
  placement.cornerRadius = style == UITableViewStyle::insetGrouped ? groupRadius : 0;
  placement.separatorInset = separatorInset;
  placement.separatorColor = separatorColor;
  cell.setPlacement(placement);
  const CGRect rect = rowRect(geometry, path);
  if (cell.frame() != rect) cell.setFrame(rect);
  if (cell.alpha() != 1) cell.setAlpha(1);
}

void TableContent::recycle(const Ref<UITableViewCell>& cell, IndexPath path) {
  static const SEL didEnd = sel("tableView:didEndDisplayingCell:forRowAtIndexPath:");
  if (held.cell() == cell) letGo(false);
  if (cell->superview().get() == &table) cell->removeFromSuperview();
  tell(didEnd, cell, path);
  if (!cell->reuseIdentifier().empty()) waiting.put(cell->reuseIdentifier(), cell);
}

void TableContent::unload() {
  ++reloads;
  for (const auto& [path, cell] : std::exchange(visible, {})) recycle(cell, path);
  dropHeaders(headers, {});
  dropHeaders(footers, {});
  held.release();
  answers = std::nullopt;
  loaded = false;
  stale = true;
}

/// Asks once a pass whether a section still has as many rows as it told: a data source may have changed without a word.
bool TableContent::countsStillHold(std::set<std::int64_t>& checked, std::int64_t section) const {
  if (dataSource.expired() || !checked.insert(section).second) return true;
  return section < askSections() && askRows(section) == geometry.numberOfRows(section);
}

// ---- A pass

void TableContent::tileIfStale() {
  if (stale || !loaded) tile();
}

void TableContent::tile() {
  if (tiling || updateDepth > 0) return;
  tiling = true;
  const Ref<NSObject> keeper = table.weak_from_this().lock();
  constexpr int mostPasses = 12;  // each pass measures what the one before brought into view
  for (int pass = 0; pass < mostPasses; ++pass) {
    if (loaded && rowWidth() != loadedWidth) {
      geometry.forgetMeasures();
      loadedWidth = rowWidth();
      if (rowHeight >= 0) loaded = false;
    }
    loadIfNeeded();
    layOutSurroundings();
    stale = false;
    if (!tileRows()) continue;
    table.setContentSize({table.bounds().size.width, geometry.contentHeight()});
    if (!stale) break;
  }
  tileHeaders();
  stale = false;
  tiling = false;
  followGoal();
}

void TableContent::followGoal() {
  if (!goal) return;
  if (table.isDragging() || !geometry.contains(goal->path)) {
    goal = std::nullopt;
    return;
  }
  const CGPoint offset{table.contentOffset().x, offsetFor(goal->path, goal->position)};
  if (table.isScrollingAnimated()) return table.retargetScrolling(offset);
  goal = std::nullopt;
  if (table.contentOffset() != offset) table.setContentOffset(offset, false);
}

/// False when the pass has to be done again: the offset had to follow heights that changed, the counts were no more
/// what they were, or the host reloaded the table in a callback.
bool TableContent::tileRows() {
  const std::uint64_t before = reloads;
  const double top = table.bounds().minY();
  const double bottom = table.bounds().maxY();
  // What is on the screen stays where it is when rows above it turn out higher or lower than they were thought to be.
  std::optional<IndexPath> anchor;
  double anchorTop = 0;
  for (const auto& [path, cell] : visible) {
    if (!geometry.contains(path) || !geometry.isMeasured(path)) continue;
    const TableGeometry::Span span = geometry.row(path);
    if (span.bottom() <= top || span.top >= bottom) continue;
    anchor = path;
    anchorTop = span.top;
    break;
  }

  std::set<std::int64_t> checked;
  std::vector<IndexPath> wanted;  // from top to bottom
  wanted.reserve(visible.size() + 1);
  std::optional<IndexPath> path = geometry.firstRowBelow(top);
  while (path && geometry.row(*path).top < bottom) {
    const bool isNew = !visible.contains(*path);
    if (isNew) {
      if (!countsStillHold(checked, path->section())) {
        unload();
        return false;
      }
      const Ref<UITableViewCell> cell = makeCell(*path);
      if (reloads != before) return false;
      visible[*path] = cell;
      display(*path, cell);
      if (reloads != before) return false;
    }
    measureRow(*path);
    if (reloads != before) return false;
    if (isNew) layOutBeforeItMoves(*path, *visible[*path]);
    wanted.push_back(*path);
    path = geometry.rowAfter(*path);
  }

  const bool isAtItsBeginning = top <= -table.adjustedContentInset().top;  // and stays there
  if (anchor && !isAtItsBeginning) {
    const double moved = geometry.row(*anchor).top - anchorTop;
    if (std::abs(moved) > 1e-9) {
      table.setContentSize({table.bounds().size.width, geometry.contentHeight()});
      table.shiftContentOffset({0, moved});
      return false;
    }
  }

  std::vector<std::pair<IndexPath, Ref<UITableViewCell>>> leaving;
  for (const auto& [shown, cell] : visible) {
    if (std::binary_search(wanted.begin(), wanted.end(), shown)) {
      place(shown, *cell);
    } else if (!transition_ && !holdsFirstResponder(*cell)) {
      leaving.emplace_back(shown, cell);
    } else if (geometry.contains(shown)) {
      place(shown, *cell);
    }
  }
  for (const auto& [gone, cell] : leaving) {
    visible.erase(gone);
    recycle(cell, gone);
    if (reloads != before) return false;
  }
  return true;
}

void TableContent::layOutSurroundings() {
  const double width = table.bounds().size.width;
  const auto heightOf = [](const Ref<UIView>& view) { return view ? view->bounds().size.height : 0.0; };
  const double before = geometry.leading;
  geometry.leading = heightOf(tableHeader);
  geometry.trailing = heightOf(tableFooter);
  if (geometry.leading != before) stale = true;
  if (tableHeader) tableHeader->setFrame({0, 0, width, geometry.leading});
  if (tableFooter) {
    const double top = geometry.contentHeight() - geometry.trailing;
    tableFooter->setFrame({0, top, width, geometry.trailing});
  }
  if (background) background->setFrame(table.bounds());
}

// ---- Headers and footers

Ref<UIView> TableContent::makeHeader(std::int64_t section, bool isHeader) {
  static const SEL viewForHeader = sel("tableView:viewForHeaderInSection:");
  static const SEL viewForFooter = sel("tableView:viewForFooterInSection:");
  if (const auto view = ask<Ref<UIView>>(isHeader ? viewForHeader : viewForFooter, section); view && *view) {
    return *view;
  }
  const std::optional<std::string> text = title(section, isHeader);
  if (!text || text->empty()) return nullptr;
  const Ref<UITableViewHeaderFooterView> view = make<UITableViewHeaderFooterView>();
  using Role = UITableViewHeaderFooterView::Role;
  const bool plain = style == UITableViewStyle::plain;
  view->setRole(!isHeader ? Role::footer : plain ? Role::plainHeader : Role::groupedHeader, 16);
  view->textLabel()->setText(*text);
  return view;
}

void TableContent::showHeader(std::map<std::int64_t, Ref<UIView>>& shown, std::int64_t section, CGRect rect,
                              bool isHeader) {
  auto found = shown.find(section);
  if (found == shown.end()) {
    const Ref<UIView> view = makeHeader(section, isHeader);
    if (!view) return;
    found = shown.emplace(section, view).first;
    UIView::performWithoutAnimation([&] {
      view->setFrame(rect);
      table.addSubview(view);
    });
  }
  if (found->second->frame() != rect) found->second->setFrame(rect);
}

void TableContent::dropHeaders(std::map<std::int64_t, Ref<UIView>>& shown, const std::set<std::int64_t>& wanted) {
  for (auto at = shown.begin(); at != shown.end();) {
    if (wanted.contains(at->first)) {
      ++at;
      continue;
    }
    at->second->removeFromSuperview();
    if (const auto view = as<UITableViewHeaderFooterView>(at->second); view && !view->reuseIdentifier().empty()) {
      waitingHeaders.put(view->reuseIdentifier(), view);
    }
    at = shown.erase(at);
  }
}

void TableContent::tileHeaders() {
  const double top = table.bounds().minY();
  const double bottom = table.bounds().maxY();
  std::set<std::int64_t> wantedHeaders;
  std::set<std::int64_t> wantedFooters;
  std::optional<std::int64_t> first = geometry.sectionAt(top);
  for (std::int64_t section = first.value_or(0); first && section < geometry.numberOfSections(); ++section) {
    if (geometry.section(section).top >= bottom) break;
    const CGRect header = headerRect(section);
    if (header.size.height > 0 && header.maxY() > top && header.minY() < bottom) {
      showHeader(headers, section, header, true);
      wantedHeaders.insert(section);
    }
    const CGRect footer = footerRect(section);
    if (footer.size.height > 0 && footer.maxY() > top && footer.minY() < bottom) {
      showHeader(footers, section, footer, false);
      wantedFooters.insert(section);
    }
  }
  dropHeaders(headers, wantedHeaders);
  dropHeaders(footers, wantedFooters);
}

}  // namespace platform
