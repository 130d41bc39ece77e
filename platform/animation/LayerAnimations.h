#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/animation/CAAnimation.h"
#include "platform/dispatch/DispatchWorkItem.h"

namespace platform {

class CALayer;

/// The animations of one layer: when each ends, and what they make of its values. The layer owns it and makes it when
/// the first one is added. Main thread.
class LayerAnimations {
 public:
  explicit LayerAnimations(CALayer& layer) : layer_(layer) {}
  /// What still runs ends unfinished.
  ~LayerAnimations();
  LayerAnimations(const LayerAnimations&) = delete;
  LayerAnimations& operator=(const LayerAnimations&) = delete;

  void add(const Ref<CAAnimation>& animation, const std::string& key);
  Ref<CAAnimation> find(const std::string& key) const;
  std::vector<std::string> keys() const;
  void remove(const std::string& key);
  void removeAll();
  bool isEmpty() const { return entries_.empty(); }
  /// True when the layer shows other values than its own at that time, or will without being touched.
  bool isMoving(double mediaTime) const;
  /// Puts the values that show at that time into a copy of the layer, in the order in which they were added.
  void apply(double mediaTime, CALayer& copy) const;

 private:
  struct Entry {
    std::string key;
    Ref<CAAnimation> animation;
    Ref<DispatchWorkItem> start;
    Ref<DispatchWorkItem> end;
  };
  static Ref<DispatchWorkItem> at(double mediaTime, std::function<void()> work);
  void schedule(Entry& entry);
  void reachedEnd(const CAAnimation* animation);
  /// Stops its work and tells whoever wants to know.
  static void finish(Entry& entry, bool finished);

  CALayer& layer_;
  std::vector<Entry> entries_;
};

}  // namespace platform
