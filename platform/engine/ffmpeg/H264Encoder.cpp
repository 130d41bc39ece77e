#include "platform/engine/ffmpeg/H264Encoder.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace platform {

namespace {

// Chosen by measuring; docs/decisions.md has the figures.
constexpr const char* preset = "ultrafast";
constexpr const char* quality = "20";

}  // namespace

std::optional<VideoError> H264Encoder::open(int width, int height) {
  const AVCodec* const codec = avcodec_find_encoder_by_name("libx264");
  if (!codec) return VideoError{VideoError::Kind::encoder, 0, "there is no encoder for H.264"};
  context_.reset(avcodec_alloc_context3(codec));
  packet_.reset(av_packet_alloc());
  if (!context_ || !packet_) return videoErrorOf(AVERROR(ENOMEM), "the encoder");
  AVCodecContext& context = *context_;
  context.width = width;
  context.height = height;
  context.pix_fmt = AV_PIX_FMT_YUV420P;
  context.time_base = {1, VideoEncoder::ticksPerSecond};
  context.framerate = {60, 1};
  // Drawn in sRGB; light and colour parted as for high definition, whatever the size.
  context.colorspace = AVCOL_SPC_BT709;
  context.color_primaries = AVCOL_PRI_BT709;
  context.color_trc = AVCOL_TRC_IEC61966_2_1;
  context.color_range = AVCOL_RANGE_MPEG;
  context.chroma_sample_location = AVCHROMA_LOC_CENTER;
  context.sample_aspect_ratio = {1, 1};
  context.max_b_frames = 0;
  context.gop_size = 600;    // ten busy seconds
  context.thread_count = 1;  // least work altogether, and the same bytes every time
  context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  av_opt_set(context.priv_data, "preset", preset, 0);
  av_opt_set(context.priv_data, "tune", "zerolatency", 0);  // nothing is held back: memory stays small
  av_opt_set(context.priv_data, "crf", quality, 0);
  context.log_level_offset = AV_LOG_TRACE;  // it has much to tell, and nobody to tell it to
  const int result = avcodec_open2(&context, codec, nullptr);
  if (result < 0) return videoErrorOf(result, "the encoder did not open");
  return std::nullopt;
}

std::optional<VideoError> H264Encoder::encode(AVFrame& frame, std::int64_t begin, const Sink& sink) {
  frame.pts = begin;
  return send(&frame, sink);
}

std::optional<VideoError> H264Encoder::flush(const Sink& sink) { return send(nullptr, sink); }

std::optional<VideoError> H264Encoder::send(const AVFrame* frame, const Sink& sink) {
  int result = avcodec_send_frame(context_.get(), frame);
  if (result < 0) return videoErrorOf(result, "a picture could not be encoded");
  while ((result = avcodec_receive_packet(context_.get(), packet_.get())) >= 0) {
    const std::optional<VideoError> error = sink(*packet_);
    av_packet_unref(packet_.get());
    if (error) return error;
  }
  if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return std::nullopt;
  return videoErrorOf(result, "a picture could not be encoded");
}

}  // namespace platform
