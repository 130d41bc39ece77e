#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/NSError.h"
#include "platform/foundation/Result.h"

namespace platform {

/// A file in the making: it grows under a hidden name beside the one it is to have. Removed at its end, and at the end
/// of the process, unless it was completed; what a killed process has left is removed when the same file is made again.
/// Owner: its maker. Any thread, one at a time.
class PartialFile {
 public:
  /// The error when the folder is missing or may not be written to.
  static Result<std::shared_ptr<PartialFile>, NSError> create(const std::string& finalPath);
  ~PartialFile();
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  /// Where it is now.
  const std::string& path() const { return path_; }
  /// Gives it its name, in the place of a file that has it. On failure it is removed.
  std::optional<NSError> complete();
  void remove();

 private:
  PartialFile(std::string path, std::string finalPath);

  const std::string path_;
  const std::string finalPath_;
  bool isThere_ = true;
};

}  // namespace platform
