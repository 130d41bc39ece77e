#include "platform/foundation/UserDefaults.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/UserDefaultsFile.h"

namespace platform {

namespace {

using Type = UserDefaultsFile::Type;
using Value = UserDefaultsFile::Value;
namespace fs = std::filesystem;

void report(const fs::path& file, const std::string& what) {
  std::fprintf(stderr, "user defaults: %s: %s\n", file.string().c_str(), what.c_str());
}

fs::path usualDirectory() {
  if (const char* const named = std::getenv("PLATFORM_DEFAULTS_DIRECTORY"); named && *named) return named;
  fs::path base;
  if (const char* const data = std::getenv("XDG_DATA_HOME"); data && *data) {
    base = data;
  } else if (const char* const home = std::getenv("HOME"); home && *home) {
    base = fs::path(home) / ".local" / "share";
  } else {
    std::error_code error;
    base = fs::temp_directory_path(error);
  }
  std::string application = Bundle::main().bundleIdentifier().value_or("application");
  std::replace(application.begin(), application.end(), '/', '-');
  if (application.starts_with('.')) application.insert(0, "-");
  return base / application / "Preferences";
}

}  // namespace

/// What is in memory and what has still to be written. The two locks are taken in the order disk, memory.
struct UserDefaults::Store : std::enable_shared_from_this<Store> {
  explicit Store(fs::path folder) : directory(std::move(folder)) { load(); }

  void load() {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) report(directory, "the folder could not be made: " + error.message());
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, error)) files.push_back(entry.path());
    for (const fs::path& file : files) {
      if (file.extension() == UserDefaultsFile::extension) {
        loadFile(file);
      } else if (UserDefaultsFile::isAbandoned(file)) {
        fs::remove(file, error);
      }
    }
  }

  /// Key and value together. More is neither stored nor, from whoever it came, read.
  static constexpr std::uintmax_t mostBytes = std::uintmax_t{64} << 20;
  static constexpr std::uintmax_t mostFileBytes = mostBytes + 4096;  // with the line before them

  static Data bytesOf(const fs::path& file) {
    std::error_code error;
    if (const auto size = fs::file_size(file, error); error || size > mostFileBytes) return {};
    std::ifstream stream(file, std::ios::binary);
    return Data(std::istreambuf_iterator<char>(stream), {});
  }

  void loadFile(const fs::path& file) {
    std::optional<UserDefaultsFile::Entry> entry = UserDefaultsFile::decode(bytesOf(file));
    if (entry && UserDefaultsFile::nameFor(entry->key) == file.filename()) {
      values.insert_or_assign(std::move(entry->key), std::move(entry->value));
      return;
    }
    fs::path aside = file;
    aside += ".corrupt";
    std::error_code error;
    fs::rename(file, aside, error);
    report(file, "the file holds no value and was moved aside");
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
    std::map<std::string, std::optional<Value>> changes;
    {
      const std::lock_guard lock(memory);
      changes.swap(unwritten);
      isWriteScheduled = false;
    }
    bool isComplete = true;
    for (auto& [key, value] : changes) {
      const std::string name = UserDefaultsFile::nameFor(key);
      const std::optional<std::string> failure =
          value ? UserDefaultsFile::write(directory, name, UserDefaultsFile::encode(key, *value))
                : UserDefaultsFile::remove(directory, name);
      if (!failure) continue;
      isComplete = false;
      report(directory / name, *failure);
      const std::lock_guard lock(memory);
      unwritten.emplace(key, std::move(value));  // tried again with the next change, unless that is a newer one
    }
    return isComplete;
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
  defaults.synchronize();
  defaults.store_ = std::make_shared<Store>(std::move(directory));
}

UserDefaults::UserDefaults(fs::path directory) : store_(std::make_shared<Store>(std::move(directory))) {}

UserDefaults::~UserDefaults() { synchronize(); }

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

}  // namespace platform
