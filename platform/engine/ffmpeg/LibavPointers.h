#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

#include <memory>

#include "platform/engine/VideoEncoder.h"

namespace platform {

/// Frees what the libraries made.
struct LibavDeleter {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};

template <class T>
using LibavPointer = std::unique_ptr<T, LibavDeleter>;

/// What a negative result of the libraries means; `what` says what was tried.
VideoError videoErrorOf(int result, const char* what);

}  // namespace platform
