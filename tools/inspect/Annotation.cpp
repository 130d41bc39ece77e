#include "tools/inspect/Annotation.h"

#include <algorithm>

#include "platform/graphics/CGContext.h"
#include "platform/graphics/TextLayout.h"
#include "platform/graphics/UIBezierPath.h"
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
constexpr double columnWidth = 330;
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

void drawBadge(CGContext& context, const std::string& number, CGPoint at, const UIColor& color) {
  const TextStyle style{.font = UIFont::systemFont(10, UIFontWeightBold)};
  const auto text = TextLayout::make(number, style);
  const double width = std::max(badgeHeight, text->size().width + 8);
  context.setFillColor(color);
  UIBezierPath::bezierPathWithRoundedRect({at.x, at.y, width, badgeHeight}, 4)->fill(context);
  context.drawText(text, {at.x + (width - text->size().width) / 2, at.y + (badgeHeight - text->size().height) / 2},
                   UIColor::white());
}

void drawFrame(CGContext& context, const LumicroElement& element, std::size_t number, CGPoint origin, bool isActed) {
  const CGRect frame = frameOf(element, origin);
  const UIColor color = isActed ? acted : colorOf(element);
  const auto outline = UIBezierPath::bezierPathWithRoundedRect(frame.insetBy(0.75, 0.75), 3);
  const bool isContainer = element.type() == LumicorType::TYPE_DEFAULT;  // it stays clear: others lie on it
  if (isActed || !isContainer) {
    context.setFillColor(color.colorWithAlphaComponent(isActed ? 0.28 : 0.06));
    outline->fill(context);
  }
  outline->setLineWidth(isActed ? 2.5 : 1.5);
  context.setStrokeColor(color);
  outline->stroke(context);
  // Like the tab of a folder: above the frame's corner, so that it hides nothing of what it tells of.
  const double top = std::max(frame.minY() - badgeHeight + 1, origin.y);
  drawBadge(context, std::to_string(number), {std::max(frame.minX(), origin.x), top}, color);
}

void drawRow(CGContext& context, const LumicroElement& element, std::size_t number, CGPoint at, bool isActed) {
  constexpr double indent = 34;
  constexpr double textWidth = columnWidth - indent - 8;
  drawBadge(context, std::to_string(number), {at.x, at.y + 2}, isActed ? acted : colorOf(element));
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

}  // namespace

Ref<UIImage> annotated(const UIImage& screen, const LumicorSnapshot& snapshot, const std::string& title) {
  const CGSize picture = screen.size();
  const auto& elements = snapshot.elements();
  const auto rows = static_cast<std::size_t>(std::max(1.0, picture.height / rowHeight));
  const std::size_t columns = std::max<std::size_t>(1, (elements.size() + rows - 1) / rows);
  const CGSize sheet{2 * margin + picture.width + static_cast<double>(columns) * (gutter + columnWidth),
                     2 * margin + headerHeight + picture.height};
  const CGPoint origin{margin, margin + headerHeight};

  return UIGraphicsImageRenderer(sheet, screen.scale()).imageWithActions([&](CGContext& context) {
    context.setFillColor(paper);
    context.fill({{0, 0}, sheet});
    write(context, title, {margin, margin - 6}, 26, UIFontWeightBold, ink);
    write(context,
          snapshot.viewName() + " \u00b7 " + std::to_string(snapshot.viewWidth()) + " \u00d7 " +
              std::to_string(snapshot.viewHeight()) + " points \u00b7 " + snapshot.viewOrientation() + " \u00b7 " +
              std::to_string(elements.size()) + " elements \u00b7 " + std::to_string(snapshot.scrollDetails().size()) +
              " scroll positions",
          {margin, margin + 28}, 14, UIFontWeightRegular, soft);
    context.drawImage(screen, {origin, picture});
    context.setStrokeColor(hairline);
    context.stroke({origin, picture});

    context.saveGState();
    context.clip(CGPath::rect(CGRect{origin, picture}.insetBy(-badgeHeight / 2, -badgeHeight / 2)));
    const auto isActed = [&](const LumicroElement& element) {
      return !snapshot.actionElement().elementId().empty() &&
             element.elementId() == snapshot.actionElement().elementId();
    };
    for (std::size_t i = 0; i < elements.size(); ++i)
      drawFrame(context, elements[i], i + 1, origin, isActed(elements[i]));
    context.restoreGState();

    for (std::size_t i = 0; i < elements.size(); ++i) {
      const CGPoint at{origin.x + picture.width + gutter + static_cast<double>(i / rows) * (gutter + columnWidth),
                       origin.y + static_cast<double>(i % rows) * rowHeight};
      drawRow(context, elements[i], i + 1, at, isActed(elements[i]));
    }
  });
}

}  // namespace inspect
