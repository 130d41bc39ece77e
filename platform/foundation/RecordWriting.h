#pragma once

#include <algorithm>
#include <cstring>

#include "platform/foundation/JSONValue.h"
#include "platform/foundation/JSONWriter.h"
#include "platform/foundation/RecordCoding.h"

// How records are written; a part of Record.h.

namespace platform::detail {

/// About how many bytes writing takes. Of long lists a few elements speak for all.
template <Codable T>
std::size_t expectedBytes(const T& value) {
  constexpr std::size_t samples = 8;
  if constexpr (std::is_same_v<T, std::string>) {
    return value.size() + 2;
  } else if constexpr (Record<T>) {
    std::size_t sum = 2;
    forEachField<T>(
        [&](auto i) { sum += keyText<T, i>.size() + expectedBytes(value.*(std::get<i>(fieldsOf<T>).member)); });
    return sum;
  } else if constexpr (VectorField<T>) {
    const std::size_t step = value.size() / samples + 1;
    std::size_t sum = 0;
    for (std::size_t i = 0; i < value.size(); i += step)
      sum += expectedBytes<typename ElementOf<T>::Type>(value[i]) + 1;
    return 2 + (step == 1 ? sum : sum * step + sum * step / 8);
  } else if constexpr (MapField<T>) {
    std::size_t sum = 2;
    for (const auto& [name, element] : value) sum += name.size() + 4 + expectedBytes(element);
    return sum;
  } else if constexpr (HasRawValues<T>) {
    return rawValue(value).size() + 2;
  } else {
    return std::is_same_v<T, bool> ? 5 : 12;
  }
}

/// The texts of an enumeration, side by side in pieces of one size, so that copying one is a handful of instructions.
template <HasRawValues T>
struct RawTexts {
  static constexpr bool isUsable = [] {
    for (std::size_t i = 0; const auto& [value, text] : RawValues<T>::cases) {
      if (static_cast<std::size_t>(value) != i++ || text.size() > 64) return false;
      for (const char c : text) {
        if (!isPlain(static_cast<unsigned char>(c))) return false;
      }
    }
    return true;
  }();
  static constexpr std::size_t width = [] {
    std::size_t most = 8;
    for (const auto& [value, text] : RawValues<T>::cases) most = std::max(most, (text.size() + 7) / 8 * 8);
    return std::min(most, std::size_t{64});
  }();
  struct Text {
    std::array<char, width> bytes{};
    std::size_t size = 0;
  };
  static constexpr auto texts = [] {
    std::array<Text, std::size(RawValues<T>::cases)> all{};
    for (std::size_t i = 0; isUsable && i < all.size(); ++i) {
      const std::string_view text = RawValues<T>::cases[i].second;
      all[i].size = text.size();
      for (std::size_t k = 0; k < text.size(); ++k) all[i].bytes[k] = text[k];
    }
    return all;
  }();
};

template <class T>
concept InQuotes = std::is_same_v<T, std::string> || HasRawValues<T>;

/// Writes what stands between the quotes. The place has room for 64 bytes.
template <InQuotes T>
char* writeInQuotes(JSONWriter& writer, char* at, const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return writer.text(at, value);
  } else {
    using Texts = RawTexts<T>;
    const auto index = static_cast<std::size_t>(value);
    if (Texts::isUsable && index < Texts::texts.size()) [[likely]] {
      std::memcpy(at, Texts::texts[index].bytes.data(), Texts::width);
      return at + Texts::texts[index].size;
    }
    return writer.text(at, std::string(rawValue(value)));
  }
}

/// What stands between the values of two fields: the key with its brackets, and the quotes of texts on both sides.
template <Record T, std::size_t I>
inline constexpr auto separator = [] {
  constexpr bool closes = [] {
    if constexpr (I > 0) return InQuotes<FieldType<T, I - 1>>;
    return false;
  }();
  constexpr bool opens = InQuotes<FieldType<T, I>>;
  std::array<char, closes + keyText<T, I>.size() + opens> text{};
  if (closes) text[0] = '"';
  for (std::size_t i = 0; i < keyText<T, I>.size(); ++i) text[i + closes] = keyText<T, I>[i];
  if (opens) text[text.size() - 1] = '"';
  return text;
}();

template <Codable T>
char* write(JSONWriter& writer, char* at, const T& value);

template <Record T, std::size_t I>
char* writeField(JSONWriter& writer, char* at, const T& record) {
  using Type = FieldType<T, I>;
  constexpr const auto& before = separator<T, I>;
  at = writer.room(at, before.size() + 64);
  std::memcpy(at, before.data(), before.size());
  at += before.size();
  const Type& value = record.*(std::get<I>(fieldsOf<T>).member);
  if constexpr (InQuotes<Type>) {
    return writeInQuotes(writer, at, value);
  } else {
    return write(writer, at, value);
  }
}

template <Record T>
char* writeRecord(JSONWriter& writer, char* at, const T& record) {
  constexpr std::size_t count = fieldCount<T>;
  if constexpr (count == 0) {
    return writer.literal(at, "{}");
  } else {
    [&]<std::size_t... I>(std::index_sequence<I...>) { ((at = writeField<T, I>(writer, at, record)), ...); }
    (std::make_index_sequence<count>{});
    return writer.literal(at, InQuotes<FieldType<T, count - 1>> ? "\"}" : "}");
  }
}

template <Codable T>
char* write(JSONWriter& writer, char* at, const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    return writer.boolean(at, value);
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    return writer.integer(at, value);
  } else if constexpr (std::is_floating_point_v<T>) {
    return writer.number(at, value);
  } else if constexpr (std::is_same_v<T, std::string>) {
    return writer.string(at, value);
  } else if constexpr (HasRawValues<T>) {
    return writer.string(at, rawValue(value));
  } else if constexpr (Record<T>) {
    return writeRecord(writer, at, value);
  } else {
    constexpr bool isList = VectorField<T>;
    if (value.empty()) return writer.literal(at, isList ? "[]" : "{}");
    char before = isList ? '[' : '{';
    for (auto&& entry : value) {
      at = writer.literal(at, before);
      before = ',';
      if constexpr (isList) {
        at = write<typename ElementOf<T>::Type>(writer, at, entry);
      } else {
        at = writer.string(at, entry.first);
        at = writer.literal(at, ':');
        at = write(writer, at, entry.second);
      }
    }
    return writer.literal(at, isList ? ']' : '}');
  }
}

template <Codable T>
JSONValue toValue(const T& value) {
  if constexpr (HasRawValues<T>) {
    return JSONValue(rawValue(value));
  } else if constexpr (Scalar<T>) {
    return JSONValue(value);
  } else if constexpr (Record<T>) {
    JSONValue::Object members;
    members.reserve(fieldCount<T>);
    forEachField<T>([&](auto i) {
      members.emplace_back(std::get<i>(fieldsOf<T>).name, toValue(value.*(std::get<i>(fieldsOf<T>).member)));
    });
    return JSONValue::object(std::move(members));
  } else if constexpr (VectorField<T>) {
    JSONValue::Array elements;
    elements.reserve(value.size());
    for (const auto& element : value) elements.push_back(toValue<typename ElementOf<T>::Type>(element));
    return JSONValue::array(std::move(elements));
  } else {
    JSONValue::Object members;
    for (const auto& [name, element] : value) members.emplace_back(name, toValue(element));
    return JSONValue::object(std::move(members));
  }
}

}  // namespace platform::detail
