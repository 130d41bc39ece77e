#pragma once

#include <chrono>
#include <cstddef>

namespace service {

/// What one client may cost.
struct ServerLimits {
  std::size_t headBytes = 16u << 10;
  std::size_t bodyBytes = 8u << 20;
  /// From the connection's start to the end of the head.
  std::chrono::milliseconds headTime{10'000};
  /// From the end of the head to the end of the body.
  std::chrono::milliseconds bodyTime{30'000};
  /// For a whole body that is received piece by piece; each of its pauses is bounded by bodyTime.
  std::chrono::milliseconds uploadTime{600'000};
  /// For taking the whole response.
  std::chrono::milliseconds writeTime{10'000};
  /// For reading past a body that was refused, so that the refusal reaches the client.
  std::chrono::milliseconds lingerTime{2'000};
  std::size_t workers = 16;
  std::size_t waitingConnections = 256;
};

}  // namespace service
