#include "tools/inspect/Annotation.h"

#include <algorithm>
#include <vector>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"

namespace inspect {

using namespace platform;
using namespace lumicor;

namespace {

// The sheet, in points.
constexpr double margin = 40;
constexpr double headerHeight = 64;
constexpr double gutter = 36;
constexpr double rowHeight = 58;
constexpr double columnWidth = 430;
constexpr double badgeHeight = 16;

constexpr UIColor paper(0.965, 0.969, 0.976, 1);
constexpr UIColor ink(0.11, 0.12, 0.15, 1);
constexpr UIColor soft(0.42, 0.45, 0.50, 1);
constexpr UIColor hairline(0.87, 0.88, 0.90, 1);
constexpr UIColor acted(0.90, 0.16, 0.36, 1);

UIColor colorOf(const LumicroElement& element) {
  switch (element.type()) {
    case LumicorType::TYPE_TEXT:
      return {0.09, 0.42, 0.85, 1};
    case LumicorType::TYPE_IMAGE:
      return {0.55, 0.27, 0.80, 1};
    case LumicorType::TYPE_WEBVIEW:
      return {0.05, 0.55, 0.60, 1};
    case LumicorType::TYPE_DEFAULT:
      return {0.45, 0.48, 0.53, 1};
    case LumicorType::TYPE_TABBAR:
    case LumicorType::TYPE_SEARCH:
    case LumicorType::TYPE_PICKER_VIEW:
    case LumicorType::TYPE_RADIO_GROUP:
      return {0.80, 0.45, 0.03, 1};
    default:
      return {0.05, 0.55, 0.34, 1};
  }
}

void write(CGContext& context, const std::string& text, CGPoint at, double size, UIFontWeight weight,
           const UIColor& color, double width = CGFloatMax) {
  TextStyle style{.font = UIFont::systemFont(size, weight)};
  style.lineBreakMode = NSLineBreakMode::byTruncatingTail;
  style.numberOfLines = 1;
  context.drawText(TextLayout::make(text, style, width), at, color);
}

CGRect frameOf(const LumicroElement& element, CGPoint origin) {
  return {origin.x + static_cast<double>(element.x()), origin.y + static_cast<double>(element.y()),
          static_cast<double>(element.width()), static_cast<double>(element.height())};
}

/// A mark, and behind it a name when both find room in so many points.
void drawBadge(CGContext& context, const std::string& mark, CGPoint at, const UIColor& color,
               const std::string& name = "", double room = 0) {
  const auto widthOf = [](const TextLayout& text) { return std::max(badgeHeight, text.size().width + 8); };
  const auto laidOut = [](const std::string& words) {
    return TextLayout::make(words, TextStyle{.font = UIFont::systemFont(10, UIFontWeightBold)});
  };
  auto text = laidOut(name.empty() ? mark : mark + "  " + name);
  if (!name.empty() && widthOf(*text) > room) text = laidOut(mark);
  const double width = widthOf(*text);
  context.setFillColor(color);
  UIBezierPath::bezierPathWithRoundedRect({at.x, at.y, width, badgeHeight}, 4)->fill(context);
  context.drawText(text, {at.x + (width - text->size().width) / 2, at.y + (badgeHeight - text->size().height) / 2},
                   UIColor::white());
}

/// One element as it is drawn and listed.
struct Entry {
  const LumicroElement* element;
  std::string mark;
  bool isAround;
  bool isActed;
};

/// The snapshot's elements by number, then what lies around the screen by letter.
std::vector<Entry> entriesOf(const Inspection& inspection) {
  const std::string& acted = inspection.snapshot.actionElement().elementId();
  std::vector<Entry> entries;
  const auto append = [&](const LumicroElement& element, std::string mark, bool isAround) {
    entries.push_back({&element, std::move(mark), isAround, !acted.empty() && element.elementId() == acted});
  };
  for (const LumicroElement& element : inspection.snapshot.elements()) {
    append(element, std::to_string(entries.size() + 1), false);
  }
  for (std::size_t i = 0; i < inspection.around.size(); ++i) {
    const std::string letter(1, static_cast<char>('a' + i % 26));
    append(inspection.around[i], i < 26 ? letter : letter + std::to_string(i / 26), true);
  }
  return entries;
}

void drawFrame(CGContext& context, const Entry& entry, CGPoint origin) {
  const CGRect frame = frameOf(*entry.element, origin);
  const UIColor color = entry.isActed ? acted : entry.isAround ? soft : colorOf(*entry.element);
  const auto outline = UIBezierPath::bezierPathWithRoundedRect(frame.insetBy(0.75, 0.75), 3);
  const bool isClear = entry.isAround || entry.element->type() == LumicorType::TYPE_DEFAULT;  // others lie on it
  if (entry.isActed || !isClear) {
    context.setFillColor(color.colorWithAlphaComponent(entry.isActed ? 0.28 : 0.06));
    outline->fill(context);
  }
  outline->setLineWidth(entry.isActed ? 2.5 : 1.5);
  if (entry.isAround) outline->setLineDash({4, 3}, 0);
  context.setStrokeColor(color);
  outline->stroke(context);
  // Like the tab of a folder: above the frame's corner, so that it hides nothing of what it tells of.
  const double top = std::max(frame.minY() - badgeHeight + 1, origin.y);
  drawBadge(context, entry.mark, {std::max(frame.minX(), origin.x), top}, color, entry.element->elementId(),
            frame.width());
}

constexpr double indent = 34;
constexpr double textWidth = columnWidth - indent - 8;

void drawRow(CGContext& context, const Entry& entry, CGPoint at) {
  const LumicroElement& element = *entry.element;
  drawBadge(context, entry.mark, {at.x, at.y + 2}, entry.isActed ? acted : entry.isAround ? soft : colorOf(element));
  write(context, element.elementId().empty() ? "(empty)" : element.elementId(), {at.x + indent, at.y}, 14,
        UIFontWeightSemibold, ink, textWidth);
  const std::string kind(rawValue(element.type()));
  const std::string input(rawValue(element.inputType()));
  write(context,
        kind + " / " + input + "   " + std::to_string(element.x()) + ", " + std::to_string(element.y()) + "   " +
            std::to_string(element.width()) + " \u00d7 " + std::to_string(element.height()),
        {at.x + indent, at.y + 18}, 11, UIFontWeightRegular, soft, textWidth);
  write(context, element.value().empty() ? "no value" : "\u201c" + element.value() + "\u201d",
        {at.x + indent, at.y + 33}, 12, UIFontWeightRegular, element.value().empty() ? soft : ink, textWidth);
  context.setFillColor(hairline);
  context.fill({at.x + indent, at.y + rowHeight - 7, textWidth, 0.5});
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

Ref<UIImage> annotated(const UIImage& screen, const Inspection& inspection, const std::string& title) {
  const LumicorSnapshot& snapshot = inspection.snapshot;
  const CGSize picture = screen.size();
  const std::vector<Entry> entries = entriesOf(inspection);
  // What lies around has a heading, which takes a row.
  const std::size_t lines = entries.size() + (inspection.around.empty() ? 0 : 1);
  const auto rows = static_cast<std::size_t>(std::max(1.0, picture.height / rowHeight));
  const std::size_t columns = std::max<std::size_t>(1, (lines + rows - 1) / rows);
  const CGSize sheet{2 * margin + picture.width + static_cast<double>(columns) * (gutter + columnWidth),
                     2 * margin + headerHeight + picture.height};
  const CGPoint origin{margin, margin + headerHeight};
  const auto placeOf = [&](std::size_t line) {
    return CGPoint{origin.x + picture.width + gutter + static_cast<double>(line / rows) * (gutter + columnWidth),
                   origin.y + static_cast<double>(line % rows) * rowHeight};
  };

  return UIGraphicsImageRenderer(sheet, screen.scale()).imageWithActions([&](CGContext& context) {
    context.setFillColor(paper);
    context.fill({{0, 0}, sheet});
    write(context, title, {margin, margin - 6}, 26, UIFontWeightBold, ink);
    write(context,
          snapshot.viewName() + " \u00b7 " + std::to_string(snapshot.viewWidth()) + " \u00d7 " +
              std::to_string(snapshot.viewHeight()) + " points \u00b7 " + snapshot.viewOrientation() + " \u00b7 " +
              counted(snapshot.elements().size(), "element") + " \u00b7 " +
              counted(snapshot.scrollDetails().size(), "scroll position"),
          {margin, margin + 28}, 14, UIFontWeightRegular, soft);
    context.drawImage(screen, {origin, picture});
    context.setStrokeColor(hairline);
    context.stroke({origin, picture});

    context.saveGState();
    context.clip(CGPath::rect(CGRect{origin, picture}.insetBy(-badgeHeight / 2, -badgeHeight / 2)));
    for (const Entry& entry : entries) drawFrame(context, entry, origin);
    context.restoreGState();

    std::size_t line = 0;
    for (const Entry& entry : entries) {
      if (entry.isAround && line == snapshot.elements().size()) {
        const CGPoint at = placeOf(line++);
        write(context, "Around the screen", {at.x + indent, at.y + 14}, 14, UIFontWeightBold, ink, textWidth);
        write(context, "Steps find these; the snapshot does not hold them.", {at.x + indent, at.y + 33}, 11,
              UIFontWeightRegular, soft, textWidth);
      }
      drawRow(context, entry, placeOf(line++));
    }
  });
}

}  // namespace inspect
