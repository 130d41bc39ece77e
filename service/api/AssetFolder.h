#pragma once

#include <filesystem>
#include <string_view>

#include "service/http/FileDescriptor.h"
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
  /// Whether `serve` has something for that name.
  bool has(std::string_view name) const;

 private:
  /// Closed when there is no such asset.
  FileDescriptor open(std::string_view name, std::size_t& size) const;

  std::filesystem::path folder_;
};

}  // namespace service
