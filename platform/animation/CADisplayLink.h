#pragma once

#include <cstdint>

#include "platform/runtime/Object.h"

namespace platform {

/// Sends its target an action at every frame while it runs. The target is held weakly; once it is gone the link stops.
/// The run of frames keeps the link alive until it is invalidated. Main thread.
class CADisplayLink : public Object<CADisplayLink, NSObject> {
 public:
  /// The action takes nothing, or the link.
  void init(const Ref<NSObject>& target, SEL action);
  ~CADisplayLink() override;

  /// Starts it.
  void addToRunLoop();
  /// Stops it for good.
  void invalidate();
  bool isPaused() const { return paused_; }
  void setPaused(bool paused);
  /// Media time of the frame being made, and of the next.
  double timestamp() const { return timestamp_; }
  double targetTimestamp() const;

 private:
  void frame(double mediaTime);
  Weak<NSObject> target_;
  SEL action_;
  std::uint64_t observer_ = 0;
  double timestamp_ = 0;
  bool paused_ = false;
};

}  // namespace platform
