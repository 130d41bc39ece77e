#pragma once

#include <cstddef>
#include <string_view>

namespace service {

/// One character of a UTF-8 text.
struct CodePoint {
  char32_t value = 0;      ///< 0xFFFD for a byte that is not UTF-8
  std::size_t length = 1;  ///< in bytes
  bool isValid = true;
};

/// The character that begins at `offset`, which must lie inside the text.
CodePoint codePointAt(std::string_view text, std::size_t offset);

bool isUtf8(std::string_view text);

/// At most the first `limit` bytes, cut between two characters.
std::string_view utf8Prefix(std::string_view text, std::size_t limit);

}  // namespace service
