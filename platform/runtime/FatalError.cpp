#include "platform/runtime/FatalError.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace platform {

void fatalError(std::string_view message) {
  std::string line = "fatal error: ";
  for (const char c : message) line += (c == '\n' || c == '\r') ? ' ' : c;
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  std::abort();
}

}  // namespace platform
