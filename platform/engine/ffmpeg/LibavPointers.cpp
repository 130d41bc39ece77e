#include "platform/engine/ffmpeg/LibavPointers.h"

extern "C" {
#include <libavutil/error.h>
}

namespace platform {

VideoError videoErrorOf(int result, const char* what) {
  char sentence[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(result, sentence, sizeof sentence);
  // Codes of the libraries' own are four letters, far below any that the system has.
  constexpr int largestSystemCode = 4096;
  const bool isSystem = result < 0 && result > -largestSystemCode;
  return {isSystem ? VideoError::Kind::file : VideoError::Kind::encoder, isSystem ? -result : 0,
          std::string(what) + ": " + sentence};
}

}  // namespace platform
