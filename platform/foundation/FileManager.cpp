#include "platform/foundation/FileManager.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/foundation/ApplicationFolder.h"

namespace platform {

namespace {

namespace fs = std::filesystem;

std::optional<NSError> refusal(const URL& url) {
  if (url.isFileURL()) return std::nullopt;
  return NSError(NSCocoaErrorDomain, NSFileWriteUnsupportedSchemeError,
                 url.absoluteString() + " is no address of a file");
}

std::optional<NSError> errorOf(const std::error_code& error, const std::string& path) {
  if (!error) return std::nullopt;
  return NSError::fileError(error.value(), path);
}

/// Zero, or what `errno` said.
int writeWhole(const std::string& path, std::string_view contents) {
  std::FILE* const file = std::fopen(path.c_str(), "wbe");
  if (!file) return errno;
  errno = 0;
  const bool isWritten = std::fwrite(contents.data(), 1, contents.size(), file) == contents.size();
  const int reason = isWritten ? 0 : errno;
  if (std::fclose(file) != 0 && reason == 0) return errno;
  return isWritten || reason != 0 ? reason : EIO;
}

}  // namespace

FileManager& FileManager::defaultManager() {
  static FileManager* const only = new FileManager;
  return *only;
}

fs::path FileManager::documentDirectory() const {
  {
    const std::lock_guard lock(mutex_);
    if (!chosenDocuments_.empty()) return chosenDocuments_;
  }
  if (const char* const named = std::getenv("PLATFORM_DOCUMENTS_DIRECTORY"); named && *named) return named;
  return applicationFolder() / "Documents";
}

void FileManager::setDocumentDirectory(fs::path directory) {
  const std::lock_guard lock(mutex_);
  chosenDocuments_ = std::move(directory);
}

std::vector<URL> FileManager::urlsForDirectory(SearchPathDirectory, SearchPathDomain) const {
  const fs::path directory = documentDirectory();
  std::error_code error;
  fs::create_directories(directory, error);
  return {URL::fileURL(directory.string())};
}

bool FileManager::fileExistsAtPath(std::string_view path) const {
  std::error_code error;
  return fs::exists(fs::path(path), error);
}

std::optional<NSError> FileManager::removeItemAtURL(const URL& url) const {
  if (auto refused = refusal(url)) return refused;
  const std::string path = url.path();
  std::error_code error;
  if (fs::remove_all(path, error) == 0 && !error) return NSError::fileError(ENOENT, path);
  return errorOf(error, path);
}

std::optional<NSError> FileManager::createDirectoryAtURL(const URL& url) const {
  if (auto refused = refusal(url)) return refused;
  const std::string path = url.path();
  std::error_code error;
  fs::create_directories(path, error);
  if (!error && !fs::is_directory(path, error)) return NSError::fileError(EEXIST, path);
  return errorOf(error, path);
}

std::optional<NSError> FileManager::writeContents(std::string_view contents, const URL& url) const {
  static std::atomic<unsigned> counter{0};
  if (auto refused = refusal(url)) return refused;
  const std::string path = url.path();
  const std::string fresh = path + ".new-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1));
  int reason = writeWhole(fresh, contents);
  if (reason == 0 && std::rename(fresh.c_str(), path.c_str()) != 0) reason = errno;
  if (reason == 0) return std::nullopt;
  std::remove(fresh.c_str());
  return NSError::fileError(reason, path);
}

std::optional<Data> FileManager::contentsAtPath(std::string_view path, std::size_t mostBytes) const {
  std::error_code error;
  const fs::path file(path);
  if (!fs::is_regular_file(file, error)) return std::nullopt;
  const std::uintmax_t size = fs::file_size(file, error);
  if (error || size > mostBytes) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  Data contents(static_cast<std::size_t>(size), '\0');
  stream.read(contents.data(), static_cast<std::streamsize>(contents.size()));
  if (!stream) return std::nullopt;
  return contents;
}

std::vector<std::string> NSSearchPathForDirectoriesInDomains(FileManager::SearchPathDirectory directory,
                                                             FileManager::SearchPathDomain domain, bool expandTilde) {
  std::vector<std::string> paths;
  for (const URL& url : FileManager::defaultManager().urlsForDirectory(directory, domain)) {
    std::string path = url.path();
    const char* const home = std::getenv("HOME");
    if (!expandTilde && home && *home && path.starts_with(std::string(home) + "/")) {
      path.replace(0, std::string_view(home).size(), "~");
    }
    paths.push_back(std::move(path));
  }
  return paths;
}

}  // namespace platform
