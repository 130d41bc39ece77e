#include "platform/foundation/JSONValue.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "platform/foundation/JSONParser.h"
#include "platform/foundation/JSONWriter.h"
#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

bool hasEqualNames(const JSONValue::Object& members) {
  constexpr std::size_t few = 16;
  if (members.size() <= few) {
    for (std::size_t i = 1; i < members.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (members[i].first == members[j].first) return true;
      }
    }
    return false;
  }
  std::unordered_set<std::string_view> names;
  names.reserve(members.size());
  return !std::all_of(members.begin(), members.end(), [&](const auto& m) { return names.insert(m.first).second; });
}

/// Keeps the last value of equal names, at the place of the first.
void joinEqualNames(JSONValue::Object& members) {
  if (!hasEqualNames(members)) return;
  JSONValue::Object joined;
  std::unordered_map<std::string, std::size_t> places;
  for (auto& [name, value] : members) {
    const auto [place, isNew] = places.emplace(name, joined.size());
    if (isNew) {
      joined.emplace_back(std::move(name), std::move(value));
    } else {
      joined[place->second].second = std::move(value);
    }
  }
  members = std::move(joined);
}

JSONValue valueOf(const simdjson::dom::element& element);

JSONValue valueOf(const simdjson::dom::array& source) {
  JSONValue::Array elements;
  elements.reserve(source.size());
  for (const simdjson::dom::element element : source) elements.push_back(valueOf(element));
  return JSONValue::array(std::move(elements));
}

JSONValue valueOf(const simdjson::dom::object& source) {
  JSONValue::Object members;
  members.reserve(source.size());
  for (const auto& [name, element] : source) members.emplace_back(std::string(name), valueOf(element));
  return JSONValue::object(std::move(members));
}

/// Recursion is bounded: the parser refuses what is nested more deeply than maximumDepth.
JSONValue valueOf(const simdjson::dom::element& element) {
  using simdjson::dom::element_type;
  switch (element.type()) {
    case element_type::ARRAY:
      return valueOf(simdjson::dom::array(element));
    case element_type::OBJECT:
      return valueOf(simdjson::dom::object(element));
    case element_type::STRING:
      return JSONValue(std::string_view(element));
    case element_type::INT64:
      return JSONValue(std::int64_t(element));
    case element_type::UINT64:
      return JSONValue(static_cast<double>(std::uint64_t(element)));
    case element_type::DOUBLE:
      return JSONValue(double(element));
    case element_type::BOOL:
      return JSONValue(bool(element));
    case element_type::NULL_VALUE:
      break;
  }
  return {};
}

/// About as many bytes as writing takes, so that the text is written into one piece of memory.
std::size_t expectedBytes(const JSONValue& value, std::size_t depth) {
  constexpr std::size_t number = 24;
  std::size_t sum = 2;
  if (const std::string* const text = value.asString()) return sum + text->size();
  if (depth >= JSONValue::maximumDepth) return sum;
  if (const JSONValue::Array* const elements = value.asArray()) {
    for (const JSONValue& element : *elements) sum += expectedBytes(element, depth + 1) + 1;
    return sum;
  }
  if (const JSONValue::Object* const members = value.asObject()) {
    for (const auto& [name, member] : *members) sum += name.size() + 4 + expectedBytes(member, depth + 1);
    return sum;
  }
  return value.isNull() || value.asBool() ? sizeof "false" : number;
}

void write(JSONWriter& writer, const JSONValue& value, std::size_t depth) {
  switch (value.kind()) {
    case JSONValue::Kind::null:
      return writer.null();
    case JSONValue::Kind::boolean:
      return writer.boolean(*value.asBool());
    case JSONValue::Kind::integer:
      return writer.integer(*value.asInteger());
    case JSONValue::Kind::number:
      return writer.number(*value.asDouble());
    case JSONValue::Kind::string:
      return writer.string(*value.asString());
    case JSONValue::Kind::array:
    case JSONValue::Kind::object:
      break;
  }
  if (depth >= JSONValue::maximumDepth) return writer.fail();
  if (const JSONValue::Array* const elements = value.asArray()) {
    char before = '[';
    for (const JSONValue& element : *elements) {
      writer.character(before);
      before = ',';
      write(writer, element, depth + 1);
    }
    return writer.literal(before == '[' ? "[]" : "]");
  }
  char before = '{';
  for (const auto& [name, member] : *value.asObject()) {
    writer.character(before);
    before = ',';
    writer.string(name);
    writer.character(':');
    write(writer, member, depth + 1);
  }
  writer.literal(before == '{' ? "{}" : "}");
}

}  // namespace

JSONValue JSONValue::object(Object members) {
  joinEqualNames(members);
  JSONValue value;
  value.content_ = std::move(members);
  return value;
}

JSONValue& JSONValue::operator=(const JSONValue& other) {
  JSONValue copy(other);
  return *this = std::move(copy);
}

JSONValue& JSONValue::operator=(JSONValue&& other) noexcept {
  const JSONValue previous(std::move(*this));  // the other may be a part of it, so it ends last
  content_ = std::exchange(other.content_, Content{});
  return *this;
}

/// Takes the containers inside out one by one, so that no depth of nesting uses up the stack.
void JSONValue::release() noexcept {
  std::vector<JSONValue> pending;
  const auto adopt = [&](JSONValue& value) {
    if (value.content_.index() >= 5) pending.push_back(std::move(value));
  };
  const auto adoptChildren = [&](JSONValue& value) {
    if (Array* const elements = value.asArray()) {
      for (JSONValue& element : *elements) adopt(element);
    } else if (Object* const members = value.asObject()) {
      for (Member& member : *members) adopt(member.second);
    }
  };
  adoptChildren(*this);
  while (!pending.empty()) {
    JSONValue next(std::move(pending.back()));
    pending.pop_back();
    adoptChildren(next);
  }
}

std::optional<bool> JSONValue::asBool() const {
  const bool* const value = std::get_if<bool>(&content_);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::int64_t> JSONValue::asInteger() const {
  const std::int64_t* const value = std::get_if<std::int64_t>(&content_);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<double> JSONValue::asDouble() const {
  if (const double* const value = std::get_if<double>(&content_)) return *value;
  if (const std::int64_t* const value = std::get_if<std::int64_t>(&content_)) return static_cast<double>(*value);
  return std::nullopt;
}

const JSONValue* JSONValue::find(std::string_view name) const {
  const Object* const members = asObject();
  if (!members) return nullptr;
  const auto found = std::find_if(members->begin(), members->end(), [&](const Member& m) { return m.first == name; });
  return found == members->end() ? nullptr : &found->second;
}

JSONValue& JSONValue::set(std::string name, JSONValue value) {
  if (isNull()) content_ = Object{};
  Object* const members = asObject();
  if (!members) fatalError("JSONValue::set: the value is no object");
  const auto found = std::find_if(members->begin(), members->end(), [&](const Member& m) { return m.first == name; });
  if (found != members->end()) {
    found->second = std::move(value);
  } else {
    members->emplace_back(std::move(name), std::move(value));
  }
  return *this;
}

JSONValue& JSONValue::append(JSONValue value) {
  if (isNull()) content_ = Array{};
  Array* const elements = asArray();
  if (!elements) fatalError("JSONValue::append: the value is no array");
  elements->push_back(std::move(value));
  return *this;
}

Result<JSONValue> JSONValue::parse(std::string_view bytes) {
  if (std::string reason = detail::reasonNotToParse(bytes); !reason.empty()) return Failure{std::move(reason)};
  detail::JSONParser& parser = detail::JSONParser::ofThisThread();
  if (const auto error = parser.makeRoom(bytes.size())) return Failure{detail::sentenceFor(error)};
  const simdjson::padded_string_view padded = parser.padded(bytes);
  simdjson::dom::element document;
  if (const auto error = parser.values.parse(padded.data(), padded.size(), false).get(document)) {
    parser.shrink();
    return Failure{detail::sentenceFor(error)};
  }
  JSONValue value = valueOf(document);
  parser.shrink();
  return value;
}

Result<Data> JSONValue::encode() const {
  JSONWriter writer(expectedBytes(*this, 0) + 16);
  write(writer, *this, 0);
  if (writer.hasFailed()) return Failure{"a number that is not finite, or too much nesting, cannot be written as JSON"};
  return writer.finish();
}

}  // namespace platform
