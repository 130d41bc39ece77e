#pragma once

#include <string>
#include <string_view>

#include "service/http/Http.h"

namespace service {

/// At most `limit` characters of a text from outside, in plain ASCII: anything that could act on a terminal or begin a
/// new line is written as \xNN.
std::string printable(std::string_view text, std::size_t limit);

/// "POST /sdk/init 200 1.3 ms". No query, header or body is ever in it.
std::string requestLine(const HttpExchange& exchange);

/// Writes requestLine() to the standard error output as one line. Any thread.
void printRequestLine(const HttpExchange& exchange);

}  // namespace service
