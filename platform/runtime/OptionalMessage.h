#pragma once

#include <optional>

#include "platform/runtime/NSObject.h"

namespace platform {

// Messages that may go unanswered: every method of a delegate or a data source is optional, and the receiver itself may
// be gone. It is held until it has answered.

/// Tells a receiver that is there and answers such a message; false otherwise.
template <class... Args>
bool sendOptional(Ref<NSObject> receiver, SEL selector, const Args&... args) {
  if (!receiver || !receiver->respondsToSelector(selector)) return false;
  receiver->perform(selector, args...);
  return true;
}

/// What the receiver answers; nothing when it is not there or does not answer such a message.
template <class R, class... Args>
std::optional<R> askOptional(Ref<NSObject> receiver, SEL selector, const Args&... args) {
  if (!receiver || !receiver->respondsToSelector(selector)) return std::nullopt;
  return receiver->perform<R>(selector, args...);
}

}  // namespace platform
