#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace service {

/// What is read: keys in alphabetical order, fast to build from anything a client sends.
using Json = nlohmann::json;
/// What is written: keys in the order they were added.
using OrderedJson = nlohmann::ordered_json;

/// Tells what is wrong with a JSON text or value, and at which place of it. The text is fit for people.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Parses a text from outside. Refuses (JsonError) what is not JSON, what nests deeper than 32 levels and what holds
/// more than half a million values, so that a small body cannot cost much memory or stack.
Json parseJson(std::string_view text);

/// The text of a value on one line. Bytes that are not UTF-8 become replacement characters; never throws for content.
std::string writeJson(const OrderedJson& value);

/// Strict, read-only view of one JSON object; every complaint (JsonError) names the place, such as "tasks[1].title".
/// Owner: borrows the value, which must outlive it.
class JsonObject {
 public:
  /// `place` is the path of `value` in its document, empty for the top. Complains when `value` is not an object.
  JsonObject(const Json& value, std::string place);

  bool has(std::string_view key) const;
  const Json& at(std::string_view key) const;
  std::string string(std::string_view key) const;
  std::string nonEmptyString(std::string_view key) const;
  bool boolean(std::string_view key) const;
  std::int64_t integer(std::string_view key) const;
  double number(std::string_view key) const;
  const Json& array(std::string_view key) const;
  JsonObject object(std::string_view key) const;
  /// The array's members, each of which must be a string.
  std::vector<std::string> strings(std::string_view key) const;

  /// Complains about a key that is none of these: a misspelt key in a file should not go unseen.
  void allowOnly(std::initializer_list<std::string_view> keys) const;

  const Json& value() const { return *value_; }
  std::string placeOf(std::string_view key) const;
  [[noreturn]] void complain(std::string_view key, std::string_view what) const;

 private:
  const Json* value_;
  std::string place_;
};

/// "steps" and 2 make "steps[2]".
std::string placeOfItem(std::string_view place, std::size_t index);

/// The whole number that `value` is, when it is one and fits 64 bits.
std::optional<std::int64_t> wholeNumber(const Json& value);

}  // namespace service
