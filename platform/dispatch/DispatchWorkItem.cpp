#include "platform/dispatch/DispatchWorkItem.h"

#include <utility>

namespace platform {

void DispatchWorkItem::cancel() {
  std::function<void()> released;  // let go outside the lock: its end may cancel other work
  const std::lock_guard lock(mutex_);
  cancelled_.store(true, std::memory_order_release);
  released.swap(work_);
}

void DispatchWorkItem::perform() {
  std::function<void()> work;
  {
    const std::lock_guard lock(mutex_);
    work.swap(work_);
  }
  if (work) work();
}

}  // namespace platform
