#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace lumicor {

/// A row of a picker as a step's value names it: "<row>-<component>", both decimal.
struct TLPickerRow {
  std::int64_t row = 0;
  std::int64_t component = 0;

  /// None when either part is missing or is no number; further parts are ignored.
  static std::optional<TLPickerRow> parse(std::string_view value);
};

/// The text cut at every "-", empty parts kept. The parts borrow from the text.
std::vector<std::string_view> partsAtDashes(std::string_view text);

}  // namespace lumicor
