#include "platform/animation/LayerAnimations.h"

#include <algorithm>
#include <cmath>

#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/CATransaction.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"

namespace platform {

LayerAnimations::~LayerAnimations() {
  for (Entry& entry : entries_) finish(entry, false);
}

void LayerAnimations::add(const Ref<CAAnimation>& animation, const std::string& key) {
  Entry entry{key, animation->copy(), nullptr, nullptr};
  CAAnimation& copy = *entry.animation;
  if (copy.duration_ <= 0) copy.duration_ = CATransaction::animationDuration();
  if (copy.beginTime_ == 0) copy.beginTime_ = Clock::mediaTime();
  copy.completion_ = CATransaction::currentCompletion();
  if (copy.completion_) copy.completion_->enter();
  if (!key.empty()) remove(key);
  schedule(entry);
  entries_.push_back(std::move(entry));
}

Ref<DispatchWorkItem> LayerAnimations::at(double mediaTime, std::function<void()> work) {
  return DispatchQueue::main().asyncAfter(mediaTime - Clock::mediaTime(), std::move(work));
}

void LayerAnimations::schedule(Entry& entry) {
  const CAAnimation& animation = *entry.animation;
  const Weak<CALayer> layer = std::static_pointer_cast<CALayer>(layer_.shared_from_this());
  static const SEL didStart = sel("animationDidStart:");
  if (animation.delegate_ && animation.delegate_->respondsToSelector(didStart)) {
    entry.start = at(animation.beginTime_, [started = entry.animation] {
      if (started->delegate_) started->delegate_->perform(didStart, started);
    });
  }
  const double end = animation.beginTime_ + animation.activeDuration();
  if (!std::isfinite(end)) return;
  entry.end = at(end, [layer, over = entry.animation.get()] {
    const Ref<CALayer> alive = layer.lock();
    if (alive && alive->animations_) alive->animations_->reachedEnd(over);
  });
}

void LayerAnimations::reachedEnd(const CAAnimation* animation) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.animation.get() == animation; });
  if (found == entries_.end()) return;
  Entry entry = *found;
  if (entry.animation->isRemovedOnCompletion()) {
    entries_.erase(found);
  } else {
    found->start = found->end = nullptr;  // it stays, but is over
  }
  const Ref<NSObject> keeper = layer_.shared_from_this();  // being told may let the layer go
  layer_.changed();
  finish(entry, true);
}

void LayerAnimations::finish(Entry& entry, bool finished) {
  if (entry.start && !finished) entry.start->cancel();
  if (entry.end) entry.end->cancel();
  CAAnimation& animation = *entry.animation;
  // Once: an animation that stays after its end has nothing more to tell when it is removed.
  const Ref<NSObject> delegate = std::move(animation.delegate_);
  const std::shared_ptr<CompletionGroup> completion = std::move(animation.completion_);
  static const SEL didStop = sel("animationDidStop:finished:");
  if (delegate && delegate->respondsToSelector(didStop)) delegate->perform(didStop, entry.animation, finished);
  if (completion) completion->leave(finished);
}

Ref<CAAnimation> LayerAnimations::find(const std::string& key) const {
  for (const Entry& entry : entries_) {
    if (entry.key == key) return entry.animation;
  }
  return nullptr;
}

std::vector<std::string> LayerAnimations::keys() const {
  std::vector<std::string> keys;
  for (const Entry& entry : entries_) {
    if (!entry.key.empty()) keys.push_back(entry.key);
  }
  return keys;
}

void LayerAnimations::remove(const std::string& key) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.key == key; });
  if (found == entries_.end()) return;
  Entry entry = std::move(*found);
  entries_.erase(found);
  finish(entry, false);
}

void LayerAnimations::removeAll() {
  std::vector<Entry> removed;
  removed.swap(entries_);
  for (Entry& entry : removed) finish(entry, false);
}

bool LayerAnimations::isMoving(double mediaTime) const {
  return std::any_of(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return mediaTime < entry.animation->beginTime() + entry.animation->activeDuration();
  });
}

void LayerAnimations::apply(double mediaTime, CALayer& copy) const {
  for (const Entry& entry : entries_) {
    const auto* const basic = dynamic_cast<const CABasicAnimation*>(entry.animation.get());
    if (!basic) continue;
    const AnimatableValue value = basic->valueAt(mediaTime, copy.valueForKeyPath(basic->keyPath()));
    if (!std::holds_alternative<std::monostate>(value)) copy.setValueForKeyPath(value, basic->keyPath());
  }
}

}  // namespace platform
