#include "platform/foundation/UserDefaults.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/ApplicationFolder.h"
#include "platform/foundation/UserDefaultsFile.h"

namespace platform {

namespace {

using Type = UserDefaultsFile::Type;
using Value = UserDefaultsFile::Value;
namespace fs = std::filesystem;

fs::path usualDirectory() {
  if (const char* const named = std::getenv("PLATFORM_DEFAULTS_DIRECTORY"); named && *named) return named;
  return applicationFolder() / "Preferences";
}

}  // namespace

/// What is in memory and what has still to be written. The two locks are taken in the order disk, memory.
struct UserDefaults::Store : std::enable_shared_from_this<Store> {
  explicit Store(fs::path folder) : directory(std::move(folder)) { load(); }

  /// Key and value together. More is neither stored nor, from whoever it came, read.
  static constexpr std::size_t mostBytes = std::size_t{64} << 20;
  static constexpr std::size_t mostFileBytes = mostBytes + 4096;  // with the line before them

  void report(const fs::path& file, const std::string& what) {
    constexpr std::size_t mostReports = 100;
    std::string line = "user defaults: " + file.string() + ": " + what;
    std::fprintf(stderr, "%s\n", line.c_str());
    const std::lock_guard lock(telling);
    if (reports.size() < mostReports) reports.push_back(std::move(line));
  }

  void load() {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) report(directory, "the folder could not be made: " + error.message());
    std::vector<fs::path> files;
    for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
      files.push_back(entry->path());
    }
    if (error) {
      isFolderUnknown = true;
      report(directory, "the folder could not be read and its files are left alone: " + error.message());
    }
    for (const fs::path& file : files) {
      if (file.extension() == UserDefaultsFile::extension) {
        loadFile(file);
      } else if (UserDefaultsFile::isAbandoned(file)) {
        fs::remove(file, error);
      }
    }
  }

  void loadFile(const fs::path& file) {
    const UserDefaultsFile::Content content = UserDefaultsFile::read(file, mostFileBytes);
    if (!content.reason.empty()) {
      unread.insert(file.filename());
      return report(file, "the file could not be read and is left alone: " + content.reason);
    }
    if (!content.bytes) return;
    std::optional<UserDefaultsFile::Entry> entry = UserDefaultsFile::decode(*content.bytes);
    if (entry && UserDefaultsFile::nameFor(entry->key) == file.filename()) {
      values.insert_or_assign(std::move(entry->key), std::move(entry->value));
    } else if (const std::error_code error = moveAside(file)) {
      damaged.insert(file.filename());
      report(file, "the file holds no value and could not be moved aside: " + error.message());
    } else {
      report(file, "the file holds no value and was moved aside");
    }
  }

  static std::error_code moveAside(const fs::path& file) {
    fs::path aside = file;
    aside += ".corrupt";
    std::error_code error;
    fs::rename(file, aside, error);
    return error;
  }

  /// Why the file of that name must be left as it is, or none. With the lock of the disk.
  std::optional<std::string> reasonToKeep(const std::string& name) {
    if (unread.contains(name)) return "the file could not be read before and is left alone";
    if (damaged.contains(name)) {
      if (const std::error_code error = moveAside(directory / name);
          error && error != std::errc::no_such_file_or_directory) {
        return "the file holds no value and could not be moved aside: " + error.message();
      }
      damaged.erase(name);
    }
    if (!isFolderUnknown || written.contains(name)) return std::nullopt;
    std::error_code error;
    const fs::file_status status = fs::symlink_status(directory / name, error);
    if (status.type() == fs::file_type::not_found) return std::nullopt;
    return "the folder could not be read before and its files are left alone";
  }

  std::optional<std::string> put(const std::string& key, const std::optional<Value>& value, const std::string& name) {
    if (auto reason = reasonToKeep(name)) return reason;
    auto failure = value ? UserDefaultsFile::write(directory, name, UserDefaultsFile::encode(key, *value))
                         : UserDefaultsFile::remove(directory, name);
    if (isFolderUnknown && !failure) written.insert(name);
    return failure;
  }

  void change(std::string_view key, std::optional<Value> value) {
    if (value && key.size() + value->bytes.size() > mostBytes) {
      return report(directory, "a value of " + std::to_string(value->bytes.size()) + " bytes is too large to be kept");
    }
    const std::lock_guard lock(memory);
    if (value) {
      values.insert_or_assign(std::string(key), *value);
    } else if (const auto found = values.find(key); found != values.end()) {
      values.erase(found);
    } else {
      return;
    }
    unwritten.insert_or_assign(std::string(key), std::move(value));
    if (!std::exchange(isWriteScheduled, true)) queue.async([self = shared_from_this()] { self->write(); });
  }

  bool write() {
    const std::lock_guard writing(disk);
    if (isClosed) return true;
    std::map<std::string, std::optional<Value>> changes;
    {
      const std::lock_guard lock(memory);
      changes.swap(unwritten);
      isWriteScheduled = false;
    }
    bool isComplete = true;
    for (auto& [key, value] : changes) {
      const std::string name = UserDefaultsFile::nameFor(key);
      const std::optional<std::string> failure = put(key, value, name);
      if (!failure) {
        told.erase(name);
        continue;
      }
      isComplete = false;
      if (std::exchange(told[name], *failure) != *failure) report(directory / name, *failure);
      const std::lock_guard lock(memory);
      unwritten.emplace(key, std::move(value));  // tried again with the next change, unless that is a newer one
    }
    return isComplete;
  }

  /// Writes what can be written for the last time; a write that still waits in the queue leaves the disk alone.
  void close() {
    write();
    const std::lock_guard writing(disk);
    isClosed = true;
  }

  std::optional<Value> find(std::string_view key, Type type) const {
    const std::lock_guard lock(memory);
    const auto found = values.find(key);
    if (found == values.end() || found->second.type != type) return std::nullopt;
    return found->second;
  }

  const fs::path directory;
  const DispatchQueue queue = DispatchQueue::serial("user defaults");
  std::mutex disk;
  mutable std::mutex memory;
  std::map<std::string, Value, std::less<>> values;
  std::map<std::string, std::optional<Value>> unwritten;
  bool isWriteScheduled = false;

  // Changed while loading and with the lock of the disk.
  std::set<std::string> unread;
  std::set<std::string> damaged;
  std::set<std::string> written;
  std::map<std::string, std::string> told;  // the last failure of a file, which is told once
  bool isFolderUnknown = false;
  bool isClosed = false;

  std::mutex telling;
  std::vector<std::string> reports;
};

namespace {

std::mutex standardMutex;
UserDefaults* standardDefaults = nullptr;  // never destroyed: it may be used until the very end

/// The application's store, made in that folder when there is none yet. What was set last is written at exit.
UserDefaults& standardIn(const std::function<fs::path()>& directory) {
  const std::lock_guard lock(standardMutex);
  if (!standardDefaults) {
    standardDefaults = new UserDefaults(directory());
    std::atexit([] { standardDefaults->synchronize(); });
  }
  return *standardDefaults;
}

}  // namespace

UserDefaults& UserDefaults::standard() { return standardIn(&usualDirectory); }

void UserDefaults::setStandardDirectory(fs::path directory) {
  assertMainThread("UserDefaults::setStandardDirectory");
  UserDefaults& defaults = standardIn([&] { return directory; });
  defaults.store_->close();
  defaults.store_ = std::make_shared<Store>(std::move(directory));
}

UserDefaults::UserDefaults(fs::path directory) : store_(std::make_shared<Store>(std::move(directory))) {}

UserDefaults::~UserDefaults() { store_->close(); }

std::optional<Data> UserDefaults::data(std::string_view key) const {
  std::optional<Value> value = store_->find(key, Type::data);
  return value ? std::optional(std::move(value->bytes)) : std::nullopt;
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
  std::optional<Value> value = store_->find(key, Type::string);
  return value ? std::optional(std::move(value->bytes)) : std::nullopt;
}

std::optional<std::int64_t> UserDefaults::integer(std::string_view key) const {
  const std::optional<Value> value = store_->find(key, Type::integer);
  return value ? std::optional<std::int64_t>(std::strtoll(value->bytes.c_str(), nullptr, 10)) : std::nullopt;
}

std::optional<bool> UserDefaults::boolean(std::string_view key) const {
  const std::optional<Value> value = store_->find(key, Type::boolean);
  return value ? std::optional(value->bytes == "1") : std::nullopt;
}

void UserDefaults::set(Data value, std::string_view key) { store_->change(key, Value{Type::data, std::move(value)}); }

void UserDefaults::setString(std::string value, std::string_view key) {
  store_->change(key, Value{Type::string, std::move(value)});
}

void UserDefaults::setInteger(std::int64_t value, std::string_view key) {
  store_->change(key, Value{Type::integer, std::to_string(value)});
}

void UserDefaults::setBoolean(bool value, std::string_view key) {
  store_->change(key, Value{Type::boolean, value ? "1" : "0"});
}

void UserDefaults::removeObject(std::string_view key) { store_->change(key, std::nullopt); }

bool UserDefaults::synchronize() { return store_->write(); }

std::vector<std::string> UserDefaults::takeReports() {
  const std::lock_guard lock(store_->telling);
  return std::exchange(store_->reports, {});
}

}  // namespace platform
