#include "platform/engine/qt/QtImages.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>

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

/// A reader over bytes of its own.
class Frames final : public ImageSequence {
 public:
  Frames(std::string_view data, const char* format)
      : data_(data.data(), static_cast<qsizetype>(data.size())), format_(format) {
    Frames::rewind();
  }

  bool isReadable() {
    const QSize size = reader_->size();
    const bool isBounded =
        size.isValid() && !size.isEmpty() && qint64{size.width()} * size.height() <= Bitmap::maximumPixels;
    return isBounded && reader_->canRead();
  }

  CGImageRef next() override {
    if (!isReadable()) return nullptr;
    const QImage image = reader_->read();
    if (image.isNull()) return nullptr;
    Bitmap bitmap = fromQt(image);
    return bitmap.isEmpty() ? nullptr : std::make_shared<const Bitmap>(std::move(bitmap));
  }

  void rewind() override {
    reader_.reset();
    buffer_ = std::make_unique<QBuffer>(&data_);
    buffer_->open(QIODevice::ReadOnly);
    reader_ = std::make_unique<QImageReader>(buffer_.get(), format_);
    reader_->setDecideFormatFromContent(false);
    reader_->setAutoTransform(true);
  }

 private:
  QByteArray data_;
  const char* format_;
  std::unique_ptr<QBuffer> buffer_;
  std::unique_ptr<QImageReader> reader_;
};

std::unique_ptr<Frames> readable(std::string_view data) {
  const char* const format = formatOf(data);
  if (!format || data.size() > maximumFileSize) return nullptr;
  // Qt's own limit counts bytes and is lower than the platform's; sizes are checked before reading.
  static const bool isUnlimited = (QImageReader::setAllocationLimit(0), true);
  (void)isUnlimited;
  auto frames = std::make_unique<Frames>(data, format);
  return frames->isReadable() ? std::move(frames) : nullptr;
}

}  // namespace

CGImageRef QtImages::decode(std::string_view data) {
  const std::unique_ptr<Frames> frames = readable(data);
  return frames ? frames->next() : nullptr;
}

std::unique_ptr<ImageSequence> QtImages::open(std::string_view data) { return readable(data); }

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
