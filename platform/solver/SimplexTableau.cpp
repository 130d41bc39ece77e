#include "platform/solver/SimplexTableau.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

using std::abs;

/// The sum, or 0 when it is so small beside its parts that rounding has made it.
template <class Number>
Number sumOf(Number a, Number b) {
  const Number sum = a + b;
  return abs(sum) <= (abs(a) + abs(b)) * SimplexLimits<Number>::cancelled ? Number(0) : sum;
}

template <class Cells>
auto lowerBound(Cells& cells, SimplexSymbol symbol) {
  return std::lower_bound(cells.begin(), cells.end(), symbol,
                          [](const auto& cell, SimplexSymbol wanted) { return cell.symbol < wanted; });
}

template <class Cell>
void eraseCell(std::vector<Cell>& cells, SimplexSymbol symbol) {
  const auto at = lowerBound(cells, symbol);
  if (at != cells.end() && at->symbol == symbol) cells.erase(at);
}

/// Dantzig's choice is quick and Bland's cannot circle: the first for as many pivots as a healthy problem needs.
std::size_t pivotsBeforeBland(std::size_t rows) { return 2 * rows + 32; }
/// No healthy problem comes near; rounding must not be able to hold the caller.
std::size_t pivotLimit(std::size_t rows) { return 8 * rows + 500; }

}  // namespace

template <class Number>
Number SimplexTableau<Number>::find(const std::vector<Cell>& cells, SimplexSymbol symbol) {
  if (cells.size() <= 8) {
    for (const Cell& cell : cells) {
      if (cell.symbol == symbol) return cell.coefficient;
    }
    return 0;
  }
  const auto at = lowerBound(cells, symbol);
  return at != cells.end() && at->symbol == symbol ? at->coefficient : 0;
}

// ---- Symbols and rows

template <class Number>
SimplexSymbol SimplexTableau<Number>::makeSymbol(SimplexKind kind) {
  std::uint32_t index;
  if (freeSlots_.empty()) {
    index = static_cast<std::uint32_t>(slots_.size());
    slots_.emplace_back();
  } else {
    index = freeSlots_.back();
    freeSlots_.pop_back();
  }
  return (index << 2) | static_cast<std::uint32_t>(kind);
}

template <class Number>
void SimplexTableau<Number>::releaseSymbol(SimplexSymbol symbol) {
  freeSlots_.push_back(symbol >> 2);
}

template <class Number>
typename SimplexTableau<Number>::RowIndex SimplexTableau<Number>::makeRow() {
  if (!freeRows_.empty()) {
    const RowIndex index = freeRows_.back();
    freeRows_.pop_back();
    return index;
  }
  rows_.emplace_back();
  return static_cast<RowIndex>(rows_.size() - 1);
}

template <class Number>
void SimplexTableau<Number>::freeRow(RowIndex index) {
  Row& row = rows_[index];
  row.basic = noSymbol;
  row.constant = 0;
  row.cells.clear();
  freeRows_.push_back(index);
}

template <class Number>
void SimplexTableau<Number>::leaveColumn(SimplexSymbol symbol, RowIndex row) {
  std::vector<RowIndex>& column = slots_[symbol >> 2].column;
  const auto at = std::find(column.rbegin(), column.rend(), row);
  if (at == column.rend()) return;
  *at = column.back();
  column.pop_back();
}

template <class Number>
void SimplexTableau<Number>::merge(std::vector<Cell>& cells, const std::vector<Cell>& source, Number factor,
                                   SimplexSymbol without, RowIndex owner) {
  merged_.clear();
  merged_.reserve(cells.size() + source.size());
  auto mine = cells.cbegin();
  auto theirs = source.cbegin();
  while (mine != cells.cend() || theirs != source.cend()) {
    if (theirs == source.cend() || (mine != cells.cend() && mine->symbol < theirs->symbol)) {
      if (mine->symbol != without) merged_.push_back(*mine);
      ++mine;
    } else if (mine == cells.cend() || theirs->symbol < mine->symbol) {
      const Number coefficient = theirs->coefficient * factor;
      if (abs(coefficient) > Limits::coefficient) {
        merged_.push_back({theirs->symbol, coefficient});
        if (owner != noRow) enterColumn(theirs->symbol, owner);
      }
      ++theirs;
    } else {
      const Number coefficient = sumOf(mine->coefficient, theirs->coefficient * factor);
      if (abs(coefficient) > Limits::coefficient) {
        merged_.push_back({mine->symbol, coefficient});
      } else if (owner != noRow) {
        leaveColumn(mine->symbol, owner);
      }
      ++mine;
      ++theirs;
    }
  }
  cells.swap(merged_);
}

// ---- Equations

template <class Number>
typename SimplexTableau<Number>::Row& SimplexTableau<Number>::beginWork(Number constant) {
  work_.basic = noSymbol;
  work_.constant = constant;
  work_.cells.clear();
  return work_;
}

template <class Number>
void SimplexTableau<Number>::addToWork(SimplexSymbol symbol, Number coefficient) {
  if (const RowIndex index = basicRow(symbol); index != noRow) {
    work_.constant += coefficient * rows_[index].constant;
    merge(work_.cells, rows_[index].cells, coefficient, noSymbol, noRow);
    return;
  }
  const auto at = lowerBound(work_.cells, symbol);
  if (at == work_.cells.end() || at->symbol != symbol) {
    if (abs(coefficient) > Limits::coefficient) work_.cells.insert(at, {symbol, coefficient});
  } else if (abs(at->coefficient += coefficient) <= Limits::coefficient) {
    work_.cells.erase(at);
  }
}

template <class Number>
typename SimplexTableau<Number>::RowIndex SimplexTableau<Number>::installWork(SimplexSymbol subject) {
  const auto at = lowerBound(work_.cells, subject);
  const Number factor = -1 / at->coefficient;
  work_.cells.erase(at);
  const RowIndex index = makeRow();
  Row& row = rows_[index];
  row.basic = subject;
  row.constant = work_.constant * factor;
  row.cells.assign(work_.cells.begin(), work_.cells.end());
  for (Cell& cell : row.cells) {
    cell.coefficient *= factor;
    enterColumn(cell.symbol, index);
  }
  slots_[subject >> 2].basicRow = index;
  substitute(subject, index);
  return index;
}

template <class Number>
bool SimplexTableau<Number>::installWorkWithArtificial(SimplexSymbol marker, double allowed) {
  if (work_.constant < 0) {
    work_.constant = -work_.constant;
    for (Cell& cell : work_.cells) cell.coefficient = -cell.coefficient;
  }
  const SimplexSymbol artificial = makeSymbol(SimplexKind::slack);
  // 0 = constant + cells - artificial
  const auto at = lowerBound(work_.cells, artificial);
  work_.cells.insert(at, {artificial, -1});
  const RowIndex index = installWork(artificial);
  if (!minimiseArtificial(index, allowed)) {
    work_.constant = rows_[index].constant;
    work_.cells.assign(rows_[index].cells.begin(), rows_[index].cells.end());
    dropRow(index);
    releaseSymbol(artificial);
    return false;
  }
  if (basicRow(artificial) == index) {  // met, but only just: another symbol takes its place at 0
    Row& row = rows_[index];
    row.constant = 0;
    SimplexSymbol best = marker;
    Number size = 0;
    for (const Cell& cell : row.cells) {
      if (isPivotable(cell.symbol) && abs(cell.coefficient) > size) {
        best = cell.symbol;
        size = abs(cell.coefficient);
      }
    }
    pivot(index, best);
  }
  eraseSymbol(artificial);
  return true;
}

template <class Number>
bool SimplexTableau<Number>::minimiseArtificial(RowIndex artificial, double allowed) {
  const SimplexSymbol symbol = rows_[artificial].basic;
  const std::size_t patience = pivotsBeforeBland(rows_.size());
  for (std::size_t turn = 0; turn < pivotLimit(rows_.size()); ++turn) {
    SimplexSymbol entering = noSymbol;
    Number best = -Limits::cost;
    for (const Cell& cell : rows_[artificial].cells) {
      if (cell.coefficient >= best || !isPivotable(cell.symbol)) continue;
      entering = cell.symbol;
      best = cell.coefficient;
      if (turn > patience) break;
    }
    if (entering == noSymbol) break;
    const RowIndex leaving = leavingRow(entering, artificial);
    if (leaving == noRow) break;
    pivot(leaving, entering);
    if (basicRow(symbol) == noRow) return true;
  }
  return rows_[artificial].constant <= allowed;
}

// ---- Pivots

template <class Number>
void SimplexTableau<Number>::substitute(SimplexSymbol symbol, RowIndex by) {
  affected_.clear();
  affected_.swap(slots_[symbol >> 2].column);
  // The last first: they stand last in the columns that they leave, which are searched from the end.
  for (auto at = affected_.rbegin(); at != affected_.rend(); ++at) {
    const RowIndex index = *at;
    Row& row = rows_[index];
    const Number coefficient = find(row.cells, symbol);
    row.constant += coefficient * rows_[by].constant;
    merge(row.cells, rows_[by].cells, coefficient, symbol, index);
  }
  for (Level& level : levels_) {
    const Number coefficient = find(level.cells, symbol);
    if (coefficient != 0) merge(level.cells, rows_[by].cells, coefficient, symbol, noRow);
  }
}

template <class Number>
void SimplexTableau<Number>::pivot(RowIndex leaving, SimplexSymbol entering) {
  ++pivots_;
  Row& row = rows_[leaving];
  const SimplexSymbol old = row.basic;
  const auto at = lowerBound(row.cells, entering);
  const Number factor = -1 / at->coefficient;
  row.cells.erase(at);
  leaveColumn(entering, leaving);
  row.constant *= factor;
  for (Cell& cell : row.cells) cell.coefficient *= factor;
  row.cells.insert(lowerBound(row.cells, old), {old, -factor});
  enterColumn(old, leaving);
  slots_[old >> 2].basicRow = noRow;
  slots_[entering >> 2].basicRow = leaving;
  row.basic = entering;
  substitute(entering, leaving);
}

template <class Number>
void SimplexTableau<Number>::dropRow(RowIndex index) {
  for (const Cell& cell : rows_[index].cells) leaveColumn(cell.symbol, index);
  slots_[rows_[index].basic >> 2].basicRow = noRow;
  freeRow(index);
}

template <class Number>
bool SimplexTableau<Number>::bringIntoBasis(SimplexSymbol marker) {
  RowIndex down = noRow;  // rows that shrink as the marker grows, and so on
  RowIndex up = noRow;
  RowIndex any = noRow;
  Number downRatio = 0;
  Number upRatio = 0;
  for (const RowIndex index : column(marker)) {
    const Row& row = rows_[index];
    if (!isRestricted(row.basic)) {
      any = index;
      continue;
    }
    if (kindOf(row.basic) == SimplexKind::dummy) {  // must stay an equation among dummies: it goes first
      pivot(index, marker);
      return true;
    }
    const Number coefficient = find(row.cells, marker);
    if (abs(coefficient) < Limits::pivot && column(marker).size() > 1) continue;
    const Number ratio = std::max(row.constant, Number(0)) / abs(coefficient);
    if (coefficient < 0 && (down == noRow || ratio < downRatio)) {
      down = index;
      downRatio = ratio;
    } else if (coefficient > 0 && (up == noRow || ratio < upRatio)) {
      up = index;
      upRatio = ratio;
    }
  }
  const RowIndex leaving = down != noRow ? down : up != noRow ? up : any;
  if (leaving == noRow) return false;
  pivot(leaving, marker);
  return true;
}

template <class Number>
void SimplexTableau<Number>::eraseSymbol(SimplexSymbol symbol) {
  if (const RowIndex index = basicRow(symbol); index != noRow) dropRow(index);
  std::vector<RowIndex>& column = slots_[symbol >> 2].column;
  for (const RowIndex index : column) eraseCell(rows_[index].cells, symbol);
  column.clear();
  for (Level& level : levels_) eraseCell(level.cells, symbol);
  releaseSymbol(symbol);
}

template <class Number>
typename SimplexTableau<Number>::RowIndex SimplexTableau<Number>::leavingRow(SimplexSymbol entering,
                                                                             RowIndex preferred) const {
  RowIndex best = noRow;
  Number bestRatio = 0;
  for (const RowIndex index : slots_[entering >> 2].column) {
    const Row& row = rows_[index];
    if (!isRestricted(row.basic)) continue;
    const Number coefficient = find(row.cells, entering);
    if (coefficient > -Limits::pivot) continue;
    const Number ratio = std::max(row.constant, Number(0)) / -coefficient;
    const bool isTie = best != noRow && abs(ratio - bestRatio) <= (bestRatio + 1) * Limits::tie;
    const bool isBetter =
        best == noRow ||
        (isTie ? index == preferred || (best != preferred && row.basic < rows_[best].basic) : ratio < bestRatio);
    if (isBetter) {
      best = index;
      bestRatio = ratio;
    }
  }
  return best;
}

// ---- Objective

template <class Number>
void SimplexTableau<Number>::addToObjective(double priority, SimplexSymbol symbol, double weight) {
  auto level = std::find_if(levels_.begin(), levels_.end(), [=](const Level& l) { return l.priority <= priority; });
  if (level == levels_.end() || level->priority != priority) level = levels_.insert(level, {priority, 0, {}});
  level->members += weight > 0 ? 1u : -1u;
  if (level->members == 0) {
    levels_.erase(level);
    return;
  }
  if (const RowIndex index = basicRow(symbol); index != noRow) {
    merge(level->cells, rows_[index].cells, weight, noSymbol, noRow);
  } else {
    const auto at = lowerBound(level->cells, symbol);
    if (at == level->cells.end() || at->symbol != symbol) {
      level->cells.insert(at, {symbol, weight});
    } else if (abs(at->coefficient += weight) <= Limits::coefficient) {
      level->cells.erase(at);
    }
  }
  optimal_ = false;
}

template <class Number>
SimplexSymbol SimplexTableau<Number>::enteringSymbol(std::size_t level, bool lowestIndex) const {
  SimplexSymbol entering = noSymbol;
  Number best = -Limits::cost;
  for (const Cell& cell : levels_[level].cells) {
    if (cell.coefficient >= best || !isPivotable(cell.symbol)) continue;
    bool isBlocked = false;  // a gain here that a higher level would pay for
    for (std::size_t above = 0; above < level && !isBlocked; ++above) {
      isBlocked = abs(find(levels_[above].cells, cell.symbol)) > Limits::cost;
    }
    if (isBlocked) continue;
    entering = cell.symbol;
    best = cell.coefficient;
    if (lowestIndex) break;
  }
  return entering;
}

template <class Number>
bool SimplexTableau<Number>::optimise() {
  if (optimal_) return true;
  const std::size_t patience = pivotsBeforeBland(rows_.size());
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    for (std::size_t turn = 0;; ++turn) {
      const SimplexSymbol entering = enteringSymbol(level, turn > patience);
      if (entering == noSymbol) break;
      if (turn > pivotLimit(rows_.size())) return false;
      const RowIndex leaving = leavingRow(entering, noRow);
      if (leaving == noRow) {  // errors cannot fall for ever: this cost is rounding
        eraseCell(levels_[level].cells, entering);
        continue;
      }
      pivot(leaving, entering);
    }
  }
  optimal_ = true;
  return true;
}

template <class Number>
bool SimplexTableau<Number>::ratioIsSmaller(SimplexSymbol a, Number coefficientA, SimplexSymbol b,
                                            Number coefficientB) const {
  for (const Level& level : levels_) {
    const Number ratioA = find(level.cells, a) / coefficientA;  // may be negative below a level that decides
    const Number ratioB = find(level.cells, b) / coefficientB;
    if (abs(ratioA - ratioB) > Limits::cost) return ratioA < ratioB;
  }
  return false;
}

template <class Number>
SimplexSymbol SimplexTableau<Number>::dualEntering(const Row& row) const {
  SimplexSymbol best = noSymbol;
  Number bestCoefficient = 0;
  for (const Cell& cell : row.cells) {
    if (cell.coefficient < Limits::pivot || !isPivotable(cell.symbol)) continue;
    if (best == noSymbol || ratioIsSmaller(cell.symbol, cell.coefficient, best, bestCoefficient)) {
      best = cell.symbol;
      bestCoefficient = cell.coefficient;
    }
  }
  return best;
}

template <class Number>
bool SimplexTableau<Number>::restoreFeasibility() {
  const std::size_t patience = pivotsBeforeBland(rows_.size());
  for (std::size_t turn = 0; turn < pivotLimit(rows_.size()); ++turn) {
    RowIndex leaving = noRow;
    for (RowIndex index = 0; index < rows_.size(); ++index) {
      const Row& row = rows_[index];
      if (!isRestricted(row.basic) || row.constant >= -Limits::deficit) {
        if (kindOf(row.basic) == SimplexKind::dummy && row.constant > tinyLength) return false;
        continue;
      }
      if (kindOf(row.basic) == SimplexKind::dummy) {
        if (row.constant < -tinyLength) return false;
        continue;
      }
      const bool isBetter = leaving == noRow || (turn > patience ? row.basic < rows_[leaving].basic
                                                                 : row.constant < rows_[leaving].constant);
      if (isBetter) leaving = index;
    }
    if (leaving == noRow) return true;
    const SimplexSymbol entering = dualEntering(rows_[leaving]);
    if (entering == noSymbol) {
      if (rows_[leaving].constant < -tinyLength) return false;
      rows_[leaving].constant = 0;
      continue;
    }
    pivot(leaving, entering);
  }
  return false;
}

template class SimplexTableau<double>;
template class SimplexTableau<TwoDoubles>;

}  // namespace platform
