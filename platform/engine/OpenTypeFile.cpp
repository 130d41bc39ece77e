#include "platform/engine/OpenTypeFile.h"

#include <iterator>

namespace platform {

namespace {

constexpr std::size_t headerSize = 12;
constexpr std::size_t recordSize = 16;
constexpr std::uint32_t postScriptNameId = 6;

void append(std::string& to, std::size_t number, int size) {
  for (int shift = (size - 1) * 8; shift >= 0; shift -= 8) to.push_back(static_cast<char>(number >> shift & 255));
}

/// A table of names in English for Windows: family, style, full name, PostScript name.
std::string tableOfNames(const std::string& name) {
  struct Name {
    std::size_t id;
    std::string text;
  };
  const Name names[] = {{1, name}, {2, "Regular"}, {4, name}, {postScriptNameId, name}};
  std::string table, letters;
  append(table, 0, 2);
  append(table, std::size(names), 2);
  append(table, 6 + std::size(names) * 12, 2);
  for (const Name& entry : names) {
    for (const std::size_t number :
         {std::size_t{3}, std::size_t{1}, std::size_t{0x409}, entry.id, entry.text.size() * 2, letters.size()}) {
      append(table, number, 2);
    }
    for (const char letter : entry.text) append(letters, static_cast<unsigned char>(letter), 2);
  }
  return table + letters;
}

}  // namespace

std::uint32_t OpenTypeFile::number(std::size_t offset, int size) const {
  std::uint32_t value = 0;
  for (int i = 0; i < size; ++i) {
    const std::size_t at = offset + static_cast<std::size_t>(i);
    value = value << 8 | (at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0u);
  }
  return value;
}

std::optional<std::size_t> OpenTypeFile::record(std::string_view tag) const {
  const std::size_t count = number(4, 2);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t record = headerSize + i * recordSize;
    if (record + recordSize > bytes_.size()) return std::nullopt;
    if (bytes_.substr(record, 4) == tag) return record;
  }
  return std::nullopt;
}

std::optional<std::string_view> OpenTypeFile::table(std::string_view tag) const {
  const std::optional<std::size_t> found = record(tag);
  if (!found) return std::nullopt;
  const std::size_t offset = number(*found + 8, 4), length = number(*found + 12, 4);
  if (offset > bytes_.size() || length > bytes_.size() - offset) return std::nullopt;
  return bytes_.substr(offset, length);
}

bool OpenTypeFile::isFont(std::string_view bytes) {
  const OpenTypeFile file(bytes);
  const std::uint32_t version = file.number(0, 4);
  if (version != 0x00010000 && version != 0x4F54544F /* OTTO */ && version != 0x74727565 /* true */) return false;
  for (const char* tag : {"cmap", "head", "hhea", "hmtx", "maxp", "name"}) {
    if (!file.table(tag)) return false;
  }
  return file.table("glyf") || file.table("CFF ") || file.table("CFF2");
}

std::optional<std::string> OpenTypeFile::postScriptName(std::string_view bytes) {
  const std::optional<std::string_view> names = OpenTypeFile(bytes).table("name");
  return names ? postScriptNameInTable(*names) : std::nullopt;
}

std::optional<std::string> OpenTypeFile::postScriptNameInTable(std::string_view names) {
  const OpenTypeFile table(names);
  const std::size_t count = table.number(2, 2), storage = table.number(4, 2);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t record = 6 + i * 12;
    if (record + 12 > names.size()) break;
    if (table.number(record + 6, 2) != postScriptNameId) continue;
    const bool isUtf16 = table.number(record, 2) != 1;  // the Macintosh platform's names have one byte a letter
    const std::size_t length = table.number(record + 8, 2), start = storage + table.number(record + 10, 2);
    if (start > names.size() || length > names.size() - start) continue;
    std::string name;
    bool isPlain = true;
    for (std::size_t at = 0; at + (isUtf16 ? 2 : 1) <= length; at += isUtf16 ? 2 : 1) {
      const std::uint32_t letter = table.number(start + at, isUtf16 ? 2 : 1);
      isPlain = isPlain && letter > 32 && letter < 127;
      name.push_back(static_cast<char>(letter & 127));
    }
    if (isPlain && !name.empty()) return name;
  }
  return std::nullopt;
}

std::string OpenTypeFile::renamed(std::string_view bytes, const std::string& name) {
  std::string file(bytes);
  const std::optional<std::size_t> record = OpenTypeFile(bytes).record("name");
  if (!record) return file;
  file.resize((file.size() + 3) / 4 * 4);
  const std::string table = tableOfNames(name);
  std::string place;
  append(place, file.size(), 4);
  append(place, table.size(), 4);
  file.replace(*record + 8, place.size(), place);
  return file + table;
}

}  // namespace platform
