#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

class DispatchQueue::Target {
 public:
  virtual ~Target() = default;
  /// Takes work that is due now.
  virtual void submit(std::function<void()> work) = 0;
  const std::string& label() const { return label_; }

 protected:
  explicit Target(std::string label) : label_(std::move(label)) {}

 private:
  const std::string label_;
};

/// What waits for the main thread or for its time, and how much is under way elsewhere: one lock, so that "nothing is
/// under way and nothing was posted" is one observation. Lives as long as the process. Any thread.
/// Part of the dispatch folder; others use DispatchQueue and RunLoop.
class Scheduler {
 public:
  using Work = std::function<void()>;
  using TargetRef = std::shared_ptr<DispatchQueue::Target>;
  static Scheduler& shared();

  void postMain(std::int64_t due, Work work);
  /// Submits the work to its target when it is due.
  void postLater(std::int64_t due, TargetRef target, Work work);

  /// The next number of the order in which work is scheduled; work posted later has a higher one.
  std::uint64_t nextNumber() const;
  /// Takes the first piece of main work that is due, if it was posted before that number.
  std::optional<Work> takeMain(std::int64_t now, std::uint64_t before = UINT64_MAX);
  /// Hands timed background work that is due to its queues; false when there was none.
  bool submitDue(std::int64_t now);
  std::optional<std::int64_t> earliestMain() const;
  std::optional<std::int64_t> earliest() const;

  void beginActivity(const char* what);
  void endActivity(const char* what);
  std::size_t activities() const;
  std::uint64_t activitiesBegun() const;
  /// What is under way, for people: "URL session task (2), pool work".
  std::string activityNames() const;

  enum class Wait { ready, timedOut };
  /// Until main work is due at that instant or no activity is under way. At most that many real seconds.
  Wait waitForMainOrIdle(std::int64_t now, double seconds);
  Wait waitUntilIdle(double seconds);
  /// Until something is posted to main, or until that instant of real time, or a stop. Returns at once when work is
  /// due.
  void waitForMain(std::optional<std::int64_t> until);
  void interruptWait();

  void setWakeUp(Work wakeUp);
  /// Shifts everything that waits; the clock was switched.
  void rebase(std::int64_t difference);
  /// Forgets everything that waits; false when there was nothing.
  bool dropAll();

 private:
  struct Later {
    TargetRef target;
    Work work;
  };
  using Key = std::pair<std::int64_t, std::uint64_t>;

  Scheduler() = default;
  void runTimers();

  mutable std::mutex mutex_;
  std::condition_variable mainChanged_;
  std::condition_variable timersChanged_;
  std::map<Key, Work> main_;
  std::map<Key, Later> later_;
  std::uint64_t number_ = 0;
  std::map<std::string, int> activityNames_;
  std::size_t activities_ = 0;
  std::uint64_t activitiesBegun_ = 0;
  bool interrupted_ = false;
  bool timersRun_ = false;
  Work wakeUp_;
};

}  // namespace platform
