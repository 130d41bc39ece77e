#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/Data.h"
#include "platform/runtime/Ref.h"

namespace platform {

/// Small values under keys that outlive the process.
/// Reads come from memory, which is filled once when the store is made. Writes change memory at once and reach the disk
/// soon after on a queue of the store's own; `synchronize` waits for that. A value on disk is replaced as a whole: a
/// kill at any moment leaves the old value or the new one. Among several processes the last writer wins.
/// Thread:  any.
/// Failure: each is told in one line on standard error and by `takeReports`, and concerns its own key only.
///          A file that was read and holds no value is moved aside. A file that could not be read (no permission, no
///          descriptor left, a folder of its name) may hold a value: it is left alone for as long as this store lives.
///          What is set under its key is kept in memory and not written, nor is the file removed; the next store reads
///          it again. The same holds for every file of a folder that could not be listed, and for a damaged file that
///          could not be moved aside, until it can be. A write that fails is tried again with the next change.
class UserDefaults {
 public:
  /// The application's own store. In the folder of `setStandardDirectory`, else in that of the environment variable
  /// PLATFORM_DEFAULTS_DIRECTORY, else in the user's data folder under the bundle's identifier.
  static UserDefaults& standard();
  /// Where `standard` keeps its files; what was loaded before is written and let go. Main thread, before anything else
  /// uses `standard` (the assistant reads it on the pool as soon as a session starts).
  static void setStandardDirectory(std::filesystem::path directory);

  explicit UserDefaults(std::filesystem::path directory);
  ~UserDefaults();
  UserDefaults(const UserDefaults&) = delete;
  UserDefaults& operator=(const UserDefaults&) = delete;

  /// None when nothing is stored under the key, or a value of another type.
  std::optional<Data> data(std::string_view key) const;
  std::optional<std::string> string(std::string_view key) const;
  std::optional<std::int64_t> integer(std::string_view key) const;
  std::optional<bool> boolean(std::string_view key) const;

  /// Stores bytes.
  void set(Data value, std::string_view key);
  void setString(std::string value, std::string_view key);
  void setInteger(std::int64_t value, std::string_view key);
  void setBoolean(bool value, std::string_view key);
  void removeObject(std::string_view key);

  /// Waits until everything set so far is on disk; false when some of it could not be written. Not for the main thread
  /// of an application, which would wait for the disk.
  bool synchronize();

  /// What went wrong since this was asked last, a sentence each, oldest first; of very many the first hundred.
  std::vector<std::string> takeReports();

 private:
  struct Store;
  std::shared_ptr<Store> store_;
};

}  // namespace platform
