#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace platform {

/// The loop that runs the main queue's work. Main thread, except `stop`.
///
/// In an application either `run` turns it (a program without a window), or the engine does: it is told through
/// `setWakeUp` that there is something new, calls `drainDueWork`, and sleeps at most `timeUntilNextWork`.
/// In a test, under virtual time, `advance` and its kin turn it.
class RunLoop {
 public:
  static RunLoop& main();

  /// Runs work as it falls due until `stop`.
  void run();
  /// Makes `run` return after the work in hand. Any thread.
  void stop();

  /// Called from any thread whenever the main queue gained work that may be due earlier than what was known. None stops
  /// it.
  void setWakeUp(std::function<void()> wakeUp);
  /// Runs what is due now, then the turn observers. Work that this very call posted waits for the next one, so that a
  /// window stays responsive.
  void drainDueWork();
  /// Seconds until the main queue has something to do: 0 when it has now, none when nothing is scheduled.
  std::optional<double> timeUntilNextWork() const;

  /// Called each time the loop has run everything that was due, before it waits or time moves on: layout and drawing
  /// hang there. Returns a number for `removeTurnObserver`.
  std::uint64_t addTurnObserver(std::function<void()> observer);
  void removeTurnObserver(std::uint64_t observer);

  /// Moves virtual time on by that many seconds. Everything that falls due meanwhile, on every queue, runs in order of
  /// time, each piece at its own instant, pieces of one instant in the order they were scheduled. Background activity
  /// is waited for before time moves. Work that keeps posting itself without letting time pass is a fatal error. In
  /// real time it turns the loop for that long.
  static void advance(double seconds);
  /// The same, but stops at the instant at which the predicate holds; false when it never did.
  static bool advanceUntil(const std::function<bool()>& predicate, double maxSeconds);
  /// Runs all that is due now, hops to background queues and back included. No time passes.
  static void settle();

 private:
  friend class VirtualTime;
  RunLoop() = default;
  static void dropEverything();
};

}  // namespace platform
