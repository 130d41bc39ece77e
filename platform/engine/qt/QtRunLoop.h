#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>

namespace platform {

/// Turns RunLoop::main() inside Qt's event loop: runs what is due, sleeps until the next piece is. Main thread.
class QtRunLoop : public QObject {
 public:
  QtRunLoop();
  ~QtRunLoop() override;
  QtRunLoop(const QtRunLoop&) = delete;
  QtRunLoop& operator=(const QtRunLoop&) = delete;

  /// Until `stop`.
  void run();
  /// Any thread.
  static void stop();

 private:
  /// Any thread.
  void wakeUp();
  void turn();

  QTimer timer_;
  std::atomic<bool> isTurnPosted_{false};
};

}  // namespace platform
