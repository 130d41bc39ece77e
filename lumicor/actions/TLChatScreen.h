#pragma once

#include <memory>
#include <string>

#include "platform/runtime/Object.h"

namespace platform {
class UINavigationController;
}

namespace lumicor {

using namespace platform;

/// The chat as those see it who carry requests out: what they say goes there, and it stands aside while steps run. The
/// user interface implements it and says which one is current. Main thread.
class TLChatScreen {
 public:
  /// None while there is no chat.
  static std::shared_ptr<TLChatScreen> current() { return current_.lock(); }
  /// Held weakly.
  static void setCurrent(std::weak_ptr<TLChatScreen> screen) { current_ = std::move(screen); }

  virtual ~TLChatScreen() = default;
  /// Adds what the assistant says, in the place of a typing row.
  virtual void addMessage(const std::string& text) = 0;
  virtual void closeWithoutAnimation() = 0;
  /// Comes back with an animation that no touch disturbs, unless it is there already.
  virtual void reopen(const Ref<UINavigationController>& navigation) = 0;

 private:
  inline static std::weak_ptr<TLChatScreen> current_;
};

}  // namespace lumicor
