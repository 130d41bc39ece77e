#pragma once

#include <string_view>

#include "service/http/Http.h"

namespace service {

/// Takes one request's body piece by piece, so that a large one never lies in memory. Used by the worker that serves
/// the request. Destroyed without finish() when the body was cut: nothing of it may be left then.
class BodyReceiver {
 public:
  virtual ~BodyReceiver() = default;
  /// False when no more is wanted; refusal() then tells why. Nothing may be thrown.
  virtual bool take(std::string_view bytes) = 0;
  virtual HttpResponse refusal() = 0;
  /// The body is whole.
  virtual HttpResponse finish() = 0;
};

}  // namespace service
