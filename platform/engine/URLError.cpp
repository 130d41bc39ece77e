#include "platform/engine/URLError.h"

namespace platform {

std::string URLError::localizedDescription() const {
  switch (code_) {
    case Code::unknown:
      break;
    case Code::cancelled:
      return "The request was cancelled.";
    case Code::badURL:
      return "The address is malformed.";
    case Code::timedOut:
      return "The request timed out.";
    case Code::unsupportedURL:
      return "This kind of address is not supported.";
    case Code::cannotFindHost:
      return "The server's name could not be found.";
    case Code::cannotConnectToHost:
      return "The server could not be reached.";
    case Code::networkConnectionLost:
      return "The connection to the server was lost.";
    case Code::httpTooManyRedirects:
      return "The server redirected too many times.";
    case Code::notConnectedToInternet:
      return "There is no connection to the network.";
    case Code::redirectToUnsafeLocation:
      return "The server redirected to an address that is not safe to follow.";
    case Code::badServerResponse:
      return "The server's reply made no sense.";
    case Code::badRequest:
      return "The request has a header field or a method that cannot be sent.";
    case Code::cannotParseResponse:
      return "The server's reply could not be read.";
    case Code::fileDoesNotExist:
      return "The file to send does not exist.";
    case Code::dataLengthExceedsMaximum:
      return "The server's reply is too long.";
    case Code::secureConnectionFailed:
      return "No secure connection to the server could be made.";
    case Code::serverCertificateUntrusted:
      return "The server's certificate is not trusted.";
    case Code::cannotOpenFile:
      return "The file to send could not be read.";
    case Code::cannotWriteToFile:
      return "The reply could not be written to a file.";
  }
  return "The request failed for an unknown reason.";
}

}  // namespace platform
