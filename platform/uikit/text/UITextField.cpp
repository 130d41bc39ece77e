#include "platform/uikit/text/UITextField.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/TextFieldContent.h"

namespace platform {

UITextField::UITextField() : content_(std::make_unique<TextFieldContent>(*this)) {}
UITextField::~UITextField() = default;

void UITextField::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setContentMode(UIViewContentMode::redraw);
  setContentHuggingPriority(249, UILayoutAxis::horizontal);
}

void UITextField::exportMethods(MethodTable<UITextField>& table) {
  table.add<&UITextField::cut>("cut:");
  table.add<&UITextField::copy>("copy:");
  table.add<&UITextField::paste>("paste:");
  table.add<&UITextField::selectAll>("selectAll:");
  table.add<&UITextField::undo>("undo:");
  table.add<&UITextField::redo>("redo:");
  table.add<&UITextField::clearTapped>("clearButtonTapped");
}

// ---- Text

std::optional<std::string> UITextField::text() const { return content_->text(); }

void UITextField::setText(std::optional<std::string> text) { content_->setText(std::move(text)); }

Ref<NSAttributedString> UITextField::attributedText() const { return content_->attributedText(); }

void UITextField::setAttributedText(const Ref<NSAttributedString>& text) {
  setText(text ? std::optional(text->string()) : std::nullopt);
  if (text) content_->attributes = text->attributes();
  content_->textDidChange();
}

std::optional<std::string> UITextField::placeholder() const {
  return content_->placeholder ? std::optional(content_->placeholder->string()) : std::nullopt;
}

void UITextField::setPlaceholder(std::optional<std::string> placeholder) {
  setAttributedPlaceholder(placeholder ? make<NSAttributedString>(*placeholder) : nullptr);
}

Ref<NSAttributedString> UITextField::attributedPlaceholder() const { return content_->placeholder; }

void UITextField::setAttributedPlaceholder(const Ref<NSAttributedString>& placeholder) {
  content_->placeholder = placeholder;
  content_->textDidChange();
}

const UIFont& UITextField::font() const { return content_->font; }
void UITextField::setFont(const UIFont& font) {
  content_->font = font;
  content_->textDidChange();
}
UIColor UITextField::textColor() const { return content_->textColor; }
void UITextField::setTextColor(const UIColor& color) {
  content_->textColor = color;
  setNeedsDisplay();
}
NSTextAlignment UITextField::textAlignment() const { return content_->alignment; }
void UITextField::setTextAlignment(NSTextAlignment alignment) {
  content_->alignment = alignment;
  setNeedsDisplay();
}
UITextBorderStyle UITextField::borderStyle() const { return content_->border; }
void UITextField::setBorderStyle(UITextBorderStyle style) {
  content_->border = style;
  content_->textDidChange();
}

// ---- Rectangles

namespace {

double sidePadding(UITextBorderStyle style) {
  switch (style) {
    case UITextBorderStyle::none:
      return 0;
    case UITextBorderStyle::line:
      return 4;
    case UITextBorderStyle::bezel:
    case UITextBorderStyle::roundedRect:
      return 8;
  }
  return 0;
}

CGSize sizeOf(const Ref<UIView>& view) {
  CGSize size = view->bounds().size;
  if (size.width > 0 && size.height > 0) return size;
  size = view->intrinsicContentSize();
  return {std::max(size.width, 0.0), std::max(size.height, 0.0)};
}

}  // namespace

CGRect UITextField::borderRect(CGRect bounds) const { return bounds; }

CGRect UITextField::textRect(CGRect bounds) const {
  const double side = sidePadding(content_->border);
  UIEdgeInsets insets{0, side, 0, side};
  if (content_->leftView && content_->shows(content_->leftMode)) {
    insets.left = leftViewRect(bounds).maxX() - bounds.minX() + (side > 0 ? 4 : 0);
  }
  if (content_->showsClearButton()) {
    insets.right = bounds.maxX() - clearButtonRect(bounds).minX() + 2;
  } else if (content_->rightView && content_->shows(content_->rightMode)) {
    insets.right = bounds.maxX() - rightViewRect(bounds).minX() + (side > 0 ? 4 : 0);
  }
  return bounds.insetBy(insets);
}

CGRect UITextField::placeholderRect(CGRect bounds) const { return textRect(bounds); }
CGRect UITextField::editingRect(CGRect bounds) const { return textRect(bounds); }

CGRect UITextField::clearButtonRect(CGRect bounds) const {
  constexpr double side = 20;
  const double margin = content_->border == UITextBorderStyle::none ? 0 : 5;
  return {bounds.maxX() - side - margin, bounds.minY() + std::floor((bounds.size.height - side) / 2), side, side};
}

CGRect UITextField::leftViewRect(CGRect bounds) const {
  if (!content_->leftView) return {};
  const CGSize size = sizeOf(content_->leftView);
  const double margin = content_->border == UITextBorderStyle::none ? 0 : 7;
  return {bounds.minX() + margin, bounds.minY() + std::floor(bounds.size.height - size.height) / 2, size.width,
          size.height};
}

CGRect UITextField::rightViewRect(CGRect bounds) const {
  if (!content_->rightView) return {};
  const CGSize size = sizeOf(content_->rightView);
  const double margin = content_->border == UITextBorderStyle::none ? 0 : 7;
  return {bounds.maxX() - margin - size.width, bounds.minY() + std::floor(bounds.size.height - size.height) / 2,
          size.width, size.height};
}

// ---- Accessories

Ref<UIView> UITextField::leftView() const { return content_->leftView; }
void UITextField::setLeftView(const Ref<UIView>& view) {
  if (content_->leftView) content_->leftView->removeFromSuperview();
  content_->leftView = view;
  if (view) addSubview(view);
  content_->textDidChange();
}
Ref<UIView> UITextField::rightView() const { return content_->rightView; }
void UITextField::setRightView(const Ref<UIView>& view) {
  if (content_->rightView) content_->rightView->removeFromSuperview();
  content_->rightView = view;
  if (view) addSubview(view);
  content_->textDidChange();
}
UITextFieldViewMode UITextField::leftViewMode() const { return content_->leftMode; }
void UITextField::setLeftViewMode(UITextFieldViewMode mode) {
  content_->leftMode = mode;
  content_->textDidChange();
}
UITextFieldViewMode UITextField::rightViewMode() const { return content_->rightMode; }
void UITextField::setRightViewMode(UITextFieldViewMode mode) {
  content_->rightMode = mode;
  content_->textDidChange();
}
UITextFieldViewMode UITextField::clearButtonMode() const { return content_->clearMode; }
void UITextField::setClearButtonMode(UITextFieldViewMode mode) {
  content_->clearMode = mode;
  content_->textDidChange();
}

bool TextFieldContent::shows(UITextFieldViewMode mode) const {
  switch (mode) {
    case UITextFieldViewMode::never:
      return false;
    case UITextFieldViewMode::whileEditing:
      return editing;
    case UITextFieldViewMode::unlessEditing:
      return !editing;
    case UITextFieldViewMode::always:
      return true;
  }
  return false;
}

bool TextFieldContent::showsClearButton() const {
  return shows(clearMode) && !edit.text().empty() && field.isEnabled();
}

// ---- Traits

Ref<NSObject> UITextField::delegate() const { return content_->delegate(); }
void UITextField::setDelegate(const Ref<NSObject>& delegate) { content_->fieldDelegate = delegate; }
bool UITextField::clearsOnBeginEditing() const { return content_->clearsOnBegin; }
void UITextField::setClearsOnBeginEditing(bool clears) { content_->clearsOnBegin = clears; }
bool UITextField::isSecureTextEntry() const { return content_->traits.isSecureTextEntry; }
bool UITextField::wasSecure() const {
  content_->wasSecure = content_->wasSecure || isSecureTextEntry();  // a subclass may answer for itself
  return content_->wasSecure;
}
std::optional<std::string> UITextField::accessibilityValue() const {
  std::optional<std::string> value = text();
  if (!value || !wasSecure()) return value;
  EditableText characters;
  characters.setText(*std::move(value));
  return bullets(characters, {0, characters.text().size()});
}
void UITextField::setSecureTextEntry(bool secure) {
  content_->traits.isSecureTextEntry = secure;
  content_->wasSecure = content_->wasSecure || secure;
  // Bullets may be seen by everybody; from the moment the letters show, they are for the person alone.
  if (!secure && content_->wasSecure) setHiddenFromCapture(true);
  if (secure) content_->history.clear();
  content_->textDidChange();
}
UIReturnKeyType UITextField::returnKeyType() const { return content_->traits.returnKeyType; }
void UITextField::setReturnKeyType(UIReturnKeyType type) { content_->traits.returnKeyType = type; }
UIKeyboardType UITextField::keyboardType() const { return content_->traits.keyboardType; }
void UITextField::setKeyboardType(UIKeyboardType type) { content_->traits.keyboardType = type; }
UITextAutocapitalizationType UITextField::autocapitalizationType() const {
  return content_->traits.autocapitalizationType;
}
void UITextField::setAutocapitalizationType(UITextAutocapitalizationType type) {
  content_->traits.autocapitalizationType = type;
}
UITextInputTraits UITextField::textInputTraits() {
  UITextInputTraits traits = content_->traits;
  traits.isSecureTextEntry = isSecureTextEntry();
  return traits;
}
bool UITextField::hasText() const { return !content_->edit.text().empty(); }
Ref<UIView> UITextField::inputView() { return content_->inputView; }

// ---- Size

CGSize UITextField::intrinsicContentSize() const {
  const auto layout = content_->layout();
  double width = layout->size().width + 1;
  if (content_->placeholder) {
    TextStyle style;
    style.font = content_->placeholder->attributes().font.value_or(font());
    width = std::max(width, TextLayout::measure(onOneLine(content_->placeholder->string()), style).width);
  }
  // A subclass may have moved the text: whatever its rectangle leaves out is room around the text.
  constexpr double probe = 1000;
  const CGRect rect = textRect({0, 0, probe, probe});
  const double line = std::ceil(content_->shownFont().lineHeight());
  const double least = content_->border == UITextBorderStyle::roundedRect ? 34 : 0;
  return {std::ceil(width) + probe - rect.size.width, std::max(line + probe - rect.size.height, least)};
}

CGSize UITextField::sizeThatFits(CGSize) const { return intrinsicContentSize(); }

double UITextField::firstBaselineOffset() const {
  const auto layout = content_->layout();
  const double height = std::max(bounds().size.height, intrinsicContentSize().height);
  const CGRect rect = textRect({0, 0, bounds().size.width, height});
  return rect.minY() + (rect.size.height - layout->size().height) / 2 + layout->firstBaseline();
}
double UITextField::lastBaselineOffset() const { return firstBaselineOffset(); }

void UITextField::layoutSubviews() {
  Super::layoutSubviews();
  const bool clears = content_->showsClearButton();
  if (clears && !content_->clearButton) {
    const Ref<UIButton> button = make<UIButton>(UIButtonType::close);
    button->addTarget(self(), sel("clearButtonTapped"), UIControlEvents::touchUpInside);
    addSubview(button);
    content_->clearButton = button;
  }
  if (content_->clearButton) {
    content_->clearButton->setHidden(!clears);
    content_->clearButton->setFrame(clearButtonRect(bounds()));
  }
  if (content_->leftView) {
    content_->leftView->setHidden(!content_->shows(content_->leftMode));
    content_->leftView->setFrame(leftViewRect(bounds()));
  }
  if (content_->rightView) {
    content_->rightView->setHidden(!content_->shows(content_->rightMode) || clears);
    content_->rightView->setFrame(rightViewRect(bounds()));
  }
  content_->keepCaretVisible();
}

void UITextField::stateDidChange() {
  Super::stateDidChange();
  if (!isEnabled() && isFirstResponder()) resignFirstResponder();
  setNeedsDisplay();
}

void UITextField::tintColorDidChange() {
  Super::tintColorDidChange();
  setNeedsDisplay();
}

}  // namespace platform
