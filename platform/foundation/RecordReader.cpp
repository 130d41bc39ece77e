#include "platform/foundation/RecordReader.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/foundation/JSONParser.h"

namespace platform::detail {

namespace ondemand = simdjson::ondemand;

namespace {

/// A source is the parser's value under a name that headers may know.
ondemand::value& valueOf(JSONSource& source) { return reinterpret_cast<ondemand::value&>(source); }
JSONSource& sourceOf(ondemand::value& value) { return reinterpret_cast<JSONSource&>(value); }

constexpr std::size_t notFound = static_cast<std::size_t>(-1);

/// A single-precision number, or false when it does not fit.
bool narrow(double wide, void* slot) {
  const float value = static_cast<float>(wide);
  if (!std::isfinite(value)) return false;
  *static_cast<float*>(slot) = value;
  return true;
}

std::size_t indexOf(std::span<const FieldPlan> fields, std::string_view name, std::size_t expected) {
  if (expected < fields.size() && fields[expected].name == name) return expected;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].name == name) return i;
  }
  return notFound;
}

/// Whether the raw text (up to its closing quote, room behind it) is that key, unescaped as keys nearly always are.
bool isKey(const char* raw, const FieldPlan& field) {
  std::uint64_t start = 0;
  std::memcpy(&start, raw, sizeof start);
  if ((start & field.startMask) != field.start || raw[field.name.size()] != '"') return false;
  if (field.name.size() <= sizeof start) return true;
  std::uint64_t end = 0;
  std::memcpy(&end, raw + field.name.size() - sizeof end, sizeof end);
  return end == field.end &&
         (field.name.size() <= 2 * sizeof start || std::memcmp(raw, field.name.data(), field.name.size()) == 0);
}

/// A value that nobody wants has to be JSON all the same; the parser would pass over it unseen.
bool isValid(ondemand::value& value) {
  std::string_view raw;
  if (simdjson::to_json_string(value).get(raw)) return false;
  JSONParser& parser = JSONParser::ofThisThread();
  if (parser.makeRoom(raw.size())) return false;
  return parser.values.parse(raw.data(), raw.size(), false).error() == simdjson::SUCCESS;
}

/// Every value of every record comes through here, hence inlined by force: a call costs as much as reading a number.
[[gnu::always_inline]] inline bool read(JSONSource& source, const ValuePlan& plan, void* slot) {
  switch (plan.kind) {
    case SlotKind::string: {
      std::string& target = *static_cast<std::string*>(slot);
      const std::string_view token = valueOf(source).raw_json_token();
      if (token.size() >= 2 && token[0] == '"' && token[1] == '"') {  // the most frequent text of all
        target.clear();
        return !valueOf(source).get_raw_json_string().error();
      }
      std::string_view text;
      if (valueOf(source).get_string().get(text)) return false;
      target.assign(text);
      return true;
    }
    case SlotKind::integer:
      return !valueOf(source).get_int64().get(*static_cast<std::int64_t*>(slot));
    case SlotKind::boolean:
      return !valueOf(source).get_bool().get(*static_cast<bool*>(slot));
    case SlotKind::number:
      return !valueOf(source).get_double().get(*static_cast<double*>(slot));
    case SlotKind::singleNumber: {
      double wide = 0;
      return !valueOf(source).get_double().get(wide) && narrow(wide, slot);
    }
    case SlotKind::compound:
      break;
  }
  return plan.parse(source, slot);
}

bool parseDocument(std::string_view bytes, const ValuePlan& plan, void* slot) {
  JSONParser& parser = JSONParser::ofThisThread();
  ondemand::document document;
  if (parser.records.iterate(parser.padded(bytes)).get(document)) return false;
  ondemand::value root;
  if (document.get_value().get(root)) return false;
  // Nothing may follow: past its last token the parser has no location any more.
  return parseValue(sourceOf(root), plan, slot) && document.current_location().error() == simdjson::OUT_OF_BOUNDS;
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

bool parseValue(JSONSource& source, const ValuePlan& plan, void* slot) { return read(source, plan, slot); }

bool parseObject(JSONSource& source, std::span<const FieldPlan> fields, void* const* slots) {
  ondemand::object object;
  if (valueOf(source).get_object().get(object)) return false;
  std::uint64_t seen = 0;
  std::size_t expected = 0;
  for (auto entry : object) {
    if (entry.error()) return false;
    ondemand::field&& field = std::move(entry).value_unsafe();
    std::size_t index = expected;
    if (expected >= fields.size() || !isKey(field.key().raw(), fields[expected])) {
      std::string_view name;
      if (field.unescaped_key().get(name)) return false;
      index = indexOf(fields, name, expected);
    }
    if (index == notFound) {
      if (!isValid(field.value())) return false;
      continue;
    }
    if (seen >> index & 1) return false;  // which of two counts is settled by the careful way
    if (!read(sourceOf(field.value()), fields[index].value, slots[index])) return false;
    seen |= std::uint64_t{1} << index;
    expected = index + 1;
  }
  const std::uint64_t all = fields.size() == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << fields.size()) - 1;
  return seen == all;
}

bool parseArray(JSONSource& source, void* context, bool (*element)(JSONSource&, void*),
                void (*expect)(void*, std::size_t)) {
  JSONParser& parser = JSONParser::ofThisThread();
  const JSONParser::InsideArray inside(parser);
  ondemand::array array;
  if (valueOf(source).get_array().get(array)) return false;
  bool isFirst = true;
  for (auto entry : array) {
    if (entry.error()) return false;
    ondemand::value&& value = std::move(entry).value_unsafe();
    if (!isFirst) {
      if (!element(sourceOf(value), context)) return false;
      continue;
    }
    isFirst = false;
    const char* const start = value.raw_json_token().data();
    if (!element(sourceOf(value), context)) return false;
    const char* next = nullptr;
    if (value.current_location().get(next) || next <= start || *next != ',') continue;  // it was the last
    expect(context, parser.elementsToExpect(
                        static_cast<std::size_t>(parser.end() - start) / static_cast<std::size_t>(next - start) + 1));
  }
  return true;
}

bool parseMembers(JSONSource& source, void* context, bool (*member)(std::string_view, JSONSource&, void*)) {
  ondemand::object object;
  if (valueOf(source).get_object().get(object)) return false;
  for (auto entry : object) {
    if (entry.error()) return false;
    ondemand::field&& field = std::move(entry).value_unsafe();
    std::string_view name;
    if (field.unescaped_key().get(name)) return false;
    if (!member(name, sourceOf(field.value()), context)) return false;
  }
  return true;
}

bool parseText(JSONSource& source, std::string_view& text) { return !valueOf(source).get_string().get(text); }

bool convertValue(const JSONValue& value, const ValuePlan& plan, void* slot, DecodingError& error) {
  switch (plan.kind) {
    case SlotKind::string:
      if (!value.asString()) return error.fail("wants a string");
      *static_cast<std::string*>(slot) = *value.asString();
      return true;
    case SlotKind::integer:
      if (!value.asInteger()) return error.fail("wants an integer");
      *static_cast<std::int64_t*>(slot) = *value.asInteger();
      return true;
    case SlotKind::boolean:
      if (!value.asBool()) return error.fail("wants true or false");
      *static_cast<bool*>(slot) = *value.asBool();
      return true;
    case SlotKind::number:
      if (!value.asDouble()) return error.fail("wants a number");
      *static_cast<double*>(slot) = *value.asDouble();
      return true;
    case SlotKind::singleNumber:
      if (!value.asDouble()) return error.fail("wants a number");
      return narrow(*value.asDouble(), slot) || error.fail("wants a number of single precision");
    case SlotKind::compound:
      break;
  }
  return plan.convert(value, slot, error);
}

bool convertObject(const JSONValue& value, std::span<const FieldPlan> fields, void* const* slots,
                   DecodingError& error) {
  if (!value.asObject()) return error.fail("wants an object");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const JSONValue* const member = value.find(fields[i].name);
    const bool read = member ? convertValue(*member, fields[i].value, slots[i], error) : error.fail("missing");
    if (!read) {
      error.insideMember(fields[i].name);
      return false;
    }
  }
  return true;
}

bool decodeDocument(std::string_view bytes, const ValuePlan& plan, void* slot, std::string& error) {
  error = reasonNotToParse(bytes);
  if (!error.empty()) return false;
  const bool parsed = parseDocument(bytes, plan, slot);
  JSONParser::ofThisThread().shrink();
  if (parsed) return true;
  // The fast way says only that something deviates. The careful way finds out what and where, and has the last word.
  const Result<JSONValue> value = JSONValue::parse(bytes);
  if (!value) {
    error = value.error();
    return false;
  }
  DecodingError failure;
  if (convertValue(*value, plan, slot, failure)) return true;
  error = failure.description();
  return false;
}

}  // namespace platform::detail
