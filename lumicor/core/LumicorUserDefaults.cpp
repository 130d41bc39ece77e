#include "lumicor/core/LumicorUserDefaults.h"

#include "lumicor/core/LumicorDebugHelper.h"
#include "platform/foundation/UserDefaults.h"

namespace lumicor {

UserDefaults& LumicorUserDefaults::store() {
  UserDefaults& defaults = UserDefaults::standard();
  for (const std::string& report : defaults.takeReports()) LumicorDebugHelper::log("Error: " + report);
  return defaults;
}

const std::string& LumicorUserDefaults::storedMessagesKey() {
  static const std::string key = "storedMessages";
  return key;
}

std::optional<std::vector<TLChatMessage>> LumicorUserDefaults::loadMessages(const std::string& key) {
  const std::optional<Data> stored = store().data(key);
  if (!stored) return std::nullopt;
  auto messages = decodeJSON<std::vector<TLChatMessage>>(*stored);
  if (messages) return std::move(*messages);
  LumicorDebugHelper::log("Error: Unable to deserialize JSON to TLChatMessage array (" + messages.error() + ")");
  return std::nullopt;
}

void LumicorUserDefaults::saveMessages(const std::string& key, const std::vector<TLChatMessage>& messages) {
  const auto encoded = encodeJSON(messages);
  if (encoded) return store().set(*encoded, key);
  LumicorDebugHelper::log("Error: Unable to serialize TLChatMessage array (" + encoded.error() + ")");
}

}  // namespace lumicor
