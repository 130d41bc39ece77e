#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace platform {

/// Takes a body in pieces ("Transfer-Encoding: chunked", RFC 9112, 7.1) apart while it arrives, and knows whether its
/// last line came whole. libcurl has a reader as well, but it takes a body for whole one byte before its end, and reads
/// remarks between the pieces for ever.
class ChunkReader {
 public:
  /// Takes a part of what the pieces hold; false to stop.
  using Sink = std::function<bool(std::string_view)>;
  /// How long a remark or a field after the body may be; libcurl puts up with no longer field.
  static constexpr std::size_t longestLine = 4000;
  /// Bytes of both that are put up with, beyond one for every byte of the body.
  static constexpr std::size_t mostRemarks = 32 << 10;

  /// False when the body is badly written, has too many remarks, or the sink wants no more. What follows the end is
  /// passed over.
  bool add(std::string_view bytes, const Sink& sink);
  bool isAtEnd() const { return place_ == Place::end; }
  bool hasTooManyRemarks() const { return hasTooManyRemarks_; }

 private:
  enum class Place { size, remark, sizeEnd, content, contentReturn, contentEnd, line, field, lastEnd, end };

  bool addByte(char byte);
  bool addToSize(char byte);
  void addRemark();
  bool endSize();

  Place place_ = Place::size;
  std::size_t digits_ = 0;
  std::size_t left_ = 0;  // of the piece
  std::size_t content_ = 0;
  std::size_t remarks_ = 0;
  std::size_t line_ = 0;  // of the remark or field
  bool hasTooManyRemarks_ = false;
};

}  // namespace platform
