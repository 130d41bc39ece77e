#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

/// The threads behind the global and serial queues: started when they are needed, at most `maximumThreads`, and kept.
/// Lives as long as the process. Any thread. Part of the dispatch folder.
class ThreadPool {
 public:
  static ThreadPool& shared();

  /// Runs the job on some thread; more urgent jobs are taken first, equally urgent ones in order.
  void submit(QOS qos, std::function<void()> job);

 private:
  static constexpr std::size_t lanes = 5;
  static std::size_t maximumThreads();

  void work();
  std::function<void()> take();  // with the lock held and a job there

  std::mutex mutex_;
  std::condition_variable hasJob_;
  std::array<std::deque<std::function<void()>>, lanes> jobs_;
  std::size_t waiting_ = 0;
  std::size_t idle_ = 0;
  std::size_t threads_ = 0;
};

}  // namespace platform
