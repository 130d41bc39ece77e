#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/Data.h"

namespace platform {

/// The file of one value of the user defaults: its form, its name, and how it is replaced without ever being half
/// written. Any thread.
struct UserDefaultsFile {
  enum class Type : char { data = 'd', string = 's', integer = 'i', boolean = 'b' };
  struct Value {
    Type type = Type::data;
    Data bytes;
  };
  struct Entry {
    std::string key;
    Value value;
  };

  static constexpr std::string_view extension = ".value";

  /// Where a key lives in its folder: readable, safe on every file system, different for different keys.
  static std::string nameFor(std::string_view key);
  /// The bytes of the file: one line with lengths and a checksum, then key and value.
  static Data encode(std::string_view key, const Value& value);
  /// None when a byte is missing, changed or too many.
  static std::optional<Entry> decode(std::string_view bytes);

  /// The bytes of a file, or why they could not be had. No bytes and no reason: there is no such file (any more).
  struct Content {
    std::optional<Data> bytes;
    std::string reason;
  };
  /// Opens a file for reading, as `open` does.
  using Opener = int (*)(const char* file);
  static int openFile(const char* file);
  /// Reads a plain file, of one that is too long to be a value no more than `mostBytes` and one more.
  static Content read(const std::filesystem::path& file, std::size_t mostBytes, Opener open = &openFile);

  /// Replaces the file so that a reader, now or after a crash, finds the old bytes or the new ones; returns when they
  /// are on the disk. On failure the old file is as it was and the text says why.
  static std::optional<std::string> write(const std::filesystem::path& directory, const std::string& name,
                                          std::string_view bytes);
  static std::optional<std::string> remove(const std::filesystem::path& directory, const std::string& name);
  /// True for what a process that was killed in the middle of `write` has left behind.
  static bool isAbandoned(const std::filesystem::path& file);
};

}  // namespace platform
