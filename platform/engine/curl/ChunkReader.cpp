#include "platform/engine/curl/ChunkReader.h"

namespace platform {

namespace {

constexpr std::size_t mostDigits = 16;  // what they say fits into 64 bits

int valueOfDigit(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

}  // namespace

bool ChunkReader::add(std::string_view bytes, const Sink& sink) {
  while (!bytes.empty() && place_ != Place::end) {
    if (place_ == Place::content) {
      const std::string_view piece = bytes.substr(0, left_);
      content_ += piece.size();
      left_ -= piece.size();
      if (left_ == 0) place_ = Place::contentReturn;
      bytes.remove_prefix(piece.size());
      if (!sink(piece)) return false;
    } else {
      if (!addByte(bytes.front()) || hasTooManyRemarks_) return false;
      bytes.remove_prefix(1);
    }
  }
  return true;
}

/// Lines may end with a line feed alone, as libcurl has it too.
bool ChunkReader::addByte(char byte) {
  switch (place_) {
    case Place::size:
      return addToSize(byte);
    case Place::remark:
      if (byte == '\n') return endSize();
      addRemark();
      return true;
    case Place::sizeEnd:
      return byte == '\n' && endSize();
    case Place::contentReturn:
      place_ = byte == '\n' ? Place::size : Place::contentEnd;
      return byte == '\n' || byte == '\r';
    case Place::contentEnd:
      place_ = Place::size;
      return byte == '\n';
    case Place::line:
      if (byte == '\r') {
        place_ = Place::lastEnd;
      } else {
        place_ = byte == '\n' ? Place::end : Place::field;
        line_ = 0;
        addRemark();
      }
      return true;
    case Place::field:
      if (byte == '\n') place_ = Place::line;
      addRemark();
      return true;
    case Place::lastEnd:
      place_ = Place::end;
      return byte == '\n';
    case Place::content:
    case Place::end:
      break;
  }
  return true;
}

bool ChunkReader::addToSize(char byte) {
  if (const int digit = valueOfDigit(byte); digit >= 0) {
    left_ = left_ * 16 + static_cast<std::size_t>(digit);
    return ++digits_ <= mostDigits;
  }
  if (digits_ == 0) return false;
  if (byte == '\n') return endSize();
  if (byte == '\r') {
    place_ = Place::sizeEnd;
  } else {
    place_ = Place::remark;
    line_ = 0;
    addRemark();
  }
  return byte == '\r' || byte == ';' || byte == ' ' || byte == '\t';
}

void ChunkReader::addRemark() {
  ++remarks_;
  const bool isLineTooLong = ++line_ > longestLine;
  hasTooManyRemarks_ = isLineTooLong || (remarks_ > mostRemarks && remarks_ - mostRemarks > content_);
}

bool ChunkReader::endSize() {
  digits_ = 0;
  place_ = left_ > 0 ? Place::content : Place::line;
  return true;
}

}  // namespace platform
