#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumicor/core/TLAction.h"
#include "platform/foundation/JSONValue.h"

namespace lumicor {

using namespace platform;

/// The service's answer to a query: a text or steps, and what belongs to it as it was received. A value.
struct TLStepsAnswer {
  /// Nothing when the service sent no "answer"; what it sent; or the steps that it sent.
  std::variant<std::monostate, JSONValue, std::vector<TLAction>> answer;
  std::optional<JSONValue> shouldOpenChatWindow;
  std::optional<JSONValue> taskId;

  const std::vector<TLAction>* steps() const { return std::get_if<std::vector<TLAction>>(&answer); }
  /// None when the answer is missing or is no text.
  const std::string* text() const {
    const auto* const value = std::get_if<JSONValue>(&answer);
    return value ? value->asString() : nullptr;
  }
};

}  // namespace lumicor
