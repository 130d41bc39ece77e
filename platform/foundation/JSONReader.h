#pragma once

// Reading JSON in one pass over the bytes as they came, for values and for records. What is read is checked to the last
// byte, also where nobody asks for it.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/JSONScan.h"

namespace platform::detail {

/// A place in a document; none when what stood there was not as it should be. Places are handed from step to step by
/// value: kept in an object, each would be written and read again at every byte that is stored.
using Place = const char*;

/// The document that is being read.
struct JSONReader {
  /// Without the byte-order mark that it may begin with.
  explicit JSONReader(std::string_view bytes);

  Place begin;
  const char* end;
  /// Around the place that is being read: containers, and arrays among them.
  std::size_t depth = 0;
  std::size_t arraysAround = 0;
  /// Bytes that lists may take beforehand for elements that have not been seen, all together.
  std::size_t mayExpect;
  /// What a text with escapes in it says.
  std::string unescaped;
};

/// Text as it stands between its quotes, checked.
struct RawText {
  std::string_view bytes;
  bool isEscaped;
};

/// A number as JSON writes it. It is an integer when it is written as one and fits; every other is a double.
struct Number {
  std::optional<std::int64_t> integer;
  double wide;  ///< when it is no integer
};

/// The integer that a number is, however it was written: whole, and not beyond 64 bits.
std::optional<std::int64_t> wholeNumber(double value);

Place spaceSkipped(const JSONReader& reader, Place at);
inline Place skipSpace(const JSONReader& reader, Place at) {
  return at != reader.end && static_cast<unsigned char>(*at) > ' ' ? at : spaceSkipped(reader, at);
}

/// After any space the document must be at its end.
inline bool isAtEnd(const JSONReader& reader, Place at) { return at && skipSpace(reader, at) == reader.end; }

// Each of these begins at the first byte of a value and gives the place behind it.

Place readLongRawText(const JSONReader& reader, Place at, RawText& text);
inline Place readRawText(const JSONReader& reader, Place at, RawText& text) {
  if (reader.end - at >= 18 && *at == '"') [[likely]] {
    const unsigned size = plainOf16(at + 1);
    if (size < 16 && at[size + 1] == '"') [[likely]] {
      text = {{at + 1, size}, false};
      return at + size + 2;
    }
  }
  return readLongRawText(reader, at, text);
}
/// Text that says what it says, valid until the next is read.
Place readText(JSONReader& reader, Place at, std::string_view& text);
/// A member's name and what stands between it and its value.
Place readKey(JSONReader& reader, Place at, std::string_view& name);
Place readNumber(const JSONReader& reader, Place at, Number& number);
Place readWord(const JSONReader& reader, Place at, std::string_view word);
Place skipValue(JSONReader& reader, Place at);

/// What escaped text says.
void appendUnescaped(std::string& target, std::string_view escaped);

/// Gives an existing text another content, of less than sixteen bytes, with at least fifteen there to be read. What a
/// call of the library for it would cost is more than what it would do.
inline void setShortText(std::string& target, const char* bytes, std::size_t size) {
  std::destroy_at(&target);
  std::construct_at(&target, bytes, 15);
  target.resize(size);
}

// The same for what the fields of records hold.

Place readLongText(const JSONReader& reader, Place at, std::string& target);
inline Place read(const JSONReader& reader, Place at, std::string& target) {
  if (reader.end - at >= 18 && *at == '"') [[likely]] {
    if (at[1] == '"') {  // the most frequent text of all, and how long it is need not be found out
      target.clear();
      return at + 2;
    }
    const unsigned size = plainOf16(at + 1);
    if (size < 16 && at[size + 1] == '"') [[likely]] {
      setShortText(target, at + 1, size);
      return at + size + 2;
    }
  }
  return readLongText(reader, at, target);
}
Place read(const JSONReader& reader, Place at, std::int64_t& target);
Place read(const JSONReader& reader, Place at, double& target);
Place read(const JSONReader& reader, Place at, float& target);
inline Place read(const JSONReader& reader, Place at, bool& target) {
  target = at != reader.end && *at == 't';
  return readWord(reader, at, target ? "true" : "false");
}

}  // namespace platform::detail
