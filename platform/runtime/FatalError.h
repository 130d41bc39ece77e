#pragma once

#include <string_view>

namespace platform {

/// Ends the process for a programming error or a fatal condition: one line "fatal error: <message>" on standard error,
/// then abort. Line breaks inside the message are written as blanks, so that it stays one line. Any thread.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace platform
