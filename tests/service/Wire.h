#pragma once

#include <string>
#include <string_view>

#include "service/base/Json.h"
#include "service/http/FileDescriptor.h"
#include "service/http/HeaderFields.h"

namespace service {

/// A response as it came over the wire.
struct WireResponse {
  int status = 0;  ///< 0 when the connection ended without one
  HeaderFields headers;
  std::string body;

  Json json() const { return Json::parse(body, nullptr, false); }
};

/// One connection to a service on this machine, byte for byte: it can send what no HTTP client would.
class Wire {
 public:
  explicit Wire(int port);

  void send(std::string_view bytes);
  /// Says that nothing more will be sent.
  void finishSending();
  /// Waits for the service to end the connection, and reads what it sent until then.
  WireResponse receive();

 private:
  FileDescriptor socket_;
};

/// The six identity headers with an accepted key, each with its line end.
std::string identityHeaders(std::string_view userId = "ann");

/// A sound POST of a body by an application.
std::string postRequest(std::string_view path, std::string_view body, std::string_view userId = "ann");

WireResponse talk(int port, std::string_view request);
WireResponse post(int port, std::string_view path, std::string_view body, std::string_view userId = "ann");
WireResponse get(int port, std::string_view target);

}  // namespace service
