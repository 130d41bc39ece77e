#include "platform/uikit/text/TextLongPress.h"

#include <utility>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

constexpr double longPressSeconds = 0.5;

}  // namespace

void TextLongPress::begin(std::function<void()> action) {
  cancel();
  waiting_ = DispatchQueue::main().asyncAfter(longPressSeconds, [happened = happened_, action = std::move(action)] {
    *happened = true;
    action();
  });
}

void TextLongPress::cancel() {
  if (waiting_) waiting_->cancel();
  waiting_ = nullptr;
  happened_ = std::make_shared<bool>(false);
}

}  // namespace platform
