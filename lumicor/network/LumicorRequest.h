#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "platform/engine/HTTPHeaders.h"
#include "platform/foundation/JSONValue.h"

namespace lumicor {

using namespace platform;

/// What tells one kind of request from another.
struct LumicorRequestKind {
  std::string_view path;
  double timeout = 10;           ///< seconds
  std::string_view failureText;  ///< logged after a failure of the frame itself; empty for none
};

/// The frame of every call to the service: a POST of a JSON object with the identity headers, a JSON object back.
/// Nothing is retried. Thread: any.
class LumicorRequest {
 public:
  /// Judges a reply (none when the request failed) and does what follows from it. Runs on the main queue, once.
  using Judge = std::function<void(const std::optional<JSONValue>& reply)>;
  /// Reads out of a reply, good or not, what would hold up the main thread, for the judge that it returns. Runs before
  /// that one, on the session's queue.
  using Reader = std::function<Judge(const std::optional<JSONValue>& reply)>;

  /// The identity headers, as the façade has them at this moment.
  static HTTPHeaders getHeaders();
  /// Sends the body, an object, to the façade's endpoint. The HTTP status is not consulted.
  static void send(const LumicorRequestKind& kind, const JSONValue& body, Judge judge);
  static void sendAndRead(const LumicorRequestKind& kind, const JSONValue& body, Reader reader);
};

/// Whether a reply says that all went well: its member of that name is the integer 200.
bool isGoodReply(const std::optional<JSONValue>& reply, std::string_view codeKey = "statusCode");
/// What a reply carries, good or not: an object; none when it carries none. Borrowed from the reply.
const JSONValue* replyData(const std::optional<JSONValue>& reply);
/// The payload of a good reply, an object; none when the reply is not good or carries none. Borrowed from the reply.
const JSONValue* goodReplyData(const std::optional<JSONValue>& reply, std::string_view codeKey = "statusCode");

}  // namespace lumicor
