#pragma once

#include <optional>
#include <string_view>
#include <utility>

namespace platform {

/// The texts that stand for the cases of an enumeration, said once for each enumeration:
///
///     template <>
///     struct platform::RawValues<Colour> {
///       static constexpr std::pair<Colour, std::string_view> cases[] = {{Colour::red, "RED"}, {Colour::blue, "BLUE"}};
///     };
template <class E>
struct RawValues;

template <class E>
concept HasRawValues = requires {
  RawValues<E>::cases;
};

/// The text of a case. A value that is no case has none (empty).
template <HasRawValues E>
constexpr std::string_view rawValue(E value) {
  for (const auto& [candidate, text] : RawValues<E>::cases) {
    if (candidate == value) return text;
  }
  return {};
}

/// The case of exactly that text.
template <HasRawValues E>
constexpr std::optional<E> caseFromRawValue(std::string_view text) {
  for (const auto& [candidate, known] : RawValues<E>::cases) {
    if (known == text) return candidate;
  }
  return std::nullopt;
}

}  // namespace platform
