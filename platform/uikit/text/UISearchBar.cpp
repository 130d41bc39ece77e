#include "platform/uikit/text/UISearchBar.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/views/UIImageView.h"

namespace platform {

namespace {

constexpr double fieldHeight = 36;
constexpr double barHeight = 52;
constexpr double margin = 12;
constexpr double gap = 10;
constexpr double seconds = 0.25;

/// The field of a search bar: room for the glass at the left, the clear button at the right.
class SearchField : public Object<SearchField, UITextField> {
 public:
  CGRect leftViewRect(CGRect bounds) const override {
    constexpr double side = 16;
    return {bounds.minX() + 9, bounds.midY() - side / 2, side, side};
  }
  CGRect clearButtonRect(CGRect bounds) const override {
    constexpr double side = 20;
    return {bounds.maxX() - side - 7, bounds.midY() - side / 2, side, side};
  }
  CGRect textRect(CGRect bounds) const override { return bounds.insetBy(UIEdgeInsets{0, 31, 0, 30}); }
};

const Ref<UIImage>& glass() {
  static const Ref<UIImage> picture = UIGraphicsImageRenderer(CGSize{16, 16}).imageWithActions([](CGContext& context) {
    context.setStrokeColor(UIColor::secondaryLabel());
    context.setLineWidth(1.6);
    context.setLineCap(CGLineCap::round);
    context.addEllipse({1.2, 1.2, 10.6, 10.6});
    context.strokePath();
    context.moveTo({10.5, 10.5});
    context.addLineTo({14.6, 14.6});
    context.strokePath();
  });
  return picture;
}

}  // namespace

void UISearchBar::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  field_ = make<SearchField>();
  field_->setBackgroundColor(UIColor::tertiarySystemFill());
  field_->layer()->setCornerRadius(10);
  field_->setLeftView(make<UIImageView>(glass()));
  field_->setLeftViewMode(UITextFieldViewMode::always);
  field_->setClearButtonMode(UITextFieldViewMode::always);
  field_->setReturnKeyType(UIReturnKeyType::search);
  field_->setDelegate(self());
  field_->addTarget(self(), sel("fieldDidChange"), UIControlEvents::editingChanged);
  addSubview(field_);
  cancel_ = make<UIButton>(UIButtonType::system);
  cancel_->setTitle("Cancel", UIControlState::normal);
  cancel_->addTarget(self(), sel("cancelTapped"), UIControlEvents::touchUpInside);
  cancel_->setHidden(true);
  addSubview(cancel_);
}

void UISearchBar::exportMethods(MethodTable<UISearchBar>& table) {
  table.add<&UISearchBar::didChange>("fieldDidChange");
  table.add<&UISearchBar::cancelTapped>("cancelTapped");
  table.add<&UISearchBar::shouldBegin>("textFieldShouldBeginEditing:");
  table.add<&UISearchBar::shouldEnd>("textFieldShouldEndEditing:");
  table.add<&UISearchBar::didBegin>("textFieldDidBeginEditing:");
  table.add<&UISearchBar::didEnd>("textFieldDidEndEditing:");
  table.add<&UISearchBar::shouldReturn>("textFieldShouldReturn:");
  table.add<&UISearchBar::shouldChange>("textField:shouldChangeCharactersInRange:replacementString:");
}

// ---- The field's delegate, passed on under the names of a search bar

bool UISearchBar::ask(const char* selector, bool otherwise) {
  return askOptional<bool>(delegate_.lock(), sel(selector), self()).value_or(otherwise);
}

void UISearchBar::tell(const char* selector) { sendOptional(delegate_.lock(), sel(selector), self()); }

bool UISearchBar::shouldBegin(const Ref<NSObject>&) { return ask("searchBarShouldBeginEditing:", true); }
bool UISearchBar::shouldEnd(const Ref<NSObject>&) { return ask("searchBarShouldEndEditing:", true); }
void UISearchBar::didBegin(const Ref<NSObject>&) { tell("searchBarTextDidBeginEditing:"); }
void UISearchBar::didEnd(const Ref<NSObject>&) { tell("searchBarTextDidEndEditing:"); }

bool UISearchBar::shouldChange(const Ref<NSObject>&, NSRange range, const std::string& replacement) {
  static const SEL selector = sel("searchBar:shouldChangeTextInRange:replacementText:");
  return askOptional<bool>(delegate_.lock(), selector, self(), range, replacement).value_or(true);
}

void UISearchBar::didChange() {
  static const SEL selector = sel("searchBar:textDidChange:");
  sendOptional(delegate_.lock(), selector, self(), field_->text().value_or(""));
}

bool UISearchBar::shouldReturn(const Ref<NSObject>&) {
  tell("searchBarSearchButtonClicked:");
  return false;
}

void UISearchBar::cancelTapped() { tell("searchBarCancelButtonClicked:"); }

// ---- Properties

std::optional<std::string> UISearchBar::text() const { return field_->text(); }
void UISearchBar::setText(std::optional<std::string> text) { field_->setText(std::move(text)); }
std::optional<std::string> UISearchBar::placeholder() const { return field_->placeholder(); }
void UISearchBar::setPlaceholder(std::optional<std::string> placeholder) {
  field_->setPlaceholder(std::move(placeholder));
}
bool UISearchBar::isEnabled() const { return field_->isEnabled(); }
void UISearchBar::setEnabled(bool enabled) {
  field_->setEnabled(enabled);
  field_->setAlpha(enabled ? 1 : 0.5);
  cancel_->setEnabled(enabled);
}

void UISearchBar::setShowsCancelButton(bool shows, bool animated) {
  if (showsCancelButton_ == shows) return;
  showsCancelButton_ = shows;
  const bool slides = animated && window();
  if (shows) {
    cancel_->setHidden(false);
    UIView::performWithoutAnimation([&] {
      const CGSize size = cancel_->sizeThatFits({});
      cancel_->setAlpha(slides ? 0 : 1);
      cancel_->setFrame({bounds().maxX(), bounds().midY() - size.height / 2, size.width, size.height});
    });
  }
  const auto change = [this, shows] {
    cancel_->setAlpha(shows ? 1 : 0);
    setNeedsLayout();
    layoutIfNeeded();
  };
  const auto afterwards = [weak = weakSelf()](bool) {
    if (const Ref<UISearchBar> bar = weak.lock()) bar->cancel_->setHidden(!bar->showsCancelButton_);
  };
  if (slides) {
    UIView::animateWithDuration(seconds, change, afterwards);
  } else {
    change();
    afterwards(true);
  }
}

// ---- Responder and layout

bool UISearchBar::canBecomeFirstResponder() { return field_->canBecomeFirstResponder(); }
bool UISearchBar::becomeFirstResponder() { return field_->becomeFirstResponder(); }
bool UISearchBar::isFirstResponder() const { return field_ && field_->isFirstResponder(); }
bool UISearchBar::resignFirstResponder() { return field_->resignFirstResponder(); }

CGSize UISearchBar::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, barHeight}; }
CGSize UISearchBar::sizeThatFits(CGSize size) const { return {size.width > 0 ? size.width : 320, barHeight}; }

void UISearchBar::layoutSubviews() {
  Super::layoutSubviews();
  const CGRect all = bounds();
  const CGSize cancel = cancel_->sizeThatFits({});
  const double reserved = showsCancelButton_ ? cancel.width + gap : 0;
  const double height = std::min(fieldHeight, all.size.height);
  field_->setFrame({all.minX() + margin, std::round(all.midY() - height / 2),
                    std::max(0.0, all.size.width - 2 * margin - reserved), height});
  const double left = showsCancelButton_ ? all.maxX() - margin - cancel.width : all.maxX();
  cancel_->setFrame({left, std::round(all.midY() - cancel.height / 2), cancel.width, cancel.height});
}

}  // namespace platform
