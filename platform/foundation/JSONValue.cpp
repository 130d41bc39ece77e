#include "platform/foundation/JSONValue.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "platform/foundation/JSONReader.h"
#include "platform/foundation/JSONRefusal.h"
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

/// About as many bytes as writing takes, so that the text is written into one piece of memory. Of long lists a few
/// elements speak for all.
std::size_t expectedBytes(const JSONValue& value, std::size_t depth) {
  constexpr std::size_t samples = 8;
  constexpr std::size_t number = 24;
  std::size_t sum = 2;
  if (const std::string* const text = value.asString()) return sum + text->size();
  if (depth >= JSONValue::maximumDepth) return sum;
  if (const JSONValue::Array* const elements = value.asArray()) {
    const std::size_t step = elements->size() / samples + 1;
    for (std::size_t i = 0; i < elements->size(); i += step) sum += expectedBytes((*elements)[i], depth + 1) + 1;
    return step == 1 ? sum : sum * step + sum * step / 8;
  }
  if (const JSONValue::Object* const members = value.asObject()) {
    for (const auto& [name, member] : *members) sum += name.size() + 4 + expectedBytes(member, depth + 1);
    return sum;
  }
  return value.isNull() || value.asBool() ? sizeof "false" : number;
}

char* write(JSONWriter& writer, char* at, const JSONValue& value, std::size_t depth);

char* writeElements(JSONWriter& writer, char* at, const JSONValue::Array& elements, std::size_t depth) {
  if (elements.empty()) return writer.literal(at, "[]");
  char before = '[';
  for (const JSONValue& element : elements) {
    at = write(writer, writer.literal(at, before), element, depth);
    before = ',';
  }
  return writer.literal(at, ']');
}

char* writeMembers(JSONWriter& writer, char* at, const JSONValue::Object& members, std::size_t depth) {
  if (members.empty()) return writer.literal(at, "{}");
  char before = '{';
  for (const auto& [name, member] : members) {
    at = writer.string(writer.literal(at, before), name);
    at = write(writer, writer.literal(at, ':'), member, depth);
    before = ',';
  }
  return writer.literal(at, '}');
}

char* write(JSONWriter& writer, char* at, const JSONValue& value, std::size_t depth) {
  switch (value.kind()) {
    case JSONValue::Kind::null:
      return writer.literal(at, "null");
    case JSONValue::Kind::boolean:
      return writer.boolean(at, *value.asBool());
    case JSONValue::Kind::integer:
      return writer.integer(at, *value.asInteger());
    case JSONValue::Kind::number:
      return writer.number(at, *value.asDouble());
    case JSONValue::Kind::string:
      return writer.string(at, *value.asString());
    case JSONValue::Kind::array:
    case JSONValue::Kind::object:
      break;
  }
  if (depth >= JSONValue::maximumDepth) {
    writer.fail();
    return at;
  }
  const JSONValue::Array* const elements = value.asArray();
  return elements ? writeElements(writer, at, *elements, depth + 1)
                  : writeMembers(writer, at, *value.asObject(), depth + 1);
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
  if (const std::int64_t* const value = std::get_if<std::int64_t>(&content_)) return *value;
  const double* const value = std::get_if<double>(&content_);
  return value ? detail::wholeNumber(*value) : std::nullopt;
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

/// Builds a value in one pass over its document. What stands in containers that are not at their end waits in two lists
/// which all of them share, so that each is made at once in its final size.
class JSONValue::Builder {
 public:
  explicit Builder(std::string_view bytes) : reader_(bytes) {}

  bool build(JSONValue& value) {
    return detail::isAtEnd(reader_, read(detail::skipSpace(reader_, reader_.begin), value));
  }

 private:
  using Place = detail::Place;

  static bool isContainer(char c) { return c == '{' || c == '['; }

  Place read(Place at, JSONValue& value) {
    return at != reader_.end && isContainer(*at) ? readContainer(at, value) : readScalar(at, value);
  }

  /// Into a value that is null.
  Place readScalar(Place at, JSONValue& value) {
    if (at == reader_.end) return nullptr;
    switch (*at) {
      case '"':
        return detail::read(reader_, at, value.content_.emplace<std::string>());
      case 't':
      case 'f':
        return detail::read(reader_, at, value.content_.emplace<bool>());
      case 'n':
        return detail::readWord(reader_, at, "null");
      default: {
        detail::Number number{};
        at = detail::readNumber(reader_, at, number);
        if (number.integer) {
          value.content_.emplace<std::int64_t>(*number.integer);
        } else {
          value.content_.emplace<double>(number.wide);
        }
        return at;
      }
    }
  }

  /// Recursion is bounded by the depth that values may have.
  Place readContainer(Place at, JSONValue& value) {
    if (reader_.depth == maximumDepth) return nullptr;
    ++reader_.depth;
    const Place inside = detail::skipSpace(reader_, at + 1);
    at = *at == '{' ? readMembers(inside, value) : readElements(inside, value);
    --reader_.depth;
    return at;
  }

  /// Into the value that waits last in a list. A container inside makes the list move, so it is read beside it.
  template <class List, class Last>
  Place readLast(Place at, List& list, Last last) {
    if (at == reader_.end || !isContainer(*at)) return readScalar(at, last(list));
    JSONValue value;
    at = readContainer(at, value);
    last(list).content_ = std::move(value.content_);
    return at;
  }

  /// Behind the comma or the closing bracket that comes next; `isLast` tells which it was.
  Place readSeparator(Place at, char closing, bool& isLast) {
    at = detail::skipSpace(reader_, at);
    if (at == reader_.end || (*at != ',' && *at != closing)) return nullptr;
    isLast = *at == closing;
    return isLast ? at + 1 : detail::skipSpace(reader_, at + 1);
  }

  Place readElements(Place at, JSONValue& value) {
    const std::size_t before = elements_.size();
    bool isLast = at != reader_.end && *at == ']';
    if (isLast) ++at;
    while (!isLast) {
      elements_.emplace_back();
      at = readLast(at, elements_, [](Array& list) -> JSONValue& { return list.back(); });
      if (at) at = readSeparator(at, ']', isLast);
      if (!at) return nullptr;
    }
    value.content_.emplace<Array>(taken(elements_, before));
    return at;
  }

  Place readMembers(Place at, JSONValue& value) {
    const std::size_t before = members_.size();
    bool isLast = at != reader_.end && *at == '}';
    if (isLast) ++at;
    while (!isLast) {
      std::string_view name;
      at = detail::readKey(reader_, at, name);
      if (!at) return nullptr;
      members_.emplace_back(name, nullptr);
      at = readLast(at, members_, [](Object& list) -> JSONValue& { return list.back().second; });
      if (at) at = readSeparator(at, '}', isLast);
      if (!at) return nullptr;
    }
    joinEqualNames(value.content_.emplace<Object>(taken(members_, before)));
    return at;
  }

  template <class T>
  static std::vector<T> taken(std::vector<T>& list, std::size_t from) {
    const auto begin = list.begin() + static_cast<std::ptrdiff_t>(from);
    std::vector<T> all(std::make_move_iterator(begin), std::make_move_iterator(list.end()));
    list.erase(begin, list.end());
    return all;
  }

  detail::JSONReader reader_;
  Array elements_;
  Object members_;
};

Result<JSONValue> JSONValue::parse(std::string_view bytes) {
  if (bytes.size() > maximumBytes) return Failure{"the JSON document is too long"};
  JSONValue value;
  if (Builder(bytes).build(value)) return value;
  return Failure{detail::reasonForRefusal(bytes)};
}

Result<Data> JSONValue::encode() const {
  JSONWriter writer(expectedBytes(*this, 0) + 16);
  char* const end = write(writer, writer.start(), *this, 0);
  if (writer.hasFailed()) return Failure{"a number that is not finite, or too much nesting, cannot be written as JSON"};
  return writer.finish(end);
}

}  // namespace platform
