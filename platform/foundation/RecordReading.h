#pragma once

#include <cstring>
#include <optional>

#include "platform/foundation/JSONValue.h"
#include "platform/foundation/RecordCoding.h"
#include "platform/foundation/RecordReader.h"

// How records are read; a part of Record.h.

namespace platform::detail {

/// Whether a value can be made before anything is known about it, and filled in where it is to stay: a record whose
/// members are no constants.
template <Codable T>
constexpr bool isReadInPlace() {
  if constexpr (Record<T>) {
    return []<std::size_t... I>(std::index_sequence<I...>) {
      return (!isConstant<T, I> && ...) && (isReadInPlace<FieldType<T, I>>() && ...);
    }
    (std::make_index_sequence<fieldCount<T>>{});
  } else {
    return true;
  }
}

/// A value of which nothing is known yet.
template <Codable T>
T blank() {
  if constexpr (Record<T>) {
    return []<std::size_t... I>(std::index_sequence<I...>) { return T{blank<FieldType<T, I>>()...}; }
    (std::make_index_sequence<fieldCount<T>>{});
  } else {
    return T{};
  }
}

/// Where a value is read into: itself, or for what is built at once when all of it is known the place of it.
template <Codable T>
using Slot = std::conditional_t<isReadInPlace<T>(), T, std::optional<T>>;

template <Codable T>
Slot<T> emptySlot() {
  if constexpr (isReadInPlace<T>()) {
    return blank<T>();
  } else {
    return std::nullopt;
  }
}

template <Codable T>
T take(Slot<T>& slot) {
  if constexpr (isReadInPlace<T>()) {
    return std::move(slot);
  } else {
    return std::move(*slot);
  }
}

template <Codable T>
struct Coder;

template <Codable T>
inline constexpr ValueReader readerOf{
    [](JSONReader& reader, Place at, void* slot) { return Coder<T>::read(reader, at, *static_cast<Slot<T>*>(slot)); },
    [](const JSONValue& value, void* slot, DecodingError& error) {
      return Coder<T>::convert(value, *static_cast<Slot<T>*>(slot), error);
    }};

template <Scalar T>
struct Coder<T> {
  static Place read(JSONReader& reader, Place at, T& target) { return detail::read(reader, at, target); }
  static bool convert(const JSONValue& value, T& target, DecodingError& error) {
    return detail::convert(value, target, error);
  }
};

template <HasRawValues T>
struct Coder<T> {
  static bool set(std::string_view text, T& target) {
    const std::optional<T> found = caseFromRawValue<T>(text);
    if (found) target = *found;
    return found.has_value();
  }
  static Place read(JSONReader& reader, Place at, T& target) {
    RawText text{};
    const Place after = readRawText(reader, at, text);
    if (after && text.isEscaped) readText(reader, at, text.bytes);
    return after && set(text.bytes, target) ? after : nullptr;
  }
  static bool convert(const JSONValue& value, T& target, DecodingError& error) {
    const std::string* const text = value.asString();
    if (!text) return error.fail("wants a string");
    return set(*text, target) || error.fail("has no case \"" + text->substr(0, 64) + "\"");
  }
};

template <Record T>
inline constexpr auto fieldReaders = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array<FieldReader, sizeof...(I)>{
      FieldReader{std::get<I>(fieldsOf<T>).name, readerOf<FieldType<T, I>>}...};
}
(std::make_index_sequence<fieldCount<T>>{});

template <Record T>
struct Coder<T> {
  static_assert(fieldCount<T> <= 64, "a record has at most 64 fields");
  using Indices = std::make_index_sequence<fieldCount<T>>;

  /// The values of a record until it is built of them.
  template <class Sequence>
  struct Values;
  template <std::size_t... I>
  struct Values<std::index_sequence<I...>> {
    Values() : slots{emptySlot<FieldType<T, I>>()...}, addresses{&std::get<I>(slots)...} {}
    std::tuple<Slot<FieldType<T, I>>...> slots;
    std::array<void*, sizeof...(I)> addresses;
    T build() { return T{take<FieldType<T, I>>(std::get<I>(slots))...}; }
  };

  /// Reads the field of that index when its key comes next, the way keys are written.
  template <std::size_t I>
  static bool readNext(JSONReader& reader, Place& at, T& target, std::size_t& done) {
    constexpr const auto& key = keyText<T, I>;
    if (static_cast<std::size_t>(reader.end - at) < key.size() || std::memcmp(at, key.data(), key.size()) != 0)
      return false;
    at = Coder<FieldType<T, I>>::read(reader, at + key.size(), target.*(std::get<I>(fieldsOf<T>).member));
    ++done;
    return at != nullptr;
  }
  template <std::size_t... I>
  static Place readInto(JSONReader& reader, Place at, T& target, std::index_sequence<I...>) {
    std::size_t done = 0;
    const bool areAllNext = (readNext<I>(reader, at, target, done) && ...);
    if (!at) return nullptr;
    if (areAllNext && done > 0 && at != reader.end && *at == '}') return at + 1;
    const std::array<void*, sizeof...(I)> addresses{&(target.*(std::get<I>(fieldsOf<T>).member))...};
    return readMembers(reader, at, fieldReaders<T>, addresses.data(), done);
  }

  static Place read(JSONReader& reader, Place at, Slot<T>& slot) {
    ++reader.depth;
    if constexpr (isReadInPlace<T>()) {
      at = readInto(reader, at, slot, Indices{});
    } else {
      Values<Indices> values;
      at = readMembers(reader, at, fieldReaders<T>, values.addresses.data(), 0);
      if (at) slot.emplace(values.build());
    }
    --reader.depth;
    return at;
  }
  static bool convert(const JSONValue& value, Slot<T>& slot, DecodingError& error) {
    Values<Indices> values;
    if (!convertMembers(value, fieldReaders<T>, values.addresses.data(), error)) return false;
    if constexpr (isReadInPlace<T>()) {
      slot = values.build();
    } else {
      slot.emplace(values.build());
    }
    return true;
  }
};

template <VectorField T>
struct Coder<T> {
  using Element = typename ElementOf<T>::Type;

  static Place readElement(JSONReader& reader, Place at, T& target) {
    if constexpr (isReadInPlace<Element>() && !std::is_same_v<Element, bool>) {
      return Coder<Element>::read(reader, at, target.emplace_back(blank<Element>()));
    } else {
      Slot<Element> slot = emptySlot<Element>();
      at = Coder<Element>::read(reader, at, slot);
      if (at) target.push_back(take<Element>(slot));
      return at;
    }
  }
  static Place readElements(JSONReader& reader, Place at, T& target) {
    at = skipSpace(reader, at);
    if (at != reader.end && *at == ']') return at + 1;
    for (const Place first = at;;) {
      at = readElement(reader, at, target);
      if (!at) return nullptr;
      at = skipSpace(reader, at);
      if (at == reader.end || (*at != ',' && *at != ']')) return nullptr;
      if (*at == ']') return at + 1;
      at = skipSpace(reader, at + 1);
      if (target.size() == target.capacity()) {
        target.reserve(target.size() + elementsToExpect(reader, first, at, target.size(), sizeof(Element)));
      }
    }
  }
  static Place read(JSONReader& reader, Place at, T& target) {
    target.clear();
    if (at == reader.end || *at != '[' || reader.depth == JSONValue::maximumDepth) return nullptr;
    ++reader.depth;
    ++reader.arraysAround;
    at = readElements(reader, at + 1, target);
    --reader.arraysAround;
    --reader.depth;
    return at;
  }
  static bool convert(const JSONValue& value, T& target, DecodingError& error) {
    const JSONValue::Array* const elements = value.asArray();
    if (!elements) return error.fail("wants an array");
    target.clear();
    target.reserve(elements->size());
    for (std::size_t i = 0; i < elements->size(); ++i) {
      Slot<Element> element = emptySlot<Element>();
      if (!Coder<Element>::convert((*elements)[i], element, error)) {
        error.insideElement(i);
        return false;
      }
      target.push_back(take<Element>(element));
    }
    return true;
  }
};

template <MapField T>
struct Coder<T> {
  using Element = typename ElementOf<T>::Type;

  /// The last of equal names wins. Records need not be assignable.
  static void put(T& target, std::string name, Slot<Element>& slot) {
    target.erase(name);
    target.emplace(std::move(name), take<Element>(slot));
  }
  static Place readMembers(JSONReader& reader, Place at, T& target) {
    at = skipSpace(reader, at);
    if (at != reader.end && *at == '}') return at + 1;
    for (;;) {
      std::string_view text;
      at = readKey(reader, at, text);
      if (!at) return nullptr;
      std::string name(text);
      Slot<Element> slot = emptySlot<Element>();
      at = Coder<Element>::read(reader, at, slot);
      if (!at) return nullptr;
      put(target, std::move(name), slot);
      at = skipSpace(reader, at);
      if (at == reader.end || (*at != ',' && *at != '}')) return nullptr;
      if (*at == '}') return at + 1;
      at = skipSpace(reader, at + 1);
    }
  }
  static Place read(JSONReader& reader, Place at, T& target) {
    target.clear();
    if (at == reader.end || *at != '{' || reader.depth == JSONValue::maximumDepth) return nullptr;
    ++reader.depth;
    at = readMembers(reader, at + 1, target);
    --reader.depth;
    return at;
  }
  static bool convert(const JSONValue& value, T& target, DecodingError& error) {
    const JSONValue::Object* const members = value.asObject();
    if (!members) return error.fail("wants an object");
    target.clear();
    for (const auto& [name, member] : *members) {
      Slot<Element> element = emptySlot<Element>();
      if (!Coder<Element>::convert(member, element, error)) {
        error.insideMember(name);
        return false;
      }
      put(target, name, element);
    }
    return true;
  }
};

}  // namespace platform::detail
