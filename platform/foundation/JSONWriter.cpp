#include "platform/foundation/JSONWriter.h"

#include <array>
#include <charconv>
#include <cmath>

namespace platform {

namespace {

/// Sixteen bytes at a time, on whatever the processor has for it.
using Bytes16 = unsigned char __attribute__((vector_size(16)));

/// Copies sixteen bytes; false when one of them has to be escaped or looked at as UTF-8.
bool copyPlain16(const unsigned char* from, char* to) {
  Bytes16 bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  const auto special = (bytes < 0x20) | (bytes == '"') | (bytes == '\\') | (bytes >= 0x80);
  std::memcpy(to, &bytes, sizeof bytes);
  std::array<std::uint64_t, 2> halves;
  std::memcpy(halves.data(), &special, sizeof halves);
  return (halves[0] | halves[1]) == 0;
}

constexpr bool isPlain(unsigned char c) { return c >= 0x20 && c < 0x80 && c != '"' && c != '\\'; }

/// What stands at the start of text that begins with a byte above 0x7F: how many bytes, and whether they are a
/// character.
struct Sequence {
  int length;
  bool isValid;
};

Sequence sequenceAt(const unsigned char* text, const unsigned char* end) {
  const unsigned char first = text[0];
  int length = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    if (first == 0xE0) low = 0xA0;   // shorter forms exist
    if (first == 0xED) high = 0x9F;  // surrogates
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    if (first == 0xF0) low = 0x90;
    if (first == 0xF4) high = 0x8F;  // beyond U+10FFFF
  } else {
    return {1, false};
  }
  for (int i = 1; i < length; ++i) {
    if (text + i == end || text[i] < low || text[i] > high) return {i, false};
    low = 0x80;
    high = 0xBF;
  }
  return {length, true};
}

}  // namespace

JSONWriter::JSONWriter(std::size_t expectedBytes) : buffer_(expectedBytes, '\0') {
  at_ = buffer_.data();
  end_ = at_ + buffer_.size();
}

void JSONWriter::grow(std::size_t more) {
  const std::size_t used = static_cast<std::size_t>(at_ - buffer_.data());
  buffer_.resize(used + more + buffer_.size() / 2 + 64);
  at_ = buffer_.data() + used;
  end_ = buffer_.data() + buffer_.size();
}

std::string JSONWriter::finish() {
  buffer_.resize(static_cast<std::size_t>(at_ - buffer_.data()));
  at_ = end_ = nullptr;
  return std::move(buffer_);
}

void JSONWriter::string(std::string_view text) {
  const auto* from = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = from + text.size();
  ensure(text.size() + 2);
  *at_++ = '"';
  while (end - from >= 16 && copyPlain16(from, at_)) {
    from += 16;
    at_ += 16;
  }
  if (end - from < 16 && text.size() >= 16 && from != end) {
    // The rest is plain too, more often than not: take it together with what was copied before it.
    const auto rest = end - from;
    if (copyPlain16(end - 16, at_ + rest - 16)) {
      at_ += rest;
      from = end;
    }
  }
  if (from != end) escape(from, end);
  *at_++ = '"';
}

/// The slow part of a string: keeps room for the closing quote.
void JSONWriter::escape(const unsigned char* text, const unsigned char* end) {
  static constexpr char digits[] = "0123456789abcdef";
  while (text != end) {
    const unsigned char c = *text;
    if (isPlain(c)) {
      *at_++ = static_cast<char>(c);
      ++text;
      if (end - text >= 16 && copyPlain16(text, at_)) {
        text += 16;
        at_ += 16;
      }
      continue;
    }
    ensure(static_cast<std::size_t>(end - text) + 8);
    if (c >= 0x80) {
      const Sequence sequence = sequenceAt(text, end);
      if (sequence.isValid) {
        std::memcpy(at_, text, static_cast<std::size_t>(sequence.length));
        at_ += sequence.length;
      } else {
        std::memcpy(at_, "\xEF\xBF\xBD", 3);
        at_ += 3;
      }
      text += sequence.length;
      continue;
    }
    ++text;
    *at_++ = '\\';
    switch (c) {
      case '"':
        *at_++ = '"';
        break;
      case '\\':
        *at_++ = '\\';
        break;
      case '\b':
        *at_++ = 'b';
        break;
      case '\f':
        *at_++ = 'f';
        break;
      case '\n':
        *at_++ = 'n';
        break;
      case '\r':
        *at_++ = 'r';
        break;
      case '\t':
        *at_++ = 't';
        break;
      default:
        std::memcpy(at_, "u00", 3);
        at_[3] = digits[c >> 4];
        at_[4] = digits[c & 15];
        at_ += 5;
    }
  }
}

void JSONWriter::integer(std::int64_t value) {
  ensure(24);
  at_ = std::to_chars(at_, end_, value).ptr;
}

namespace {

template <class F>
char* writeShortest(char* at, char* end, F value) {
  char* const after = std::to_chars(at, end, value).ptr;
  if (std::string_view(at, static_cast<std::size_t>(after - at)).find_first_of(".e") != std::string_view::npos) {
    return after;
  }
  after[0] = '.';
  after[1] = '0';
  return after + 2;
}

}  // namespace

void JSONWriter::number(double value) {
  if (!std::isfinite(value)) return fail();
  ensure(32);
  at_ = writeShortest(at_, end_, value);
}

void JSONWriter::number(float value) {
  if (!std::isfinite(value)) return fail();
  ensure(32);
  at_ = writeShortest(at_, end_, value);
}

}  // namespace platform
