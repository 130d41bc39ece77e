#pragma once

#include <cstdint>

namespace platform {

inline constexpr const char* RPRecordingErrorDomain = "RPRecordingErrorDomain";

/// Why a recording does not begin, or ended.
enum RPRecordingErrorCode : std::int64_t {
  RPRecordingErrorUnknown = -5800,
  RPRecordingErrorUserDeclined = -5801,
  RPRecordingErrorDisabled = -5802,
  RPRecordingErrorFailedToStart = -5803,
  RPRecordingErrorFailed = -5804,
  RPRecordingErrorInsufficientStorage = -5805,
  RPRecordingErrorInterrupted = -5806,
  RPRecordingErrorContentResize = -5807,
  RPRecordingErrorAttemptToStopNonRecording = -5829,
  RPRecordingErrorAttemptToStartInRecordingState = -5830,
};

}  // namespace platform
