#include "platform/uikit/lists/RowHeights.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t mostInBlock = 128;

}  // namespace

// ---- Blocks

void RowHeights::Block::sumFrom(std::size_t row) {
  ends.resize(heights.size());
  double sum = row > 0 ? ends[row - 1] : 0;
  for (std::size_t i = row; i < heights.size(); ++i) ends[i] = sum += heights[i];
}

std::shared_ptr<RowHeights::Block> RowHeights::makeBlock(std::vector<double> heights) {
  auto block = std::make_shared<Block>();
  block->heights = std::move(heights);
  block->sumFrom(0);
  return block;
}

RowHeights::RowHeights(std::size_t count, double height) : count_(count) {
  blocks_.assign(count / mostInBlock, makeBlock(std::vector<double>(mostInBlock, height)));
  const std::size_t rest = count % mostInBlock;
  if (rest > 0) blocks_.push_back(makeBlock(std::vector<double>(rest, height)));
  sumBlocks();
}

RowHeights::RowHeights(const std::vector<double>& heights) : count_(heights.size()) {
  for (std::size_t start = 0; start < heights.size(); start += mostInBlock) {
    const auto first = heights.begin() + static_cast<std::ptrdiff_t>(start);
    const std::size_t size = std::min(mostInBlock, heights.size() - start);
    blocks_.push_back(makeBlock(std::vector<double>(first, first + static_cast<std::ptrdiff_t>(size))));
  }
  sumBlocks();
}

void RowHeights::sumBlocks() {
  std::vector<std::size_t> rows;
  std::vector<double> heights;
  rows.reserve(blocks_.size());
  heights.reserve(blocks_.size());
  for (const auto& block : blocks_) {
    rows.push_back(block->heights.size());
    heights.push_back(block->ends.back());
  }
  near_ = {};
  rows_ = PartialSums<std::size_t>(std::move(rows));
  heights_ = PartialSums<double>(std::move(heights));
}

RowHeights::Place RowHeights::placeOf(std::size_t row) const {
  const std::size_t block = rows_.countWithin(row);
  return {block, row - rows_.before(block)};
}

std::size_t RowHeights::findNear(std::size_t row) const {
  if (row - near_.first >= near_.count) {  // also for rows before it, which become very large numbers
    const Place place = placeOf(row);
    near_ = {place.block, row - place.row, blocks_[place.block]->heights.size(), heights_.before(place.block)};
  }
  return row - near_.first;
}

RowHeights::Block& RowHeights::own(std::size_t block) {
  near_ = {};
  std::shared_ptr<Block>& place = blocks_[block];
  if (place.use_count() > 1) place = std::make_shared<Block>(*place);
  return *place;
}

// ---- Heights

double RowHeights::height(std::size_t row) const {
  const std::size_t inBlock = findNear(row);
  return blocks_[near_.block]->heights[inBlock];
}

RowHeights::Span RowHeights::span(std::size_t row) const {
  const std::size_t inBlock = findNear(row);
  const Block& block = *blocks_[near_.block];
  return {inBlock > 0 ? near_.top + block.ends[inBlock - 1] : near_.top, block.heights[inBlock]};
}

void RowHeights::setHeight(std::size_t row, double height) {
  const std::size_t inBlock = findNear(row);
  const std::size_t index = near_.block;
  if (blocks_[index]->heights[inBlock] == height) return;
  Block& block = own(index);
  const double before = block.ends.back();
  block.heights[inBlock] = height;
  block.sumFrom(inBlock);
  heights_.add(index, block.ends.back() - before);
}

void RowHeights::insert(std::size_t row, double height) {
  // A row at the very end stands behind the last one of the last block; a full block at the end gets a new neighbour,
  // so that rows which come one by one fill their blocks.
  Place place = placeOf(row);
  if (place.block == blocks_.size() && place.block > 0 && blocks_.back()->heights.size() < mostInBlock) {
    place = {place.block - 1, blocks_.back()->heights.size()};
  }
  ++count_;
  if (place.block == blocks_.size()) {
    blocks_.push_back(makeBlock({height}));
    return sumBlocks();
  }
  Block& block = own(place.block);
  const double before = block.ends.back();
  block.heights.insert(block.heights.begin() + static_cast<std::ptrdiff_t>(place.row), height);
  block.sumFrom(place.row);
  if (block.heights.size() <= mostInBlock) {
    rows_.add(place.block, 1);
    return heights_.add(place.block, block.ends.back() - before);
  }
  const auto middle = block.heights.begin() + mostInBlock / 2;
  auto second = makeBlock(std::vector<double>(middle, block.heights.end()));
  block.heights.erase(middle, block.heights.end());
  block.sumFrom(0);
  blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(place.block) + 1, std::move(second));
  sumBlocks();
}

void RowHeights::erase(std::size_t row) {
  const Place place = placeOf(row);
  --count_;
  if (blocks_[place.block]->heights.size() == 1) {
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(place.block));
    return sumBlocks();
  }
  Block& block = own(place.block);
  const double before = block.ends.back();
  block.heights.erase(block.heights.begin() + static_cast<std::ptrdiff_t>(place.row));
  block.sumFrom(place.row);
  rows_.add(place.block, static_cast<std::size_t>(-1));
  heights_.add(place.block, block.ends.back() - before);
}

// ---- Places

double RowHeights::offset(std::size_t row) const {
  return row < count_ ? span(row).top : heights_.before(blocks_.size());
}

std::size_t RowHeights::rowAt(double offset) const {
  offset = std::max(offset, 0.0);
  std::size_t block = heights_.countWithin(offset);
  // Sums of other orders may differ in their last digit: what `offset` says of a row is what holds here.
  while (block > 0 && heights_.before(block) > offset) --block;
  while (block < blocks_.size() && heights_.before(block + 1) <= offset) ++block;
  if (block == blocks_.size()) return count_;
  const double top = heights_.before(block);
  const std::vector<double>& ends = blocks_[block]->ends;
  const auto found = std::partition_point(ends.begin(), ends.end(), [&](double end) { return top + end <= offset; });
  return rows_.before(block) + static_cast<std::size_t>(found - ends.begin());
}

}  // namespace platform
