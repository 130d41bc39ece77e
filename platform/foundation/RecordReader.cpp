#include "platform/foundation/RecordReader.h"

#include <algorithm>
#include <cmath>

namespace platform::detail {

namespace {

constexpr std::size_t notFound = static_cast<std::size_t>(-1);

std::size_t indexOf(std::span<const FieldReader> fields, std::string_view name, std::size_t expected) {
  if (expected < fields.size() && fields[expected].name == name) return expected;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].name == name) return i;
  }
  return notFound;
}

}  // namespace

bool DecodingError::fail(std::string reason) {
  reason_ = std::move(reason);
  return false;
}

std::string DecodingError::description() const {
  if (path_.empty()) return reason_;
  return (path_.front() == '.' ? path_.substr(1) : path_) + ": " + reason_;
}

Place readMembers(JSONReader& reader, Place at, std::span<const FieldReader> fields, void* const* targets,
                  std::size_t done) {
  const auto bits = [](std::size_t count) { return count == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1; };
  std::uint64_t seen = bits(done);
  std::size_t expected = done;
  bool isFirst = done == 0;
  if (isFirst) {
    if (at == reader.end || *at != '{') return nullptr;
    ++at;
  }
  for (;; isFirst = false) {
    at = skipSpace(reader, at);
    if (at == reader.end) return nullptr;
    if (*at == '}') return seen == bits(fields.size()) ? at + 1 : nullptr;
    if (!isFirst) {
      if (*at != ',') return nullptr;
      at = skipSpace(reader, at + 1);
    }
    std::string_view name;
    at = readKey(reader, at, name);
    if (!at) return nullptr;
    const std::size_t index = indexOf(fields, name, expected);
    if (index == notFound) {
      at = skipValue(reader, at);
      if (!at) return nullptr;
      continue;
    }
    if (seen >> index & 1) return nullptr;  // which of two counts is settled by the careful way
    at = fields[index].value.read(reader, at, targets[index]);
    if (!at) return nullptr;
    seen |= std::uint64_t{1} << index;
    expected = index + 1;
  }
}

bool convert(const JSONValue& value, std::string& target, DecodingError& error) {
  if (!value.asString()) return error.fail("wants a string");
  target = *value.asString();
  return true;
}

bool convert(const JSONValue& value, std::int64_t& target, DecodingError& error) {
  const auto whole = value.asInteger();
  if (!whole) return error.fail("wants an integer");
  target = *whole;
  return true;
}

bool convert(const JSONValue& value, bool& target, DecodingError& error) {
  if (!value.asBool()) return error.fail("wants true or false");
  target = *value.asBool();
  return true;
}

bool convert(const JSONValue& value, double& target, DecodingError& error) {
  if (!value.asDouble()) return error.fail("wants a number");
  target = *value.asDouble();
  return true;
}

bool convert(const JSONValue& value, float& target, DecodingError& error) {
  if (!value.asDouble()) return error.fail("wants a number");
  target = static_cast<float>(*value.asDouble());
  return std::isfinite(target) || error.fail("wants a number of single precision");
}

bool convertMembers(const JSONValue& value, std::span<const FieldReader> fields, void* const* targets,
                    DecodingError& error) {
  if (!value.asObject()) return error.fail("wants an object");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const JSONValue* const member = value.find(fields[i].name);
    const bool read = member ? fields[i].value.convert(*member, targets[i], error) : error.fail("missing");
    if (!read) {
      error.insideMember(fields[i].name);
      return false;
    }
  }
  return true;
}

std::size_t elementsToExpect(JSONReader& reader, Place first, Place next, std::size_t read, std::size_t bytesEach) {
  if (reader.arraysAround > 1) return 0;
  const auto soFar = static_cast<std::size_t>(next - first);
  const auto left = static_cast<std::size_t>(reader.end - next);
  const std::size_t granted = std::min(left * read / soFar + 1, reader.mayExpect / bytesEach);
  reader.mayExpect -= granted * bytesEach;
  return granted;
}

bool decodeDocument(std::string_view bytes, const ValueReader& value, void* target, std::string& error) {
  if (bytes.size() <= JSONValue::maximumBytes) {
    JSONReader reader(bytes);
    const Place start = skipSpace(reader, reader.begin);
    if (start != reader.end && isAtEnd(reader, value.read(reader, start, target))) return true;
  }
  // The fast way says only that something deviates. The careful way finds out what and where, and has the last word.
  const Result<JSONValue> parsed = JSONValue::parse(bytes);
  if (!parsed) {
    error = parsed.error();
    return false;
  }
  DecodingError failure;
  if (value.convert(*parsed, target, failure)) return true;
  error = failure.description();
  return false;
}

}  // namespace platform::detail
