#pragma once

#include <string>
#include <vector>

#include "service/base/Json.h"

namespace service {

class AssetFolder;

/// What an application will not be able to show of a configuration's "layoutData", one sentence for each: colours that
/// are none, sizes that cannot be, files of "/assets/" that are not there. Such a configuration is served all the same.
/// `assets` may be null: there are none.
std::vector<std::string> lookWarnings(const Json& configuration, const AssetFolder* assets);

}  // namespace service
