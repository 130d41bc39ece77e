#pragma once

// What somebody would write who knows the packaged libraries well and wants what the records give: every key there,
// none twice, unknown ones passed over, every text of the two vocabularies one that is known.

#include <array>
#include <cstdint>
#include <simdjson.h>
#include <string>
#include <string_view>
#include <vector>

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/screen/LumicroElement.h"
#ifdef BENCH_WITH_RAPIDJSON
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#endif

namespace lumicor::bench {

namespace ondemand = simdjson::ondemand;

/// The keys of one object: which of them a field has, the next one first, and which have been there.
template <std::size_t N>
class Keys {
 public:
  static constexpr std::size_t unknown = N;
  explicit Keys(const std::array<std::string_view, N>& names) : names_(names) {}

  /// False when the field is not JSON, or its key was there before.
  bool find(simdjson::simdjson_result<ondemand::field>& field, std::size_t& index) {
    if (field.error()) return false;
    index = next_;
    if (index == N || !field.key().value_unsafe().unsafe_is_equal(names_[index])) {
      std::string_view key;
      if (field.unescaped_key().get(key)) return false;
      for (index = 0; index < N && names_[index] != key;) ++index;
      if (index == unknown) return true;
    }
    if (seen_ >> index & 1) return false;
    seen_ |= 1U << index;
    next_ = index + 1;
    return true;
  }
  bool areComplete() const { return seen_ == (1U << N) - 1; }

 private:
  const std::array<std::string_view, N>& names_;
  std::size_t next_ = 0;
  std::uint32_t seen_ = 0;
};

inline bool readByHand(ondemand::object object, std::vector<LumicroElement>& list) {
  static constexpr std::array<std::string_view, 14> names{
      "elementId",  "fragmentId",     "x",        "y",           "width", "height",
      "actionName", "isNavigational", "actionId", "destination", "value", "elementDescription",
      "type",       "inputType"};
  Keys keys(names);
  std::array<std::string_view, 14> texts;
  std::array<std::int64_t, 6> numbers{};
  bool isNavigational = false;
  for (auto field : object) {
    std::size_t index = 0;
    if (!keys.find(field, index)) return false;
    switch (index) {
      case 2:
      case 3:
      case 4:
      case 5:
        if (field.value().get_int64().get(numbers[index])) return false;
        break;
      case 7:
        if (field.value().get_bool().get(isNavigational)) return false;
        break;
      case names.size():
        break;
      default:
        if (field.value().get_string().get(texts[index])) return false;
    }
  }
  const auto type = caseFromRawValue<LumicorType>(texts[12]);
  const auto inputType = caseFromRawValue<LumicorInputType>(texts[13]);
  if (!keys.areComplete() || !type || !inputType) return false;
  const auto text = [&texts](std::size_t i) { return std::string(texts[i]); };
  list.emplace_back(text(0), text(1), numbers[2], numbers[3], numbers[4], numbers[5], text(6), isNavigational, text(8),
                    text(9), text(10), text(11), *type, *inputType);
  return true;
}

inline bool readByHand(ondemand::object object, std::vector<TLChatMessage>& list) {
  static constexpr std::array<std::string_view, 3> names{"message", "isRemote", "timestamp"};
  Keys keys(names);
  std::string_view message;
  bool isRemote = false;
  std::int64_t timestamp = 0;
  for (auto field : object) {
    std::size_t index = 0;
    if (!keys.find(field, index)) return false;
    if (index == 0 && field.value().get_string().get(message)) return false;
    if (index == 1 && field.value().get_bool().get(isRemote)) return false;
    if (index == 2 && field.value().get_int64().get(timestamp)) return false;
  }
  if (!keys.areComplete()) return false;
  list.push_back({std::string(message), isRemote, timestamp});
  return true;
}

/// A whole document, with the room behind it that the parser wants: what is handed to us seldom has that.
template <class T>
bool readByHand(const simdjson::padded_string& text, std::vector<T>& list) {
  static ondemand::parser parser;
  ondemand::document document;
  ondemand::array array;
  if (parser.iterate(text).get(document) || document.get_array().get(array)) return false;
  for (auto value : array) {
    ondemand::object object;
    if (value.get_object().get(object) || !readByHand(object, list)) return false;
  }
  return document.current_location().error() == simdjson::OUT_OF_BOUNDS;
}

#ifdef BENCH_WITH_RAPIDJSON
/// Into a buffer that is kept from one time to the next. Lengths of keys are known; its way of looking at sixteen bytes
/// at a time is left off, since it takes twice as long with texts as short as these.
inline std::string_view writeByHand(const std::vector<LumicroElement>& elements) {
  static rapidjson::StringBuffer buffer;
  buffer.Clear();
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  const auto key = [&writer](std::string_view text) {
    writer.Key(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  };
  const auto text = [&](std::string_view name, std::string_view value) {
    key(name);
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  };
  const auto number = [&](std::string_view name, std::int64_t value) {
    key(name);
    writer.Int64(value);
  };
  writer.StartArray();
  for (const LumicroElement& e : elements) {
    writer.StartObject();
    text("elementId", e.elementId());
    text("fragmentId", e.fragmentId());
    number("x", e.x());
    number("y", e.y());
    number("width", e.width());
    number("height", e.height());
    text("actionName", e.actionName());
    key("isNavigational");
    writer.Bool(e.isNavigational());
    text("actionId", e.actionId());
    text("destination", e.destination());
    text("value", e.value());
    text("elementDescription", e.elementDescription());
    text("type", rawValue(e.type()));
    text("inputType", rawValue(e.inputType()));
    writer.EndObject();
  }
  writer.EndArray();
  return {buffer.GetString(), buffer.GetSize()};
}
#endif

}  // namespace lumicor::bench
