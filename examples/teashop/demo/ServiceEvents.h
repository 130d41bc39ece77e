#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "examples/teashop/demo/ServicePages.h"

namespace teashop {

/// Reads which events the service holds, from its pages for people. Main thread; turns the run loop while it waits.
class ServiceEvents {
 public:
  struct Event {
    std::int64_t id;
    std::string name;
    std::string taskId;
  };

  explicit ServiceEvents(std::string serviceAddress) : pages_(std::move(serviceAddress)) {}

  /// The events that came behind that one, oldest first; none when the service does not answer.
  std::vector<Event> since(std::int64_t id) const;

 private:
  ServicePages pages_;
};

}  // namespace teashop
