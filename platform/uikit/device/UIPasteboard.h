#pragma once

#include <optional>
#include <string>

#include "platform/runtime/Object.h"

namespace platform {

/// What was copied: the window system's clipboard where there is one, this process's memory otherwise. Main thread.
class UIPasteboard : public Object<UIPasteboard, NSObject> {
 public:
  static UIPasteboard& general();

  /// None when nothing, or something that is no text, was copied.
  std::optional<std::string> string() const;
  /// None empties it.
  void setString(std::optional<std::string> text);
  bool hasStrings() const { return string().has_value(); }

 private:
  std::optional<std::string> text_;
};

}  // namespace platform
