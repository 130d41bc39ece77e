#pragma once

#include "platform/engine/HttpTransport.h"

namespace platform {

/// HTTP by Qt Network. Everything of it runs on one thread of its own, which starts with the first request and stops
/// with the application object or, without one, at the end of the process. Exchanges still under way then lose their
/// connection.
class QtHttpTransport final : public HttpTransport {
 public:
  Ref<Exchange> send(Request request, Completion completion) override;

  /// A program without an application object gets a minimal one on the transport's thread, and there can be only one.
  /// Whoever is about to make the real one calls this first: the thread ends and starts again with the next request.
  static void makeRoomForApplication();
};

}  // namespace platform
