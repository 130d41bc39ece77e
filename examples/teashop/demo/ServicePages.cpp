#include "examples/teashop/demo/ServicePages.h"

#include <memory>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double longestWait = 5;

/// What the service answers, empty when nothing came.
Data answerTo(const URLRequest& request) {
  struct Reply {
    bool isThere = false;
    Data body;
  };
  const auto reply = std::make_shared<Reply>();
  URLSession::shared()
      ->dataTask(
          request,
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

}  // namespace

std::optional<JSONValue> ServicePages::ask(const std::string& path, const JSONValue* body) const {
  const auto url = URL::parse(address_ + path);
  if (!url) return std::nullopt;
  URLRequest request(*url);
  if (body) {
    request.setHTTPMethod("POST");
    request.setValue("application/json", "Content-Type");
    const auto text = body->encode();
    request.setHTTPBody(text ? *text : "");
  }
  const auto reply = JSONValue::parse(answerTo(request));
  const JSONValue* const code = reply ? reply->find("statusCode") : nullptr;
  if (!code || code->asInteger() != 200) return std::nullopt;
  const JSONValue* const data = reply->find("data");
  return data ? *data : JSONValue();
}

std::optional<JSONValue> ServicePages::get(const std::string& path) const { return ask(path, nullptr); }

std::optional<JSONValue> ServicePages::post(const std::string& path, const JSONValue& body) const {
  return ask(path, &body);
}

std::string textOf(const JSONValue& object, std::string_view member) {
  const JSONValue* const value = object.find(member);
  return value && value->asString() ? *value->asString() : "";
}

}  // namespace teashop
