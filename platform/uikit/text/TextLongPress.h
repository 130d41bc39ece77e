#pragma once

#include <functional>
#include <memory>

#include "platform/dispatch/DispatchWorkItem.h"

namespace platform {

/// Notices that a finger rests on text. The action runs once the finger has been down for half a second. Main thread.
class TextLongPress {
 public:
  ~TextLongPress() { cancel(); }
  void begin(std::function<void()> action);
  void cancel();
  /// True once it ran for the touch that is down.
  bool happened() const { return *happened_; }

 private:
  std::shared_ptr<DispatchWorkItem> waiting_;
  std::shared_ptr<bool> happened_ = std::make_shared<bool>(false);
};

}  // namespace platform
