#include "platform/dispatch/DispatchGroup.h"

#include <mutex>
#include <utility>
#include <vector>

#include "platform/runtime/FatalError.h"

namespace platform {

struct DispatchGroup::State {
  struct Notice {
    DispatchQueue queue;
    std::function<void()> work;
  };
  std::mutex mutex;
  std::size_t inside = 0;
  std::vector<Notice> notices;
};

DispatchGroup::DispatchGroup() : state_(std::make_shared<State>()) {}

void DispatchGroup::enter() const {
  const std::lock_guard lock(state_->mutex);
  ++state_->inside;
}

void DispatchGroup::leave() const {
  std::vector<State::Notice> due;
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->inside == 0) fatalError("DispatchGroup: leave without enter");
    if (--state_->inside == 0) due.swap(state_->notices);
  }
  for (State::Notice& notice : due) notice.queue.async(std::move(notice.work));
}

void DispatchGroup::async(const DispatchQueue& queue, std::function<void()> work) const {
  enter();
  queue.async([group = *this, work = std::move(work)] {
    work();
    group.leave();
  });
}

void DispatchGroup::notify(const DispatchQueue& queue, std::function<void()> work) const {
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->inside > 0) {
      state_->notices.push_back({queue, std::move(work)});
      return;
    }
  }
  queue.async(std::move(work));
}

}  // namespace platform
