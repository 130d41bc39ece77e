#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "service/http/FileDescriptor.h"

namespace service {

/// A fixed number of worker threads that serve connections, with a bounded queue before them.
class ConnectionPool {
 public:
  using Serve = std::function<void(const FileDescriptor&)>;

  /// `serve` runs on a worker and must not throw; the connection is closed after it.
  ConnectionPool(std::size_t workers, std::size_t queueLength, Serve serve);
  /// Waiting connections are closed, running ones are told that no more will be read, and the workers are joined.
  ~ConnectionPool();
  ConnectionPool(const ConnectionPool&) = delete;
  ConnectionPool& operator=(const ConnectionPool&) = delete;

  /// False, and the connection is left with the caller, when the queue is full.
  bool offer(FileDescriptor& connection);

 private:
  void work();

  const std::size_t queueLength_;
  const Serve serve_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<FileDescriptor> waiting_;
  std::set<int> running_;
  bool isStopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace service
