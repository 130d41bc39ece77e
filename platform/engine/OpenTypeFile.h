#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Reads the directory and the names of an OpenType or TrueType font. Every offset in the file is checked before it is
/// followed. Borrows the bytes. Any thread.
class OpenTypeFile {
 public:
  /// True when the bytes are one font whose directory is sound and which has the tables that drawing letters needs.
  static bool isFont(std::string_view bytes);
  /// Name 6, in plain ASCII as the format demands; none when there is none.
  static std::optional<std::string> postScriptName(std::string_view bytes);
  /// The same from the bytes of the table of names alone.
  static std::optional<std::string> postScriptNameInTable(std::string_view names);
  /// The same font under other names: family, full and PostScript name become `name`, the style "Regular".
  static std::string renamed(std::string_view bytes, const std::string& name);

 private:
  explicit OpenTypeFile(std::string_view bytes) : bytes_(bytes) {}
  /// 0 beyond the end.
  std::uint32_t number(std::size_t offset, int size) const;
  /// Where the table's record in the directory is; none when there is none.
  std::optional<std::size_t> record(std::string_view tag) const;
  std::optional<std::string_view> table(std::string_view tag) const;

  std::string_view bytes_;
};

}  // namespace platform
