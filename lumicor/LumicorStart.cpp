// The door: how a session starts, and how its configuration is made so. Below it the façade is only state; whatever has
// to reach into several rooms at once is defined here.

#include <utility>

#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorConfiguration.h"
#include "lumicor/network/LumicorInitTask.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/LumicorFontHelper.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

namespace {

/// The value of a member that is there and was decoded; the log hears of one that was not.
template <class T>
T* usable(std::optional<Result<T>>& member, const char* failureText) {
  if (!member) return nullptr;
  if (*member) return &**member;
  LumicorDebugHelper::log(failureText + member->error());
  return nullptr;
}

void showTracker() {
  const Ref<UIViewController> controller = LumicorUtils::getCurrentViewController();
  if (!controller) return;
  Lumicor::showTrackingView = true;
  LumicorTrackingTask::showTrackingControlView(controller->view());
}

void showFloater() {
  Lumicor::showTesselLumicor = true;
  DispatchQueue::main().async([] {
    TLFloaterManager& manager = TLFloaterManager::shared();
    manager.show();
    const auto floater = manager.floaterView();
    floater->setShow(!floater->show());
    floater->setNeedsDisplay();
  });
}

}  // namespace

void Lumicor::initialize(const std::string& secretKey, const std::string& userId) {
  LumicorHooks::install();
  LumicorInitTask(secretKey, userId).execute();
}

void Lumicor::initialize(const std::string& secretKey, const std::string& userId, const std::string& endpoint) {
  setEndpoint(endpoint);
  initialize(secretKey, userId);
}

void LumicorConfiguration::apply() && {
  if (showTrackerView) showTracker();
  if (const auto* layout = usable(layoutData, "Failed to decode layout JSON: ")) {
    TLFloaterManager::shared().setLayoutData(*layout);
  }
  LumicorFontHelper::loadFont(TLFloaterManager::shared().layoutData().styles.fontURL);
  if (auto* const history = usable(chatHistory, "Failed to decode chat history JSON: ")) {
    Lumicor::shared().setChatHistory(std::move(*history));
  }
  if (showTesselLumicor && !Lumicor::showTrackingView) showFloater();
  if (const auto* defaults = usable(tlDefaults, "Failed to decode defaults JSON: ")) {
    Lumicor::shared().setDefaults(*defaults);
  }
  LumicorNetworkTask::logEvent(LumicorLogEvent::LUMICOR_INITIALIZED, "");
}

}  // namespace lumicor
