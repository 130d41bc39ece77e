#include "lumicor/actions/TLPickerRow.h"

#include "lumicor/core/LumicorUtils.h"

namespace lumicor {

std::vector<std::string_view> partsAtDashes(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t at = text.find('-'); at != text.npos; at = text.find('-')) {
    parts.push_back(text.substr(0, at));
    text.remove_prefix(at + 1);
  }
  parts.push_back(text);
  return parts;
}

std::optional<TLPickerRow> TLPickerRow::parse(std::string_view value) {
  const std::vector<std::string_view> parts = partsAtDashes(value);
  if (parts.size() < 2) return std::nullopt;
  const auto row = LumicorUtils::decimalInteger(parts[0]);
  const auto component = LumicorUtils::decimalInteger(parts[1]);
  if (!row || !component) return std::nullopt;
  return TLPickerRow{*row, *component};
}

}  // namespace lumicor
