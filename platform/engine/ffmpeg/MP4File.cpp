#include "platform/engine/ffmpeg/MP4File.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr const char* writing = "the video could not be written";

int synchronise(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) return AVERROR(errno);
  const int result = ::fsync(file) == 0 ? 0 : AVERROR(errno);
  ::close(file);
  return result;
}

}  // namespace

MP4File::~MP4File() {
  if (!format_) return;
  if (format_->pb) avio_closep(&format_->pb);
  avformat_free_context(format_);
}

std::optional<VideoError> MP4File::open(const std::string& path, const AVCodecContext& encoder) {
  path_ = path;
  held_.reset(av_packet_alloc());
  int result = avformat_alloc_output_context2(&format_, nullptr, "mp4", nullptr);
  if (result < 0 || !held_) return videoErrorOf(held_ ? result : AVERROR(ENOMEM), writing);
  format_->flags |= AVFMT_FLAG_BITEXACT;  // neither versions nor dates
  stream_ = avformat_new_stream(format_, nullptr);
  if (!stream_) return videoErrorOf(AVERROR(ENOMEM), writing);
  stream_->time_base = encoder.time_base;
  stream_->avg_frame_rate = encoder.framerate;
  result = avcodec_parameters_from_context(stream_->codecpar, &encoder);
  if (result >= 0) result = avio_open(&format_->pb, ("file:" + path).c_str(), AVIO_FLAG_WRITE);
  // The index is written twice from here, and again at its place in front: the libraries open the file by this name.
  format_->url = av_strdup(("file:" + path).c_str());
  AVDictionary* options = nullptr;
  av_dict_set(&options, "movflags", "+faststart", 0);
  av_dict_set_int(&options, "video_track_timescale", VideoEncoder::ticksPerSecond, 0);
  if (result >= 0) result = avformat_write_header(format_, &options);
  av_dict_free(&options);
  if (result < 0) return videoErrorOf(result, writing);
  return std::nullopt;
}

std::optional<VideoError> MP4File::write(AVPacket& packet) {
  if (const auto error = writeHeld(packet.dts)) return error;
  av_packet_move_ref(held_.get(), &packet);
  isHolding_ = true;
  return std::nullopt;
}

std::optional<VideoError> MP4File::writeHeld(std::int64_t end) {
  if (!isHolding_) return std::nullopt;
  isHolding_ = false;
  held_->duration = std::max<std::int64_t>(end - held_->dts, 1);
  held_->stream_index = stream_->index;
  int result = av_write_frame(format_, held_.get());
  av_packet_unref(held_.get());
  if (result >= 0) result = format_->pb->error;
  if (result < 0) return videoErrorOf(result, writing);
  return std::nullopt;
}

std::optional<VideoError> MP4File::finish(std::int64_t end) {
  if (const auto error = writeHeld(end)) return error;
  const int result = av_write_trailer(format_);
  if (result < 0) return videoErrorOf(result, writing);
  return close();
}

std::optional<VideoError> MP4File::close() {
  avio_flush(format_->pb);
  int result = format_->pb->error;
  const int closing = avio_closep(&format_->pb);
  if (result >= 0) result = closing;
  if (result >= 0) result = synchronise(path_);
  if (result < 0) return videoErrorOf(result, writing);
  return std::nullopt;
}

}  // namespace platform
