#include "examples/teashop/demo/ServiceEvents.h"

#include <memory>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/JSONValue.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double longestWait = 5;

/// What the service answers to a GET, empty when nothing came.
Data fetch(const std::string& address) {
  const auto url = URL::parse(address);
  if (!url) return {};
  struct Reply {
    bool isThere = false;
    Data body;
  };
  const auto reply = std::make_shared<Reply>();
  URLSession::shared()
      ->dataTask(
          *url,
          [reply](std::optional<Data> data, const std::optional<HTTPURLResponse>&, const std::optional<URLError>&) {
            DispatchQueue::main().async([reply, body = std::move(data).value_or("")] {
              reply->body = body;
              reply->isThere = true;
            });
          })
      ->resume();
  RunLoop::advanceUntil([&] { return reply->isThere; }, longestWait);
  return reply->body;
}

std::string text(const JSONValue& object, std::string_view key) {
  const JSONValue* const value = object.find(key);
  return value && value->asString() ? *value->asString() : "";
}

}  // namespace

std::vector<ServiceEvents::Event> ServiceEvents::since(std::int64_t id) const {
  std::vector<Event> events;
  const auto reply = JSONValue::parse(fetch(serviceAddress_ + "/admin/events?limit=1000&after=" + std::to_string(id)));
  const JSONValue* const data = reply ? reply->find("data") : nullptr;
  const JSONValue* const list = data ? data->find("events") : nullptr;
  if (!list || !list->asArray()) return events;
  for (const JSONValue& event : *list->asArray()) {
    const JSONValue* const number = event.find("id");
    events.push_back({number ? number->asInteger().value_or(0) : 0, text(event, "eventName"), text(event, "taskId")});
  }
  return events;
}

}  // namespace teashop
