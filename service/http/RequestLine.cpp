#include "service/http/RequestLine.h"

#include <array>
#include <cstdio>

namespace service {

std::string printable(std::string_view text, std::size_t limit) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string result;
  for (const char c : text) {
    if (result.size() >= limit) return result + "...";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f && c != '\\') {
      result += c;
    } else {
      result += "\\x";
      result += kDigits[byte >> 4];
      result += kDigits[byte & 15];
    }
  }
  return result;
}

std::string requestLine(const HttpExchange& exchange) {
  std::array<char, 48> tail{};
  std::snprintf(tail.data(), tail.size(), " %d %.1f ms", exchange.status, exchange.milliseconds);
  const HttpRequest& request = exchange.request;
  const std::string method = request.method.empty() ? "-" : printable(request.method, 16);
  const std::string path = request.path.empty() ? "-" : printable(request.path, 200);
  return method + " " + path + tail.data();
}

void printRequestLine(const HttpExchange& exchange) {
  // One call, which the C library makes one write: lines of several threads do not mix.
  std::fputs((requestLine(exchange) + "\n").c_str(), stderr);
}

}  // namespace service
