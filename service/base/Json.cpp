#include "service/base/Json.h"

#include <algorithm>
#include <limits>

namespace service {
namespace {

constexpr int kMaximumDepth = 32;
constexpr std::size_t kMaximumValues = 500'000;

/// Looks at the brackets only, before anything is built from the text.
void checkShape(std::string_view text) {
  int depth = 0;
  std::size_t values = 1;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      if (c == '"') inString = false;
      continue;
    }
    if (c == '"') inString = true;
    if (c == '{' || c == '[') ++depth;
    if (c == '}' || c == ']') --depth;
    if (c == '{' || c == '[' || c == ',') ++values;
    if (depth > kMaximumDepth) throw JsonError("the JSON is nested too deeply");
    if (values > kMaximumValues) throw JsonError("the JSON holds too many values");
  }
}

}  // namespace

Json parseJson(std::string_view text) {
  checkShape(text);
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw JsonError("not JSON: the fault is near byte " + std::to_string(error.byte));
  } catch (const Json::exception&) {
    throw JsonError("not JSON: a number is out of range");
  }
}

std::string writeJson(const OrderedJson& value) {
  return value.dump(-1, ' ', false, OrderedJson::error_handler_t::replace);
}

JsonObject::JsonObject(const Json& value, std::string place) : value_(&value), place_(std::move(place)) {
  if (!value.is_object())
    throw JsonError(place_.empty() ? "a JSON object is required" : place_ + ": must be an object");
}

std::string JsonObject::placeOf(std::string_view key) const {
  return place_.empty() ? std::string(key) : place_ + "." + std::string(key);
}

void JsonObject::complain(std::string_view key, std::string_view what) const {
  throw JsonError(placeOf(key) + ": " + std::string(what));
}

bool JsonObject::has(std::string_view key) const { return value_->contains(key); }

const Json& JsonObject::at(std::string_view key) const {
  const auto found = value_->find(key);
  if (found == value_->end()) complain(key, "is missing");
  return *found;
}

std::string JsonObject::string(std::string_view key) const {
  const Json& value = at(key);
  if (!value.is_string()) complain(key, "must be a string");
  return value.get<std::string>();
}

std::string JsonObject::nonEmptyString(std::string_view key) const {
  std::string text = string(key);
  if (text.empty()) complain(key, "must not be empty");
  return text;
}

bool JsonObject::boolean(std::string_view key) const {
  const Json& value = at(key);
  if (!value.is_boolean()) complain(key, "must be true or false");
  return value.get<bool>();
}

std::int64_t JsonObject::integer(std::string_view key) const {
  const auto number = wholeNumber(at(key));
  if (!number) complain(key, "must be a whole number");
  return *number;
}

double JsonObject::number(std::string_view key) const {
  const Json& value = at(key);
  if (!value.is_number()) complain(key, "must be a number");
  return value.get<double>();
}

const Json& JsonObject::array(std::string_view key) const {
  const Json& value = at(key);
  if (!value.is_array()) complain(key, "must be a list");
  return value;
}

JsonObject JsonObject::object(std::string_view key) const { return {at(key), placeOf(key)}; }

std::vector<std::string> JsonObject::strings(std::string_view key) const {
  std::vector<std::string> texts;
  for (const Json& value : array(key)) {
    if (!value.is_string()) throw JsonError(placeOfItem(placeOf(key), texts.size()) + ": must be a string");
    texts.push_back(value.get<std::string>());
  }
  return texts;
}

void JsonObject::allowOnly(std::initializer_list<std::string_view> keys) const {
  for (const auto& [key, value] : value_->items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) complain(key, "is not a known key");
  }
}

std::string placeOfItem(std::string_view place, std::size_t index) {
  return std::string(place) + "[" + std::to_string(index) + "]";
}

std::optional<std::int64_t> wholeNumber(const Json& value) {
  if (!value.is_number_integer()) return std::nullopt;
  if (value.is_number_unsigned() &&
      value.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()})
    return std::nullopt;
  return value.get<std::int64_t>();
}

}  // namespace service
