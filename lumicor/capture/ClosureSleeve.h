#pragma once

#include <functional>

#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// A closure that can be the target of a control: its method "invoke" runs it. A control holds targets weakly, so
/// somebody keeps the sleeve. Main thread.
class ClosureSleeve final : public Object<ClosureSleeve, NSObject> {
 public:
  explicit ClosureSleeve(std::function<void()> closure) : closure_(std::move(closure)) {}
  static void exportMethods(MethodTable<ClosureSleeve>& table) { table.add<&ClosureSleeve::invoke>("invoke"); }

  void invoke() {
    const auto closure = closure_;  // it may let go of the sleeve
    if (closure) closure();
  }

 private:
  std::function<void()> closure_;
};

}  // namespace lumicor
