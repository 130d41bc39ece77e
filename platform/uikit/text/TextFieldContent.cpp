#include "platform/uikit/text/TextFieldContent.h"

#include <algorithm>
#include <cmath>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/device/UIScreen.h"

// How a text field shows its text: laid out, scrolled sideways, drawn.

namespace platform {

namespace {

constexpr std::string_view dot = "\xE2\x80\xA2";
constexpr double caretWidth = 2;

double toPixel(double value) {
  const double scale = UIScreen::main().scale();
  return std::round(value * scale) / scale;
}

}  // namespace

// ---- What is shown

std::string bullets(const EditableText& text, TextRange range) {
  std::string dots;
  for (std::size_t at = range.start; at < range.end; at = text.next(at)) dots += dot;
  return dots;
}

TextRange TextFieldContent::shownRange() const {
  // Of a text that nobody can have typed only what lies around the caret is laid out.
  constexpr std::size_t manageable = 8192;
  constexpr std::size_t step = 2048;
  const std::size_t size = edit.text().size();
  if (size <= manageable) return {0, size};
  const std::size_t middle = editing ? edit.caret() / step * step : 0;
  return {edit.boundaryBefore(middle > step ? middle - step : 0), edit.boundaryBefore(middle + 2 * step)};
}

std::string TextFieldContent::shownText() const {
  const TextRange range = shownRange();
  if (!field.isSecureTextEntry())
    return onOneLine(std::string_view(edit.text()).substr(range.start, range.end - range.start));
  return bullets(edit, range);
}

std::size_t TextFieldContent::toShown(std::size_t position) const {
  const TextRange range = shownRange();
  position = std::clamp(position, range.start, range.end);
  if (!field.isSecureTextEntry()) return position - range.start;
  std::size_t shown = 0;
  for (std::size_t at = range.start; at < position; at = edit.next(at)) shown += dot.size();
  return shown;
}

std::size_t TextFieldContent::fromShown(std::size_t shown) const {
  const TextRange range = shownRange();
  if (!field.isSecureTextEntry()) return range.start + shown;
  std::size_t at = range.start;
  for (std::size_t passed = 0; passed + dot.size() <= shown; passed += dot.size()) at = edit.next(at);
  return at;
}

std::shared_ptr<const TextLayout> TextFieldContent::layout() const {
  TextStyle style;
  style.font = shownFont();
  style.lineBreakMode = NSLineBreakMode::byClipping;
  style.underline = attributes && attributes->underline;
  return TextLayout::make(shownText(), style);
}

CGRect TextFieldContent::contentRect() const {
  const CGRect bounds = field.bounds();
  return editing ? field.editingRect(bounds) : field.textRect(bounds);
}

double TextFieldContent::textLeft(const TextLayout& layout, CGRect rect) const {
  const double spare = rect.size.width - layout.size().width - (editing ? caretWidth : 0);
  if (spare <= 0) return rect.minX() - scrolled;
  switch (alignment) {
    case NSTextAlignment::center:
      return rect.minX() + toPixel(spare / 2);
    case NSTextAlignment::right:
      return rect.minX() + spare;
    case NSTextAlignment::left:
      return rect.minX();
    case NSTextAlignment::natural: {
      // Right to left text begins at the right: its first caret stands behind its last.
      const bool reversed = layout.caretRect(0).minX() > layout.caretRect(layout.text().size()).minX() + 0.5;
      return reversed ? rect.minX() + spare : rect.minX();
    }
  }
  return rect.minX();
}

std::size_t TextFieldContent::positionAt(CGPoint point) {
  const auto text = layout();
  const double left = textLeft(*text, contentRect());
  return fromShown(text->indexAt({point.x - left, text->size().height / 2}));
}

CGRect TextFieldContent::caretRectAt(std::size_t position) { return layout()->caretRect(toShown(position)); }

void TextFieldContent::keepCaretVisible() {
  const auto text = layout();
  const CGRect rect = contentRect();
  const double room = rect.size.width - caretWidth;
  if (!editing || text->size().width <= room) {
    scrolled = 0;
    return;
  }
  const double caret = text->caretRect(toShown(edit.caret())).minX();
  if (caret < scrolled) scrolled = caret;
  if (caret > scrolled + room) scrolled = caret - room;
  scrolled = std::clamp(scrolled, 0.0, std::max(0.0, text->size().width - room));
}

void TextFieldContent::textDidChange() {
  keepCaretVisible();
  field.setNeedsDisplay();
  field.setNeedsLayout();
  field.invalidateIntrinsicContentSize();
}

// ---- Drawing

namespace {

void drawBorder(CGContext& context, CGRect rect, UITextBorderStyle style, bool enabled, bool ownBackground) {
  const double hairline = 1 / UIScreen::main().scale();
  if (style == UITextBorderStyle::none) return;
  const double radius = style == UITextBorderStyle::roundedRect ? 6 : 0;
  const UIColor line = style == UITextBorderStyle::line ? UIColor::black() : UIColor::opaqueSeparator();
  const double width = style == UITextBorderStyle::line ? 1 : hairline;
  const CGPath path = CGPath::roundedRect(rect.insetBy(width / 2, width / 2), radius);
  if (style == UITextBorderStyle::roundedRect && !ownBackground) {
    context.setFillColor(enabled ? UIColor::white() : UIColor::systemGray6());
    context.fillPath(path);
  }
  context.setStrokeColor(line);
  context.setLineWidth(width);
  context.strokePath(path);
}

}  // namespace

void UITextField::draw(CGRect, CGContext& context) {
  const CGRect all = bounds();
  if (all.isEmpty()) return;
  drawBorder(context, borderRect(all), content_->border, isEnabled(), backgroundColor().has_value());

  if (content_->edit.text().empty() && content_->placeholder) {
    const NSTextAttributes& attributes = content_->placeholder->attributes();
    TextStyle style;
    style.font = attributes.font.value_or(font());
    style.alignment = content_->alignment;
    style.lineBreakMode = NSLineBreakMode::byTruncatingTail;
    style.numberOfLines = 1;
    const CGRect rect = placeholderRect(all);
    const auto layout = TextLayout::make(onOneLine(content_->placeholder->string()), style, rect.size.width);
    context.saveGState();
    context.clip(rect);
    context.drawText(layout, {rect.minX(), toPixel(rect.midY() - layout->size().height / 2)},
                     attributes.foregroundColor.value_or(UIColor::placeholderText()));
    context.restoreGState();
  }

  const CGRect rect = content_->contentRect();
  auto layout = content_->layout();
  if (!content_->editing && layout->size().width > rect.size.width) {
    TextStyle style = layout->style();
    style.lineBreakMode = NSLineBreakMode::byTruncatingTail;
    style.numberOfLines = 1;
    layout = TextLayout::make(layout->text(), style, rect.size.width);
  }
  const double left = content_->textLeft(*layout, rect);
  const double top = toPixel(rect.midY() - layout->size().height / 2);
  context.saveGState();
  // The caret before the first letter may stand in the padding.
  const double clipLeft = std::max(rect.minX() - caretWidth, 0.0);
  context.clip(CGRect(clipLeft, all.minY(), rect.maxX() - clipLeft, all.size.height));
  const bool active = content_->editing && isFirstResponder();
  if (active && content_->edit.hasSelection()) {
    const NSRange selection = content_->edit.selection();
    const TextRange shown{content_->toShown(static_cast<std::size_t>(selection.location)),
                          content_->toShown(static_cast<std::size_t>(selection.end()))};
    context.setFillColor(tintColor().colorWithAlphaComponent(0.22));
    for (const CGRect& part : layout->selectionRects(shown)) context.fill(part.offsetBy(left, top));
  }
  UIColor color = content_->shownColor();
  if (!isEnabled()) color = UIColor::tertiaryLabel();
  if (!layout->text().empty()) context.drawText(layout, {left, top}, color);
  if (active && content_->blink.isShown() && !content_->edit.hasSelection()) {
    const CGRect caret = layout->caretRect(content_->toShown(content_->edit.caret()));
    // In the middle of the gap, so that it stands on no letter; before the first one, which may be a placeholder's.
    const double wanted = left + caret.minX() - (content_->edit.caret() == 0 ? caretWidth : caretWidth / 2);
    const double x = std::clamp(wanted, clipLeft, std::max(clipLeft, rect.maxX() - caretWidth));
    context.setFillColor(tintColor());
    context.fillPath(CGPath::roundedRect({toPixel(x), top + caret.minY(), caretWidth, caret.size.height}, 1));
  }
  context.restoreGState();
}

}  // namespace platform
