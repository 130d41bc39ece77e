#pragma once

#include <string>

namespace lumicor {

/// How one step went, and at the end the whole run. Never leaves the process.
struct TLTaskResult {
  bool success = true;
  std::string resultValue;       ///< a text read from the target while acting
  std::string clipboardContent;  ///< the general pasteboard's string when the step began
  bool operator==(const TLTaskResult&) const = default;
};

}  // namespace lumicor
