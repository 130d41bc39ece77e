#include "lumicor/core/Lumicor.h"

#include "lumicor/core/LumicorUtils.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

namespace {

/// The base of every request path until the host gives another one.
constexpr const char* productionEndpoint = "https://api.lumicor.example";

}  // namespace

Lumicor& Lumicor::shared() {
  // Lives as long as the process: hooks may ask for it until the very end.
  static const Ref<Lumicor>& instance = *new Ref<Lumicor>(make<Lumicor>());
  return *instance;
}

Lumicor::Lumicor() : endpoint_(productionEndpoint) {}
Lumicor::~Lumicor() = default;

std::optional<std::string> Lumicor::getSecretKey() const {
  const std::lock_guard lock(identityMutex_);
  return secretKey_;
}

void Lumicor::setSecretKey(const std::string& secretKey) {
  const std::lock_guard lock(identityMutex_);
  secretKey_ = secretKey;
}

std::string Lumicor::getEndpoint() const {
  const std::lock_guard lock(identityMutex_);
  return endpoint_;
}

void Lumicor::setEndpoint(const std::string& endpoint) {
  const std::lock_guard lock(identityMutex_);
  endpoint_ = endpoint;
}

void Lumicor::addSwiftUICoordinates(const std::string& label, CGRect rect) {
  swiftUICoordinates_[label] = {rect, LumicorUtils::millisecondsSinceEpoch(), true};
}

void Lumicor::onSwiftUIViewDisappear(const std::string& label) { setVisible(label, false); }

void Lumicor::onSwiftUIViewAppear(const std::string& label) { setVisible(label, true); }

void Lumicor::setVisible(const std::string& label, bool visible) {
  const auto found = swiftUICoordinates_.find(label);
  if (found == swiftUICoordinates_.end()) return;
  found->second.time = LumicorUtils::millisecondsSinceEpoch();
  found->second.isVisible = visible;
}

void Lumicor::setCurrentView(const std::string& currentView) {
  currentView_ = currentView;
  if (const auto listener = viewListener_) listener(currentView);  // a copy: the listener may replace itself
}

void Lumicor::setCurrentViewListener(std::function<void(const std::string&)> viewListener) {
  viewListener_ = std::move(viewListener);
}

void Lumicor::setCurrentViewController(Ref<UIViewController> currentViewController) {
  currentViewController_ = std::move(currentViewController);
}

}  // namespace lumicor
