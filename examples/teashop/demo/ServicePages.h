#pragma once

#include <optional>
#include <string>

#include "platform/foundation/JSONValue.h"

namespace teashop {

/// The service's pages for people. Main thread; turns the run loop while it waits.
class ServicePages {
 public:
  explicit ServicePages(std::string address) : address_(std::move(address)) {}

  /// The "data" of the reply; none when the service refuses or does not answer.
  std::optional<platform::JSONValue> get(const std::string& path) const;
  std::optional<platform::JSONValue> post(const std::string& path, const platform::JSONValue& body) const;

 private:
  std::optional<platform::JSONValue> ask(const std::string& path, const platform::JSONValue* body) const;

  std::string address_;
};

/// A member's text; empty when it is not there or none.
std::string textOf(const platform::JSONValue& object, std::string_view member);

}  // namespace teashop
