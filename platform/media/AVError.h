#pragma once

#include <cstdint>

namespace platform {

inline constexpr const char* AVFoundationErrorDomain = "AVFoundationErrorDomain";

/// Why a file of pictures and sound could not be written.
enum AVErrorCode : std::int64_t {
  AVErrorUnknown = -11800,
  AVErrorNoDataCaptured = -11806,
  AVErrorDiskFull = -11807,
  AVErrorFileFormatNotRecognized = -11828,
  AVErrorOperationNotAllowed = -11862,
  AVErrorEncodeFailed = -11883,
  AVErrorInvalidOutputSettings = -11861,
};

}  // namespace platform
