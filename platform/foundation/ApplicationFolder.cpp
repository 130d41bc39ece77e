#include "platform/foundation/ApplicationFolder.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <system_error>

#include "platform/foundation/Bundle.h"

namespace platform {

std::filesystem::path applicationFolder() {
  std::filesystem::path base;
  if (const char* const data = std::getenv("XDG_DATA_HOME"); data && *data) {
    base = data;
  } else if (const char* const home = std::getenv("HOME"); home && *home) {
    base = std::filesystem::path(home) / ".local" / "share";
  } else {
    std::error_code error;
    base = std::filesystem::temp_directory_path(error);
  }
  std::string application = Bundle::main().bundleIdentifier().value_or("application");
  std::replace(application.begin(), application.end(), '/', '-');
  return base / (application.starts_with('.') ? "-" + application : application);
}

}  // namespace platform
