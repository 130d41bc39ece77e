#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "lumicor/core/LumicorAttributes.h"
#include "lumicor/core/TLChatMessage.h"
#include "lumicor/core/TLDefaults.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"

namespace platform {
class IndexPath;
class UICollectionView;
class UIPickerView;
class UISearchBar;
class UITabBarController;
class UITableView;
class UITextView;
class UIViewController;
}  // namespace platform

namespace lumicor {

using namespace platform;

class LumicorPickerViewDelegateProxy;
class LumicorSearchBarDelegateProxy;
class LumicorTabBarDelegateProxy;
class LumicorTextViewDelegateProxy;
class LumicorTrackingControlView;

/// A labelled declarative view: where it is in global coordinates, when that was last told, whether it is on screen.
struct SwiftUICoordinates {
  CGRect rect;
  std::int64_t time = 0;  ///< milliseconds since 1970
  bool isVisible = false;
};

/// The one object that a host application talks to: it holds the session, and everybody reads it. What it starts and
/// registers is defined in the rooms above that do it (lumicor/LumicorStart.cpp,
/// lumicor/capture/LumicorSelections.cpp). Thread: main, except what requests read from their queues (key, endpoint,
/// attributes, the debug gate): any.
class Lumicor : public Object<Lumicor, NSObject> {
 public:
  static Lumicor& shared();
  Lumicor();
  ~Lumicor() override;

  inline static bool isTracking = false;
  inline static bool showTrackingView = false;
  inline static bool showTesselLumicor = false;
  inline static const std::string FRAMEWORK_NATIVE = "NATIVE";

  /// Starts the session: installs the hooks (once), records who and what, sends the init request. Nothing of the façade
  /// works before the service has answered; a failed start is repeated by calling again.
  void initialize(const std::string& secretKey, const std::string& userId);
  void initialize(const std::string& secretKey, const std::string& userId, const std::string& endpoint);

  void setInitialized(bool initialized) { isInitialized_ = initialized; }
  bool getInitialized() const { return isInitialized_; }
  std::optional<std::string> getSecretKey() const;
  void setSecretKey(const std::string& secretKey);
  /// Scheme and host, no trailing slash: request paths are appended as they are.
  std::string getEndpoint() const;
  void setEndpoint(const std::string& endpoint);

  std::map<std::string, SwiftUICoordinates> getSwiftUICoordinates() const { return swiftUICoordinates_; }
  /// The same without a copy, for the reader of the screen; borrowed for the call.
  const std::map<std::string, SwiftUICoordinates>& swiftUICoordinates() const { return swiftUICoordinates_; }
  void addSwiftUICoordinates(const std::string& label, CGRect rect);
  void onSwiftUIViewDisappear(const std::string& label);
  void onSwiftUIViewAppear(const std::string& label);

  bool getShouldEnableDebug() const { return shouldEnableDebug_; }
  void setShouldEnableDebug(bool shouldEnableDebug) { shouldEnableDebug_ = shouldEnableDebug; }
  const Ref<LumicorAttributes>& getAttributes() const { return attributes_; }
  const std::string& getFramework() const { return framework_; }

  /// The class name of the screen now shown.
  const std::string& getCurrentView() const { return currentView_; }
  /// Tells the listener, also when the name is the same.
  void setCurrentView(const std::string& currentView);
  void setCurrentViewListener(std::function<void(const std::string&)> viewListener);
  void setHomeNavigationRunnable(std::function<void()> runnable) {
    clientHomeNavigationRunnable_ = std::move(runnable);
  }
  const std::function<void()>& getHomeNavigationRunnable() const { return clientHomeNavigationRunnable_; }

  const std::vector<TLChatMessage>& getChatHistory() const { return *chatHistory_; }
  /// The same to keep: another history takes its place and does not change it.
  const std::shared_ptr<const std::vector<TLChatMessage>>& sharedChatHistory() const { return chatHistory_; }
  void setChatHistory(std::vector<TLChatMessage> chatHistory) {
    chatHistory_ = std::make_shared<const std::vector<TLChatMessage>>(std::move(chatHistory));
  }
  /// The response texts of the configuration, once there are any.
  const std::optional<TLDefaults>& getDefaults() const { return defaults_; }
  void setDefaults(TLDefaults defaults) { defaults_ = std::move(defaults); }
  const Ref<UIViewController>& getCurrentViewController() const { return currentViewController_; }
  void setCurrentViewController(Ref<UIViewController> currentViewController);
  /// The source of the segue in progress, or none when it is gone or there is no segue.
  Ref<UIViewController> getCurrentSegueController() const { return currentSegueController_.lock(); }
  void setCurrentSegueController(const Ref<UIViewController>& controller) { currentSegueController_ = controller; }

  /// Entry points for hosts whose table and collection delegates are not seen otherwise: while a demonstration is under
  /// way, the selected cell is registered as a user action.
  void didSelectRow(const Ref<UITableView>& tableView, const IndexPath& indexPath);
  void didSelectItem(const Ref<UICollectionView>& collectionView, const IndexPath& indexPath);

  // ---- Held here for the parts that capture demonstrations.
  Ref<LumicorTrackingControlView> trackingButton;
  std::map<Ref<UITabBarController>, Ref<LumicorTabBarDelegateProxy>> tabBarDelegates;
  std::map<Ref<UISearchBar>, Ref<LumicorSearchBarDelegateProxy>> searchBarDelegates;
  std::map<Ref<UIPickerView>, Ref<LumicorPickerViewDelegateProxy>> pickerViewDelegates;
  std::map<Ref<UITextView>, Ref<LumicorTextViewDelegateProxy>> textViewDelegates;

 private:
  void setVisible(const std::string& label, bool visible);

  std::map<std::string, SwiftUICoordinates> swiftUICoordinates_;
  std::atomic<bool> shouldEnableDebug_ = false;
  mutable std::mutex identityMutex_;  // guards the two below: requests read them from their queues
  std::optional<std::string> secretKey_;
  std::string endpoint_;
  Ref<LumicorAttributes> attributes_ = make<LumicorAttributes>();
  std::string currentView_;
  bool isInitialized_ = false;
  std::string framework_ = FRAMEWORK_NATIVE;
  std::function<void(const std::string&)> viewListener_;
  std::function<void()> clientHomeNavigationRunnable_;
  std::shared_ptr<const std::vector<TLChatMessage>> chatHistory_ = std::make_shared<const std::vector<TLChatMessage>>();
  std::optional<TLDefaults> defaults_;
  Ref<UIViewController> currentViewController_;
  Weak<UIViewController> currentSegueController_;
};

/// The name under which the selection of a collection's item is registered.
std::string collectionActionName(const std::string& identifier, std::int64_t sections, const IndexPath& indexPath);

}  // namespace lumicor
