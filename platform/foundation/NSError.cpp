#include "platform/foundation/NSError.h"

#include <cerrno>
#include <cstring>

namespace platform {

namespace {

NSFileError codeOf(int reason) {
  switch (reason) {
    case ENOENT:
    case ENOTDIR:
      return NSFileNoSuchFileError;
    case EACCES:
    case EPERM:
      return NSFileWriteNoPermissionError;
    case EROFS:
      return NSFileWriteVolumeReadOnlyError;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return NSFileWriteOutOfSpaceError;
    case EEXIST:
      return NSFileWriteFileExistsError;
    case ENAMETOOLONG:
    case EINVAL:
      return NSFileWriteInvalidFileNameError;
    default:
      return NSFileWriteUnknownError;
  }
}

}  // namespace

NSError NSError::fileError(int reason, const std::string& path) {
  return {NSCocoaErrorDomain, codeOf(reason), path + ": " + std::strerror(reason)};
}

std::string NSError::description() const {
  return domain_ + " " + std::to_string(code_) + ": " + localizedDescription_;
}

}  // namespace platform
