#pragma once

#include <optional>

#include "platform/geometry/UIColor.h"
#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/bars/UIBarItem.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class UINavigationItem;
class _UIButtonBarButton;

enum class UIBarButtonSystemItem {
  done,
  cancel,
  edit,
  save,
  add,
  flexibleSpace,
  fixedSpace,
  compose,
  reply,
  action,
  organize,
  bookmarks,
  search,
  refresh,
  stop,
  camera,
  trash,
  play,
  pause,
  rewind,
  fastForward,
  undo,
  redo,
  close
};

enum class UIBarButtonItemStyle { plain, done };

/// A button of a navigation bar or toolbar. Its action goes to the target (held weakly), or up the responder chain when
/// it has none, with the item as sender. Main thread.
class UIBarButtonItem : public Object<UIBarButtonItem, UIBarItem> {
 public:
  UIBarButtonItem();
  ~UIBarButtonItem() override;
  static void exportMethods(MethodTable<UIBarButtonItem>& table);

  void init() {}
  void init(UIBarButtonSystemItem item, const Ref<NSObject>& target, SEL action) {
    initWithBarButtonSystemItem(item, target, action);
  }
  void init(const std::string& title, UIBarButtonItemStyle style, const Ref<NSObject>& target, SEL action) {
    initWithTitle(title, style, target, action);
  }
  void init(const Ref<UIImage>& image, UIBarButtonItemStyle style, const Ref<NSObject>& target, SEL action) {
    initWithImage(image, style, target, action);
  }
  void init(const Ref<UIView>& customView) { initWithCustomView(customView); }

  /// Exchangeable ("initWithBarButtonSystemItem:target:action:").
  virtual void initWithBarButtonSystemItem(UIBarButtonSystemItem item, Ref<NSObject> target, SEL action) {
    Exchangeable<&UIBarButtonItem::initWithBarButtonSystemItem,
                 &UIBarButtonItem::platformInitWithBarButtonSystemItem>::call(*this, item, target, action);
  }
  /// Exchangeable ("initWithTitle:style:target:action:").
  virtual void initWithTitle(std::string title, UIBarButtonItemStyle style, Ref<NSObject> target, SEL action) {
    Exchangeable<&UIBarButtonItem::initWithTitle, &UIBarButtonItem::platformInitWithTitle>::call(*this, title, style,
                                                                                                 target, action);
  }
  /// Exchangeable ("initWithImage:style:target:action:").
  virtual void initWithImage(Ref<UIImage> image, UIBarButtonItemStyle style, Ref<NSObject> target, SEL action);
  virtual void initWithCustomView(const Ref<UIView>& customView);
  void platformInitWithBarButtonSystemItem(UIBarButtonSystemItem item, Ref<NSObject> target, SEL action);
  void platformInitWithTitle(std::string title, UIBarButtonItemStyle style, Ref<NSObject> target, SEL action);
  void platformInitWithImage(Ref<UIImage> image, UIBarButtonItemStyle style, Ref<NSObject> target, SEL action);

  /// Spaces of a toolbar; they are not made by the exchangeable initialisers.
  static Ref<UIBarButtonItem> flexibleSpaceItem();
  static Ref<UIBarButtonItem> fixedSpaceItem(double width);

  Ref<NSObject> target() const { return target_.lock(); }
  void setTarget(const Ref<NSObject>& target);
  /// True also when the target has died meanwhile: then the action goes nowhere.
  bool sendsToTarget() const { return hasTarget_; }
  SEL action() const { return action_; }
  void setAction(SEL action);
  UIBarButtonItemStyle style() const { return style_; }
  void setStyle(UIBarButtonItemStyle style);
  /// Points; 0 for what the content needs.
  double width() const { return width_; }
  void setWidth(double width);
  std::optional<UIColor> tintColor() const { return tintColor_; }
  void setTintColor(std::optional<UIColor> color);
  const Ref<UIView>& customView() const { return customView_; }
  /// A bar that shows the item shows the new view at once; none brings the item's own button back.
  void setCustomView(const Ref<UIView>& customView);
  std::optional<UIBarButtonSystemItem> systemItem() const { return systemItem_; }

  /// What stands for the item in a bar: the custom view, or the private button once a bar has shown the item; none
  /// before that, and for spaces.
  Ref<UIView> view() const;
  /// The same, made when it is not there yet. Called by bars. None for spaces.
  Ref<UIView> ensureView();
  /// The item whose own button the view is; none for every other view, custom ones included.
  static Ref<UIBarButtonItem> itemShownBy(const UIView& view);
  bool isFlexibleSpace() const { return systemItem_ == UIBarButtonSystemItem::flexibleSpace; }
  bool isFixedSpace() const { return systemItem_ == UIBarButtonSystemItem::fixedSpace; }

 protected:
  void contentDidChange() override;
  void identifierDidChange() override;

 private:
  Weak<NSObject> target_;
  bool hasTarget_ = false;
  SEL action_;
  UIBarButtonItemStyle style_ = UIBarButtonItemStyle::plain;
  double width_ = 0;
  std::optional<UIColor> tintColor_;
  std::optional<UIBarButtonSystemItem> systemItem_;
  friend class UINavigationBar;
  friend class UIToolbar;
  Ref<UIView> customView_;
  Ref<_UIButtonBarButton> button_;
  Weak<UIView> bar_;  // that shows it, or showed it last
};

}  // namespace platform
