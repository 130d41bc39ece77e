#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// Header fields in the order in which they were set. Names are compared without regard to case.
class HTTPHeaders {
 public:
  using Entry = std::pair<std::string, std::string>;

  HTTPHeaders() = default;
  HTTPHeaders(std::initializer_list<Entry> entries) : entries_(entries) {}

  /// The value of a field, or none.
  const std::string* find(std::string_view name) const;
  /// Sets a field, in place when there is one of that name.
  void set(std::string name, std::string value);
  /// Adds a further field of that name (a reply may have several).
  void add(std::string name, std::string value) { entries_.emplace_back(std::move(name), std::move(value)); }
  void remove(std::string_view name);

  const std::vector<Entry>& entries() const { return entries_; }
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }
  std::size_t size() const { return entries_.size(); }
  friend bool operator==(const HTTPHeaders&, const HTTPHeaders&) = default;

  /// True when nothing in it could break out of its line: a name is a token, a value has no control characters besides
  /// tabs. Beyond ASCII a value travels as its bytes, which are UTF-8.
  static bool isValidName(std::string_view name);
  static bool isValidValue(std::string_view value);

 private:
  std::vector<Entry> entries_;
};

}  // namespace platform
