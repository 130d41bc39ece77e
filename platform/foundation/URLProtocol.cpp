#include "platform/foundation/URLProtocol.h"

#include <mutex>
#include <utility>
#include <vector>

#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

struct Registered {
  std::uint64_t number;
  URLProtocol::Handler handler;
  std::recursive_mutex mutex;  // held while the handler runs, so that its end is waited for; a handler may end itself
};

struct Registry {
  std::mutex mutex;
  std::uint64_t number = 0;
  std::vector<std::shared_ptr<Registered>> handlers;
};

Registry& registry() {
  static Registry* const only = new Registry;
  return *only;
}

}  // namespace

URLProtocol::Reply URLProtocol::Reply::data(int statusCode, Data body) {
  Reply reply;
  reply.statusCode = statusCode;
  reply.body = std::move(body);
  return reply;
}

URLProtocol::Reply URLProtocol::Reply::json(int statusCode, const JSONValue& body) {
  Result<Data> bytes = body.encode();
  if (!bytes) fatalError("URLProtocol::Reply::json: " + bytes.error());
  Reply reply = data(statusCode, std::move(*bytes));
  reply.headers.set("Content-Type", "application/json");
  return reply;
}

URLProtocol::Reply URLProtocol::Reply::failure(URLError::Code code) {
  Reply reply;
  reply.error = URLError(code);
  return reply;
}

URLProtocol::Reply URLProtocol::Reply::never() {
  Reply reply;
  reply.neverAnswers = true;
  return reply;
}

URLProtocol::Reply URLProtocol::Reply::after(double seconds) && {
  delay = seconds;
  return std::move(*this);
}

URLProtocol::Registration::Registration(Registration&& other) noexcept : number_(std::exchange(other.number_, 0)) {}

URLProtocol::Registration& URLProtocol::Registration::operator=(Registration&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

URLProtocol::Registration::~Registration() {
  std::shared_ptr<Registered> ended;
  {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    std::erase_if(all.handlers, [&](const auto& candidate) {
      if (candidate->number != number_) return false;
      ended = candidate;
      return true;
    });
  }
  if (!ended) return;
  const std::lock_guard lock(ended->mutex);
  ended->number = 0;
}

URLProtocol::Registration URLProtocol::registerHandler(Handler handler) {
  auto added = std::make_shared<Registered>();
  added->handler = std::move(handler);
  Registry& all = registry();
  const std::lock_guard lock(all.mutex);
  added->number = ++all.number;
  all.handlers.push_back(added);
  return Registration(added->number);
}

bool URLProtocol::hasHandlers() {
  Registry& all = registry();
  const std::lock_guard lock(all.mutex);
  return !all.handlers.empty();
}

std::optional<URLProtocol::Reply> URLProtocol::replyFor(const URLRequest& request) {
  std::vector<std::shared_ptr<Registered>> handlers;
  {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    handlers.assign(all.handlers.rbegin(), all.handlers.rend());
  }
  for (const auto& candidate : handlers) {
    const std::lock_guard lock(candidate->mutex);
    if (candidate->number == 0) continue;
    if (std::optional<Reply> reply = candidate->handler(request)) return reply;
  }
  return std::nullopt;
}

}  // namespace platform
