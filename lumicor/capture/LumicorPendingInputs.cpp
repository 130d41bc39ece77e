#include "lumicor/capture/LumicorPendingInputs.h"

#include <utility>
#include <vector>

namespace lumicor {

namespace {

struct Pending {
  Weak<NSObject> source;
  const NSObject* address;
  std::function<void()> settle;
};

std::vector<Pending>& waiting() {
  static std::vector<Pending> inputs;
  return inputs;
}

}  // namespace

void LumicorPendingInputs::add(NSObject& source, std::function<void()> settle) {
  forget(source);
  waiting().push_back({source.shared_from_this(), &source, std::move(settle)});
}

void LumicorPendingInputs::forget(const NSObject& source) {
  std::erase_if(waiting(),
                [&](const Pending& pending) { return pending.address == &source || pending.source.expired(); });
}

void LumicorPendingInputs::settle() {
  for (const Pending& pending : std::exchange(waiting(), {})) {
    if (!pending.source.expired()) pending.settle();
  }
}

}  // namespace lumicor
