#include "platform/engine/qt/PNGFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace platform {

namespace {

constexpr std::size_t headLength = 8;   // of the file, before its first part
constexpr std::size_t aroundPart = 12;  // length, name and checksum

constexpr std::array<std::uint32_t, 256> remainders = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? 0xEDB88320 : 0);
    table[byte] = value;
  }
  return table;
}();

/// CRC-32, as PNG has it.
std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t value = 0xFFFFFFFF;
  for (const char byte : bytes) value = value >> 8 ^ remainders[(value ^ static_cast<unsigned char>(byte)) & 0xFF];
  return ~value;
}

std::uint32_t big32(std::string_view bytes) {
  std::uint32_t value = 0;
  for (const char byte : bytes.substr(0, 4)) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

bool isName(std::string_view name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

}  // namespace

bool isWholePNG(std::string_view data) {
  data.remove_prefix(headLength);
  while (data.size() >= aroundPart) {
    const std::size_t length = big32(data);
    if (length > data.size() - aroundPart) return false;
    const std::string_view part = data.substr(4, 4 + length);  // name and content
    if (!isName(part.substr(0, 4))) return false;
    const bool isNeeded = (part[0] & 0x20) == 0;  // a capital
    if (isNeeded && checksum(part) != big32(data.substr(8 + length))) return false;
    if (part.starts_with("IEND")) return true;
    data.remove_prefix(aroundPart + length);
  }
  return false;
}

}  // namespace platform
