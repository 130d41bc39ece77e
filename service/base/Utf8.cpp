#include "service/base/Utf8.h"

namespace service {
namespace {

unsigned char byteAt(std::string_view text, std::size_t offset) { return static_cast<unsigned char>(text[offset]); }

bool isContinuation(unsigned char byte) { return (byte & 0xC0u) == 0x80u; }

}  // namespace

CodePoint codePointAt(std::string_view text, std::size_t offset) {
  constexpr CodePoint kInvalid{0xFFFD, 1, false};
  const unsigned char first = byteAt(text, offset);
  if (first < 0x80) return {first, 1, true};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() - offset < length) return kInvalid;
  char32_t value = first & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = byteAt(text, offset + i);
    if (!isContinuation(next)) return kInvalid;
    value = (value << 6) | (next & 0x3Fu);
  }
  const bool isOverlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (isOverlong || isSurrogate || value > 0x10FFFF) return kInvalid;
  return {value, length, true};
}

bool isUtf8(std::string_view text) {
  for (std::size_t offset = 0; offset < text.size();) {
    const CodePoint point = codePointAt(text, offset);
    if (!point.isValid) return false;
    offset += point.length;
  }
  return true;
}

std::string_view utf8Prefix(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  while (limit > 0 && isContinuation(byteAt(text, limit))) --limit;
  return text.substr(0, limit);
}

}  // namespace service
