#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/URL.h"
#include "platform/runtime/Data.h"

namespace platform {

/// The files of the application.
/// Thread:  any. Every call may wait for the disk: not for the main thread of an application.
/// Failure: told by an NSError of NSCocoaErrorDomain; nothing throws. An address that is none of a file is refused
///          (NSFileWriteUnsupportedSchemeError).
class FileManager {
 public:
  enum class SearchPathDirectory { documentDirectory };
  enum class SearchPathDomain { userDomain };

  static FileManager& defaultManager();

  /// The application's own folder of documents; made when there is none yet. In the folder of `setDocumentDirectory`,
  /// else in that of the environment variable PLATFORM_DOCUMENTS_DIRECTORY, else in the user's data folder under the
  /// bundle's identifier. It is named even when it could not be made: what is done in it then fails.
  std::vector<URL> urlsForDirectory(SearchPathDirectory directory,
                                    SearchPathDomain domain = SearchPathDomain::userDomain) const;
  /// Puts the documents elsewhere; an empty path, back to where they belong.
  void setDocumentDirectory(std::filesystem::path directory);

  /// True for a file or a folder.
  bool fileExistsAtPath(std::string_view path) const;
  /// A file, or a folder with all that is in it.
  std::optional<NSError> removeItemAtURL(const URL& url) const;
  /// With the folders above it. No error when it is there.
  std::optional<NSError> createDirectoryAtURL(const URL& url) const;
  /// Replaces the file as a whole: a reader finds the old bytes or the new ones.
  std::optional<NSError> writeContents(std::string_view contents, const URL& url) const;
  /// None when there is no such file, it could not be read, or it is longer than `mostBytes`.
  std::optional<Data> contentsAtPath(std::string_view path, std::size_t mostBytes = std::size_t{256} << 20) const;

 private:
  FileManager() = default;
  std::filesystem::path documentDirectory() const;

  mutable std::mutex mutex_;
  std::filesystem::path chosenDocuments_;
};

/// The paths of `FileManager::urlsForDirectory`. Without `expandTilde` one below the user's home begins with "~".
std::vector<std::string> NSSearchPathForDirectoriesInDomains(FileManager::SearchPathDirectory directory,
                                                             FileManager::SearchPathDomain domain, bool expandTilde);

}  // namespace platform
