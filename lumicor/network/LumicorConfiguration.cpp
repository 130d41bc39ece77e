#include "lumicor/network/LumicorConfiguration.h"

namespace lumicor {

namespace {

bool isTrue(const JSONValue& data, std::string_view name) {
  const JSONValue* const flag = data.find(name);
  return flag && flag->asBool() == true;
}

template <class T>
std::optional<Result<T>> decoded(const JSONValue& data, std::string_view name, JSONValue::Kind wanted) {
  const JSONValue* const member = data.find(name);
  if (!member || member->kind() != wanted) return std::nullopt;
  return decodeRecord<T>(*member);
}

}  // namespace

LumicorConfiguration LumicorConfiguration::read(const JSONValue& data) {
  using Kind = JSONValue::Kind;
  return {.showTrackerView = isTrue(data, "showTrackerView"),
          .layoutData = decoded<TLLayout>(data, "layoutData", Kind::object),
          .chatHistory = decoded<std::vector<TLChatMessage>>(data, "chatHistory", Kind::array),
          .showTesselLumicor = isTrue(data, "showTesselLumicor"),
          .tlDefaults = decoded<TLDefaults>(data, "tlDefaults", Kind::object)};
}

}  // namespace lumicor
