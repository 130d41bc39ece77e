#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/engine/HttpTransport.h"
#include "platform/foundation/URLProtocol.h"
#include "platform/foundation/URLSession.h"

namespace platform {

/// One request of a session on its way. Made by a URLSession, waits for `resume`. Once resumed it keeps itself alive
/// until its completion was called, which happens exactly once. Any thread.
class URLSessionTask : public std::enable_shared_from_this<URLSessionTask> {
 public:
  enum class State { suspended, running, completed };
  enum class Kind { data, upload, download };

  void resume();
  /// Ends the task with `URLError::cancelled`. A task that was never resumed, or that is over, is left alone.
  void cancel();
  State state() const;
  const URLRequest& originalRequest() const { return request_; }

  URLSessionTask(Ref<URLSession> session, Kind kind, URLRequest request, std::string uploadPath,
                 URLSession::DataCompletion dataCompletion, URLSession::DownloadCompletion downloadCompletion);

 private:
  /// Everything below runs on the session's queue.
  void start();
  void load(const URLRequest& request);
  void loadFromStub(const URLRequest& request, URLProtocol::Reply reply);
  void loadFromNetwork(const URLRequest& request);
  void handle(HttpTransport::Reply reply);
  void finish(std::optional<URLError> error, HttpTransport::Reply reply = {});

  const Ref<URLSession> session_;
  const Kind kind_;
  const URLRequest request_;
  const std::string uploadPath_;
  URLSession::DataCompletion dataCompletion_;
  URLSession::DownloadCompletion downloadCompletion_;

  mutable std::mutex mutex_;
  State state_ = State::suspended;
  // On the session's queue only.
  std::optional<URLRequest> current_;
  int redirects_ = 0;
  Ref<HttpTransport::Exchange> exchange_;
  Ref<DispatchWorkItem> pending_;
  std::string downloadPath_;
};

}  // namespace platform
