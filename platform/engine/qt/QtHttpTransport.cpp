#include "platform/engine/qt/QtHttpTransport.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QTimer>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/engine/qt/QtHttpExchange.h"

namespace platform {

namespace {

/// The person's proxies, except for this very machine, which needs none.
class ProxyChoice final : public QNetworkProxyFactory {
 public:
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
    const QString host = query.peerHostName();
    const QHostAddress address(host);
    if (host == QLatin1String("localhost") || address.isLoopback()) return {QNetworkProxy::NoProxy};
    return systemProxyForQuery(query);
  }
};

/// The thread with its event loop and its manager. Any thread, except that it cannot stop itself.
class NetworkThread {
 public:
  static NetworkThread& shared() {
    static NetworkThread* const only = new NetworkThread;
    return *only;
  }

  enum class Start { ifNeeded, never };
  using Job = std::function<void(QNetworkAccessManager&)>;
  /// Runs the job on the thread. After the end of the program's main part it is dropped.
  void run(Start startThread, Job job) {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) {
      if (startThread == Start::never || isOver_) return;
      start();
    }
    {
      const std::lock_guard jobsLock(jobsMutex_);
      jobs_.push_back(std::move(job));
    }
    QMetaObject::invokeMethod(doorbell_, "start", Qt::QueuedConnection);
  }

  void stopForGood() {
    stop();
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }

  void stop() {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable() || thread_.get_id() == std::this_thread::get_id()) return;
    QMetaObject::invokeMethod(loop_, "quit", Qt::QueuedConnection);
    thread_.join();
  }

  void stopOwnApplication() {
    if (ownsApplication_.load()) stop();
  }

  // On the thread only.
  void add(const std::shared_ptr<QtHttpExchange>& exchange) {
    std::erase_if(exchanges_, [](const auto& known) { return known.expired(); });
    exchanges_.push_back(exchange);
  }

 private:
  void start() {
    std::promise<void> ready;
    thread_ = std::thread([this, &ready] { turn(ready); });
    ready.get_future().wait();
    static const bool stopsAtExit = std::atexit([] { shared().stopForGood(); }) == 0;
    static_cast<void>(stopsAtExit);
    if (!ownsApplication_.load()) qAddPostRoutine([] { shared().stop(); });
  }

  void turn(std::promise<void>& ready) {
    static int count = 1;
    static char name[] = "program";
    static char* arguments[] = {name, nullptr};
    std::unique_ptr<QCoreApplication> application;
    if (!QCoreApplication::instance()) application = std::make_unique<QCoreApplication>(count, arguments);
    ownsApplication_.store(application != nullptr);
    QNetworkAccessManager manager;
    manager.setProxyFactory(new ProxyChoice);  // the manager's from here on
    QEventLoop loop;
    QTimer doorbell;
    doorbell.setSingleShot(true);
    QObject::connect(&doorbell, &QTimer::timeout, &manager, [&] { runJobs(manager); });
    doorbell_ = &doorbell;
    loop_ = &loop;
    ready.set_value();
    loop.exec();
    runJobs(manager);  // the last of them, which then lose their connection
    for (const auto& weak : std::exchange(exchanges_, {})) {
      if (const auto exchange = weak.lock()) exchange->abort();
    }
  }

  void runJobs(QNetworkAccessManager& manager) {
    std::vector<Job> jobs;
    {
      const std::lock_guard lock(jobsMutex_);
      jobs.swap(jobs_);
    }
    for (const Job& job : jobs) job(manager);
  }

  std::mutex mutex_;
  std::mutex jobsMutex_;
  std::vector<Job> jobs_;
  std::thread thread_;
  std::atomic<bool> ownsApplication_{false};
  QTimer* doorbell_ = nullptr;  // rung by other threads when there are jobs
  QEventLoop* loop_ = nullptr;
  std::vector<std::weak_ptr<QtHttpExchange>> exchanges_;
  bool isOver_ = false;
};

class Handle final : public HttpTransport::Exchange {
 public:
  explicit Handle(std::shared_ptr<QtHttpExchange> exchange) : exchange_(std::move(exchange)) {}
  void cancel() override {
    exchange_->forget();
    NetworkThread::shared().run(NetworkThread::Start::never,
                                [exchange = exchange_](QNetworkAccessManager&) { exchange->abort(); });
  }

 private:
  const std::shared_ptr<QtHttpExchange> exchange_;
};

}  // namespace

HttpTransport& HttpTransport::shared() {
  static QtHttpTransport* const only = new QtHttpTransport;
  return *only;
}

Ref<HttpTransport::Exchange> QtHttpTransport::send(Request request, Completion completion) {
  auto exchange = std::make_shared<QtHttpExchange>(std::move(request), std::move(completion));
  NetworkThread::shared().run(NetworkThread::Start::ifNeeded, [exchange](QNetworkAccessManager& manager) {
    NetworkThread::shared().add(exchange);
    exchange->start(manager);
  });
  return std::make_shared<Handle>(std::move(exchange));
}

void QtHttpTransport::makeRoomForApplication() { NetworkThread::shared().stopOwnApplication(); }

}  // namespace platform
