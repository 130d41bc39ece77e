#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/foundation/JSONValue.h"
#include "platform/foundation/URLProtocol.h"
#include "platform/foundation/URLRequest.h"

namespace lumicor::test {

using namespace platform;

/// Stands in for the service: keeps every request and answers by path, with {"statusCode": 200} where nothing else was
/// said. Several answers to one path are given one after the other, the last one again and again.
class StubService {
 public:
  StubService();

  void answer(const std::string& path, const JSONValue& body, int httpStatus = 200);
  void answer(const std::string& path, URLProtocol::Reply reply);

  std::vector<URLRequest> requests() const;
  /// The bodies sent to a path, in the order they were sent.
  std::vector<JSONValue> bodies(const std::string& path) const;
  /// The names of the events that were logged.
  std::vector<std::string> events() const;

 private:
  URLProtocol::Reply replyTo(const URLRequest& request);

  mutable std::mutex mutex_;
  std::vector<URLRequest> requests_;
  std::map<std::string, std::vector<URLProtocol::Reply>> replies_;
  URLProtocol::Registration registration_;
};

/// A value from its JSON text, which must be right.
JSONValue json(std::string_view text);

}  // namespace lumicor::test
