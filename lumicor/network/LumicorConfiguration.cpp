#include "lumicor/network/LumicorConfiguration.h"

#include <utility>

#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/LumicorFontHelper.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

namespace {

bool isTrue(const JSONValue& data, std::string_view name) {
  const JSONValue* const flag = data.find(name);
  return flag && flag->asBool() == true;
}

template <class T>
std::optional<Result<T>> decoded(const JSONValue& data, std::string_view name, JSONValue::Kind wanted) {
  const JSONValue* const member = data.find(name);
  if (!member || member->kind() != wanted) return std::nullopt;
  return decodeRecord<T>(*member);
}

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

LumicorConfiguration LumicorConfiguration::read(const JSONValue& data) {
  using Kind = JSONValue::Kind;
  return {.showTrackerView = isTrue(data, "showTrackerView"),
          .layoutData = decoded<TLLayout>(data, "layoutData", Kind::object),
          .chatHistory = decoded<std::vector<TLChatMessage>>(data, "chatHistory", Kind::array),
          .showTesselLumicor = isTrue(data, "showTesselLumicor"),
          .tlDefaults = decoded<TLDefaults>(data, "tlDefaults", Kind::object)};
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
