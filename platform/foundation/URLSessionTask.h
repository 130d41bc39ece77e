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
  // Everything below runs on the session's queue.
  void start();
  std::optional<URLError> reasonNotToSend() const;
  void load(URLRequest request);
  void loadFromStub(URLProtocol::Reply reply);
  void loadFromNetwork();
  void handle(HttpTransport::Reply reply);
  void finish(HttpTransport::Reply reply);
  void fail(URLError::Code code);
  bool isOver() const { return state() == State::completed; }
  std::size_t maximumReplyBytes() const;
  std::optional<double> timeLeft() const;

  const Ref<URLSession> session_;
  const Kind kind_;
  const URLRequest request_;
  const std::string uploadPath_;

  mutable std::mutex mutex_;
  State state_ = State::suspended;
  // On the session's queue only.
  URLSession::DataCompletion dataCompletion_;
  URLSession::DownloadCompletion downloadCompletion_;
  URLRequest current_;
  bool sendsFile_;
  double startedAt_ = 0;
  int redirections_ = 0;
  Ref<HttpTransport::Exchange> exchange_;
  Ref<DispatchWorkItem> pending_;
  std::string downloadPath_;
};

}  // namespace platform
