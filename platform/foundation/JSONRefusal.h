#pragma once

#include <string>
#include <string_view>

namespace platform::detail {

/// Why a document cannot be read, in one sentence. For one that was refused: a validating parser looks at it again.
std::string reasonForRefusal(std::string_view bytes);

}  // namespace platform::detail
