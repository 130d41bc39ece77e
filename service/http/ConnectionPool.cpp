#include "service/http/ConnectionPool.h"

#include <sys/socket.h>

namespace service {

ConnectionPool::ConnectionPool(std::size_t workers, std::size_t queueLength, Serve serve)
    : queueLength_(queueLength), serve_(std::move(serve)) {
  for (std::size_t i = 0; i < workers; ++i) threads_.emplace_back([this] { work(); });
}

ConnectionPool::~ConnectionPool() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
    waiting_.clear();
    for (const int socket : running_) ::shutdown(socket, SHUT_RD);
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

bool ConnectionPool::offer(FileDescriptor& connection) {
  {
    const std::lock_guard lock(mutex_);
    if (waiting_.size() >= queueLength_) return false;
    waiting_.push_back(std::move(connection));
  }
  changed_.notify_one();
  return true;
}

void ConnectionPool::work() {
  for (;;) {
    FileDescriptor connection;
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isStopping_ || !waiting_.empty(); });
    if (isStopping_) return;
    connection = std::move(waiting_.front());
    waiting_.pop_front();
    running_.insert(connection.get());
    lock.unlock();

    serve_(connection);

    lock.lock();
    running_.erase(connection.get());
    // Closed while the lock is held, so that stopping never touches a number that has been given out again.
    connection = FileDescriptor();
  }
}

}  // namespace service
