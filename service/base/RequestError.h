#pragma once

#include <stdexcept>
#include <string>

namespace service {

/// A request cannot be served; becomes the reply with this HTTP status and text.
class RequestError : public std::runtime_error {
 public:
  RequestError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

}  // namespace service
