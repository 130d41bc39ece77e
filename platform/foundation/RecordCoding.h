#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/foundation/RawValues.h"
#include "platform/foundation/RecordField.h"

// What the fields of records may be; a part of Record.h.

namespace platform::detail {

template <class T>
struct ElementOf {
  static constexpr bool isVector = false;
  static constexpr bool isMap = false;
};
template <class E, class A>
struct ElementOf<std::vector<E, A>> {
  static constexpr bool isVector = true;
  static constexpr bool isMap = false;
  using Type = E;
};
template <class E, class C, class A>
struct ElementOf<std::map<std::string, E, C, A>> {
  static constexpr bool isVector = false;
  static constexpr bool isMap = true;
  using Type = E;
};

template <class T>
concept Scalar = std::is_same_v<T, bool> || std::is_same_v<T, std::int64_t> || std::is_same_v<T, double> ||
    std::is_same_v<T, float> || std::is_same_v<T, std::string>;
template <class T>
concept VectorField = ElementOf<T>::isVector;
template <class T>
concept MapField = ElementOf<T>::isMap;
template <class T>
concept Codable = Scalar<T> || HasRawValues<T> || Record<T> || VectorField<T> || MapField<T>;

template <Record T>
inline constexpr auto fieldsOf = T::fields();
template <Record T>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_const_t<decltype(fieldsOf<T>)>>;
template <Record T, std::size_t I>
using FieldType = typename std::tuple_element_t<I, std::remove_const_t<decltype(fieldsOf<T>)>>::Type;

template <Record T, std::size_t I>
inline constexpr bool isConstant =
    std::is_const_v<typename std::tuple_element_t<I, std::remove_const_t<decltype(fieldsOf<T>)>>::Member>;

/// Calls `f` with the index of every field, as a constant.
template <Record T, class F>
constexpr void forEachField(F&& f) {
  [&]<std::size_t... I>(std::index_sequence<I...>) { (f(std::integral_constant<std::size_t, I>{}), ...); }
  (std::make_index_sequence<fieldCount<T>>{});
}

/// What stands before a field's value: `{"name":` for the first, `,"name":` for the others.
template <Record T, std::size_t I>
inline constexpr auto keyText = [] {
  constexpr std::string_view name = std::get<I>(fieldsOf<T>).name;
  std::array<char, name.size() + 4> text{};
  text[0] = I == 0 ? '{' : ',';
  text[1] = '"';
  for (std::size_t i = 0; i < name.size(); ++i) text[i + 2] = name[i];
  text[name.size() + 2] = '"';
  text[name.size() + 3] = ':';
  return text;
}();

}  // namespace platform::detail
