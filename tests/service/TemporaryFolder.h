#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace service {

/// A folder of its own that is removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Writes a file in the folder and tells where it is.
  std::filesystem::path write(std::string_view name, std::string_view text) const;

 private:
  std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path& file);

/// The test data's folder.
std::filesystem::path dataFolder();

}  // namespace service
