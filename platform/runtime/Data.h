#pragma once

#include <string>

namespace platform {

/// Bytes. The same type as text, so that a JSON body needs no copy; `size()` counts bytes.
using Data = std::string;

}  // namespace platform
