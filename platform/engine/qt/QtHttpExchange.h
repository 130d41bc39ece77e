#pragma once

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <memory>
#include <mutex>

#include "platform/engine/HttpTransport.h"

namespace platform {

/// One request on its way through a QNetworkAccessManager. Everything but `forget` and the constructor runs on the
/// manager's thread. Kept alive by the reply's signals until it is finished.
class QtHttpExchange : public std::enable_shared_from_this<QtHttpExchange> {
 public:
  QtHttpExchange(HttpTransport::Request request, HttpTransport::Completion completion);

  void start(QNetworkAccessManager& manager);
  /// Closes the connection; the completion, unless forgotten, is told that it was lost.
  void abort();
  /// The completion will not be called any more. Any thread.
  void forget();

 private:
  void watch();
  void readMore();
  void fail(URLError::Code code);
  void finish();
  void complete(HttpTransport::Reply reply);
  bool refusesLength() const;

  HttpTransport::Request request_;
  std::mutex mutex_;
  HttpTransport::Completion completion_;  // guarded: taken once, by whoever ends the exchange

  std::unique_ptr<QFile> bodyFile_;
  std::unique_ptr<QFile> replyFile_;
  std::unique_ptr<QTimer> idle_;
  QNetworkReply* reply_ = nullptr;  // the manager's; deletes itself after it has finished
  bool isFinished_ = false;
  bool isUntrusted_ = false;
  std::size_t received_ = 0;
  HttpTransport::Reply result_;
};

}  // namespace platform
