#pragma once

#include "platform/uikit/controllers/UIViewController.h"

namespace platform {

class UISearchBar;

/// Owns a search bar and shows results while a search is on. The bar stands in the navigation bar
/// (`navigationItem.searchController`) or wherever the host puts it.
///
/// The updater (held weakly) is told "updateSearchResultsForSearchController:" whenever the text or the activity
/// changes. Delegate selectors (held weakly, optional): "willPresentSearchController:", "didPresentSearchController:",
/// "willDismissSearchController:", "didDismissSearchController:". Main thread.
class UISearchController : public Object<UISearchController, UIViewController> {
 public:
  UISearchController();
  ~UISearchController() override;
  static void exportMethods(MethodTable<UISearchController>& table);
  void init() { init(nullptr); }
  /// None shows the results in the screen that is searched. A results controller becomes that screen's child when it is
  /// first shown, and stays it while its view is hidden.
  void init(const Ref<UIViewController>& searchResultsController);

  const Ref<UISearchBar>& searchBar() const { return searchBar_; }
  bool isActive() const { return active_; }
  /// Activating gives the bar its cancel button and the keyboard; deactivating empties it and takes them away.
  virtual void setActive(bool active);
  const Ref<UIViewController>& searchResultsController() const { return results_; }
  Ref<NSObject> searchResultsUpdater() const { return updater_.lock(); }
  void setSearchResultsUpdater(const Ref<NSObject>& updater) { updater_ = updater; }
  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }
  bool obscuresBackgroundDuringPresentation() const { return obscures_; }
  void setObscuresBackgroundDuringPresentation(bool obscures) { obscures_ = obscures; }

 private:
  void editingBegan();
  void textChanged();
  void cancelTapped();
  void update();
  void showContent();
  void showResults(UIViewController& searched);
  void hideContent();
  void tell(const char* selector);
  Ref<UIViewController> searchedController() const;

  Ref<UISearchBar> searchBar_;
  Ref<UIViewController> results_;
  Weak<UIViewController> resultsHost_;  // the searched screen that the results became a child of
  Ref<UIControl> dimming_;
  Weak<NSObject> updater_;
  Weak<NSObject> delegate_;
  bool active_ = false;
  bool obscures_ = true;
};

}  // namespace platform
