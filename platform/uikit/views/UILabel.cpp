#include "platform/uikit/views/UILabel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graphics/CGContext.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

double upToPixel(double value) {
  const double scale = UIScreen::main().scale();
  return std::ceil(value * scale - 1e-6) / scale;
}

double toPixel(double value) {
  const double scale = UIScreen::main().scale();
  return std::round(value * scale) / scale;
}

}  // namespace

void UILabel::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setUserInteractionEnabled(false);
  setContentMode(UIViewContentMode::redraw);
  setContentHuggingPriority(251, UILayoutAxis::horizontal);
  setContentHuggingPriority(251, UILayoutAxis::vertical);
}

// ---- Text

std::optional<std::string> UILabel::text() const {
  return attributedText_ ? std::optional(attributedText_->string()) : text_;
}

void UILabel::setText(std::optional<std::string> text) {
  if (!attributedText_ && text_ == text) return;
  text_ = std::move(text);
  attributedText_ = nullptr;
  textDidChange();
}

Ref<NSAttributedString> UILabel::attributedText() const {
  if (attributedText_ || !text_) return attributedText_;
  return make<NSAttributedString>(*text_, NSTextAttributes{font_, textColor_});
}

void UILabel::setAttributedText(const Ref<NSAttributedString>& text) {
  attributedText_ = text;
  text_ = std::nullopt;
  textDidChange();
}

void UILabel::textDidChange() {
  setNeedsDisplay();
  setNeedsLayout();
  invalidateIntrinsicContentSize();
}

// ---- Look

void UILabel::setFont(const UIFont& font) {
  if (font_ == font) return;
  font_ = font;
  textDidChange();
}

void UILabel::setTextColor(const UIColor& color) {
  textColor_ = color;
  setNeedsDisplay();
}

void UILabel::setHighlightedTextColor(std::optional<UIColor> color) {
  highlightedTextColor_ = color;
  setNeedsDisplay();
}

void UILabel::setTextAlignment(NSTextAlignment alignment) {
  alignment_ = alignment;
  setNeedsDisplay();
}

void UILabel::setLineBreakMode(NSLineBreakMode mode) {
  if (lineBreakMode_ == mode) return;
  lineBreakMode_ = mode;
  textDidChange();
}

void UILabel::setNumberOfLines(std::int64_t lines) {
  lines = std::max<std::int64_t>(lines, 0);
  if (numberOfLines_ == lines) return;
  numberOfLines_ = lines;
  textDidChange();
}

void UILabel::setPreferredMaxLayoutWidth(double width) {
  if (preferredMaxLayoutWidth_ == width) return;
  preferredMaxLayoutWidth_ = width;
  invalidateIntrinsicContentSize();
}

void UILabel::setAdjustsFontSizeToFitWidth(bool adjusts) {
  adjustsFontSize_ = adjusts;
  setNeedsDisplay();
}

void UILabel::setMinimumScaleFactor(double factor) {
  minimumScaleFactor_ = std::clamp(factor, 0.0, 1.0);
  setNeedsDisplay();
}

void UILabel::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  setNeedsDisplay();
}

void UILabel::setHighlighted(bool highlighted) {
  if (highlighted_ == highlighted) return;
  highlighted_ = highlighted;
  setNeedsDisplay();
}

UIColor UILabel::currentColor() const {
  if (!enabled_) return UIColor::tertiaryLabel();
  if (highlighted_ && highlightedTextColor_) return *highlightedTextColor_;
  if (attributedText_ && attributedText_->attributes().foregroundColor) {
    return *attributedText_->attributes().foregroundColor;
  }
  return textColor_;
}

void UILabel::tintColorDidChange() {
  Super::tintColorDidChange();
  setNeedsDisplay();
}

// ---- Measuring

std::shared_ptr<const TextLayout> UILabel::laidOut(CGSize size, std::int64_t lines) const {
  static const std::string none;
  const std::string& string = attributedText_ ? attributedText_->string() : text_ ? *text_ : none;
  TextStyle style;
  style.font = font_;
  if (attributedText_) {
    const NSTextAttributes& attributes = attributedText_->attributes();
    style.font = attributes.font.value_or(font_);
    style.underline = attributes.underline;
    style.lineSpacing = attributes.lineSpacing;
  }
  style.alignment = alignment_;
  style.lineBreakMode = lineBreakMode_;
  style.numberOfLines = static_cast<int>(std::min<std::int64_t>(lines, 100000));
  if (adjustsFontSize_ && lines == 1 && size.width < CGFloatMax) {
    const double largest = style.font.pointSize();
    const double least = largest * (minimumScaleFactor_ > 0 ? minimumScaleFactor_ : 0.5);
    double natural = TextLayout::measure(string, style).width;
    while (natural > size.width && style.font.pointSize() > least) {
      // Letters are not exactly in proportion to their size: a last half point may be missing.
      const double next = std::floor(style.font.pointSize() * size.width / natural * 2) / 2;
      style.font = style.font.fontWithSize(std::max(least, std::min(next, style.font.pointSize() - 0.5)));
      natural = TextLayout::measure(string, style).width;
    }
  }
  std::shared_ptr<const TextLayout> layout = TextLayout::make(string, style, size.width);
  const double lineHeight = layout->lines().front().frame.height();
  if (lines != 1 && layout->size().height > size.height + 0.5 && lineHeight > 0) {
    // Only the lines that fit are shown, the last one cut short.
    style.numberOfLines = std::max(1, static_cast<int>((size.height + 0.5) / lineHeight));
    if (style.lineBreakMode == NSLineBreakMode::byWordWrapping) {
      style.lineBreakMode = NSLineBreakMode::byTruncatingTail;
    }
    layout = TextLayout::make(string, style, size.width);
  }
  return layout;
}

CGRect UILabel::textRect(CGRect bounds, std::int64_t numberOfLines) const {
  const auto layout = laidOut(bounds.size, numberOfLines);
  const CGSize size{std::min(upToPixel(layout->size().width), bounds.size.width),
                    std::min(upToPixel(layout->size().height), bounds.size.height)};
  double left = bounds.origin.x;
  if (alignment_ == NSTextAlignment::center) left += (bounds.size.width - size.width) / 2;
  if (alignment_ == NSTextAlignment::right) left += bounds.size.width - size.width;
  return {left, bounds.origin.y + (bounds.size.height - size.height) / 2, size.width, size.height};
}

CGSize UILabel::sizeThatFits(CGSize size) const {
  const std::optional<std::string> shown = text();
  if (!shown || shown->empty()) return {};
  const double width = size.width > 0 ? size.width : CGFloatMax;
  const auto layout = laidOut({width, CGFloatMax}, numberOfLines_);
  return {std::min(upToPixel(layout->size().width), width), upToPixel(layout->size().height)};
}

CGSize UILabel::intrinsicContentSize() const {
  return sizeThatFits({numberOfLines_ == 1 ? 0 : preferredMaxLayoutWidth_, 0});
}

std::optional<double> UILabel::intrinsicHeightForWidth(double width) const {
  if (numberOfLines_ == 1) return std::nullopt;
  if (preferredMaxLayoutWidth_ > 0) width = std::min(width, preferredMaxLayoutWidth_);
  return sizeThatFits({width, 0}).height;
}

double UILabel::firstBaselineOffset() const {
  const CGSize size = bounds().size;
  const auto layout = laidOut({size.width > 0 ? size.width : CGFloatMax, CGFloatMax}, numberOfLines_);
  return toPixel(std::max(0.0, (size.height - layout->size().height) / 2) + layout->firstBaseline());
}

double UILabel::lastBaselineOffset() const {
  const CGSize size = bounds().size;
  const auto layout = laidOut({size.width > 0 ? size.width : CGFloatMax, CGFloatMax}, numberOfLines_);
  return toPixel(std::max(0.0, (size.height - layout->size().height) / 2) + layout->lastBaseline());
}

// ---- Drawing

void UILabel::draw(CGRect, CGContext& context) { drawText(bounds(), context); }

void UILabel::drawText(CGRect rect, CGContext& context) {
  const std::optional<std::string> shown = text();
  if (!shown || shown->empty() || rect.isEmpty()) return;
  const auto layout = laidOut(rect.size, numberOfLines_);
  const double top = rect.origin.y + (rect.size.height - layout->size().height) / 2;
  context.drawText(layout, {rect.origin.x, toPixel(top)}, currentColor());
}

}  // namespace platform
