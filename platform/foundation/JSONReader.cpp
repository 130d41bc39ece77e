#include "platform/foundation/JSONReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/foundation/JSONValue.h"

namespace platform::detail {

namespace {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexadecimal(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// Four hexadecimal digits; -1 when they are not there.
int codeUnit(const char* at, const char* end) {
  if (end - at < 4) return -1;
  int value = 0;
  for (int i = 0; i < 4; ++i) {
    const int digit = hexadecimal(at[i]);
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

constexpr bool isLeading(int unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool isTrailing(int unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Behind an escape that begins there with its backslash; none when it is none. Surrogates come in pairs.
Place skipEscape(Place at, const char* end) {
  if (end - at < 2) return nullptr;
  if (at[1] != 'u') return std::strchr("\"\\/bfnrt", at[1]) && at[1] != '\0' ? at + 2 : nullptr;
  const int unit = codeUnit(at + 2, end);
  if (unit < 0 || isTrailing(unit)) return nullptr;
  at += 6;
  if (!isLeading(unit)) return at;
  if (end - at < 2 || at[0] != '\\' || at[1] != 'u') return nullptr;
  return isTrailing(codeUnit(at + 2, end)) ? at + 6 : nullptr;
}

void appendUTF8(std::string& target, unsigned code) {
  const auto put = [&target](unsigned byte) { target.push_back(static_cast<char>(byte)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      put(0xE0 | code >> 12);
    } else {
      put(0xF0 | code >> 18);
      put(0x80 | (code >> 12 & 0x3F));
    }
    put(0x80 | (code >> 6 & 0x3F));
  }
  put(0x80 | (code & 0x3F));
}

/// The number that eight digits write, or none when one of them is no digit.
std::optional<std::uint64_t> eightDigits(const char* at) {
  if constexpr (std::endian::native != std::endian::little) return std::nullopt;
  std::uint64_t text = 0;
  std::memcpy(&text, at, sizeof text);
  constexpr std::uint64_t highs = 0xF0F0F0F0F0F0F0F0;
  const bool areDigits = ((text & highs) | ((text + 0x0606060606060606) & highs) >> 4) == 0x3333333333333333;
  if (!areDigits) return std::nullopt;
  text -= 0x3030303030303030;
  text = text * 10 + (text >> 8);  // pairs, then fours, then all eight, side by side
  return (((text & 0x000000FF000000FF) * 0x000F424000000064) +
          ((text >> 16 & 0x000000FF000000FF) * 0x0000271000000001)) >>
         32;
}

/// Too small for a double, and so zero, rather than too large.
bool isTiny(Place at, Place end) {
  long long exponent = 0;
  const char* const mark = std::find_if(at, end, [](char c) { return c == 'e' || c == 'E'; });
  if (mark != end) {
    const char* const digits = mark + (mark[1] == '+' ? 2 : 1);
    // No document is so long that its digits could make up for such an exponent.
    constexpr long long most = 1'000'000'000'000;
    if (std::from_chars(digits, end, exponent).ec != std::errc{}) exponent = mark[1] == '-' ? -most : most;
    exponent = std::clamp(exponent, -most, most);
  }
  const char* const point = std::find(at, mark, '.');
  const char* const first = std::find_if(at, mark, [](char c) { return c >= '1' && c <= '9'; });
  if (first == mark) return true;
  return exponent + (first < point ? point - first : point + 1 - first) < 0;
}

}  // namespace

JSONReader::JSONReader(std::string_view bytes)
    : begin(bytes.data()), end(begin + bytes.size()), mayExpect(2 * bytes.size()) {
  if (bytes.starts_with("\xEF\xBB\xBF")) begin += 3;
}

Place spaceSkipped(const JSONReader& reader, Place at) {
  while (at != reader.end && (*at == ' ' || *at == '\n' || *at == '\r' || *at == '\t')) ++at;
  return at;
}

Place readLongRawText(const JSONReader& reader, Place at, RawText& text) {
  const char* const end = reader.end;
  if (at == end || *at != '"') return nullptr;
  const char* const start = ++at;
  text.isEscaped = false;
  for (;;) {
    while (end - at >= 16 && arePlain16(at)) at += 16;
    if (end - at >= 16) at += plainOf16(at);
    if (at == end) return nullptr;
    const unsigned char c = static_cast<unsigned char>(*at);
    if (c == '"') {
      text.bytes = {start, static_cast<std::size_t>(at - start)};
      return at + 1;
    }
    if (c == '\\') {
      text.isEscaped = true;
      at = skipEscape(at, end);
      if (!at) return nullptr;
    } else if (c >= 0x80) {
      do {
        const UTF8Sequence sequence = utf8SequenceAt(at, end);
        if (!sequence.isValid) return nullptr;
        at += sequence.length;
      } while (at != end && static_cast<unsigned char>(*at) >= 0x80);
    } else if (c < 0x20) {
      return nullptr;
    } else {
      ++at;  // near the end of the document
    }
  }
}

void appendUnescaped(std::string& target, std::string_view escaped) {
  target.reserve(target.size() + escaped.size());
  for (const char *at = escaped.data(), *const end = at + escaped.size(); at != end;) {
    const auto* const next = static_cast<const char*>(std::memchr(at, '\\', static_cast<std::size_t>(end - at)));
    const char* const stop = next ? next : end;
    target.append(at, stop);
    if (!next) return;
    at = stop + 2;
    switch (stop[1]) {
      case 'b':
        target.push_back('\b');
        break;
      case 'f':
        target.push_back('\f');
        break;
      case 'n':
        target.push_back('\n');
        break;
      case 'r':
        target.push_back('\r');
        break;
      case 't':
        target.push_back('\t');
        break;
      case 'u': {
        int code = codeUnit(at, end);
        at += 4;
        if (isLeading(code)) {
          code = 0x10000 + ((code - 0xD800) << 10) + (codeUnit(at + 2, end) - 0xDC00);
          at += 6;
        }
        appendUTF8(target, static_cast<unsigned>(code));
        break;
      }
      default:
        target.push_back(stop[1]);
    }
  }
}

Place readText(JSONReader& reader, Place at, std::string_view& text) {
  RawText raw{};
  const Place after = readRawText(reader, at, raw);
  if (!after) return nullptr;
  text = raw.bytes;
  if (!raw.isEscaped) return after;
  reader.unescaped.clear();
  appendUnescaped(reader.unescaped, raw.bytes);
  text = reader.unescaped;
  return after;
}

Place readLongText(const JSONReader& reader, Place at, std::string& target) {
  RawText raw{};
  const Place after = readLongRawText(reader, at, raw);
  if (!after) return nullptr;
  if (!raw.isEscaped) {
    target.assign(raw.bytes);
  } else {
    target.clear();
    appendUnescaped(target, raw.bytes);
  }
  return after;
}

Place readKey(JSONReader& reader, Place at, std::string_view& name) {
  at = readText(reader, at, name);
  if (!at) return nullptr;
  at = skipSpace(reader, at);
  return at != reader.end && *at == ':' ? skipSpace(reader, at + 1) : nullptr;
}

Place readNumber(const JSONReader& reader, Place at, Number& number) {
  const Place start = at;
  const char* const end = reader.end;
  if (at != end && *at == '-') ++at;
  if (at == end || !isDigit(*at)) return nullptr;
  if (*at == '0') {
    ++at;
    if (at != end && isDigit(*at)) return nullptr;
  } else {
    while (at != end && isDigit(*at)) ++at;
  }
  const Place integerEnd = at;
  if (at != end && *at == '.') {
    ++at;
    if (at == end || !isDigit(*at)) return nullptr;
    while (at != end && isDigit(*at)) ++at;
  }
  if (at != end && (*at == 'e' || *at == 'E')) {
    ++at;
    if (at != end && (*at == '+' || *at == '-')) ++at;
    if (at == end || !isDigit(*at)) return nullptr;
    while (at != end && isDigit(*at)) ++at;
  }
  if (at == integerEnd) {
    std::int64_t value = 0;
    if (std::from_chars(start, at, value).ec == std::errc{}) {
      number.integer = value;
      return at;
    }
  }
  number.integer.reset();
  number.wide = 0;
  if (std::from_chars(start, at, number.wide).ec == std::errc::result_out_of_range) {
    if (!isTiny(start, at)) return nullptr;
    number.wide = *start == '-' ? -0.0 : 0.0;
  }
  return std::isfinite(number.wide) ? at : nullptr;
}

std::optional<std::int64_t> wholeNumber(double value) {
  // Not at the limit itself: integers beyond it were rounded to it.
  if (!(value > -0x1p63 && value < 0x1p63) || std::trunc(value) != value) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

Place readWord(const JSONReader& reader, Place at, std::string_view word) {
  if (static_cast<std::size_t>(reader.end - at) < word.size()) return nullptr;
  return std::memcmp(at, word.data(), word.size()) == 0 ? at + word.size() : nullptr;
}

Place skipValue(JSONReader& reader, Place at) {
  if (at == reader.end) return nullptr;
  switch (*at) {
    case '"': {
      RawText text{};
      return readRawText(reader, at, text);
    }
    case 't':
      return readWord(reader, at, "true");
    case 'f':
      return readWord(reader, at, "false");
    case 'n':
      return readWord(reader, at, "null");
    case '[':
    case '{':
      break;
    default: {
      Number number{};
      return readNumber(reader, at, number);
    }
  }
  if (reader.depth == JSONValue::maximumDepth) return nullptr;
  ++reader.depth;
  const bool isObject = *at == '{';
  const char closing = isObject ? '}' : ']';
  at = skipSpace(reader, at + 1);
  bool isFirst = true;
  while (at && at != reader.end) {
    if (*at == closing && isFirst) break;
    isFirst = false;
    if (isObject) {
      std::string_view name;
      at = readKey(reader, at, name);
      if (!at) return nullptr;
    }
    at = skipValue(reader, at);
    if (!at) return nullptr;
    at = skipSpace(reader, at);
    if (at == reader.end) return nullptr;
    if (*at == closing) break;
    if (*at != ',') return nullptr;
    at = skipSpace(reader, at + 1);
    if (at != reader.end && *at == closing) return nullptr;
  }
  if (!at || at == reader.end) return nullptr;
  --reader.depth;
  return at + 1;
}

Place read(const JSONReader& reader, Place at, std::int64_t& target) {
  if (reader.end - at >= 20) [[likely]] {
    Place digits = at + (*at == '-');
    std::uint64_t value = static_cast<unsigned char>(*digits) - unsigned{'0'};
    if (value <= 9 && (value != 0 || !isDigit(digits[1]))) {
      const Place mostDigits = digits + 18;
      if (value != 0) {
        if (const auto eight = eightDigits(digits)) {
          value = *eight;
          digits += 7;
        }
      }
      ++digits;
      for (; digits != mostDigits && isDigit(*digits); ++digits)
        value = value * 10 + static_cast<std::uint64_t>(*digits - '0');
      if (digits != mostDigits && *digits != '.' && (*digits | 0x20) != 'e') [[likely]] {
        target = *at == '-' ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
        return digits;
      }
    }
  }
  Number number{};
  const Place after = readNumber(reader, at, number);
  if (!after) return nullptr;
  const auto whole = number.integer ? number.integer : wholeNumber(number.wide);
  if (!whole) return nullptr;
  target = *whole;
  return after;
}

Place read(const JSONReader& reader, Place at, double& target) {
  Number number{};
  const Place after = readNumber(reader, at, number);
  if (after) target = number.integer ? static_cast<double>(*number.integer) : number.wide;
  return after;
}

Place read(const JSONReader& reader, Place at, float& target) {
  double wide = 0;
  const Place after = read(reader, at, wide);
  target = static_cast<float>(wide);
  return std::isfinite(target) ? after : nullptr;
}

}  // namespace platform::detail
