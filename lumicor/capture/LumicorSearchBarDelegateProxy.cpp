#include "lumicor/capture/LumicorSearchBarDelegateProxy.h"

#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/text/UISearchBar.h"

namespace lumicor {

namespace {

constexpr double pauseAfterTyping = 2.0;  // seconds
constexpr const char* triggered = "searchTriggered";

}  // namespace

void LumicorSearchBarDelegateProxy::exportMethods(MethodTable<LumicorSearchBarDelegateProxy>& table) {
  using Proxy = LumicorSearchBarDelegateProxy;
  table.add<&Proxy::searchBarTextDidChange>("searchBar:textDidChange:")
      .add<&Proxy::searchBarSearchButtonClicked>("searchBarSearchButtonClicked:")
      .add<&Proxy::searchBarCancelButtonClicked>("searchBarCancelButtonClicked:");
}

void LumicorSearchBarDelegateProxy::cancelPending() {
  if (debounceTimer_) debounceTimer_->cancel();
  debounceTimer_ = nullptr;
  LumicorPendingInputs::forget(*this);
}

void LumicorSearchBarDelegateProxy::registerNow(const std::string& actionName, const Ref<UISearchBar>& searchBar) {
  cancelPending();
  if (isRegistering()) LumicorTrackingTask::registerUserAction(actionName, searchBar);
}

void LumicorSearchBarDelegateProxy::searchBarTextDidChange(const Ref<UISearchBar>& searchBar,
                                                           const std::string& searchText) {
  static const SEL didChange = sel("searchBar:textDidChange:");
  cancelPending();
  const auto run = [proxy = weakSelf(), bar = Weak<UISearchBar>(searchBar)] {
    const auto self = proxy.lock();
    const auto alive = bar.lock();
    if (self && alive) self->registerNow(triggered, alive);
  };
  debounceTimer_ = DispatchQueue::main().asyncAfter(pauseAfterTyping, run);
  if (isRegistering()) LumicorPendingInputs::add(*this, run);
  forward(didChange, searchBar, searchText);
}

void LumicorSearchBarDelegateProxy::searchBarSearchButtonClicked(const Ref<UISearchBar>& searchBar) {
  static const SEL clicked = sel("searchBarSearchButtonClicked:");
  const Ref<NSObject> keeper = shared_from_this();
  cancelPending();
  const LumicorTrackingTask::Doing doing;
  registerNow(triggered, searchBar);
  forward(clicked, searchBar);
}

void LumicorSearchBarDelegateProxy::searchBarCancelButtonClicked(const Ref<UISearchBar>& searchBar) {
  static const SEL clicked = sel("searchBarCancelButtonClicked:");
  const Ref<NSObject> keeper = shared_from_this();
  cancelPending();
  const LumicorTrackingTask::Doing doing;
  registerNow("searchCancelled", searchBar);
  searchBar->setText("");
  searchBar->resignFirstResponder();
  forward(clicked, searchBar);
}

}  // namespace lumicor
