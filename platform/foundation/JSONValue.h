#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/foundation/Result.h"
#include "platform/runtime/Data.h"

namespace platform {

/// Any JSON value, for what is not known in advance. A value type: copies are deep. Numbers written as integers (signed
/// 64-bit, beyond that they are doubles), other numbers and booleans are three different things. Members keep the order
/// in which they were added.
///
///     JSONValue body = JSONValue::object({{"query", "tea"}, {"limit", 10}, {"tags", JSONValue::array({"a", "b"})}});
///
/// Failure: nothing throws; what is not there or of another kind is no value.
class JSONValue {
 public:
  using Member = std::pair<std::string, JSONValue>;
  using Array = std::vector<JSONValue>;
  using Object = std::vector<Member>;
  enum class Kind { null, boolean, integer, number, string, array, object };

  /// Containers nested deeper than this are neither read nor written.
  static constexpr std::size_t maximumDepth = 512;
  /// Documents longer than this are not read.
  static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

  JSONValue() = default;
  JSONValue(std::nullptr_t) {}
  JSONValue(bool value) : content_(value) {}
  template <std::signed_integral I>
  JSONValue(I value) : content_(std::int64_t{value}) {}
  template <std::floating_point F>
  JSONValue(F value) : content_(static_cast<double>(value)) {}
  JSONValue(const char* value) : content_(std::string(value)) {}
  JSONValue(std::string_view value) : content_(std::string(value)) {}
  JSONValue(std::string value) : content_(std::move(value)) {}
  JSONValue(const void*) = delete;  // a pointer is no boolean
  static JSONValue array(Array elements = {}) { return JSONValue(std::move(elements)); }
  static JSONValue object(Object members = {});

  JSONValue(const JSONValue&) = default;
  JSONValue(JSONValue&& other) noexcept : content_(std::exchange(other.content_, Content{})) {}
  JSONValue& operator=(const JSONValue& other);
  JSONValue& operator=(JSONValue&& other) noexcept;
  ~JSONValue() {
    if (content_.index() >= 5) release();
  }

  Kind kind() const { return static_cast<Kind>(content_.index()); }
  bool isNull() const { return kind() == Kind::null; }

  std::optional<bool> asBool() const;
  /// A number that is whole, however it was written (2, 2.0, 0.2e1), and fits; none for a boolean. What is written with
  /// a fraction or an exponent is a double first, and as exact as that.
  std::optional<std::int64_t> asInteger() const;
  /// Any number, integers included.
  std::optional<double> asDouble() const;
  const std::string* asString() const { return std::get_if<std::string>(&content_); }
  const Array* asArray() const { return std::get_if<Array>(&content_); }
  const Object* asObject() const { return std::get_if<Object>(&content_); }
  Array* asArray() { return std::get_if<Array>(&content_); }
  Object* asObject() { return std::get_if<Object>(&content_); }

  /// The member of that name, or none (also when this is no object).
  const JSONValue* find(std::string_view name) const;
  /// Sets a member, in place when there is one of that name, else at the end. A null becomes an object first; on
  /// anything else it is a fatal programming error.
  JSONValue& set(std::string name, JSONValue value);
  /// Appends an element. A null becomes an array first; on anything else it is a fatal programming error.
  JSONValue& append(JSONValue value);

  /// Reads one document in UTF-8, which may begin with a byte-order mark. Of members of the same name the last wins, at
  /// the place of the first.
  static Result<JSONValue> parse(std::string_view bytes);
  /// Writes the value compactly. Fails for a number that is infinite or none, and for more nesting than can be read.
  /// Text that is not UTF-8 is written with U+FFFD in place of what is wrong.
  Result<Data> encode() const;

  friend bool operator==(const JSONValue& a, const JSONValue& b) { return a.content_ == b.content_; }

 private:
  using Content = std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object>;
  class Builder;
  explicit JSONValue(Array elements) : content_(std::move(elements)) {}
  void release() noexcept;

  Content content_;
};

}  // namespace platform
