#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "service/base/TeachingLimits.h"
#include "service/http/BodyReceiver.h"
#include "service/store/Database.h"

namespace service {

/// Where one file is to be sent, and the key under which it is kept then.
struct UploadAddress {
  std::string token;
  std::string key;
};

/// The videos and pictures that applications upload: files of the folder "media", their owners in the database.
/// Every name is made here, so nothing that a client says becomes part of a path. Any thread. Throws RequestError for
/// what a client may not do, DatabaseError when the disk fails.
class MediaFolder {
 public:
  /// Opens the data folder, and removes what an earlier process left half received. Throws LoadError.
  MediaFolder(const std::filesystem::path& dataFolder, TeachingLimits limits);

  /// An address that takes one file, once, for a while. `extension` has 1 to 8 letters and digits; `now` in
  /// milliseconds since 1970.
  UploadAddress open(std::string_view owner, std::string_view userId, std::string_view viewName,
                     const std::string& extension, std::int64_t now);

  /// Takes the address of a file that is about to come; `length` is what its sender announced, if anything. From here
  /// on the address works no more, whatever becomes of the file.
  std::unique_ptr<BodyReceiver> receive(std::string_view token, std::optional<std::int64_t> length, std::int64_t now);

  /// Removes files by their keys, those of this owner and user only.
  void remove(std::string_view owner, std::string_view userId, const std::vector<std::string>& keys);
  /// Removes the files that no demonstration has named for as long as one may take: what sent them did not get further,
  /// and they would fill the room of their key for ever.
  void removeUnnamed(std::int64_t now);

 private:
  class Upload;
  void complete(const std::string& key, std::int64_t bytes);
  void forget(const std::string& key) noexcept;
  void erase(const std::string& key);  // under the mutex
  std::filesystem::path partOf(const std::string& key) const { return folder_ / (key + ".part"); }

  const std::filesystem::path folder_;
  const TeachingLimits limits_;
  std::mutex mutex_;
  Database database_;
};

}  // namespace service
