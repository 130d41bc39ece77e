#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/foundation/JSONScan.h"

namespace platform {

/// Writes JSON text, piece by piece behind a place that the caller hands on from one call to the next:
///
///     JSONWriter writer(expectedBytes);
///     char* at = writer.start();
///     at = writer.string(at, "key");
///     at = writer.literal(at, ':');
///     return writer.finish(writer.integer(at, 7));
///
/// It knows how values look, not where they belong: commas, brackets and keys are the caller's. The text grows in a
/// small piece of memory that stays near the processor and goes from there to where it is kept, so nothing is filled
/// beforehand and nothing written twice. A number that JSON cannot carry makes the writer fail; what it has written is
/// then of no use.
class JSONWriter {
 public:
  /// The guess may be wrong by far: one long text among the samples of a long list makes it enormous.
  explicit JSONWriter(std::size_t expectedBytes) { text_.reserve(std::min(expectedBytes, mostReserved)); }
  JSONWriter(const JSONWriter&) = delete;
  JSONWriter& operator=(const JSONWriter&) = delete;

  char* start() { return chunk_.data(); }
  /// The text; the writer is done.
  std::string finish(char* at);

  /// A place with room for that many bytes, a thousand at most.
  char* room(char* at, std::size_t bytes) {
    return static_cast<std::size_t>(chunk_.data() + chunk_.size() - at) >= bytes ? at : flushed(at);
  }

  /// A byte that needs no escaping, and several, which are not many.
  char* literal(char* at, char byte) {
    at = room(at, 1);
    *at = byte;
    return at + 1;
  }
  char* literal(char* at, std::string_view text) {
    at = room(at, text.size());
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
  }
  /// A string in quotes, escaped. What is not UTF-8 becomes U+FFFD.
  char* string(char* at, std::string_view text) { return literal(escaped(openQuote(at), text), '"'); }
  char* string(char* at, const std::string& value) { return literal(text(openQuote(at), value), '"'); }
  char* integer(char* at, std::int64_t value);
  /// The shortest form that reads back as the same value, always with a fraction or an exponent.
  char* number(char* at, double value);
  char* number(char* at, float value);
  char* boolean(char* at, bool value) { return literal(at, value ? "true" : "false"); }

  /// What stands between the quotes of a string. The place has room for sixteen bytes.
  char* text(char* at, const std::string& text) {
    // A string keeps short texts in itself, and of others more than these sixteen bytes.
    if constexpr (keepsShortTexts) {
      if (text.size() < 16 && detail::plainOf16(text.data()) >= text.size()) [[likely]] {
        std::memcpy(at, text.data(), 16);
        return at + text.size();
      }
    }
    return escaped(at, text);
  }

  void fail() { failed_ = true; }
  bool hasFailed() const { return failed_; }

 private:
#ifdef __GLIBCXX__
  static constexpr bool keepsShortTexts = true;
#else
  static constexpr bool keepsShortTexts = false;
#endif
  /// Leaves room for sixteen bytes behind the quote.
  char* openQuote(char* at) {
    at = room(at, 17);
    *at = '"';
    return at + 1;
  }
  static constexpr std::size_t mostReserved = std::size_t{1} << 24;  // beyond this the text grows as it comes
  char* flushed(char* at);
  char* escaped(char* at, std::string_view text);
  char* escapedSlowly(char* at, const char* from, const char* end);

  std::string text_;
  bool failed_ = false;
  std::array<char, 8192> chunk_;
};

}  // namespace platform
