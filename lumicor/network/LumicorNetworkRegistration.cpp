// The calls to the service that hand a demonstration over.

#include <memory>
#include <utility>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Record.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace lumicor {

namespace {

constexpr LumicorRequestKind taskRegistration{.path = "/sdk/task/register", .failureText = "Task Register Failure"};
constexpr LumicorRequestKind snapshotRegistration{.path = "/sdk/snapshot/register", .failureText = ""};
constexpr LumicorRequestKind uploadAddress{.path = "/sdk/media/upload", .failureText = "Get Upload Url Failure"};
constexpr double fileTimeout = 60;  // seconds

using MediaCallback = std::function<void(const std::optional<std::string>&)>;

const std::string* textMember(const JSONValue* object, std::string_view name) {
  const JSONValue* const member = object ? object->find(name) : nullptr;
  return member ? member->asString() : nullptr;
}

/// For the log: the code as it came, or that there was none.
std::string statusText(const std::optional<JSONValue>& reply) {
  const JSONValue* const code = reply ? reply->find("statusCode") : nullptr;
  if (!code) return "none";
  if (const std::string* const text = code->asString()) return *text;
  const Result<Data> text = code->encode();
  return text ? *text : "unreadable";
}

/// Registers the snapshots of one task, each only once the one before was accepted. A screen may have thousands of
/// elements and a demonstration thousands of screens, so each is encoded, and let go of, off the main thread.
class SnapshotRegistration : public std::enable_shared_from_this<SnapshotRegistration> {
 public:
  SnapshotRegistration(std::string taskId, std::vector<LumicorSnapshot> flow)
      : taskId_(std::move(taskId)), flow_(std::move(flow)) {}

  void registerSnapshot(std::size_t index) {
    if (index >= flow_.size()) return LumicorDebugHelper::log("Register Snapshot Success");
    DispatchQueue::global(QOS::utility).async([self = shared_from_this(), index] { self->encodeAndSend(index); });
  }

 private:
  void encodeAndSend(std::size_t index) {
    const Result<JSONValue> snapshot = asObject(std::move(flow_[index]));
    if (!snapshot) return LumicorDebugHelper::log("Error during snapshot conversion: " + snapshot.error());
    const JSONValue body = JSONValue::object({{"snapshotName", "Default"},
                                              {"snapshotDescription", "Default"},
                                              {"taskId", taskId_},
                                              {"index", static_cast<std::int64_t>(index)},
                                              {"snapshot", *snapshot}});
    if (!body.encode()) return LumicorDebugHelper::log("Invalid Parameters");
    LumicorRequest::send(
        snapshotRegistration, body, [self = shared_from_this(), index](const std::optional<JSONValue>& reply) {
          if (isGoodReply(reply)) return self->registerSnapshot(index + 1);
          LumicorDebugHelper::log("Register Snapshot not completed with status code: " + statusText(reply));
        });
  }

  /// Through its text, as it goes over the wire: what cannot be read back is not sent. The snapshot ends here.
  static Result<JSONValue> asObject(LumicorSnapshot snapshot) {
    const Result<Data> text = encodeJSON(snapshot);
    return text ? JSONValue::parse(*text) : Failure{text.error()};
  }

  const std::string taskId_;
  std::vector<LumicorSnapshot> flow_;
};

void noteUpload(const std::optional<Data>& data, const std::optional<HTTPURLResponse>& response,
                const std::optional<URLError>& error) {
  if (error) return LumicorDebugHelper::log("Upload File Failure " + error->localizedDescription());
  LumicorDebugHelper::log(response && data ? "Upload File Success" : "Upload File Failure");
}

/// The key is handed out whether or not the file arrives.
void uploadFile(const std::string& address, const std::string& file, const std::string& key, MediaCallback callback) {
  const std::optional<URL> url = URL::parse(address);
  if (!url) {
    noteUpload(std::nullopt, std::nullopt, URLError(URLError::badURL));
    return DispatchQueue::global(QOS::utility).async([key, callback = std::move(callback)] { callback(key); });
  }
  URLRequest request(*url, URLRequest::CachePolicy::reloadIgnoringLocalCacheData, fileTimeout);
  request.setHTTPMethod("PUT");
  const auto completion = [key, callback = std::move(callback)](const std::optional<Data>& data,
                                                                const std::optional<HTTPURLResponse>& response,
                                                                const std::optional<URLError>& error) {
    noteUpload(data, response, error);
    callback(key);
  };
  URLSession::shared()->uploadTask(std::move(request), URL::fileURL(file), completion)->resume();
}

}  // namespace

void LumicorNetworkTask::registerTask(const std::string& key, std::function<void(const JSONValue& data)> callback,
                                      std::function<void()> refused) {
  const std::optional<std::string> bundle = Bundle::main().bundleIdentifier();
  if (!bundle) {
    if (refused) DispatchQueue::main().async(std::move(refused));
    return;
  }
  const JSONValue body = JSONValue::object({{"appBundleId", *bundle},
                                            {"taskName", "Default"},
                                            {"taskDescription", "Default"},
                                            {"recordingKey", key},
                                            {"status", "Action Required"},
                                            {"openChatWindow", true},
                                            {"triggers", 0}});
  const auto judge = [callback = std::move(callback),
                      refused = std::move(refused)](const std::optional<JSONValue>& reply) {
    if (const JSONValue* const data = goodReplyData(reply)) {
      LumicorDebugHelper::log("Task Register Success");
      return callback(*data);
    }
    LumicorDebugHelper::log(taskRegistration.failureText);
    if (refused) refused();
  };
  LumicorRequest::send(taskRegistration, body, judge);
}

void LumicorNetworkTask::registerSnapshots(const JSONValue& registerTaskResponse,
                                           std::vector<LumicorSnapshot> taskFlow) {
  const std::string* const taskId = textMember(&registerTaskResponse, "insertedId");
  const bool hasAddress =
      URL::parse(Lumicor::shared().getEndpoint() + std::string(snapshotRegistration.path)).has_value();
  if (!hasAddress || taskFlow.empty() || !taskId) return;
  LumicorDebugHelper::log("Register Snapshot Started");
  std::make_shared<SnapshotRegistration>(*taskId, std::move(taskFlow))->registerSnapshot(0);
}

void LumicorNetworkTask::uploadMedia(const std::string& viewName, const std::string& file,
                                     const std::string& fileExtension, MediaCallback callback) {
  const JSONValue body = JSONValue::object({{"viewName", viewName}, {"extension", fileExtension}});
  LumicorRequest::send(uploadAddress, body,
                       [file, callback = std::move(callback)](const std::optional<JSONValue>& reply) {
                         const JSONValue* const data = goodReplyData(reply);
                         const std::string* const address = textMember(data, "url");
                         const std::string* const key = textMember(data, "key");
                         if (!address || !key) {
                           LumicorDebugHelper::log(uploadAddress.failureText);
                           return callback(std::nullopt);
                         }
                         LumicorDebugHelper::log("Get Upload Url Success");
                         uploadFile(*address, file, *key, callback);
                       });
}

}  // namespace lumicor
