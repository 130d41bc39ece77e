#include "tests/service/Wire.h"

#include <arpa/inet.h>
#include <array>
#include <stdexcept>
#include <sys/socket.h>

namespace service {

Wire::Wire(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("no connection to the service");
}

void Wire::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;  // The service has had enough; its response tells why.
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

void Wire::finishSending() { ::shutdown(socket_.get(), SHUT_WR); }

WireResponse Wire::receive() {
  std::string text;
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t received = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (received <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(received));
  }
  WireResponse response;
  if (text.starts_with("HTTP/1.1 100")) text.erase(0, text.find("\r\n\r\n") + 4);
  const std::size_t end = text.find("\r\n\r\n");
  if (!text.starts_with("HTTP/1.1 ") || end == std::string::npos) return response;
  response.status = std::stoi(text.substr(9));
  response.headers = HeaderFields::parse(text.substr(0, end + 4)).value();
  response.body = text.substr(end + 4);
  return response;
}

std::string identityHeaders(std::string_view userId) {
  return "secret-key: bakery-key\r\nuser-id: " + std::string(userId) +
         "\r\nsdk: 1.2.0\r\nplatform: ios\r\napp-version: \r\nios-version: 17.1\r\n";
}

std::string postRequest(std::string_view path, std::string_view body, std::string_view userId) {
  return "POST " + std::string(path) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + identityHeaders(userId) +
         "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         std::string(body);
}

WireResponse talk(int port, std::string_view request) {
  Wire wire(port);
  wire.send(request);
  return wire.receive();
}

WireResponse post(int port, std::string_view path, std::string_view body, std::string_view userId) {
  return talk(port, postRequest(path, body, userId));
}

WireResponse get(int port, std::string_view target) {
  return talk(port, "GET " + std::string(target) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
}

}  // namespace service
