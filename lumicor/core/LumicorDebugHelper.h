#pragma once

#include <string_view>

namespace lumicor {

/// The one writer of log lines. Thread: any.
class LumicorDebugHelper {
 public:
  /// When debugging is enabled, prints "<milliseconds since 1970>, <message>" as one line on the standard output (line
  /// breaks inside the message become blanks); otherwise nothing. Messages never hold request bodies or keys.
  static void log(std::string_view message);
};

}  // namespace lumicor
