#include "platform/graphics/PictureFacts.h"

#include <algorithm>

namespace platform {

namespace {

/// Shorter delays are not meant: programs show such frames for a tenth of a second.
constexpr double shortestDelay = 0.02;
constexpr double usualDelay = 0.1;

/// Bytes with a place in them. Beyond the end there are zeros, and the place never moves past it.
class Bytes {
 public:
  explicit Bytes(std::string_view data) : data_(data) {}

  bool isAtEnd() const { return at_ >= data_.size(); }
  std::size_t left() const { return data_.size() - at_; }
  void skip(std::size_t count) { at_ += std::min(count, left()); }
  int peek(std::size_t offset = 0) const {
    return offset < left() ? static_cast<unsigned char>(data_[at_ + offset]) : 0;
  }
  int next() {
    const int byte = peek();
    skip(1);
    return byte;
  }
  std::string_view text(std::size_t offset, std::size_t length) const {
    return offset <= left() ? data_.substr(at_ + offset, length) : std::string_view();
  }
  std::int64_t big16(std::size_t offset) const { return peek(offset) << 8 | peek(offset + 1); }
  std::int64_t big32(std::size_t offset) const { return big16(offset) << 16 | big16(offset + 2); }
  std::int64_t little16(std::size_t offset) const { return peek(offset) | peek(offset + 1) << 8; }

 private:
  std::string_view data_;
  std::size_t at_ = 0;
};

/// Chunks of length, name, content and checksum, the first of which tells the size.
void readPNG(Bytes bytes, PictureFacts& facts) {
  bytes.skip(8);
  if (bytes.text(4, 4) != "IHDR" || bytes.left() < 25) return;
  facts.width = bytes.big32(8);
  facts.height = bytes.big32(12);
  if (bytes.peek(16) > 8) facts.bytesPerPixel = 8;
  while (bytes.left() >= 8) {
    const std::string_view name = bytes.text(4, 4);
    if (name == "IEND") break;
    if (name == "zTXt" || name == "iTXt" || name == "iCCP") ++facts.attachments;
    const auto length = static_cast<std::size_t>(bytes.big32(0));
    if (name != "IDAT" && length + 12 > bytes.left()) facts.claimsMoreThanItHas = true;
    bytes.skip(length + 12);
  }
}

/// Segments behind markers. What stands between a scan's header and the next marker is its pixels; a reader looks for
/// the next marker there, past escaped bytes and restarts, and so it is done here.
void readJPEG(Bytes bytes, PictureFacts& facts) {
  bytes.skip(2);
  facts.scans = 0;
  while (!bytes.isAtEnd()) {
    if (bytes.next() != 0xFF) continue;
    while (bytes.peek() == 0xFF) bytes.skip(1);
    const int marker = bytes.next();
    if (marker <= 0x01 || (marker >= 0xD0 && marker <= 0xD8)) continue;  // alone, without a segment
    if (marker == 0xD9) break;
    const bool isFrame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (isFrame) {
      facts.height = std::max(facts.height, bytes.big16(3));
      facts.width = std::max(facts.width, bytes.big16(5));
    }
    if (marker == 0xDA) ++facts.scans;
    bytes.skip(static_cast<std::size_t>(std::max<std::int64_t>(bytes.big16(0), 2)));
  }
}

void skipColors(Bytes& bytes, int flags) {
  if (flags & 0x80) bytes.skip(std::size_t{3} << ((flags & 7) + 1));
}

/// False when the data ends before the last of them.
bool skipSubBlocks(Bytes& bytes) {
  while (!bytes.isAtEnd()) {
    const int length = bytes.next();
    if (length == 0) return true;
    bytes.skip(static_cast<std::size_t>(length));
  }
  return false;
}

/// Blocks, each frame's with its place and size. Stops at the first thing that makes no sense.
void readGIF(Bytes bytes, PictureFacts& facts) {
  if (bytes.left() < 13) return;
  facts.width = bytes.little16(6);
  facts.height = bytes.little16(8);
  const int flags = bytes.peek(10);
  bytes.skip(13);
  skipColors(bytes, flags);
  double delay = usualDelay;
  while (!bytes.isAtEnd() && facts.delays.size() < PictureFacts::maximumFrames) {
    const int block = bytes.next();
    if (block == 0x2C && bytes.left() >= 10) {
      // A frame may stick out of the area, which then grows.
      facts.width = std::max(facts.width, bytes.little16(0) + bytes.little16(4));
      facts.height = std::max(facts.height, bytes.little16(2) + bytes.little16(6));
      const int frameFlags = bytes.peek(8);
      bytes.skip(9);
      skipColors(bytes, frameFlags);
      bytes.skip(1);
      if (!skipSubBlocks(bytes)) break;
      facts.delays.push_back(delay);
      delay = usualDelay;
    } else if (block == 0x21) {
      const bool tellsDelay = bytes.next() == 0xF9 && bytes.peek() >= 4;
      if (tellsDelay) {
        const double seconds = static_cast<double>(bytes.little16(2)) / 100;
        delay = seconds < shortestDelay ? usualDelay : seconds;
      }
      if (!skipSubBlocks(bytes)) break;
    } else {
      break;
    }
  }
}

}  // namespace

std::optional<PictureFacts> PictureFacts::of(std::string_view data) {
  PictureFacts facts;
  if (data.starts_with("\x89PNG\r\n\x1A\n")) {
    readPNG(Bytes(data), facts);
  } else if (data.starts_with("\xFF\xD8\xFF")) {
    facts.format = Format::jpeg;
    readJPEG(Bytes(data), facts);
  } else if (data.starts_with("GIF87a") || data.starts_with("GIF89a")) {
    facts.format = Format::gif;
    readGIF(Bytes(data), facts);
  }
  return facts.width > 0 && facts.height > 0 ? std::optional(std::move(facts)) : std::nullopt;
}

}  // namespace platform
