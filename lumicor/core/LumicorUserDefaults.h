#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumicor/core/TLChatMessage.h"

namespace platform {
class UserDefaults;
}

namespace lumicor {

/// Chat messages on the device, in the platform's standard user defaults: the bytes of a compact JSON array.
/// Thread: main. Failures are logged; what is stored stays as it is.
class LumicorUserDefaults {
 public:
  /// Any thread; whoever asks first reads its files. What went wrong with them since it was asked last is logged.
  static UserDefaults& store();
  /// The key under which the chat is kept.
  static const std::string& storedMessagesKey();

  /// None when nothing is stored under the key, or something that is no list of messages.
  static std::optional<std::vector<TLChatMessage>> loadMessages(const std::string& key);
  static void saveMessages(const std::string& key, const std::vector<TLChatMessage>& messages);
};

}  // namespace lumicor
