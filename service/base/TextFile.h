#pragma once

#include <filesystem>
#include <string>

namespace service {

/// The whole text of a settings file of at most 16 MiB. Throws LoadError, naming the file.
std::string readTextFile(const std::filesystem::path& file);

}  // namespace service
