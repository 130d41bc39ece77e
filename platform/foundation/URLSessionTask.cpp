#include "platform/foundation/URLSessionTask.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/foundation/URLRedirection.h"

namespace platform {

namespace {

/// A new, empty file of our own among the temporary ones; empty text when there can be none.
std::string makeTemporaryFile() {
  std::error_code error;
  std::string path = (std::filesystem::temp_directory_path(error) / "download-XXXXXX").string();
  const int file = error ? -1 : ::mkstemp(path.data());
  if (file < 0) return {};
  ::close(file);
  return path;
}

Data contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return Data(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

URLSessionTask::URLSessionTask(Ref<URLSession> session, Kind kind, URLRequest request, std::string uploadPath,
                               URLSession::DataCompletion dataCompletion,
                               URLSession::DownloadCompletion downloadCompletion)
    : session_(std::move(session)),
      kind_(kind),
      request_(std::move(request)),
      uploadPath_(std::move(uploadPath)),
      dataCompletion_(std::move(dataCompletion)),
      downloadCompletion_(std::move(downloadCompletion)),
      current_(request_),
      sendsFile_(kind == Kind::upload) {}

URLSessionTask::State URLSessionTask::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

void URLSessionTask::resume() {
  {
    const std::lock_guard lock(mutex_);
    if (state_ != State::suspended) return;
    state_ = State::running;
  }
  session_->queue().async([self = shared_from_this()] { self->start(); });
}

void URLSessionTask::cancel() {
  if (state() != State::running) return;
  session_->queue().async([self = shared_from_this()] { self->fail(URLError::cancelled); });
}

std::size_t URLSessionTask::maximumReplyBytes() const {
  const URLSessionConfiguration& configuration = session_->configuration();
  return kind_ == Kind::download ? configuration.maximumDownloadBytes : configuration.maximumResponseBytes;
}

std::optional<double> URLSessionTask::timeLeft() const {
  if (kind_ != Kind::data) return std::nullopt;
  return std::max(0.0, session_->configuration().timeoutIntervalForResource - (CACurrentMediaTime() - startedAt_));
}

std::optional<URLError> URLSessionTask::reasonNotToSend() const {
  if (!current_.url().isHTTP()) return URLError(URLError::unsupportedURL);
  if (!HTTPHeaders::isValidName(current_.httpMethod())) return URLError(URLError::badRequest);
  for (const auto& [name, value] : current_.headers()) {
    if (!HTTPHeaders::isValidName(name) || !HTTPHeaders::isValidValue(value)) return URLError(URLError::badRequest);
  }
  std::error_code error;
  if (sendsFile_ && !std::filesystem::is_regular_file(uploadPath_, error)) return URLError(URLError::fileDoesNotExist);
  return std::nullopt;
}

void URLSessionTask::start() {
  if (isOver()) return;
  startedAt_ = CACurrentMediaTime();
  if (kind_ == Kind::download) {
    downloadPath_ = makeTemporaryFile();
    if (downloadPath_.empty()) return fail(URLError::cannotWriteToFile);
  }
  URLRequest request = request_;
  for (const auto& [name, value] : session_->configuration().additionalHeaders) {
    if (!request.value(name)) request.setValue(value, name);
  }
  load(std::move(request));
}

void URLSessionTask::load(URLRequest request) {
  current_ = std::move(request);
  if (const std::optional<URLError> reason = reasonNotToSend()) return fail(reason->code());
  URLRequest asked = current_;
  // Only a handler sees the file in one piece; the network reads it bit by bit.
  if (sendsFile_ && URLProtocol::hasHandlers()) asked.setHTTPBody(contentsOf(uploadPath_));
  if (std::optional<URLProtocol::Reply> reply = URLProtocol::replyFor(asked)) {
    loadFromStub(std::move(*reply));
  } else {
    loadFromNetwork();
  }
}

void URLSessionTask::loadFromStub(URLProtocol::Reply reply) {
  HttpTransport::Reply result;
  double wait = reply.delay;
  const double patience = std::min(current_.timeoutInterval(), timeLeft().value_or(current_.timeoutInterval()));
  if (reply.neverAnswers || reply.delay > patience) {
    result.error = URLError(URLError::timedOut);
    wait = patience;
  } else if (reply.error || reply.closesInMidReply) {
    result.error = reply.error.value_or(URLError(URLError::networkConnectionLost));
  } else if (reply.body.size() > maximumReplyBytes()) {
    result.error = URLError(URLError::dataLengthExceedsMaximum);
  } else {
    result.statusCode = reply.statusCode;
    result.headers = std::move(reply.headers);
    result.body = std::move(reply.body);
    if (kind_ == Kind::download) {
      std::ofstream(downloadPath_, std::ios::binary | std::ios::trunc) << std::exchange(result.body, {});
    }
  }
  if (wait <= 0) return handle(std::move(result));
  pending_ = session_->queue().asyncAfter(
      wait, [self = shared_from_this(), result = std::move(result)]() mutable { self->handle(std::move(result)); });
}

void URLSessionTask::loadFromNetwork() {
  HttpTransport::Request request;
  request.url = current_.url().absoluteString();
  request.method = current_.httpMethod();
  request.headers = current_.headers();
  request.body = current_.httpBody().value_or(Data());
  if (sendsFile_) request.bodyFile = uploadPath_;
  request.replyFile = downloadPath_;
  request.idleTimeout = current_.timeoutInterval() > 0 ? current_.timeoutInterval() : URLRequest::defaultTimeout;
  if (const std::optional<double> left = timeLeft()) request.overallTimeout = std::max(*left, 0.001);
  request.maximumReplyBytes = maximumReplyBytes();
  auto activity = std::make_shared<BackgroundActivity>("URL session task");
  exchange_ = HttpTransport::shared().send(
      std::move(request), [self = shared_from_this(), activity = std::move(activity)](HttpTransport::Reply reply) {
        self->session_->queue().async(
            [self, activity, reply = std::move(reply)]() mutable { self->handle(std::move(reply)); });
      });
}

void URLSessionTask::handle(HttpTransport::Reply reply) {
  if (isOver()) return;
  exchange_ = nullptr;
  pending_ = nullptr;
  const std::string* const location = reply.headers.find("Location");
  if (reply.error || !location || !isRedirection(reply.statusCode)) return finish(std::move(reply));
  if (++redirections_ > session_->configuration().maximumRedirects) return fail(URLError::httpTooManyRedirects);
  auto next = redirectedRequest(current_, reply.statusCode, *location);
  if (const URLError* const error = std::get_if<URLError>(&next)) return fail(error->code());
  URLRequest request = std::get<URLRequest>(std::move(next));
  if (request.httpMethod() != current_.httpMethod()) sendsFile_ = false;
  load(std::move(request));
}

void URLSessionTask::fail(URLError::Code code) {
  HttpTransport::Reply reply;
  reply.error = URLError(code);
  finish(std::move(reply));
}

void URLSessionTask::finish(HttpTransport::Reply reply) {
  {
    const std::lock_guard lock(mutex_);
    if (state_ != State::running) return;
    state_ = State::completed;
  }
  if (exchange_) std::exchange(exchange_, nullptr)->cancel();
  if (pending_) std::exchange(pending_, nullptr)->cancel();
  std::optional<HTTPURLResponse> response;
  if (!reply.error) response.emplace(current_.url(), reply.statusCode, std::move(reply.headers));
  const auto dataCompletion = std::exchange(dataCompletion_, nullptr);
  const auto downloadCompletion = std::exchange(downloadCompletion_, nullptr);
  if (dataCompletion) {
    std::optional<Data> data;
    if (!reply.error) data = std::move(reply.body);
    dataCompletion(std::move(data), std::move(response), reply.error);
  }
  if (downloadCompletion) {
    std::optional<URL> file;
    if (!reply.error) file = URL::fileURL(downloadPath_);
    downloadCompletion(std::move(file), std::move(response), reply.error);
  }
  if (!downloadPath_.empty()) ::unlink(downloadPath_.c_str());
}

}  // namespace platform
