#include "platform/foundation/URLSession.h"

#include "platform/foundation/URLSessionTask.h"

namespace platform {

Ref<URLSession> URLSession::shared() {
  static const Ref<URLSession>& only = *new Ref<URLSession>(withConfiguration());
  return only;
}

Ref<URLSession> URLSession::withConfiguration(URLSessionConfiguration configuration) {
  return std::make_shared<URLSession>(std::move(configuration));
}

URLSession::URLSession(URLSessionConfiguration configuration)
    : configuration_(std::move(configuration)), queue_(DispatchQueue::serial("URL session")) {}

Ref<URLSessionTask> URLSession::dataTask(URLRequest request, DataCompletion completion) {
  return std::make_shared<URLSessionTask>(shared_from_this(), URLSessionTask::Kind::data, std::move(request), "",
                                          std::move(completion), nullptr);
}

Ref<URLSessionTask> URLSession::dataTask(URL url, DataCompletion completion) {
  return dataTask(URLRequest(std::move(url)), std::move(completion));
}

Ref<URLSessionTask> URLSession::uploadTask(URLRequest request, const URL& fromFile, DataCompletion completion) {
  return std::make_shared<URLSessionTask>(shared_from_this(), URLSessionTask::Kind::upload, std::move(request),
                                          fromFile.path(), std::move(completion), nullptr);
}

Ref<URLSessionTask> URLSession::downloadTask(URLRequest request, DownloadCompletion completion) {
  return std::make_shared<URLSessionTask>(shared_from_this(), URLSessionTask::Kind::download, std::move(request), "",
                                          nullptr, std::move(completion));
}

Ref<URLSessionTask> URLSession::downloadTask(URL url, DownloadCompletion completion) {
  return downloadTask(URLRequest(std::move(url)), std::move(completion));
}

}  // namespace platform
