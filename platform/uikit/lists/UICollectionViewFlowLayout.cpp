#include "platform/uikit/lists/UICollectionViewFlowLayout.h"

#include <algorithm>
#include <cmath>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/UICollectionView.h"

namespace platform {

void UICollectionViewLayout::invalidateLayout() {
  if (const Ref<UICollectionView> collection = collectionView_.lock()) collection->layoutWasInvalidated();
}

// ---- Settings

void UICollectionViewFlowLayout::setItemSize(CGSize size) {
  itemSize_ = size;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setMinimumLineSpacing(double spacing) {
  lineSpacing_ = spacing;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setMinimumInteritemSpacing(double spacing) {
  itemSpacing_ = spacing;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setSectionInset(UIEdgeInsets insets) {
  sectionInset_ = insets;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setScrollDirection(UICollectionViewScrollDirection direction) {
  direction_ = direction;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setHeaderReferenceSize(CGSize size) {
  headerSize_ = size;
  invalidateLayout();
}
void UICollectionViewFlowLayout::setFooterReferenceSize(CGSize size) {
  footerSize_ = size;
  invalidateLayout();
}

// ---- Calculation

CGRect UICollectionViewFlowLayout::placed(double along, double across, double length, double breadth) const {
  return isVertical() ? CGRect(across, along, breadth, length) : CGRect(along, across, length, breadth);
}

namespace {

/// An answer of the collection's delegate, or the layout's own value.
template <class R, class... Args>
R told(const Ref<UICollectionView>& collection, const char* selector, R otherwise, const Args&... args) {
  return askOptional<R>(collection->delegate(), sel(selector), collection, args...).value_or(otherwise);
}

CGSize usable(CGSize size) {
  const auto length = [](double value) { return std::isfinite(value) ? std::clamp(value, 0.0, 1e6) : 0.0; };
  return {length(size.width), length(size.height)};
}

}  // namespace

void UICollectionViewFlowLayout::prepareLayout() {
  static const SEL sizeForItem = sel("collectionView:layout:sizeForItemAtIndexPath:");
  sections_.clear();
  contentSize_ = {};
  const Ref<UICollectionView> collection = collectionView();
  if (!collection) return;
  const Ref<NSObject> layout = self();
  const Ref<NSObject> delegate = collection->delegate();
  const bool ownSizes = delegate && delegate->respondsToSelector(sizeForItem);
  const UIEdgeInsets around = collection->adjustedContentInset();
  const CGSize size = collection->bounds().size;
  const double breadth =
      std::max(0.0, isVertical() ? size.width - around.left - around.right : size.height - around.top - around.bottom);
  double at = 0;
  for (std::int64_t index = 0; index < collection->numberOfSections(); ++index) {
    Section section;
    section.count = collection->numberOfItemsInSection(index);
    section.start = at;
    section.header = lengthOf(
        usable(told(collection, "collectionView:layout:referenceSizeForHeaderInSection:", headerSize_, layout, index)));
    section.footer = lengthOf(
        usable(told(collection, "collectionView:layout:referenceSizeForFooterInSection:", footerSize_, layout, index)));
    const UIEdgeInsets inset =
        told(collection, "collectionView:layout:insetForSectionAtIndex:", sectionInset_, layout, index);
    section.lineSpacing =
        told(collection, "collectionView:layout:minimumLineSpacingForSectionAtIndex:", lineSpacing_, layout, index);
    const double gap = told(collection, "collectionView:layout:minimumInteritemSpacingForSectionAtIndex:", itemSpacing_,
                            layout, index);
    section.linesStart = at + section.header + (isVertical() ? inset.top : inset.left);
    section.across = isVertical() ? inset.left : inset.top;
    const double room = breadth - (isVertical() ? inset.left + inset.right : inset.top + inset.bottom);
    section.end = section.linesStart;
    if (ownSizes) {
      std::vector<CGSize> sizes;
      sizes.reserve(static_cast<std::size_t>(section.count));
      for (std::int64_t item = 0; item < section.count; ++item) {
        sizes.push_back(usable(delegate->perform<CGSize>(sizeForItem, collection, layout, IndexPath(item, index))));
      }
      layOutFreely(section, room, sizes, gap);
    } else {
      layOutUniform(section, room, gap);
    }
    section.end += (isVertical() ? inset.bottom : inset.right) + section.footer;
    at = section.end;
    sections_.push_back(std::move(section));
  }
  contentSize_ = isVertical() ? CGSize{breadth, at} : CGSize{at, breadth};
}

void UICollectionViewFlowLayout::layOutUniform(Section& section, double room, double gap) {
  section.uniform = true;
  section.size = usable(itemSize_);
  const double breadth = breadthOf(section.size);
  section.perLine = std::max<std::int64_t>(1, static_cast<std::int64_t>((room + gap) / std::max(1.0, breadth + gap)));
  if (section.perLine > 1) {  // full lines reach from edge to edge
    section.gap = (room - static_cast<double>(section.perLine) * breadth) / static_cast<double>(section.perLine - 1);
  } else {
    section.across += std::max(0.0, (room - breadth) / 2);
  }
  const std::int64_t lines = (section.count + section.perLine - 1) / section.perLine;
  if (lines == 0) return;
  section.end = section.linesStart + static_cast<double>(lines) * lengthOf(section.size) +
                static_cast<double>(lines - 1) * section.lineSpacing;
}

void UICollectionViewFlowLayout::layOutFreely(Section& section, double room, const std::vector<CGSize>& sizes,
                                              double gap) {
  section.uniform = false;
  section.frames.reserve(sizes.size());
  double along = section.linesStart;
  for (std::size_t first = 0; first < sizes.size();) {
    double taken = breadthOf(sizes[first]);
    double length = lengthOf(sizes[first]);
    std::size_t end = first + 1;
    for (; end < sizes.size() && taken + gap + breadthOf(sizes[end]) <= room + 1e-6; ++end) {
      taken += gap + breadthOf(sizes[end]);
      length = std::max(length, lengthOf(sizes[end]));
    }
    const bool full = end < sizes.size() && end - first > 1;
    const double spread = full ? (room - taken) / static_cast<double>(end - first - 1) : 0;
    double across = section.across;
    for (std::size_t item = first; item < end; ++item) {
      const double own = lengthOf(sizes[item]);
      section.frames.push_back(placed(along + (length - own) / 2, across, own, breadthOf(sizes[item])));
      across += breadthOf(sizes[item]) + gap + spread;
    }
    section.lines.push_back({along, along + length, static_cast<std::int64_t>(first)});
    along += length + section.lineSpacing;
    first = end;
  }
  if (!section.lines.empty()) section.end = section.lines.back().end;
}

// ---- Questions

std::optional<CGRect> UICollectionViewFlowLayout::frameForItem(IndexPath path) const {
  if (path.section() < 0 || path.section() >= static_cast<std::int64_t>(sections_.size())) return std::nullopt;
  const Section& section = sections_[static_cast<std::size_t>(path.section())];
  if (path.item() < 0 || path.item() >= section.count) return std::nullopt;
  if (!section.uniform) return section.frames[static_cast<std::size_t>(path.item())];
  const auto line = static_cast<double>(path.item() / section.perLine);
  const auto column = static_cast<double>(path.item() % section.perLine);
  const double length = lengthOf(section.size);
  const double breadth = breadthOf(section.size);
  return placed(section.linesStart + line * (length + section.lineSpacing),
                section.across + column * (breadth + section.gap), length, breadth);
}

void UICollectionViewFlowLayout::itemsBetween(const Section& section, std::int64_t index, double start, double end,
                                              std::vector<IndexPath>& found) const {
  std::int64_t first = 0;
  std::int64_t last = section.count;
  if (section.uniform) {
    const double pitch = lengthOf(section.size) + section.lineSpacing;
    if (pitch > 0) {
      const auto line = [&](double at) {
        return static_cast<std::int64_t>(std::floor((at - section.linesStart) / pitch));
      };
      first = std::clamp<std::int64_t>(line(start) * section.perLine, 0, section.count);
      last = std::clamp<std::int64_t>((line(end) + 1) * section.perLine, 0, section.count);
    }
  } else {
    const auto line = std::partition_point(section.lines.begin(), section.lines.end(),
                                           [&](const Section::Line& at) { return at.end <= start; });
    const auto beyond =
        std::partition_point(line, section.lines.end(), [&](const Section::Line& at) { return at.start < end; });
    first = line == section.lines.end() ? section.count : line->first;
    last = beyond == section.lines.end() ? section.count : beyond->first;
  }
  for (std::int64_t item = first; item < last; ++item) found.emplace_back(item, index);
}

std::vector<IndexPath> UICollectionViewFlowLayout::itemsInRect(CGRect rect) const {
  std::vector<IndexPath> found;
  const double start = isVertical() ? rect.minY() : rect.minX();
  const double end = isVertical() ? rect.maxY() : rect.maxX();
  for (const std::int64_t index : sectionsInRect(rect)) {
    itemsBetween(sections_[static_cast<std::size_t>(index)], index, start, end, found);
  }
  std::erase_if(found, [&](IndexPath path) { return !frameForItem(path)->intersects(rect); });
  return found;
}

std::vector<std::int64_t> UICollectionViewFlowLayout::sectionsInRect(CGRect rect) const {
  const double start = isVertical() ? rect.minY() : rect.minX();
  const double end = isVertical() ? rect.maxY() : rect.maxX();
  std::vector<std::int64_t> found;
  auto at = std::partition_point(sections_.begin(), sections_.end(),
                                 [&](const Section& section) { return section.end <= start; });
  for (; at != sections_.end() && at->start < end; ++at) found.push_back(at - sections_.begin());
  return found;
}

std::optional<CGRect> UICollectionViewFlowLayout::frameForHeader(std::int64_t section) const {
  if (section < 0 || section >= static_cast<std::int64_t>(sections_.size())) return std::nullopt;
  const Section& at = sections_[static_cast<std::size_t>(section)];
  if (at.header <= 0) return std::nullopt;
  return placed(at.start, 0, at.header, breadthOf(contentSize_));
}

std::optional<CGRect> UICollectionViewFlowLayout::frameForFooter(std::int64_t section) const {
  if (section < 0 || section >= static_cast<std::int64_t>(sections_.size())) return std::nullopt;
  const Section& at = sections_[static_cast<std::size_t>(section)];
  if (at.footer <= 0) return std::nullopt;
  return placed(at.end - at.footer, 0, at.footer, breadthOf(contentSize_));
}

}  // namespace platform
