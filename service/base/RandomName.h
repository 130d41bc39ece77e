#pragma once

#include <string>

namespace service {

/// 32 hexadecimal digits that nobody can guess, from the system's source of randomness. Throws std::runtime_error when
/// there is none.
std::string randomName();

}  // namespace service
