#include "platform/uikit/bars/UIBarButtonItem.h"

#include <utility>

#include "platform/graphics/UIImage.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/_UIButtonBarButton.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace platform {

namespace {

struct SystemLook {
  const char* title = nullptr;
  const char* symbol = nullptr;
  UIBarButtonItemStyle style = UIBarButtonItemStyle::plain;
};

SystemLook lookOf(UIBarButtonSystemItem item) {
  using Item = UIBarButtonSystemItem;
  switch (item) {
    case Item::done:
      return {"Done", nullptr, UIBarButtonItemStyle::done};
    case Item::save:
      return {"Save", nullptr, UIBarButtonItemStyle::done};
    case Item::cancel:
      return {.title = "Cancel"};
    case Item::edit:
      return {.title = "Edit"};
    case Item::undo:
      return {.symbol = "arrow.uturn.backward"};
    case Item::redo:
      return {.symbol = "arrow.uturn.forward"};
    case Item::add:
      return {.symbol = "plus"};
    case Item::compose:
      return {.symbol = "square.and.pencil"};
    case Item::reply:
      return {.symbol = "arrowshape.turn.up.left"};
    case Item::action:
      return {.symbol = "square.and.arrow.up"};
    case Item::organize:
      return {.symbol = "folder"};
    case Item::bookmarks:
      return {.symbol = "book"};
    case Item::search:
      return {.symbol = "magnifyingglass"};
    case Item::refresh:
      return {.symbol = "arrow.clockwise"};
    case Item::stop:
      return {.symbol = "xmark"};
    case Item::camera:
      return {.symbol = "camera"};
    case Item::trash:
      return {.symbol = "trash"};
    case Item::play:
      return {.symbol = "play.fill"};
    case Item::pause:
      return {.symbol = "pause.fill"};
    case Item::rewind:
      return {.symbol = "backward.fill"};
    case Item::fastForward:
      return {.symbol = "forward.fill"};
    case Item::close:
      return {.symbol = "xmark.circle.fill"};
    case Item::flexibleSpace:
    case Item::fixedSpace:
      return {};
  }
  return {};
}

}  // namespace

UIBarButtonItem::UIBarButtonItem() = default;
UIBarButtonItem::~UIBarButtonItem() = default;

void UIBarButtonItem::exportMethods(MethodTable<UIBarButtonItem>& table) {
  Class& cls = table.owner();
  Exchangeable<&UIBarButtonItem::initWithBarButtonSystemItem,
               &UIBarButtonItem::platformInitWithBarButtonSystemItem>::addTo(cls,
                                                                             "initWithBarButtonSystemItem:target:"
                                                                             "action:");
  Exchangeable<&UIBarButtonItem::initWithTitle, &UIBarButtonItem::platformInitWithTitle>::addTo(
      cls, "initWithTitle:style:target:action:");
  Exchangeable<&UIBarButtonItem::initWithImage, &UIBarButtonItem::platformInitWithImage>::addTo(
      cls, "initWithImage:style:target:action:");
  table.add<&UIBarButtonItem::view>("view").add<&UIBarButtonItem::target>("target").add<&UIBarButtonItem::action>(
      "action");
}

void UIBarButtonItem::initWithImage(Ref<UIImage> image, UIBarButtonItemStyle style, Ref<NSObject> target, SEL action) {
  Exchangeable<&UIBarButtonItem::initWithImage, &UIBarButtonItem::platformInitWithImage>::call(*this, image, style,
                                                                                               target, action);
}

void UIBarButtonItem::initWithCustomView(const Ref<UIView>& customView) { customView_ = customView; }

void UIBarButtonItem::platformInitWithBarButtonSystemItem(UIBarButtonSystemItem item, Ref<NSObject> target,
                                                          SEL action) {
  systemItem_ = item;
  const SystemLook look = lookOf(item);
  style_ = look.style;
  if (look.title) setTitle(look.title);
  if (look.symbol) setImage(UISystemSymbol::image(look.symbol));
  setTarget(target);
  setAction(action);
}

void UIBarButtonItem::platformInitWithTitle(std::string title, UIBarButtonItemStyle style, Ref<NSObject> target,
                                            SEL action) {
  style_ = style;
  setTitle(std::move(title));
  setTarget(target);
  setAction(action);
}

void UIBarButtonItem::platformInitWithImage(Ref<UIImage> image, UIBarButtonItemStyle style, Ref<NSObject> target,
                                            SEL action) {
  style_ = style;
  setImage(image);
  setTarget(target);
  setAction(action);
}

Ref<UIBarButtonItem> UIBarButtonItem::flexibleSpaceItem() {
  auto item = make<UIBarButtonItem>();
  item->platformInitWithBarButtonSystemItem(UIBarButtonSystemItem::flexibleSpace, nullptr, SEL());
  return item;
}

Ref<UIBarButtonItem> UIBarButtonItem::fixedSpaceItem(double width) {
  auto item = make<UIBarButtonItem>();
  item->platformInitWithBarButtonSystemItem(UIBarButtonSystemItem::fixedSpace, nullptr, SEL());
  item->setWidth(width);
  return item;
}

void UIBarButtonItem::setTarget(const Ref<NSObject>& target) {
  target_ = target;
  hasTarget_ = target != nullptr;
  contentDidChange();
}

void UIBarButtonItem::setAction(SEL action) {
  action_ = action;
  contentDidChange();
}

void UIBarButtonItem::setStyle(UIBarButtonItemStyle style) {
  style_ = style;
  contentDidChange();
}

void UIBarButtonItem::setWidth(double width) {
  width_ = width;
  contentDidChange();
}

void UIBarButtonItem::setTintColor(std::optional<UIColor> color) {
  tintColor_ = color;
  contentDidChange();
}

void UIBarButtonItem::setCustomView(const Ref<UIView>& customView) {
  const Ref<UIView> before = view();
  customView_ = customView;
  const Ref<UIView> bar = bar_.lock();
  if (!bar || before == view()) return;
  if (const auto navigationBar = as<UINavigationBar>(bar)) {
    if (const auto item = navigationBar->topItem()) navigationBar->itemDidChange(*item, false);
    return;
  }
  if (before && before->superview() == bar) before->removeFromSuperview();
  if (const Ref<UIView> now = ensureView()) bar->addSubview(now);
  bar->setNeedsLayout();
}

Ref<UIView> UIBarButtonItem::view() const { return customView_ ? customView_ : Ref<UIView>(button_); }

Ref<UIView> UIBarButtonItem::ensureView() {
  if (customView_ || isFlexibleSpace() || isFixedSpace()) return customView_;
  if (!button_) button_ = make<_UIButtonBarButton>(self());
  return button_;
}

Ref<UIBarButtonItem> UIBarButtonItem::itemShownBy(const UIView& view) {
  const auto* const button = dynamic_cast<const _UIButtonBarButton*>(&view);
  return button ? button->item() : nullptr;
}

void UIBarButtonItem::contentDidChange() {
  if (button_) button_->update();
}

void UIBarButtonItem::identifierDidChange() {
  if (button_) button_->setAccessibilityIdentifier(accessibilityIdentifier());
}

}  // namespace platform
