#include "platform/engine/curl/GzipReader.h"

#include <array>
#include <zlib.h>

namespace platform {

struct GzipReader::Stream {
  static constexpr int gzipOnly = 16 + MAX_WBITS;
  z_stream z{};
  const bool isOpen = ::inflateInit2(&z, gzipOnly) == Z_OK;

  ~Stream() {
    if (isOpen) ::inflateEnd(&z);
  }
};

GzipReader::GzipReader() : stream_(std::make_unique<Stream>()) {}
GzipReader::~GzipReader() = default;

bool GzipReader::add(std::string_view packed, const Sink& sink) {
  if (!stream_->isOpen) return false;
  z_stream& z = stream_->z;
  std::array<char, 32 << 10> block;
  // The library does not write to its input; its type only fails to say so.
  z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(packed.data()));
  z.avail_in = static_cast<uInt>(packed.size());
  bool isBlockFull = false;
  while (z.avail_in > 0 || isBlockFull) {
    // Several packed files in a row are one.
    if (isAtEnd_ && ::inflateReset(&z) != Z_OK) return false;
    z.next_out = reinterpret_cast<Bytef*>(block.data());
    z.avail_out = static_cast<uInt>(block.size());
    const int result = ::inflate(&z, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) return false;
    isAtEnd_ = result == Z_STREAM_END;
    const std::size_t size = block.size() - z.avail_out;
    if (size > 0 && !sink({block.data(), size})) return false;
    isBlockFull = !isAtEnd_ && z.avail_out == 0;
  }
  return true;
}

}  // namespace platform
