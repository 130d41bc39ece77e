#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/dispatch/DispatchWorkItem.h"
#include "platform/runtime/Ref.h"

namespace platform {

/// Quality of service of background work: the more urgent is taken from the pool first.
enum class QOS { userInteractive, userInitiated, standard, utility, background };

/// Where work runs. A cheap handle: copies name the same queue. Any thread may send work to any queue; no call here
/// runs work before it returns. Work on the main queue runs on the main thread, one piece at a time; on a serial queue
/// one piece at a time on some thread of the pool; on a global queue several at a time.
/// Work due at the same instant on one queue starts in the order in which it was sent.
class DispatchQueue {
 public:
  static DispatchQueue main();
  static DispatchQueue global(QOS qos = QOS::standard);
  static DispatchQueue serial(std::string label);

  void async(std::function<void()> work) const;
  void async(Ref<DispatchWorkItem> item) const;
  /// Runs the work once the clock has moved on by that many seconds (at least none).
  Ref<DispatchWorkItem> asyncAfter(double seconds, std::function<void()> work) const;
  void asyncAfter(double seconds, Ref<DispatchWorkItem> item) const;

  const std::string& label() const;
  bool isMain() const;
  friend bool operator==(const DispatchQueue& a, const DispatchQueue& b) { return a.target_ == b.target_; }

  /// One destination of work. Known to this folder alone.
  class Target;

 private:
  explicit DispatchQueue(std::shared_ptr<Target> target) : target_(std::move(target)) {}
  std::shared_ptr<Target> target_;
};

bool isMainThread();
/// Fatal when called on another thread; `where` names the operation.
void assertMainThread(const char* where);

}  // namespace platform
