#include "tests/lumicor/support/StubService.h"

#include <gtest/gtest.h>

namespace lumicor::test {

StubService::StubService()
    : registration_(URLProtocol::registerHandler([this](const URLRequest& request) { return replyTo(request); })) {}

void StubService::answer(const std::string& path, const JSONValue& body, int httpStatus) {
  answer(path, URLProtocol::Reply::json(httpStatus, body));
}

void StubService::answer(const std::string& path, URLProtocol::Reply reply) {
  const std::lock_guard lock(mutex_);
  replies_[path].push_back(std::move(reply));
}

URLProtocol::Reply StubService::replyTo(const URLRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  const auto found = replies_.find(request.url().path());
  if (found == replies_.end()) return URLProtocol::Reply::json(200, json(R"({"statusCode":200})"));
  URLProtocol::Reply reply = found->second.front();
  if (found->second.size() > 1) found->second.erase(found->second.begin());
  return reply;
}

std::vector<URLRequest> StubService::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<JSONValue> StubService::bodies(const std::string& path) const {
  std::vector<JSONValue> bodies;
  for (const URLRequest& request : requests()) {
    if (request.url().path() == path) bodies.push_back(json(request.httpBody().value_or("null")));
  }
  return bodies;
}

std::vector<std::string> StubService::events() const {
  std::vector<std::string> names;
  for (const JSONValue& body : bodies("/sdk/event/log")) names.push_back(*body.find("eventName")->asString());
  return names;
}

JSONValue json(std::string_view text) {
  Result<JSONValue> parsed = JSONValue::parse(text);
  EXPECT_TRUE(parsed) << parsed.error() << " in " << text;
  return parsed ? *parsed : JSONValue();
}

}  // namespace lumicor::test
