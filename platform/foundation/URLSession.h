#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/URLError.h"
#include "platform/foundation/HTTPURLResponse.h"
#include "platform/foundation/URLRequest.h"
#include "platform/runtime/Data.h"
#include "platform/runtime/Ref.h"

namespace platform {

class URLSessionTask;

/// How a session works.
struct URLSessionConfiguration {
  /// A longer reply ends its task with `dataLengthExceedsMaximum` and its connection is closed. For downloads the limit
  /// is the other one.
  std::size_t maximumResponseBytes = std::size_t{32} << 20;
  std::size_t maximumDownloadBytes = std::size_t{256} << 20;
  int maximumRedirects = 10;
  /// Seconds until a data task has to be over, redirections and all, however busy its server keeps it. What goes into
  /// or comes out of a file takes the time that it needs, as long as something moves.
  double timeoutIntervalForResource = 300;
  /// Sent with every request that does not have a field of that name.
  HTTPHeaders additionalHeaders;
};

/// Loads addresses over HTTP and HTTPS. Several tasks may be under way at once.
/// Owner:   whoever made it; tasks under way keep it alive. `shared()` lives as long as the process.
/// Queue:   made and used on any thread. Completions run on the session's own serial queue, once for every resumed
/// task. Failure: reported to the completion as a URLError. A reply of any status is no failure. Certificates are
/// always
///          verified. Header fields that could break out of their line are refused before anything is sent.
class URLSession : public std::enable_shared_from_this<URLSession> {
 public:
  using DataCompletion =
      std::function<void(std::optional<Data>, std::optional<HTTPURLResponse>, std::optional<URLError>)>;
  /// The address is that of a temporary file, which is removed when the completion returns: move it away or read it.
  using DownloadCompletion =
      std::function<void(std::optional<URL>, std::optional<HTTPURLResponse>, std::optional<URLError>)>;

  static Ref<URLSession> shared();
  static Ref<URLSession> withConfiguration(URLSessionConfiguration configuration = {});
  explicit URLSession(URLSessionConfiguration configuration);

  /// Tasks wait for `resume`.
  Ref<URLSessionTask> dataTask(URLRequest request, DataCompletion completion);
  Ref<URLSessionTask> dataTask(URL url, DataCompletion completion);
  /// The body is read from the file while it is sent, so the file has to stay as it is until the completion.
  Ref<URLSessionTask> uploadTask(URLRequest request, const URL& fromFile, DataCompletion completion);
  Ref<URLSessionTask> downloadTask(URLRequest request, DownloadCompletion completion);
  Ref<URLSessionTask> downloadTask(URL url, DownloadCompletion completion);

  const URLSessionConfiguration& configuration() const { return configuration_; }
  /// The queue of the completions.
  const DispatchQueue& queue() const { return queue_; }

 private:
  const URLSessionConfiguration configuration_;
  const DispatchQueue queue_;
};

}  // namespace platform
