#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

enum class UINavigationItemLargeTitleDisplayMode { automatic, always, never };

/// What a navigation bar shows for one screen. Owned by its controller; the bar that shows it is known weakly and
/// follows every change at once. Main thread.
class UINavigationItem : public Object<UINavigationItem, NSObject> {
 public:
  UINavigationItem();
  ~UINavigationItem() override;
  void init() {}
  void init(const std::string& title) { title_ = title; }

  using Items = std::vector<Ref<UIBarButtonItem>>;

  const std::optional<std::string>& title() const { return title_; }
  void setTitle(std::optional<std::string> title);
  const Ref<UIView>& titleView() const { return titleView_; }
  /// Takes the title's place, centred, in its own size (or what sizeThatFits says when that is empty).
  void setTitleView(const Ref<UIView>& view);

  /// From the leading edge inwards.
  const Items& leftBarButtonItems() const { return left_; }
  void setLeftBarButtonItems(Items items, bool animated = false);
  /// From the trailing edge inwards.
  const Items& rightBarButtonItems() const { return right_; }
  void setRightBarButtonItems(Items items, bool animated = false);
  /// The first of them, or none. Setting replaces them all.
  Ref<UIBarButtonItem> leftBarButtonItem() const { return left_.empty() ? nullptr : left_.front(); }
  void setLeftBarButtonItem(const Ref<UIBarButtonItem>& item, bool animated = false);
  Ref<UIBarButtonItem> rightBarButtonItem() const { return right_.empty() ? nullptr : right_.front(); }
  void setRightBarButtonItem(const Ref<UIBarButtonItem>& item, bool animated = false);

  bool hidesBackButton() const { return hidesBackButton_; }
  void setHidesBackButton(bool hides, bool animated = false);
  bool leftItemsSupplementBackButton() const { return leftItemsSupplementBackButton_; }
  void setLeftItemsSupplementBackButton(bool supplement);
  /// What the back button of the next screen says; the title when none.
  const std::optional<std::string>& backButtonTitle() const { return backButtonTitle_; }
  void setBackButtonTitle(std::optional<std::string> title);
  /// Gives the next screen's back button its title and tint, as they are when that screen comes; its picture, target
  /// and action are not used.
  const Ref<UIBarButtonItem>& backBarButtonItem() const { return backBarButtonItem_; }
  void setBackBarButtonItem(const Ref<UIBarButtonItem>& item);

  UINavigationItemLargeTitleDisplayMode largeTitleDisplayMode() const { return largeTitle_; }
  void setLargeTitleDisplayMode(UINavigationItemLargeTitleDisplayMode mode);
  /// Its search bar stands under the title.
  const Ref<UISearchController>& searchController() const { return searchController_; }
  void setSearchController(const Ref<UISearchController>& controller);  // with the controllers

 private:
  friend class UINavigationBar;
  void changed(bool animated);
  std::optional<std::string> title_;
  Ref<UIView> titleView_;
  Items left_;
  Items right_;
  std::optional<std::string> backButtonTitle_;
  Ref<UIBarButtonItem> backBarButtonItem_;
  Ref<UISearchController> searchController_;
  Ref<UIView> searchBar_;  // the controller's
  UINavigationItemLargeTitleDisplayMode largeTitle_ = UINavigationItemLargeTitleDisplayMode::automatic;
  bool hidesBackButton_ = false;
  bool leftItemsSupplementBackButton_ = false;
  Weak<UINavigationBar> bar_;
};

}  // namespace platform
