#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace service {

/// The header fields of one request as they stood on the wire: in order, empty values kept, nothing decoded.
class HeaderFields {
 public:
  /// Reads the head of a request (request line, fields, blank line). Nothing when a line is not a field: no colon, a
  /// name with a character that names do not have, a control character in a value, or a value folded over lines.
  static std::optional<HeaderFields> parse(std::string_view head);

  /// The first value under a name, upper and lower case taken as equal.
  std::optional<std::string> value(std::string_view name) const;
  std::size_t count(std::string_view name) const;
  void add(std::string name, std::string value) { fields_.emplace_back(std::move(name), std::move(value)); }
  const std::vector<std::pair<std::string, std::string>>& all() const { return fields_; }

 private:
  std::vector<std::pair<std::string, std::string>> fields_;
};

/// Equal but for the case of ASCII letters.
bool equalNames(std::string_view a, std::string_view b);

}  // namespace service
