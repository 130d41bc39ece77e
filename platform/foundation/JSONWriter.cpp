#include "platform/foundation/JSONWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace platform {

namespace {

/// "00" to "99".
constexpr auto twoDigits = [] {
  std::array<char, 200> digits{};
  for (std::size_t i = 0; i < 100; ++i) {
    digits[2 * i] = static_cast<char>('0' + i / 10);
    digits[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return digits;
}();

template <class F>
char* writeShortest(char* at, F value) {
  char* const after = std::to_chars(at, at + 32, value).ptr;
  if (std::string_view(at, static_cast<std::size_t>(after - at)).find_first_of(".e") != std::string_view::npos) {
    return after;
  }
  after[0] = '.';
  after[1] = '0';
  return after + 2;
}

}  // namespace

char* JSONWriter::flushed(char* at) {
  const auto written = static_cast<std::size_t>(at - chunk_.data());
  if (text_.capacity() - text_.size() < written) text_.reserve(2 * text_.size() + written);
  text_.append(chunk_.data(), written);
  return chunk_.data();
}

std::string JSONWriter::finish(char* at) {
  flushed(at);
  return std::move(text_);
}

char* JSONWriter::escaped(char* at, std::string_view text) {
  const char* from = text.data();
  const char* const end = from + text.size();
  constexpr std::ptrdiff_t piece = 512;
  while (end - from >= 16) {
    at = room(at, piece);
    for (const char* const stop = from + std::min(end - from, piece) / 16 * 16; from != stop; from += 16, at += 16) {
      if (!detail::arePlain16(from)) return escapedSlowly(at, from, end);
      std::memcpy(at, from, 16);
    }
  }
  const auto rest = end - from;
  at = room(at, 40);
  if (rest > 0 && text.size() >= 16 && at - chunk_.data() >= 16 && detail::arePlain16(end - 16)) {
    // The rest is plain too: taken together with what was written before it.
    std::memcpy(at + rest - 16, end - 16, 16);
    return at + rest;
  }
  return rest > 0 ? escapedSlowly(at, from, end) : at;
}

char* JSONWriter::escapedSlowly(char* at, const char* from, const char* const end) {
  static constexpr char digits[] = "0123456789abcdef";
  while (from != end) {
    at = room(at, 40);
    if (end - from >= 16) {
      const unsigned plain = detail::plainOf16(from);
      std::memcpy(at, from, 16);
      from += plain;
      at += plain;
      if (plain == 16) continue;
    }
    const auto c = static_cast<unsigned char>(*from);
    if (detail::isPlain(c)) {
      *at++ = static_cast<char>(c);
      ++from;
      continue;
    }
    if (c >= 0x80) {
      const detail::UTF8Sequence sequence = detail::utf8SequenceAt(from, end);
      const std::string_view character = sequence.isValid ? std::string_view(from, sequence.length) : "\xEF\xBF\xBD";
      at = std::copy(character.begin(), character.end(), at);
      from += sequence.length;
      continue;
    }
    ++from;
    *at++ = '\\';
    switch (c) {
      case '"':
      case '\\':
        *at++ = static_cast<char>(c);
        break;
      case '\b':
        *at++ = 'b';
        break;
      case '\f':
        *at++ = 'f';
        break;
      case '\n':
        *at++ = 'n';
        break;
      case '\r':
        *at++ = 'r';
        break;
      case '\t':
        *at++ = 't';
        break;
      default:
        std::memcpy(at, "u00", 3);
        at[3] = digits[c >> 4];
        at[4] = digits[c & 15];
        at += 5;
    }
  }
  return room(at, 1);
}

char* JSONWriter::integer(char* at, std::int64_t value) {
  at = room(at, 24);
  if (value >= 0 && value < 1000) {  // as lengths on a screen are
    auto rest = static_cast<std::size_t>(value);
    if (rest >= 100) {
      *at++ = static_cast<char>('0' + rest / 100);
      rest %= 100;
    } else if (rest < 10) {
      *at++ = static_cast<char>('0' + rest);
      return at;
    }
    std::memcpy(at, twoDigits.data() + 2 * rest, 2);
    return at + 2;
  }
  return std::to_chars(at, at + 24, value).ptr;
}

char* JSONWriter::number(char* at, double value) {
  if (!std::isfinite(value)) fail();
  return std::isfinite(value) ? writeShortest(room(at, 40), value) : at;
}

char* JSONWriter::number(char* at, float value) {
  if (!std::isfinite(value)) fail();
  return std::isfinite(value) ? writeShortest(room(at, 40), value) : at;
}

}  // namespace platform
