#include "platform/dispatch/RunLoop.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/Scheduler.h"
#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

constexpr std::size_t mostWorkInOneInstant = 100'000;
constexpr std::size_t mostActivitiesInOneInstant = 200'000;
constexpr double longestWaitForActivity = 60;
constexpr std::int64_t lookAgainNanoseconds = 5'000'000;

std::atomic<bool> stopped{false};

struct Observer {
  std::uint64_t number;
  std::function<void()> work;
};

std::vector<Observer>& observers() {
  static std::vector<Observer>* const all = new std::vector<Observer>;
  return *all;
}

void runTurnObservers() {
  // By number, because an observer may add and remove observers.
  std::vector<std::uint64_t> numbers;
  for (const Observer& observer : observers()) numbers.push_back(observer.number);
  for (const std::uint64_t number : numbers) {
    const auto found = std::find_if(observers().begin(), observers().end(),
                                    [&](const Observer& observer) { return observer.number == number; });
    if (found == observers().end()) continue;
    const std::function<void()> work = found->work;
    work();
  }
}

/// Until main work is due or nothing is under way elsewhere, but not for ever.
void waitForMainOrIdle(std::int64_t now, std::uint64_t mostBegun) {
  constexpr double slice = 0.25;
  Scheduler& scheduler = Scheduler::shared();
  for (double waited = 0; scheduler.waitForMainOrIdle(now, slice) == Scheduler::Wait::timedOut; waited += slice) {
    if (scheduler.activitiesBegun() > mostBegun) {
      fatalError("a background queue does not come to rest: work keeps posting itself without letting time pass");
    }
    if (waited > longestWaitForActivity) {
      fatalError("virtual time waited too long for background activity: " + scheduler.activityNames());
    }
  }
}

using Predicate = std::function<bool()>;

/// Runs everything of the present instant of virtual time, on every queue, until nothing is left of it. True as soon as
/// the predicate (which may be none) holds.
bool runInstant(const Predicate& predicate) {
  Scheduler& scheduler = Scheduler::shared();
  const std::uint64_t begunBefore = scheduler.activitiesBegun();
  std::size_t pieces = 0;
  for (;;) {
    const std::int64_t now = Clock::nanoseconds();  // work may itself have moved time on
    scheduler.submitDue(now);
    if (auto work = scheduler.takeMain(now)) {
      if (++pieces > mostWorkInOneInstant) {
        fatalError("the main queue does not come to rest: work keeps posting itself without letting time pass");
      }
      (*work)();
      work.reset();
      if (predicate && predicate()) return true;
      continue;
    }
    waitForMainOrIdle(now, begunBefore + mostActivitiesInOneInstant);
    if (const auto next = scheduler.earliest(); next && *next <= now) continue;
    if (scheduler.activities() > 0) continue;
    runTurnObservers();
    if (const auto next = scheduler.earliest(); next && *next <= now) {
      if (++pieces > mostWorkInOneInstant) {
        fatalError("the main queue does not come to rest: a turn observer keeps posting work");
      }
      continue;
    }
    if (scheduler.activities() == 0) return predicate && predicate();
  }
}

/// Turns the loop in real time until the instant or the predicate.
bool turnUntil(std::int64_t end, const Predicate& predicate) {
  for (;;) {
    RunLoop::main().drainDueWork();
    if (predicate && predicate()) return true;
    const std::int64_t now = Clock::nanoseconds();
    if (now >= end) return false;
    // What a predicate looks at may change without any work for the main thread.
    Scheduler::shared().waitForMain(predicate ? std::min(end, now + lookAgainNanoseconds) : end);
  }
}

}  // namespace

RunLoop& RunLoop::main() {
  static RunLoop only;
  return only;
}

void RunLoop::run() {
  assertMainThread("RunLoop::run");
  if (Clock::isVirtual()) fatalError("RunLoop::run needs real time; a test turns the loop with RunLoop::advance");
  while (!stopped.exchange(false)) {
    drainDueWork();
    if (!stopped.load()) Scheduler::shared().waitForMain(std::nullopt);
  }
}

void RunLoop::stop() {
  stopped.store(true);
  Scheduler::shared().interruptWait();
}

void RunLoop::setWakeUp(std::function<void()> wakeUp) { Scheduler::shared().setWakeUp(std::move(wakeUp)); }

void RunLoop::drainDueWork() {
  assertMainThread("RunLoop::drainDueWork");
  Scheduler& scheduler = Scheduler::shared();
  const std::uint64_t end = scheduler.nextNumber();
  while (auto work = scheduler.takeMain(Clock::nanoseconds(), end)) (*work)();
  runTurnObservers();
}

std::optional<double> RunLoop::timeUntilNextWork() const {
  const std::optional<std::int64_t> next = Scheduler::shared().earliestMain();
  if (!next) return std::nullopt;
  return static_cast<double>(std::max<std::int64_t>(0, *next - Clock::nanoseconds())) / 1e9;
}

std::uint64_t RunLoop::addTurnObserver(std::function<void()> observer) {
  assertMainThread("RunLoop::addTurnObserver");
  static std::uint64_t number = 0;
  observers().push_back({++number, std::move(observer)});
  return number;
}

void RunLoop::removeTurnObserver(std::uint64_t observer) {
  assertMainThread("RunLoop::removeTurnObserver");
  std::erase_if(observers(), [&](const Observer& candidate) { return candidate.number == observer; });
}

void RunLoop::advance(double seconds) { advanceUntil(nullptr, seconds); }

bool RunLoop::advanceUntil(const Predicate& predicate, double maxSeconds) {
  assertMainThread("RunLoop::advance");
  const std::int64_t end = Clock::nanoseconds() + Clock::nanosecondsOf(maxSeconds);
  if (predicate && predicate()) return true;
  if (!Clock::isVirtual()) return turnUntil(end, predicate);
  for (;;) {
    if (runInstant(predicate)) return true;
    if (Clock::nanoseconds() >= end) return false;
    const std::optional<std::int64_t> next = Scheduler::shared().earliest();
    const std::int64_t target = std::min(next.value_or(end), end);
    Clock::moveVirtualTimeTo(std::max(target, Clock::nanoseconds()));
  }
}

void RunLoop::settle() {
  assertMainThread("RunLoop::settle");
  if (Clock::isVirtual()) {
    runInstant(nullptr);
    return;
  }
  do {
    main().drainDueWork();
    Scheduler::shared().waitForMainOrIdle(Clock::nanoseconds(), longestWaitForActivity);
  } while (Scheduler::shared().activities() > 0 || main().timeUntilNextWork().value_or(1) <= 0);
}

void RunLoop::dropEverything() {
  Scheduler& scheduler = Scheduler::shared();
  do {  // what is let go may post in its destructors, and background work may post until it ends
    if (scheduler.waitUntilIdle(longestWaitForActivity) == Scheduler::Wait::timedOut) {
      fatalError("background activity does not end: " + scheduler.activityNames());
    }
  } while (scheduler.dropAll() || scheduler.activities() > 0);
}

}  // namespace platform
