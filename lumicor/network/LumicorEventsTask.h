#pragma once

#include "platform/foundation/RawValues.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// What happens in a session that the service is told of.
enum class LumicorLogEvent {
  LUMICOR_INITIALIZED,
  CHAT_VIEW_OPEN,
  MESSAGE_SENT,
  NON_ACTION_RESPONSE,
  ACTION_RESPONSE,
  TASK_SUCCESS,
  TASK_FAILURE,
  ACTION_RESPONSE_TIMEOUT,
  CHAT_FLOATER_DISMISSED,
};

/// Stands for the duty of telling events among the assistant's tasks; `LumicorNetworkTask::logEvent` does it.
class LumicorEventsTask : public Object<LumicorEventsTask, NSObject> {};

}  // namespace lumicor

template <>
struct platform::RawValues<lumicor::LumicorLogEvent> {
  using E = lumicor::LumicorLogEvent;
  static constexpr std::pair<E, std::string_view> cases[] = {
      {E::LUMICOR_INITIALIZED, "LUMICOR_INITIALIZED"},
      {E::CHAT_VIEW_OPEN, "CHAT_VIEW_OPEN"},
      {E::MESSAGE_SENT, "MESSAGE_SENT"},
      {E::NON_ACTION_RESPONSE, "NON_ACTION_RESPONSE"},
      {E::ACTION_RESPONSE, "ACTION_RESPONSE"},
      {E::TASK_SUCCESS, "TASK_SUCCESS"},
      {E::TASK_FAILURE, "TASK_FAILURE"},
      {E::ACTION_RESPONSE_TIMEOUT, "ACTION_RESPONSE_TIMEOUT"},
      {E::CHAT_FLOATER_DISMISSED, "CHAT_FLOATER_DISMISSED"},
  };
};
