#include "lumicor/network/LumicorRequest.h"

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace lumicor {

namespace {

constexpr std::int64_t goodStatus = 200;

void deliver(const LumicorRequest::Reader& reader, std::optional<JSONValue> reply) {
  LumicorRequest::Judge judge = reader(reply);
  DispatchQueue::main().async([judge = std::move(judge), reply = std::move(reply)] { judge(reply); });
}

/// A failure of the frame itself: told in the log, then judged as no reply.
void fail(const std::string& reason, std::string_view failureText, const LumicorRequest::Reader& reader) {
  LumicorDebugHelper::log("Error: " + reason);
  if (!failureText.empty()) LumicorDebugHelper::log(failureText);
  deliver(reader, std::nullopt);
}

/// Some servers begin their texts so; it is no part of the JSON.
std::string_view withoutByteOrderMark(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

/// The reply's object, or why there is none.
Result<JSONValue> replyObject(const std::optional<Data>& data, const std::optional<URLError>& error) {
  if (error) return Failure{error->localizedDescription()};
  if (!data) return Failure{"Unknown error"};
  Result<JSONValue> parsed = JSONValue::parse(withoutByteOrderMark(*data));
  if (!parsed || !parsed->asObject()) return Failure{"Unable to parse JSON"};
  return parsed;
}

}  // namespace

HTTPHeaders LumicorRequest::getHeaders() {
  const Lumicor& session = Lumicor::shared();
  const LumicorAttributes& attributes = *session.getAttributes();
  return {
      {"secret-key", session.getSecretKey().value_or("")},
      {"user-id", attributes.getUserId()},
      {"sdk", attributes.getSDKVersion()},
      {"platform", attributes.getPlatform()},
      {"app-version", attributes.getAppVersion()},
      {"ios-version", attributes.getIOSVersion()},
  };
}

void LumicorRequest::send(const LumicorRequestKind& kind, const JSONValue& body, Judge judge) {
  sendAndRead(kind, body, [judge = std::move(judge)](const std::optional<JSONValue>&) { return judge; });
}

void LumicorRequest::sendAndRead(const LumicorRequestKind& kind, const JSONValue& body, Reader reader) {
  const std::optional<URL> url = URL::parse(Lumicor::shared().getEndpoint() + std::string(kind.path));
  if (!url) return fail(URLError(URLError::badURL).localizedDescription(), kind.failureText, reader);
  Result<Data> bytes = body.encode();
  if (!bytes) return fail("Unable to convert body to JSON", kind.failureText, reader);

  URLRequest request(*url);
  request.setHTTPMethod("POST");
  request.setTimeoutInterval(kind.timeout);
  request.setHeaders(getHeaders());
  request.setHTTPBody(std::move(*bytes));
  request.setValue("application/json", "Content-Type");
  const auto completion = [failureText = kind.failureText, reader = std::move(reader)](
                              const std::optional<Data>& data, const std::optional<HTTPURLResponse>&,
                              const std::optional<URLError>& error) {
    Result<JSONValue> reply = replyObject(data, error);
    if (!reply) return fail(reply.error(), failureText, reader);
    deliver(reader, std::move(*reply));
  };
  URLSession::shared()->dataTask(std::move(request), completion)->resume();
}

bool isGoodReply(const std::optional<JSONValue>& reply, std::string_view codeKey) {
  const JSONValue* const code = reply ? reply->find(codeKey) : nullptr;
  return code && code->asInteger() == goodStatus;
}

const JSONValue* replyData(const std::optional<JSONValue>& reply) {
  const JSONValue* const data = reply ? reply->find("data") : nullptr;
  return data && data->asObject() ? data : nullptr;
}

const JSONValue* goodReplyData(const std::optional<JSONValue>& reply, std::string_view codeKey) {
  return isGoodReply(reply, codeKey) ? replyData(reply) : nullptr;
}

}  // namespace lumicor
