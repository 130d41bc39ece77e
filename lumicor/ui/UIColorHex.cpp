#include "lumicor/ui/UIColorHex.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace lumicor {

namespace {

bool isAlphanumeric(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string_view trimmed(std::string_view text) {
  const auto first = std::find_if(text.begin(), text.end(), isAlphanumeric);
  const auto last = std::find_if(text.rbegin(), text.rend(), isAlphanumeric).base();
  return first < last ? std::string_view(first, last) : std::string_view();
}

/// As much of the text as reads as a hexadecimal number, which may begin with "0x"; 0 when nothing does.
std::uint64_t scannedHex(std::string_view text) {
  const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
  std::uint64_t value = 0;
  std::from_chars(text.data() + (prefixed ? 2 : 0), text.data() + text.size(), value, 16);
  return value;
}

UIColor fromBytes(std::uint64_t red, std::uint64_t green, std::uint64_t blue, std::uint64_t alpha) {
  const auto part = [](std::uint64_t byte) { return static_cast<double>(byte) / 255.0; };
  return {part(red), part(green), part(blue), part(alpha)};
}

}  // namespace

UIColor UIColorHex(std::string_view hex) {
  const std::string_view digits = trimmed(hex);
  const std::uint64_t value = scannedHex(digits);
  switch (digits.size()) {
    case 8:
      return fromBytes((value >> 16) & 255, (value >> 8) & 255, value & 255, value >> 24);
    case 6:
      return fromBytes(value >> 16, (value >> 8) & 255, value & 255, 255);
    case 3:
      return fromBytes((value >> 8) * 17, ((value >> 4) & 15) * 17, (value & 15) * 17, 255);
    default:
      return fromBytes(0, 0, 0, 255);
  }
}

}  // namespace lumicor
