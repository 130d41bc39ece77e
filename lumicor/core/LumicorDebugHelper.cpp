#include "lumicor/core/LumicorDebugHelper.h"

#include <cstdio>
#include <string>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"

namespace lumicor {

void LumicorDebugHelper::log(std::string_view message) {
  if (!Lumicor::shared().getShouldEnableDebug()) return;
  std::string line = std::to_string(LumicorUtils::millisecondsSinceEpoch()) + ", ";
  for (const char c : message) line += (c == '\n' || c == '\r') ? ' ' : c;
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

}  // namespace lumicor
