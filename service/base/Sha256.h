#pragma once

#include <string>
#include <string_view>

namespace service {

/// The SHA-256 digest (FIPS 180-4) of a text as 64 hexadecimal digits.
std::string sha256(std::string_view text);

}  // namespace service
