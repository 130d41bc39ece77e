#include "platform/engine/ffmpeg/PictureConverter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/engine/ffmpeg/YuvConversion.h"

namespace platform {

namespace {

constexpr int side = TiledBitmap::tileSide;
constexpr int tileFactors[] = {1, 2, 3, 4};
static_assert(side <= YuvConversion::mostPixels && YuvConversion::mostFactor == 4);
static_assert(side % 2 == 0 && side % 4 == 0 && side % 6 == 0 && side % 8 == 0, "a tile is whole blocks of the video");

int even(int value) { return value + value % 2; }

LibavPointer<AVFrame> makeFrame(int width, int height) {
  LibavPointer<AVFrame> frame(av_frame_alloc());
  if (!frame) return nullptr;
  frame->format = AV_PIX_FMT_YUV420P;
  frame->width = width;
  frame->height = height;
  frame->colorspace = AVCOL_SPC_BT709;
  frame->color_primaries = AVCOL_PRI_BT709;
  frame->color_trc = AVCOL_TRC_IEC61966_2_1;
  frame->color_range = AVCOL_RANGE_MPEG;
  frame->chroma_location = AVCHROMA_LOC_CENTER;
  return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

}  // namespace

PictureConverter::PictureConverter(int width, int height)
    : width_(width), height_(height), frame_(makeFrame(even(width), even(height))) {
  if (frame_) fillBlack();
}

void PictureConverter::fillBlack() {
  for (int y = 0; y < frame_->height; ++y) {
    std::memset(frame_->data[0] + y * frame_->linesize[0], 16, static_cast<std::size_t>(frame_->width));
  }
  for (int plane = 1; plane <= 2; ++plane) {
    for (int y = 0; y < frame_->height / 2; ++y) {
      std::memset(frame_->data[plane] + y * frame_->linesize[plane], 128, static_cast<std::size_t>(frame_->width) / 2);
    }
  }
}

int PictureConverter::factorFor(const TiledBitmap& picture) const {
  for (const int factor : tileFactors) {
    if (picture.width() == width_ * factor && picture.height() == height_ * factor) return factor;
  }
  return 0;
}

PictureConverter::Outcome PictureConverter::take(const TiledBitmap& picture) {
  if (picture.isSameAs(last_)) return Outcome::same;
  if (av_frame_make_writable(frame_.get()) < 0) return Outcome::failed;
  if (picture.width() != last_.width() || picture.height() != last_.height()) {
    last_ = {};
    fillBlack();
  }
  if (const int factor = factorFor(picture)) {
    convertTiles(picture, factor);
  } else if (!scaleWhole(picture)) {
    return Outcome::failed;
  }
  last_ = picture;
  return Outcome::different;
}

void PictureConverter::convertTiles(const TiledBitmap& picture, int factor) {
  const int block = side / factor;
  for (int row = 0; row < picture.rows(); ++row) {
    for (int column = 0; column < picture.columns(); ++column) {
      const TiledBitmap::TileRef& tile = picture.tile(column, row);
      if (!last_.isEmpty() && last_.tile(column, row) == tile) continue;
      const int x = column * block, y = row * block;
      const YuvPlanes planes{
          frame_->data[0] + y * frame_->linesize[0] + x, frame_->data[1] + y / 2 * frame_->linesize[1] + x / 2,
          frame_->data[2] + y / 2 * frame_->linesize[2] + x / 2, frame_->linesize[0], frame_->linesize[1]};
      YuvConversion::convert(tile->pixels.data(), side, factor, std::min(block, width_ - x),
                             std::min(block, height_ - y), planes);
    }
  }
}

bool PictureConverter::prepareScaling(const TiledBitmap& picture) {
  const double scale =
      std::min(static_cast<double>(width_) / picture.width(), static_cast<double>(height_) / picture.height());
  const auto fitted = [scale](int length, int room) {
    return std::clamp(static_cast<int>(std::lround(length * scale / 2)) * 2, 2, room);
  };
  const int width = fitted(picture.width(), frame_->width), height = fitted(picture.height(), frame_->height);
  left_ = (frame_->width - width) / 4 * 2;
  top_ = (frame_->height - height) / 4 * 2;
  scaling_.reset(sws_getContext(picture.width(), picture.height(), AV_PIX_FMT_BGRA, width, height, AV_PIX_FMT_YUV420P,
                                SWS_AREA | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
  whole_ = Bitmap(picture.width(), picture.height());
  constexpr int unchanged = 1 << 16;
  return scaling_ && !whole_.isEmpty() &&
         sws_setColorspaceDetails(scaling_.get(), sws_getCoefficients(SWS_CS_ITU709), 1,
                                  sws_getCoefficients(SWS_CS_ITU709), 0, 0, unchanged, unchanged) >= 0;
}

bool PictureConverter::scaleWhole(const TiledBitmap& picture) {
  if (last_.isEmpty() && !prepareScaling(picture)) return false;
  for (int row = 0; row < picture.rows(); ++row) {
    for (int column = 0; column < picture.columns(); ++column) {
      const TiledBitmap::TileRef& tile = picture.tile(column, row);
      if (!last_.isEmpty() && last_.tile(column, row) == tile) continue;
      const int left = column * side, top = row * side;
      const auto bytes = static_cast<std::size_t>(std::min(side, picture.width() - left)) * sizeof(std::uint32_t);
      for (int y = 0; y < std::min(side, picture.height() - top); ++y) {
        std::memcpy(whole_.row(top + y) + left, tile->row(y), bytes);
      }
    }
  }
  const auto* const source = reinterpret_cast<const std::uint8_t*>(whole_.data());
  const int sourceStride = static_cast<int>(whole_.bytesPerRow());
  std::uint8_t* const planes[] = {frame_->data[0] + top_ * frame_->linesize[0] + left_,
                                  frame_->data[1] + top_ / 2 * frame_->linesize[1] + left_ / 2,
                                  frame_->data[2] + top_ / 2 * frame_->linesize[2] + left_ / 2};
  return sws_scale(scaling_.get(), &source, &sourceStride, 0, whole_.height(), planes, frame_->linesize) > 0;
}

}  // namespace platform
