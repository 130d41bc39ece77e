#include "platform/engine/HTTPHeaders.h"

#include <algorithm>

namespace platform {

namespace {

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool areEqual(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lowered(x) == lowered(y); });
}

}  // namespace

const std::string* HTTPHeaders::find(std::string_view name) const {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return areEqual(entry.first, name); });
  return found == entries_.end() ? nullptr : &found->second;
}

void HTTPHeaders::set(std::string name, std::string value) {
  for (Entry& entry : entries_) {
    if (!areEqual(entry.first, name)) continue;
    entry.second = std::move(value);
    return;
  }
  add(std::move(name), std::move(value));
}

void HTTPHeaders::remove(std::string_view name) {
  std::erase_if(entries_, [&](const Entry& entry) { return areEqual(entry.first, name); });
}

bool HTTPHeaders::isValidName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return c > ' ' && c <= '~' && std::string_view("()<>@,;:\\\"/[]?={}").find(c) == std::string_view::npos;
  });
}

bool HTTPHeaders::isValidValue(std::string_view value) {
  const auto isControl = [](unsigned char c) { return (c < ' ' && c != '\t') || c == 0x7F; };
  return std::none_of(value.begin(), value.end(), isControl);
}

}  // namespace platform
