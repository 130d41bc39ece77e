#include "platform/dispatch/ThreadPool.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace platform {

ThreadPool& ThreadPool::shared() {
  static ThreadPool* const only = new ThreadPool;  // never destroyed: its threads end with the process
  return *only;
}

std::size_t ThreadPool::maximumThreads() {
  // More threads than cores, because work may wait for a disk or for other work.
  static const std::size_t most = std::clamp<std::size_t>(std::thread::hardware_concurrency() * 2, 8, 32);
  return most;
}

void ThreadPool::submit(QOS qos, std::function<void()> job) {
  const std::lock_guard lock(mutex_);
  jobs_[static_cast<std::size_t>(qos)].push_back(std::move(job));
  ++waiting_;
  if (waiting_ > idle_ && threads_ < maximumThreads()) {
    ++threads_;
    std::thread([this] { work(); }).detach();
  }
  hasJob_.notify_one();
}

std::function<void()> ThreadPool::take() {
  auto& lane = *std::find_if(jobs_.begin(), jobs_.end(), [](const auto& jobs) { return !jobs.empty(); });
  std::function<void()> job = std::move(lane.front());
  lane.pop_front();
  --waiting_;
  return job;
}

void ThreadPool::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    hasJob_.wait(lock, [this] { return waiting_ > 0; });
    --idle_;
    std::function<void()> job = take();
    lock.unlock();
    job();
    job = nullptr;  // what it holds ends here, not under the lock
    lock.lock();
  }
}

}  // namespace platform
