#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/foundation/JSONValue.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/runtime/Object.h"

namespace platform {

class AVAssetWriter;

using AVMediaType = std::string;
inline constexpr const char* AVMediaTypeVideo = "vide";

/// Settings by key: a text or a number each.
using AVOutputSettings = std::map<std::string, JSONValue>;
inline constexpr const char* AVVideoCodecKey = "AVVideoCodecKey";
inline constexpr const char* AVVideoWidthKey = "AVVideoWidthKey";
inline constexpr const char* AVVideoHeightKey = "AVVideoHeightKey";
inline constexpr const char* AVVideoCodecTypeH264 = "avc1";

/// What a writer takes pictures through. Pictures of another size than the settings' are scaled to fit, centred on
/// black.
/// Owner:   its maker and the writer it was added to. Once that writer is gone it takes nothing any more.
/// Thread:  any; nothing here waits for the encoder.
/// Units:   width and height in pixels of the file, from 2 to 16,384, parts of a pixel left out. The video is made of
///          blocks of two by two pixels: an odd size is made even with a row or a column of black at its end.
class AVAssetWriterInput : public Object<AVAssetWriterInput, NSObject> {
 public:
  AVAssetWriterInput(AVMediaType mediaType, AVOutputSettings settings);
  ~AVAssetWriterInput() override;

  const AVMediaType& mediaType() const { return mediaType_; }
  const AVOutputSettings& outputSettings() const { return settings_; }

  /// In real time, when the encoder is behind, a new picture takes the place of the last one that still waits, so that
  /// the input is ready as long as the writer writes. Otherwise it is not ready until the encoder has caught up. Before
  /// writing starts.
  void setExpectsMediaDataInRealTime(bool expects);
  bool expectsMediaDataInRealTime() const;
  /// False before the writer writes, when it failed, and after `markAsFinished`.
  bool isReadyForMoreMediaData() const;
  /// Shared, not copied. False when it was not taken: not ready, no picture in it, before the start of the session, not
  /// later than the one before, or the writer failed (see `AVAssetWriter::error`). The first picture is shown from the
  /// start of the session.
  bool appendSampleBuffer(const CMSampleBufferRef& buffer);
  /// Nothing more comes. Calls after the first do nothing.
  void markAsFinished();

 private:
  friend class AVAssetWriter;
  struct Link;

  const AVMediaType mediaType_;
  const AVOutputSettings settings_;
  const std::shared_ptr<Link> link_;
};

}  // namespace platform
