#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/media/AVAssetWriterInput.h"
#include "platform/media/AssetWriterSession.h"

namespace platform {

/// What an input knows of the writer it feeds. Any thread.
struct AVAssetWriterInput::Link {
  using Session = AVAssetWriter::Session;

  void attach(const std::shared_ptr<Session>& session) {
    const std::lock_guard lock(mutex);
    writer = session;
  }
  std::shared_ptr<Session> session() const {
    const std::lock_guard lock(mutex);
    return writer.lock();
  }
  Session::Pace pace() const { return isRealTime ? Session::Pace::realTime : Session::Pace::asItComes; }

  mutable std::mutex mutex;
  std::weak_ptr<Session> writer;
  std::atomic<bool> isRealTime{false};
  std::atomic<bool> isMarkedFinished{false};
};

}  // namespace platform
