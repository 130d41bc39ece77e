#pragma once

#include "lumicor/capture/LumicorDelegateProxy.h"
#include "platform/uikit/Forward.h"

namespace platform {
class DispatchWorkItem;
class UISearchBar;
}  // namespace platform

namespace lumicor {

/// Hears what is searched for: once the text has been still for a while, or the search button is pressed, and when the
/// search is given up. Giving up empties the bar and takes the keyboard away, whether or not anything is registered.
/// Main thread.
class LumicorSearchBarDelegateProxy final : public Object<LumicorSearchBarDelegateProxy, LumicorDelegateProxy> {
 public:
  using Object::Object;
  static void exportMethods(MethodTable<LumicorSearchBarDelegateProxy>& table);

  void searchBarTextDidChange(const Ref<UISearchBar>& searchBar, const std::string& searchText);
  void searchBarSearchButtonClicked(const Ref<UISearchBar>& searchBar);
  void searchBarCancelButtonClicked(const Ref<UISearchBar>& searchBar);

 private:
  void cancelPending();
  void registerNow(const std::string& actionName, const Ref<UISearchBar>& searchBar);

  Ref<DispatchWorkItem> debounceTimer_;
};

}  // namespace lumicor
