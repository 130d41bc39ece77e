#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace platform {

/// Unpacks a gzip body while it arrives, and knows whether all of it came.
class GzipReader {
 public:
  /// Takes a piece of what was unpacked; false to stop.
  using Sink = std::function<bool(std::string_view)>;

  GzipReader();
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;

  /// False when the data is damaged or the sink wants no more.
  bool add(std::string_view packed, const Sink& sink);
  /// Nothing came at all, or everything up to the check at the end of the data.
  bool isAtEnd() const { return isAtEnd_; }

 private:
  struct Stream;
  std::unique_ptr<Stream> stream_;
  bool isAtEnd_ = true;
};

}  // namespace platform
