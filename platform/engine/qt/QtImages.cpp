#include "platform/engine/qt/QtImages.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <algorithm>

#include "platform/dispatch/Clock.h"
#include "platform/engine/qt/PNGFile.h"
#include "platform/engine/qt/QtConversions.h"

namespace platform {

namespace {

constexpr std::size_t maximumFileSize = 128u << 20;

/// Only what the platform promises to read, whatever plug-ins the machine has.
const char* formatOf(std::string_view data) {
  if (data.starts_with("\x89PNG\r\n\x1A\n")) return "png";
  if (data.starts_with("\xFF\xD8\xFF")) return "jpeg";
  return data.starts_with("GIF87a") || data.starts_with("GIF89a") ? "gif" : nullptr;
}

/// Gives the bytes until an instant, then an error. Not the library's own buffer, which decoders read past this door.
class TimedBytes final : public QIODevice {
 public:
  TimedBytes(const QByteArray& bytes, std::int64_t until) : bytes_(bytes), until_(until) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
  }
  qint64 size() const override { return bytes_.size(); }

 private:
  qint64 readData(char* to, qint64 most) override {
    if (Clock::nanoseconds() >= until_) return -1;
    const qint64 count = std::min(most, bytes_.size() - pos());
    std::copy_n(bytes_.constData() + pos(), count, to);
    return count;
  }
  qint64 writeData(const char*, qint64) override { return -1; }

  const QByteArray& bytes_;
  const std::int64_t until_;
};

/// A reader over bytes of its own.
class Frames final : public ImageSequence {
 public:
  Frames(std::string_view data, const char* format, const ImageLimits& limits)
      : data_(data.data(), static_cast<qsizetype>(data.size())), format_(format), limits_(limits) {
    Frames::rewind();
  }

  bool isReadable() {
    const QSize size = reader_->size();
    const bool isBounded = size.isValid() && !size.isEmpty() && qint64{size.width()} * size.height() <= limits_.pixels;
    return isBounded && reader_->canRead();
  }

  CGImageRef next() override {
    if (!isReadable()) return nullptr;
    const QImage image = reader_->read();
    // What was read of a picture that was cut short by the clock is a part of it.
    if (image.isNull() || Clock::nanoseconds() >= limits_.until) return nullptr;
    Bitmap bitmap = fromQt(image);
    return bitmap.isEmpty() ? nullptr : std::make_shared<const Bitmap>(std::move(bitmap));
  }

  void rewind() override {
    reader_.reset();
    bytes_ = std::make_unique<TimedBytes>(data_, limits_.until);
    reader_ = std::make_unique<QImageReader>(bytes_.get(), format_);
    reader_->setDecideFormatFromContent(false);
    reader_->setAutoTransform(true);
  }

 private:
  QByteArray data_;
  const char* format_;
  const ImageLimits limits_;
  std::unique_ptr<TimedBytes> bytes_;
  std::unique_ptr<QImageReader> reader_;
};

std::unique_ptr<Frames> readable(std::string_view data, const ImageLimits& limits) {
  const char* const format = formatOf(data);
  if (!format || data.size() > maximumFileSize) return nullptr;
  if (std::string_view(format) == "png" && !isWholePNG(data)) return nullptr;
  // Qt's own limit counts bytes and is lower than the platform's; sizes are checked before reading.
  static const bool isUnlimited = (QImageReader::setAllocationLimit(0), true);
  (void)isUnlimited;
  auto frames = std::make_unique<Frames>(data, format, limits);
  return frames->isReadable() ? std::move(frames) : nullptr;
}

}  // namespace

CGImageRef QtImages::decode(std::string_view data, const ImageLimits& limits) {
  const std::unique_ptr<Frames> frames = readable(data, limits);
  return frames ? frames->next() : nullptr;
}

std::unique_ptr<ImageSequence> QtImages::open(std::string_view data, const ImageLimits& limits) {
  return readable(data, limits);
}

std::string QtImages::encodePNG(const Bitmap& bitmap) {
  if (bitmap.isEmpty()) return {};
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "png");
  writer.setCompression(50);
  if (!writer.write(toQt(bitmap))) return {};
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace platform
