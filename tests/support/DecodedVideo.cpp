#include "tests/support/DecodedVideo.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <fstream>
#include <memory>

namespace platform::test {

namespace {

struct Deleter {
  void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
  void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
template <class T>
using Owned = std::unique_ptr<T, Deleter>;

/// The names of the file's outermost boxes in order.
std::vector<std::string> boxesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::string> names;
  unsigned char head[8];
  while (file.read(reinterpret_cast<char*>(head), sizeof head)) {
    const std::streamoff size = head[0] << 24 | head[1] << 16 | head[2] << 8 | head[3];
    names.emplace_back(head + 4, head + 8);
    if (size < 8) break;
    file.seekg(size - 8, std::ios::cur);
  }
  return names;
}

bool hasIndexInFront(const std::string& path) {
  for (const std::string& name : boxesOf(path)) {
    if (name == "moov" || name == "mdat") return name == "moov";
  }
  return false;
}

Bitmap pictureOf(const AVFrame& frame) {
  Bitmap picture(frame.width, frame.height);
  SwsContext* const scaling =
      sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width, frame.height,
                     AV_PIX_FMT_BGRA, SWS_POINT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr);
  sws_setColorspaceDetails(scaling, sws_getCoefficients(frame.colorspace), frame.color_range == AVCOL_RANGE_JPEG,
                           sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
  auto* const target = reinterpret_cast<std::uint8_t*>(picture.data());
  const int stride = static_cast<int>(picture.bytesPerRow());
  sws_scale(scaling, frame.data, frame.linesize, 0, frame.height, &target, &stride);
  sws_freeContext(scaling);
  return picture;
}

}  // namespace

std::optional<DecodedVideo> DecodedVideo::read(const std::string& path) {
  AVFormatContext* opened = nullptr;
  if (avformat_open_input(&opened, path.c_str(), nullptr, nullptr) < 0) return std::nullopt;
  const Owned<AVFormatContext> format(opened);
  if (avformat_find_stream_info(opened, nullptr) < 0 || opened->nb_streams != 1) return std::nullopt;
  const AVStream& stream = *opened->streams[0];
  const AVCodec* const codec = avcodec_find_decoder(stream.codecpar->codec_id);
  const Owned<AVCodecContext> decoder(avcodec_alloc_context3(codec));
  if (!codec || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0 ||
      avcodec_open2(decoder.get(), codec, nullptr) < 0) {
    return std::nullopt;
  }
  DecodedVideo video;
  video.container = opened->iformat->name;
  video.codec = avcodec_get_name(stream.codecpar->codec_id);
  video.width = stream.codecpar->width;
  video.height = stream.codecpar->height;
  video.duration = static_cast<double>(stream.duration) * av_q2d(stream.time_base);
  video.isIndexInFront = hasIndexInFront(path);
  const Owned<AVPacket> packet(av_packet_alloc());
  const Owned<AVFrame> frame(av_frame_alloc());
  bool isMore = true;
  while (isMore) {
    isMore = av_read_frame(opened, packet.get()) >= 0;
    if (avcodec_send_packet(decoder.get(), isMore ? packet.get() : nullptr) < 0) return std::nullopt;
    av_packet_unref(packet.get());
    while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
      const double tick = av_q2d(stream.time_base);
      video.frames.push_back(
          {static_cast<double>(frame->pts) * tick, static_cast<double>(frame->pkt_duration) * tick, pictureOf(*frame)});
    }
  }
  return video;
}

}  // namespace platform::test
