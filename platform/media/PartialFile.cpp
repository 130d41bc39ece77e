#include "platform/media/PartialFile.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <set>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace {

namespace fs = std::filesystem;

/// The files of this process that are not complete.
class OpenFiles {
 public:
  static OpenFiles& shared() {
    static OpenFiles* const only = new OpenFiles;  // asked at exit, when nothing else may be left
    return *only;
  }
  void add(const std::string& path) {
    const std::lock_guard lock(mutex_);
    paths_.insert(path);
  }
  void forget(const std::string& path) {
    const std::lock_guard lock(mutex_);
    paths_.erase(path);
  }

 private:
  OpenFiles() {
    std::atexit([] { shared().removeAll(); });
  }
  void removeAll() {
    const std::lock_guard lock(mutex_);
    for (const std::string& path : paths_) ::unlink(path.c_str());
    paths_.clear();
  }
  std::mutex mutex_;
  std::set<std::string> paths_;
};

std::string markedName(const fs::path& finalPath) { return "." + finalPath.filename().string() + ".part-"; }

/// Whether the process whose number follows in the name is gone.
bool isAbandoned(std::string_view number) {
  int process = 0;
  if (std::from_chars(number.data(), number.data() + number.size(), process).ec != std::errc{} || process <= 0) {
    return false;
  }
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

void removeAbandoned(const fs::path& finalPath) {
  const std::string mark = markedName(finalPath);
  std::error_code error;
  for (fs::directory_iterator entry(finalPath.parent_path(), error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with(mark) && isAbandoned(std::string_view(name).substr(mark.size()))) {
      ::unlink(entry->path().c_str());
    }
  }
}

}  // namespace

Result<std::shared_ptr<PartialFile>, NSError> PartialFile::create(const std::string& finalPath) {
  static std::atomic<unsigned> counter{0};
  const fs::path target(finalPath);
  if (!target.has_filename()) return NSError::fileError(EISDIR, finalPath);
  removeAbandoned(target);
  const std::string name = markedName(target) + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1));
  const std::string path = (target.parent_path() / name).string();
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (file < 0) return NSError::fileError(errno, finalPath);
  ::close(file);
  OpenFiles::shared().add(path);
  return std::shared_ptr<PartialFile>(new PartialFile(path, finalPath));
}

PartialFile::PartialFile(std::string path, std::string finalPath)
    : path_(std::move(path)), finalPath_(std::move(finalPath)) {}

PartialFile::~PartialFile() { remove(); }

std::optional<NSError> PartialFile::complete() {
  if (!isThere_) return NSError::fileError(ENOENT, finalPath_);
  if (std::rename(path_.c_str(), finalPath_.c_str()) != 0) {
    const int reason = errno;
    remove();
    return NSError::fileError(reason, finalPath_);
  }
  isThere_ = false;
  OpenFiles::shared().forget(path_);
  return std::nullopt;
}

void PartialFile::remove() {
  if (!isThere_) return;
  isThere_ = false;
  ::unlink(path_.c_str());
  OpenFiles::shared().forget(path_);
}

}  // namespace platform
