#include "platform/dispatch/Scheduler.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "platform/dispatch/Clock.h"

namespace platform {

Scheduler& Scheduler::shared() {
  static Scheduler* const only = new Scheduler;  // never destroyed: threads of the pool may outlive static objects
  return *only;
}

void Scheduler::postMain(std::int64_t due, Work work) {
  Work wakeUp;
  {
    const std::lock_guard lock(mutex_);
    const auto added = main_.emplace(Key{due, number_++}, std::move(work)).first;
    if (added == main_.begin()) wakeUp = wakeUp_;
  }
  mainChanged_.notify_all();
  if (wakeUp) wakeUp();
}

void Scheduler::postLater(std::int64_t due, TargetRef target, Work work) {
  {
    const std::lock_guard lock(mutex_);
    later_.emplace(Key{due, number_++}, Later{std::move(target), std::move(work)});
    if (!timersRun_ && !Clock::isVirtual()) {
      timersRun_ = true;
      std::thread([this] { runTimers(); }).detach();
    }
  }
  timersChanged_.notify_all();
}

std::uint64_t Scheduler::nextNumber() const {
  const std::lock_guard lock(mutex_);
  return number_;
}

std::optional<Scheduler::Work> Scheduler::takeMain(std::int64_t now, std::uint64_t before) {
  const std::lock_guard lock(mutex_);
  const auto first = main_.begin();
  if (first == main_.end() || first->first.first > now || first->first.second >= before) return std::nullopt;
  std::optional<Work> work(std::move(first->second));
  main_.erase(first);
  return work;
}

bool Scheduler::submitDue(std::int64_t now) {
  bool any = false;
  for (;;) {
    Later due;
    {
      const std::lock_guard lock(mutex_);
      const auto first = later_.begin();
      if (first == later_.end() || first->first.first > now) return any;
      due = std::move(first->second);
      later_.erase(first);
    }
    due.target->submit(std::move(due.work));
    any = true;
  }
}

std::optional<std::int64_t> Scheduler::earliestMain() const {
  const std::lock_guard lock(mutex_);
  if (main_.empty()) return std::nullopt;
  return main_.begin()->first.first;
}

std::optional<std::int64_t> Scheduler::earliest() const {
  const std::lock_guard lock(mutex_);
  std::optional<std::int64_t> first;
  if (!main_.empty()) first = main_.begin()->first.first;
  if (!later_.empty() && (!first || later_.begin()->first.first < *first)) first = later_.begin()->first.first;
  return first;
}

void Scheduler::beginActivity(const char* what) {
  const std::lock_guard lock(mutex_);
  ++activities_;
  ++activitiesBegun_;
  ++activityNames_[what];
}

void Scheduler::endActivity(const char* what) {
  {
    const std::lock_guard lock(mutex_);
    const auto name = activityNames_.find(what);
    if (--name->second == 0) activityNames_.erase(name);
    if (--activities_ > 0) return;
  }
  mainChanged_.notify_all();
}

std::size_t Scheduler::activities() const {
  const std::lock_guard lock(mutex_);
  return activities_;
}

std::uint64_t Scheduler::activitiesBegun() const {
  const std::lock_guard lock(mutex_);
  return activitiesBegun_;
}

std::string Scheduler::activityNames() const {
  const std::lock_guard lock(mutex_);
  std::string names;
  for (const auto& [name, count] : activityNames_) {
    if (!names.empty()) names += ", ";
    names += name + (count > 1 ? " (" + std::to_string(count) + ")" : "");
  }
  return names;
}

Scheduler::Wait Scheduler::waitForMainOrIdle(std::int64_t now, double seconds) {
  std::unique_lock lock(mutex_);
  const auto ready = [&] { return activities_ == 0 || (!main_.empty() && main_.begin()->first.first <= now); };
  return mainChanged_.wait_for(lock, std::chrono::duration<double>(seconds), ready) ? Wait::ready : Wait::timedOut;
}

Scheduler::Wait Scheduler::waitUntilIdle(double seconds) {
  std::unique_lock lock(mutex_);
  const auto ready = [&] { return activities_ == 0; };
  return mainChanged_.wait_for(lock, std::chrono::duration<double>(seconds), ready) ? Wait::ready : Wait::timedOut;
}

void Scheduler::waitForMain(std::optional<std::int64_t> until) {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (std::exchange(interrupted_, false)) return;
    const std::int64_t now = Clock::nanoseconds();
    std::optional<std::int64_t> wake = until;
    if (!main_.empty() && (!wake || main_.begin()->first.first < *wake)) wake = main_.begin()->first.first;
    if (wake && *wake <= now) return;
    if (wake) {
      mainChanged_.wait_for(lock, std::chrono::nanoseconds(*wake - now));
    } else {
      mainChanged_.wait(lock);
    }
  }
}

void Scheduler::interruptWait() {
  {
    const std::lock_guard lock(mutex_);
    interrupted_ = true;
  }
  mainChanged_.notify_all();
}

void Scheduler::setWakeUp(Work wakeUp) {
  const std::lock_guard lock(mutex_);
  wakeUp_ = std::move(wakeUp);
}

void Scheduler::rebase(std::int64_t difference) {
  {
    const std::lock_guard lock(mutex_);
    std::map<Key, Work> main;
    std::map<Key, Later> later;
    for (auto& [key, work] : main_)
      main.emplace_hint(main.end(), Key{key.first + difference, key.second}, std::move(work));
    for (auto& [key, work] : later_) {
      later.emplace_hint(later.end(), Key{key.first + difference, key.second}, std::move(work));
    }
    main_.swap(main);
    later_.swap(later);
    if (!later_.empty() && !timersRun_ && !Clock::isVirtual()) {
      timersRun_ = true;
      std::thread([this] { runTimers(); }).detach();
    }
  }
  mainChanged_.notify_all();
  timersChanged_.notify_all();
}

bool Scheduler::dropAll() {
  std::map<Key, Work> main;
  std::map<Key, Later> later;
  const std::lock_guard lock(mutex_);
  main.swap(main_);
  later.swap(later_);
  return !main.empty() || !later.empty();
}

/// The thread that keeps real time for background queues. Under virtual time the run loop does it instead.
void Scheduler::runTimers() {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (Clock::isVirtual() || later_.empty()) {
      timersChanged_.wait(lock);
      continue;
    }
    const std::int64_t now = Clock::nanoseconds();
    const std::int64_t due = later_.begin()->first.first;
    if (due > now) {
      timersChanged_.wait_for(lock, std::chrono::nanoseconds(due - now));
      continue;
    }
    Later ready = std::move(later_.begin()->second);
    later_.erase(later_.begin());
    lock.unlock();
    ready.target->submit(std::move(ready.work));
    ready = {};
    lock.lock();
  }
}

}  // namespace platform
