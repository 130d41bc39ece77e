#include "platform/uikit/text/UITextView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graphics/CGContext.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/text/TextViewContent.h"

namespace platform {

namespace {

constexpr double sidePadding = 5;
constexpr double caretWidth = 2;

double upToPixel(double value) {
  const double scale = UIScreen::main().scale();
  return std::ceil(value * scale - 1e-6) / scale;
}

}  // namespace

UITextView::UITextView() : content_(std::make_unique<TextViewContent>(*this)) {}
UITextView::~UITextView() = default;

void UITextView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::white());
  setAlwaysBounceVertical(true);
}

void UITextView::exportMethods(MethodTable<UITextView>& table) {
  table.add<&UITextView::cut>("cut:");
  table.add<&UITextView::copy>("copy:");
  table.add<&UITextView::paste>("paste:");
  table.add<&UITextView::selectAll>("selectAll:");
  table.add<&UITextView::undo>("undo:");
  table.add<&UITextView::redo>("redo:");
}

// ---- Text and look

std::optional<std::string> UITextView::text() const { return content_->text(); }

void UITextView::setText(std::optional<std::string> text) { content_->setText(std::move(text)); }

Ref<NSAttributedString> UITextView::attributedText() const { return content_->attributedText(); }

void UITextView::setAttributedText(const Ref<NSAttributedString>& text) {
  setText(text ? std::optional(text->string()) : std::nullopt);
  if (text) content_->attributes = text->attributes();
  content_->textDidChange();
}

const UIFont& UITextView::font() const { return content_->font; }
void UITextView::setFont(const UIFont& font) {
  content_->font = font;
  content_->textDidChange();
}
UIColor UITextView::textColor() const { return content_->textColor; }
void UITextView::setTextColor(const UIColor& color) {
  content_->textColor = color;
  setNeedsDisplay();
}
NSTextAlignment UITextView::textAlignment() const { return content_->alignment; }
void UITextView::setTextAlignment(NSTextAlignment alignment) {
  content_->alignment = alignment;
  content_->textDidChange();
}
UIEdgeInsets UITextView::textContainerInset() const { return content_->inset; }
void UITextView::setTextContainerInset(UIEdgeInsets insets) {
  content_->inset = insets;
  content_->textDidChange();
}

bool UITextView::isEditable() const { return content_->editable; }
void UITextView::setEditable(bool editable) {
  if (content_->editable == editable) return;
  content_->editable = editable;
  if (!editable && isFirstResponder()) resignFirstResponder();
}
bool UITextView::isSelectable() const { return content_->selectable; }
void UITextView::setSelectable(bool selectable) { content_->selectable = selectable; }
Ref<UIView> UITextView::inputView() { return content_->inputView; }
void UITextView::setInputView(const Ref<UIView>& view) { content_->inputView = view; }
UIReturnKeyType UITextView::returnKeyType() const { return content_->traits.returnKeyType; }
void UITextView::setReturnKeyType(UIReturnKeyType type) { content_->traits.returnKeyType = type; }
UIKeyboardType UITextView::keyboardType() const { return content_->traits.keyboardType; }
void UITextView::setKeyboardType(UIKeyboardType type) { content_->traits.keyboardType = type; }
UITextAutocapitalizationType UITextView::autocapitalizationType() const {
  return content_->traits.autocapitalizationType;
}
void UITextView::setAutocapitalizationType(UITextAutocapitalizationType type) {
  content_->traits.autocapitalizationType = type;
}
UITextInputTraits UITextView::textInputTraits() { return content_->traits; }
bool UITextView::hasText() const { return !content_->edit.text().empty(); }

// ---- Layout

TextStyle TextViewContent::style() const {
  TextStyle style;
  style.font = shownFont();
  style.alignment = alignment;
  if (attributes) {
    style.underline = attributes->underline;
    style.lineSpacing = attributes->lineSpacing;
  }
  return style;
}

CGPoint TextViewContent::textOrigin() const { return {inset.left + sidePadding, inset.top}; }

double TextViewContent::textWidth(double viewWidth) const {
  return std::max(1.0, viewWidth - inset.left - inset.right - 2 * sidePadding);
}

ParagraphStack& TextViewContent::laidOut() {
  const double width = textWidth(textView.bounds().size.width);
  if (stale || paragraphs.width() != width) {
    paragraphs.reset(edit, style(), width);
    stale = false;
  }
  return paragraphs;
}

void TextViewContent::updateContentSize() {
  const double height = upToPixel(laidOut().height() + inset.top + inset.bottom);
  textView.setContentSize({textView.bounds().size.width, height});
}

CGRect TextViewContent::caretRectAt(std::size_t position) {
  const CGPoint origin = textOrigin();
  return laidOut().caretRect(position).offsetBy(origin.x, origin.y);
}

std::size_t TextViewContent::positionAt(CGPoint point) { return laidOut().positionAt(point - textOrigin()); }

void TextViewContent::showCaret() {
  updateContentSize();
  textView.scrollRectToVisible(caretRect().insetBy(0, -inset.bottom / 2), false);
}

void TextViewContent::textDidChange() {
  stale = true;
  view.setNeedsDisplay();
  view.setNeedsLayout();
  view.invalidateIntrinsicContentSize();
}

CGSize UITextView::sizeThatFits(CGSize size) const {
  const UIEdgeInsets& inset = content_->inset;
  const double width = size.width > 0 && size.width < CGFloatMax ? content_->textWidth(size.width) : CGFloatMax;
  ParagraphStack stack;
  stack.reset(content_->edit, content_->style(), width);
  double widest = 0;
  for (const ParagraphStack::Piece& piece : stack.pieces(0, CGFloatMax)) {
    widest = std::max(widest, piece.layout->size().width);
  }
  return {upToPixel(std::min(widest, width)) + inset.left + inset.right + 2 * sidePadding,
          upToPixel(stack.height()) + inset.top + inset.bottom};
}

CGSize UITextView::intrinsicContentSize() const {
  if (isScrollEnabled()) return {UIViewNoIntrinsicMetric, UIViewNoIntrinsicMetric};
  return sizeThatFits({});
}

std::optional<double> UITextView::intrinsicHeightForWidth(double width) const {
  if (isScrollEnabled()) return std::nullopt;
  return sizeThatFits({width, 0}).height;
}

void UITextView::setScrollEnabled(bool enabled) {
  Super::setScrollEnabled(enabled);
  invalidateIntrinsicContentSize();
}

void UITextView::layoutSubviews() {
  Super::layoutSubviews();
  content_->updateContentSize();
}

void UITextView::contentOffsetDidChange() {
  Super::contentOffsetDidChange();
  setNeedsDisplay();
}

void UITextView::tintColorDidChange() {
  Super::tintColorDidChange();
  setNeedsDisplay();
}

void UITextView::scrollRangeToVisible(NSRange range) {
  const NSRange whole = content_->edit.whole(range);
  const CGRect first = content_->caretRectAt(static_cast<std::size_t>(whole.location));
  const CGRect last = content_->caretRectAt(static_cast<std::size_t>(whole.end()));
  content_->updateContentSize();
  scrollRectToVisible(first.unionWith(last), false);
}

// ---- Drawing

void UITextView::draw(CGRect, CGContext& context) {
  const CGRect visible = bounds();
  if (visible.isEmpty()) return;
  ParagraphStack& stack = content_->laidOut();
  const CGPoint origin = content_->textOrigin();
  const double top = visible.minY() - origin.y;
  const double bottom = visible.maxY() - origin.y;
  context.saveGState();
  context.clip(visible);
  const bool active = content_->editing && isFirstResponder();
  if (isFirstResponder() && content_->edit.hasSelection()) {
    const NSRange selection = content_->edit.selection();
    context.setFillColor(tintColor().colorWithAlphaComponent(0.22));
    const TextRange range{static_cast<std::size_t>(selection.location), static_cast<std::size_t>(selection.end())};
    for (const CGRect& part : stack.selectionRects(range, top, bottom)) {
      context.fill(part.offsetBy(origin.x, origin.y));
    }
  }
  const UIColor color = content_->shownColor();
  for (const ParagraphStack::Piece& piece : stack.pieces(top, bottom)) {
    context.drawText(piece.layout, {origin.x, origin.y + piece.top}, color);
  }
  if (active && content_->blink.isShown() && !content_->edit.hasSelection()) {
    const CGRect caret = content_->caretRect();
    context.setFillColor(tintColor());
    context.fillPath(CGPath::roundedRect({caret.minX(), caret.minY(), caretWidth, caret.size.height}, 1));
  }
  context.restoreGState();
}

}  // namespace platform
