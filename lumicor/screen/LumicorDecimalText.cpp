#include "lumicor/screen/LumicorDecimalText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace lumicor {

namespace {

/// Numbers below this are written with an exponent, as are those above the greatest whose neighbours are whole numbers.
constexpr double leastPlain = 1e-4;

template <class Number>
std::string shortestText(Number value, Number greatestPlain) {
  const Number size = std::abs(value);
  const bool plain = size == 0 || (size >= static_cast<Number>(leastPlain) && size <= greatestPlain);
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 plain ? std::chars_format::fixed : std::chars_format::scientific)
                       .ptr;
  std::string text(buffer.data(), end);
  if (plain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace

std::string decimalText(double value) { return shortestText(value, 0x1p53); }

std::string decimalText(float value) { return shortestText(value, 0x1p24F); }

}  // namespace lumicor
