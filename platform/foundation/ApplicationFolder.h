#pragma once

#include <filesystem>

namespace platform {

/// The folder of the application's own data: in the user's data folder, named by the bundle's identifier. Not made
/// here. Any thread.
std::filesystem::path applicationFolder();

}  // namespace platform
