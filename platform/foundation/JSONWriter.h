#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace platform {

/// Writes JSON text into one buffer that is sized beforehand and grows when the guess was too small. It knows how
/// values look, not where they belong: commas, brackets and keys are the caller's. A number that JSON cannot carry
/// makes the writer fail; what it has written is then of no use.
class JSONWriter {
 public:
  explicit JSONWriter(std::size_t expectedBytes);

  void character(char c) {
    ensure(1);
    *at_++ = c;
  }
  /// Bytes that need no escaping.
  void literal(std::string_view text) {
    ensure(text.size());
    std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
  }
  /// A string in quotes, escaped. What is not UTF-8 becomes U+FFFD.
  void string(std::string_view text);
  void integer(std::int64_t value);
  /// The shortest form that reads back as the same value, always with a fraction or an exponent.
  void number(double value);
  void number(float value);
  void boolean(bool value) { literal(value ? std::string_view("true") : std::string_view("false")); }
  void null() { literal("null"); }

  void fail() { failed_ = true; }
  bool hasFailed() const { return failed_; }
  /// The text; the writer is done.
  std::string finish();

 private:
  void ensure(std::size_t more) {
    if (static_cast<std::size_t>(end_ - at_) < more) [[unlikely]]
      grow(more);
  }
  void grow(std::size_t more);
  void escape(const unsigned char* text, const unsigned char* end);

  std::string buffer_;
  char* at_;
  char* end_;
  bool failed_ = false;
};

}  // namespace platform
