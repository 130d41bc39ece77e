#pragma once

#include <chrono>
#include <condition_variable>
#include <curl/curl.h>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace platform {

class CurlExchange;

/// The network's thread: any number of exchanges at once, none of which waits for another. It starts with the first of
/// them, sleeps while there are none, and takes no signals. Any thread, except that it cannot stop itself.
class CurlThread {
 public:
  CurlThread() = default;
  ~CurlThread();
  CurlThread(const CurlThread&) = delete;
  CurlThread& operator=(const CurlThread&) = delete;

  /// After `stop` the exchange is let go, uncalled.
  void start(std::shared_ptr<CurlExchange> exchange);
  /// Closes the exchange's connection.
  void abort(std::shared_ptr<CurlExchange> exchange);
  /// For good; the exchanges under way lose their connection.
  void stop();

 private:
  struct Command {
    std::shared_ptr<CurlExchange> exchange;
    bool isStart;
  };
  void post(Command command);
  bool launch();

  // On the thread.
  void turn();
  bool takeCommands();
  void open(std::shared_ptr<CurlExchange> exchange);
  void close(CURL* easy);
  void beginTurns();
  void collectFinished();
  void endOverdue();
  int millisecondsToWait() const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Command> commands_;  // guarded
  bool isOver_ = false;            // guarded
  std::thread thread_;             // guarded
  CURLM* multi_ = nullptr;         // made before the thread starts, freed after it has ended

  std::unordered_map<CURL*, std::shared_ptr<CurlExchange>> exchanges_;
};

}  // namespace platform
