#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Calls back at every frame while it runs, with the seconds since it was started. Stops when it is dropped; stopping
/// or starting anew from inside the call is fine. Main thread.
class FrameTicker {
 public:
  using Tick = std::function<void(double seconds)>;

  FrameTicker() = default;
  ~FrameTicker() { stop(); }
  FrameTicker(const FrameTicker&) = delete;
  FrameTicker& operator=(const FrameTicker&) = delete;

  void start(Tick tick);
  void stop();
  bool isRunning() const { return run_ != nullptr; }

 private:
  struct Run;
  std::shared_ptr<Run> run_;
};

}  // namespace platform
