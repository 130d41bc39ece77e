#pragma once

#include <filesystem>
#include <string_view>

#include "service/http/Http.h"

namespace service {

/// Serves the plain files of one folder: images and fonts that a layout names. Any thread.
class AssetFolder {
 public:
  /// Throws LoadError when there is no such folder.
  explicit AssetFolder(std::filesystem::path folder);

  /// The file of that name. Throws RequestError (404) for a name with anything but letters, digits, "-", "_" and inner
  /// dots, for links and folders, and for files over 16 MiB: nothing outside the folder can be reached.
  HttpResponse serve(std::string_view name) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace service
