#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class NavigationBarHost;
class UILabel;
class _UIBarBackground;

/// Shows the last of a stack of navigation items: title, bar buttons, and a back button named after the item before.
/// A navigation controller drives its own bar; a bar of the host's own is driven with push and pop. Delegate selectors
/// (held weakly, optional): "navigationBar:shouldPopItem:" (bool, asked when the back button is tapped),
/// "navigationBar:didPopItem:". Main thread.
class UINavigationBar : public Object<UINavigationBar, UIView> {
 public:
  UINavigationBar();
  ~UINavigationBar() override;
  static void exportMethods(MethodTable<UINavigationBar>& table);
  void initWithFrame(CGRect frame) override;

  const std::vector<Ref<UINavigationItem>>& items() const { return items_; }
  void setItems(std::vector<Ref<UINavigationItem>> items, bool animated = false);
  Ref<UINavigationItem> topItem() const { return items_.empty() ? nullptr : items_.back(); }
  Ref<UINavigationItem> backItem() const { return items_.size() < 2 ? nullptr : items_[items_.size() - 2]; }
  void pushNavigationItem(const Ref<UINavigationItem>& item, bool animated);
  /// The item that went, or none when there is only one.
  Ref<UINavigationItem> popNavigationItem(bool animated);

  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }

  /// The bar's ground; none for the standard light one.
  std::optional<UIColor> barTintColor() const { return barTintColor_; }
  void setBarTintColor(std::optional<UIColor> color);
  std::optional<UIColor> titleColor() const { return titleColor_; }
  void setTitleColor(std::optional<UIColor> color);
  bool prefersLargeTitles() const { return prefersLargeTitles_; }
  void setPrefersLargeTitles(bool prefers);
  /// The label of the title in force, a direct subview; none while a title view stands in its place.
  Ref<UILabel> titleLabel() const;
  /// The button that leads back, or none when the top item has none.
  Ref<UIView> backButtonView() const;

  static constexpr double standardHeight = 44;
  static constexpr double largeTitleHeight = 52;
  static constexpr double searchBarHeight = 52;
  static constexpr double transitionDuration = 0.35;
  /// Points that the top item needs: the standard height, plus a large title, plus a search bar.
  double contentHeight() const;
  /// How far the ground reaches beyond the top edge, under the status bar. Set by the navigation controller.
  void setTopExtension(double points);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;

 private:
  friend class UIBarButtonItem;
  friend class UINavigationItem;
  friend class UINavigationController;
  struct Contents;
  enum class Direction { none, forward, backward };
  void itemDidChange(const UINavigationItem& item, bool animated);
  void backButtonTapped();
  void show(Direction direction, bool animated);
  void fillTitle(Contents& contents, const Contents* old);
  void fillButtons(Contents& contents, const Contents* old);
  void bring(const Contents& contents, const Contents* old, Direction direction, bool animated);
  void take(const Contents& contents, Direction direction, bool animated);
  void layOutTitle(double left, double right);
  double layOutLeft();
  double layOutRight();
  bool showsLargeTitle() const;
  std::string backTitle() const;

  std::vector<Ref<UINavigationItem>> items_;
  Weak<NSObject> delegate_;
  Weak<NavigationBarHost> host_;
  std::optional<UIColor> barTintColor_;
  std::optional<UIColor> titleColor_;
  bool prefersLargeTitles_ = false;
  double topExtension_ = 0;
  Ref<_UIBarBackground> background_;
  std::unique_ptr<Contents> contents_;
};

}  // namespace platform
