#pragma once

// How the reader and the writer of JSON look at text: sixteen bytes at a time, and character by character where it is
// not plain ASCII. Included by them alone.

#include <bit>
#include <cstdint>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace platform::detail {

/// Neither escaped nor to be looked at as UTF-8.
constexpr bool isPlain(unsigned char c) { return c >= 0x20 && c < 0x80 && c != '"' && c != '\\'; }

/// How many of the next eight bytes are plain before the first that is not. For any processor.
inline unsigned plainOf8(std::uint64_t bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highs = 0x8080808080808080;
  const std::uint64_t quotes = bytes ^ (ones * '"');
  const std::uint64_t slashes = bytes ^ (ones * '\\');
  // Exact in the lowest place where a byte is special, which is the one that counts.
  const std::uint64_t special = ((bytes - ones * 0x20) | (quotes - ones) | (slashes - ones) | bytes) & highs;
  return special == 0 ? 8 : static_cast<unsigned>(std::countr_zero(special)) / 8;
}

inline unsigned plainOf16Anywhere(const char* text) {
  if constexpr (std::endian::native == std::endian::little) {
    std::uint64_t halves[2];
    std::memcpy(halves, text, sizeof halves);
    const unsigned first = plainOf8(halves[0]);
    return first < 8 ? first : 8 + plainOf8(halves[1]);
  } else {
    unsigned count = 0;
    while (count < 16 && isPlain(static_cast<unsigned char>(text[count]))) ++count;
    return count;
  }
}

#ifdef __SSE2__
/// A bit for each of the sixteen bytes there that is not plain.
inline unsigned specialOf16(const char* text) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const __m128i special =
      _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))),
                   _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20)));  // as signed numbers, so also those from 0x80
  return static_cast<unsigned>(_mm_movemask_epi8(special));
}
#endif

/// How many of the sixteen bytes there are plain before the first that is not.
inline unsigned plainOf16(const char* text) {
#ifdef __SSE2__
  return static_cast<unsigned>(std::countr_zero(specialOf16(text) | 0x10000u));
#else
  return plainOf16Anywhere(text);
#endif
}

/// Whether all sixteen are. In a loop this is the question to ask: where to go on then waits for no count.
inline bool arePlain16(const char* text) {
#ifdef __SSE2__
  return specialOf16(text) == 0;
#else
  return plainOf16Anywhere(text) == 16;
#endif
}

/// What stands at the start of text that begins with a byte above 0x7F: how many bytes, and whether they are a
/// character.
struct UTF8Sequence {
  unsigned length;
  bool isValid;
};

inline UTF8Sequence utf8SequenceAt(const char* text, const char* end) {
  const auto byte = [text](unsigned i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  unsigned length = 0;
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
  for (unsigned i = 1; i < length; ++i) {
    if (text + i == end || byte(i) < low || byte(i) > high) return {i, false};
    low = 0x80;
    high = 0xBF;
  }
  return {length, true};
}

}  // namespace platform::detail
