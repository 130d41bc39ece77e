#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

/// The beat at which what moves is shown: up to 60 times a second of the media clock, and not at all while nobody asks.
/// Frames come through the main queue, in virtual time too. Main thread.
class FrameClock {
 public:
  static constexpr double frameDuration = 1.0 / 60;
  static FrameClock& shared();

  /// One more frame is wanted. Any number of calls before it make one frame.
  void setNeedsFrame();
  bool isFramePending() const { return !pending_.expired(); }

  /// What moves things comes before what lays out and shows them.
  enum class Phase { update, display };
  /// Called at each frame with its media time: by phase, and in the order they were added. Returns a number for
  /// removeObserver. Observers alone make no frames.
  std::uint64_t addObserver(Phase phase, std::function<void(double mediaTime)> observer);
  void removeObserver(std::uint64_t observer);
  /// Frames so far.
  std::uint64_t frameCount() const { return frames_; }

 private:
  FrameClock() = default;
  void tick();
  struct Observer {
    std::uint64_t number;
    Phase phase;
    std::shared_ptr<std::function<void(double)>> call;
  };
  std::vector<Observer> observers_;
  std::uint64_t lastNumber_ = 0;
  std::uint64_t frames_ = 0;
  double lastFrame_ = 0;
  std::weak_ptr<bool> pending_;  // held by the work on the main queue, which a test may drop
};

}  // namespace platform
