#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace service {

struct Choice;

/// What a request said for one slot.
struct SlotValue {
  std::string text;                ///< as it is put into a step; decimal digits for a number
  const Choice* choice = nullptr;  ///< for a slot with a list of choices; belongs to the task
};

using SlotValues = std::map<std::string, SlotValue>;

/// "{slot}", "{slot.attribute}", "{slot-1}" or "{slot.attribute+2}".
struct Placeholder {
  std::string slot;
  std::string attribute;    ///< empty for the value itself
  std::int64_t offset = 0;  ///< added to a number

  bool hasOffset() const { return offset != 0; }
  /// The text for these values, which must hold the slot and, for a choice, the attribute.
  std::string expand(const SlotValues& values) const;
};

/// A text with placeholders. "{{" and "}}" stand for the braces themselves.
class TextTemplate {
 public:
  struct Part {
    std::string literal;
    std::optional<Placeholder> placeholder;  ///< instead of the literal
  };

  TextTemplate() = default;
  /// Throws std::invalid_argument, saying what is wrong.
  explicit TextTemplate(std::string_view text);

  std::string expand(const SlotValues& values) const;
  /// Puts these values in for good; the placeholders of other slots stay.
  void fix(const SlotValues& values);
  const std::vector<Part>& parts() const { return parts_; }

 private:
  void addLiteral(char c);
  std::vector<Part> parts_;
};

}  // namespace service
