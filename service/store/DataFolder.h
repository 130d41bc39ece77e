#pragma once

#include <filesystem>

#include "service/store/Database.h"

namespace service {

/// A connection of its own to "lumicor.sqlite" in the folder; both are made when missing, and brought to this version's
/// schema. Throws LoadError when the folder or file is not usable or was written by a newer version.
Database openDataFolder(const std::filesystem::path& folder);

}  // namespace service
