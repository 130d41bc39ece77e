#include "platform/engine/curl/ReplyHead.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

}  // namespace

void ReplyHead::addLine(std::string_view line) {
  if (isComplete_) return;
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
  if (line.empty()) {
    keepField();
    isInside_ = false;
    isComplete_ = statusCode_ >= 200;
  } else if (!isInside_) {
    beginWith(line);
  } else {
    addField(line);
  }
}

std::vector<std::string> ReplyHead::codings(std::string_view name) const {
  std::vector<std::string> result;
  for (const auto& field : headers_) {
    if (!HTTPHeaders{field}.find(name)) continue;
    std::string_view rest = field.second;
    while (!rest.empty()) {
      const std::size_t comma = std::min(rest.find(','), rest.size());
      std::string coding(trimmed(rest.substr(0, comma)));
      std::transform(coding.begin(), coding.end(), coding.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
      if (!coding.empty() && coding != "identity") result.push_back(std::move(coding));
      rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
  }
  return result;
}

void ReplyHead::beginWith(std::string_view statusLine) {
  isInside_ = true;
  headers_ = {};
  statusCode_ = 0;
  const std::string_view code = trimmed(statusLine.substr(std::min(statusLine.find(' '), statusLine.size())));
  std::from_chars(code.data(), code.data() + code.size(), statusCode_);
}

void ReplyHead::addField(std::string_view line) {
  if (line.front() == ' ' || line.front() == '\t') {  // the last value goes on
    field_.second.append(" ").append(trimmed(line));
    return;
  }
  keepField();
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return;
  field_ = {std::string(trimmed(line.substr(0, colon))), std::string(trimmed(line.substr(colon + 1)))};
}

void ReplyHead::keepField() {
  HTTPHeaders::Entry field = std::exchange(field_, {});
  if (field.first.empty()) return;
  const bool isLength = HTTPHeaders{{field.first, ""}}.find("Content-Length") != nullptr;
  if (isLength) {
    const std::string* const known = headers_.find("Content-Length");
    const bool isNumber = !field.second.empty() && field.second.find_first_not_of("0123456789") == std::string::npos;
    isLengthSound_ = isLengthSound_ && isNumber && (!known || *known == field.second);
  }
  headers_.add(std::move(field.first), std::move(field.second));
}

}  // namespace platform
