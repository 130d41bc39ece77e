#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
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

namespace detail {

/// Finds a case by its text with one comparison: a few characters tell which it could be. How they are to be mixed for
/// that is searched for when the program is compiled; where nothing is found, every case is compared.
template <HasRawValues E>
struct RawValueIndex {
  static constexpr std::size_t count = std::size(RawValues<E>::cases);
  static constexpr std::size_t size = [] {
    std::size_t places = 4;
    while (places < 3 * count) places *= 2;
    return places;
  }();
  static constexpr std::uint8_t none = 0xFF;
  struct Table {
    std::uint32_t factor = 0;
    std::array<std::uint8_t, size> places{};
  };

  static constexpr std::size_t placeOf(std::string_view text, std::uint32_t factor) {
    const auto byte = [text](std::size_t at) {
      return static_cast<std::uint32_t>(static_cast<unsigned char>(text[at]));
    };
    const std::uint32_t mixed = static_cast<std::uint32_t>(text.size()) ^ byte(text.size() - 1) << 6 ^
                                byte(text.size() / 2) << 14 ^ byte(0) << 22;
    return (mixed * factor) >> 16 & (size - 1);
  }
  static constexpr Table table = [] {
    Table found;
    for (const auto& [value, text] : RawValues<E>::cases) {
      if (text.empty()) return found;
    }
    for (std::uint32_t factor = 0x9E3779B1; count < none && factor < 0x9E3779B1 + 2 * 500; factor += 2) {
      found.places.fill(none);
      bool isFree = true;
      for (std::size_t i = 0; i < count && isFree; ++i) {
        std::uint8_t& place = found.places[placeOf(RawValues<E>::cases[i].second, factor)];
        isFree = place == none;
        place = static_cast<std::uint8_t>(i);
      }
      if (isFree) {
        found.factor = factor;
        return found;
      }
    }
    return found;
  }();
};

}  // namespace detail

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
  using Index = detail::RawValueIndex<E>;
  if constexpr (Index::table.factor != 0) {
    if (text.empty()) return std::nullopt;
    const std::uint8_t place = Index::table.places[Index::placeOf(text, Index::table.factor)];
    if (place == Index::none || RawValues<E>::cases[place].second != text) return std::nullopt;
    return RawValues<E>::cases[place].first;
  } else {
    for (const auto& [candidate, known] : RawValues<E>::cases) {
      if (known == text) return candidate;
    }
    return std::nullopt;
  }
}

}  // namespace platform
