#include "platform/dispatch/DispatchQueue.h"

#include <array>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Scheduler.h"
#include "platform/dispatch/ThreadPool.h"
#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

/// The thread that runs static initialisers is the one that enters main.
const std::thread::id& mainThread() {
  static const std::thread::id id = std::this_thread::get_id();
  return id;
}
[[maybe_unused]] const std::thread::id& fixedAtStart = mainThread();

class MainTarget final : public DispatchQueue::Target {
 public:
  MainTarget() : Target("main") {}
  void submit(std::function<void()> work) override {
    Scheduler::shared().postMain(Clock::nanoseconds(), std::move(work));
  }
};

/// A piece of work in the background, counted as activity from the moment it is sent until what it held is let go.
struct BackgroundWork {
  explicit BackgroundWork(std::function<void()> toRun) : activity("queue work"), work(std::move(toRun)) {}
  BackgroundActivity activity;
  std::function<void()> work;  // destroyed before the activity ends
};

class GlobalTarget final : public DispatchQueue::Target {
 public:
  explicit GlobalTarget(QOS qos) : Target("global"), qos_(qos) {}
  void submit(std::function<void()> work) override {
    auto counted = std::make_shared<BackgroundWork>(std::move(work));
    ThreadPool::shared().submit(qos_, [counted = std::move(counted)] { counted->work(); });
  }

 private:
  const QOS qos_;
};

class SerialTarget final : public DispatchQueue::Target, public std::enable_shared_from_this<SerialTarget> {
 public:
  explicit SerialTarget(std::string label) : Target(std::move(label)) {}

  void submit(std::function<void()> work) override {
    const std::lock_guard lock(mutex_);
    waiting_.emplace_back(std::move(work));
    if (!std::exchange(runs_, true)) run();
  }

 private:
  static constexpr int piecesInOneGo = 32;  // then other queues have their turn on this thread

  void run() {
    ThreadPool::shared().submit(QOS::standard, [self = shared_from_this()] { self->drain(); });
  }
  void drain() {
    std::unique_lock lock(mutex_);
    for (int i = 0; i < piecesInOneGo; ++i) {
      if (waiting_.empty()) {
        runs_ = false;
        return;
      }
      BackgroundWork next = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      next.work();
      next.work = nullptr;
      next.activity.end();
      lock.lock();
    }
    run();
  }

  std::mutex mutex_;
  std::deque<BackgroundWork> waiting_;
  bool runs_ = false;
};

}  // namespace

// The queues of the process are never destroyed: threads of the pool may outlive static objects.

DispatchQueue DispatchQueue::main() {
  static const auto& target = *new std::shared_ptr<Target>(std::make_shared<MainTarget>());
  return DispatchQueue(target);
}

DispatchQueue DispatchQueue::global(QOS qos) {
  static const auto& targets = *new std::array<std::shared_ptr<Target>, 5>{
      std::make_shared<GlobalTarget>(QOS::userInteractive), std::make_shared<GlobalTarget>(QOS::userInitiated),
      std::make_shared<GlobalTarget>(QOS::standard), std::make_shared<GlobalTarget>(QOS::utility),
      std::make_shared<GlobalTarget>(QOS::background)};
  return DispatchQueue(targets[static_cast<std::size_t>(qos)]);
}

DispatchQueue DispatchQueue::serial(std::string label) {
  return DispatchQueue(std::make_shared<SerialTarget>(std::move(label)));
}

void DispatchQueue::async(std::function<void()> work) const { target_->submit(std::move(work)); }

void DispatchQueue::async(Ref<DispatchWorkItem> item) const {
  target_->submit([item = std::move(item)] { item->perform(); });
}

Ref<DispatchWorkItem> DispatchQueue::asyncAfter(double seconds, std::function<void()> work) const {
  auto item = std::make_shared<DispatchWorkItem>(std::move(work));
  asyncAfter(seconds, item);
  return item;
}

void DispatchQueue::asyncAfter(double seconds, Ref<DispatchWorkItem> item) const {
  const std::int64_t due = Clock::nanoseconds() + Clock::nanosecondsOf(seconds);
  auto work = [item = std::move(item)] { item->perform(); };
  if (isMain()) {
    Scheduler::shared().postMain(due, std::move(work));
  } else {
    Scheduler::shared().postLater(due, target_, std::move(work));
  }
}

const std::string& DispatchQueue::label() const { return target_->label(); }

bool DispatchQueue::isMain() const { return *this == main(); }

bool isMainThread() { return std::this_thread::get_id() == mainThread(); }

void assertMainThread(const char* where) {
  if (!isMainThread()) fatalError(std::string(where) + " was called off the main thread");
}

}  // namespace platform
