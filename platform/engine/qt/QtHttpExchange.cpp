#include "platform/engine/qt/QtHttpExchange.h"

#include <QUrl>
#include <algorithm>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr qint64 readAheadBytes = 256 << 10;  // what may wait inside Qt; a server that sends faster is slowed down
constexpr qint64 chunkBytes = 64 << 10;

QByteArray bytesOf(const std::string& text) { return QByteArray(text.data(), static_cast<qsizetype>(text.size())); }

/// Why the transfer failed; none for a reply whose status says that something is wrong, which is a reply all the same.
std::optional<URLError::Code> codeOf(QNetworkReply::NetworkError error, bool hasStatus) {
  const bool isAboutContent = error > QNetworkReply::UnknownProxyError && error != QNetworkReply::ProtocolFailure;
  if (isAboutContent && hasStatus) return std::nullopt;
  switch (error) {
    case QNetworkReply::NoError:
      return std::nullopt;
    case QNetworkReply::ConnectionRefusedError:
      return URLError::cannotConnectToHost;
    case QNetworkReply::RemoteHostClosedError:
      return URLError::networkConnectionLost;
    case QNetworkReply::HostNotFoundError:
      return URLError::cannotFindHost;
    case QNetworkReply::TimeoutError:
      return URLError::timedOut;
    case QNetworkReply::OperationCanceledError:
      return URLError::cancelled;
    case QNetworkReply::SslHandshakeFailedError:
      return URLError::secureConnectionFailed;
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
      return URLError::notConnectedToInternet;
    case QNetworkReply::ProtocolUnknownError:
      return URLError::unsupportedURL;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolInvalidOperationError:
      return URLError::cannotParseResponse;
    default:
      break;
  }
  const bool isAboutProxy = error >= QNetworkReply::ProxyConnectionRefusedError;
  if (isAboutProxy && !isAboutContent) return URLError::cannotConnectToHost;
  return hasStatus ? URLError::networkConnectionLost : URLError::badServerResponse;
}

}  // namespace

QtHttpExchange::QtHttpExchange(HttpTransport::Request request, HttpTransport::Completion completion)
    : request_(std::move(request)), completion_(std::move(completion)) {}

void QtHttpExchange::forget() {
  HttpTransport::Completion released;
  const std::lock_guard lock(mutex_);
  released.swap(completion_);
}

void QtHttpExchange::complete(HttpTransport::Reply reply) {
  HttpTransport::Completion completion;
  {
    const std::lock_guard lock(mutex_);
    completion.swap(completion_);
  }
  if (completion) completion(std::move(reply));
}

void QtHttpExchange::abort() {
  if (!isFinished_) fail(URLError::networkConnectionLost);
}

void QtHttpExchange::start(QNetworkAccessManager& manager) {
  QNetworkRequest request(QUrl::fromEncoded(bytesOf(request_.url), QUrl::StrictMode));
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  request.setDecompressedSafetyCheckThreshold(-1);  // the limit below counts what was unpacked
  request.setRawHeader("User-Agent", "Lumicor");
  const bool hasBody = !request_.bodyFile.empty() || !request_.body.empty();
  if (hasBody) request.setRawHeader("Content-Type", "application/octet-stream");
  for (const auto& [name, value] : request_.headers) request.setRawHeader(bytesOf(name), bytesOf(value));

  HttpTransport::Reply failure;
  if (!request_.bodyFile.empty()) {
    bodyFile_ = std::make_unique<QFile>(QString::fromStdString(request_.bodyFile));
    if (!bodyFile_->open(QIODevice::ReadOnly)) failure.error = URLError(URLError::fileDoesNotExist);
  }
  if (!request_.replyFile.empty()) {
    replyFile_ = std::make_unique<QFile>(QString::fromStdString(request_.replyFile));
    if (!replyFile_->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
      failure.error = URLError(URLError::cannotWriteToFile);
    }
  }
  if (failure.error) {
    isFinished_ = true;
    return complete(std::move(failure));
  }

  const QByteArray method = bytesOf(request_.method);
  if (method == "HEAD") {
    reply_ = manager.head(request);
  } else if (bodyFile_) {
    reply_ = manager.sendCustomRequest(request, method, bodyFile_.get());
  } else if (!hasBody && method == "GET") {
    reply_ = manager.get(request);
  } else {
    reply_ = manager.sendCustomRequest(request, method, bytesOf(request_.body));
  }
  reply_->setReadBufferSize(readAheadBytes);
  watch();
}

void QtHttpExchange::watch() {
  const auto self = shared_from_this();
  idle_ = std::make_unique<QTimer>();
  idle_->setSingleShot(true);
  idle_->setInterval(static_cast<int>(std::min(request_.idleTimeout, 1e6) * 1000));
  QObject::connect(idle_.get(), &QTimer::timeout, reply_, [self] { self->fail(URLError::timedOut); });
  const auto progress = [self] {
    if (self->idle_) self->idle_->start();
  };
  QObject::connect(reply_, &QNetworkReply::uploadProgress, reply_, progress);
  QObject::connect(reply_, &QNetworkReply::metaDataChanged, reply_, [self, progress] {
    progress();
    if (self->refusesLength()) self->fail(URLError::dataLengthExceedsMaximum);
  });
  QObject::connect(reply_, &QNetworkReply::readyRead, reply_, [self, progress] {
    progress();
    self->readMore();
  });
  // Nobody may wave a certificate through; the errors are only told apart.
  QObject::connect(reply_, &QNetworkReply::sslErrors, reply_, [self] { self->isUntrusted_ = true; });
  QObject::connect(reply_, &QNetworkReply::finished, reply_, [self] { self->finish(); });
  idle_->start();
}

bool QtHttpExchange::refusesLength() const {
  bool isNumber = false;
  const qulonglong length = reply_->header(QNetworkRequest::ContentLengthHeader).toULongLong(&isNumber);
  return isNumber && length > request_.maximumReplyBytes && request_.method != "HEAD";
}

void QtHttpExchange::readMore() {
  while (!result_.error) {
    const QByteArray chunk = reply_->read(chunkBytes);
    if (chunk.isEmpty()) return;
    received_ += static_cast<std::size_t>(chunk.size());
    if (received_ > request_.maximumReplyBytes) return fail(URLError::dataLengthExceedsMaximum);
    if (!replyFile_) {
      result_.body.append(chunk.constData(), static_cast<std::size_t>(chunk.size()));
    } else if (replyFile_->write(chunk) != chunk.size()) {
      return fail(URLError::cannotWriteToFile);
    }
  }
}

/// The first reason counts. Closes the connection, which makes the reply finish.
void QtHttpExchange::fail(URLError::Code code) {
  if (result_.error) return;
  result_.error = URLError(code);
  if (reply_ && !isFinished_) reply_->abort();
}

void QtHttpExchange::finish() {
  if (std::exchange(isFinished_, true)) return;
  readMore();
  idle_.reset();
  QNetworkReply* const reply = std::exchange(reply_, nullptr);
  const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
  if (!result_.error) {
    const auto code = codeOf(reply->error(), status.isValid());
    if (code) result_.error = URLError(isUntrusted_ ? URLError::serverCertificateUntrusted : *code);
  }
  if (replyFile_) {
    if (!replyFile_->flush() && !result_.error) result_.error = URLError(URLError::cannotWriteToFile);
    replyFile_->close();
  }
  if (result_.error) {
    result_.body.clear();
  } else {
    result_.statusCode = status.toInt();
    for (const auto& [name, value] : reply->rawHeaderPairs()) {
      result_.headers.add(name.toStdString(), value.toStdString());
    }
  }
  bodyFile_.reset();
  reply->deleteLater();
  complete(std::move(result_));
}

}  // namespace platform
