#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/engine/HTTPHeaders.h"

namespace platform {

/// The head of a reply, taken in line after line as it arrives. Interim heads ("100 Continue") are passed over, and so
/// are the fields that may follow a body in pieces.
class ReplyHead {
 public:
  /// With or without its line end.
  void addLine(std::string_view line);

  /// The blank line that ends the final head was there.
  bool isComplete() const { return isComplete_; }
  int statusCode() const { return statusCode_; }
  const HTTPHeaders& headers() const { return headers_; }
  /// The codings in all fields of this name, in lower case and in the order of the fields; "identity", which is none,
  /// is left out.
  std::vector<std::string> codings(std::string_view name) const;
  /// False when the reply says two things about its length, or something that is no number.
  bool isLengthSound() const { return isLengthSound_; }

 private:
  void beginWith(std::string_view statusLine);
  void addField(std::string_view line);
  void keepField();

  bool isInside_ = false;
  bool isComplete_ = false;
  bool isLengthSound_ = true;
  int statusCode_ = 0;
  HTTPHeaders headers_;
  HTTPHeaders::Entry field_;  // the latest, which the next line may continue
};

}  // namespace platform
