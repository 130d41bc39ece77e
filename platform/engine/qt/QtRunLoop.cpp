#include "platform/engine/qt/QtRunLoop.h"

#include <QGuiApplication>
#include <algorithm>
#include <cmath>

#include "platform/dispatch/RunLoop.h"

namespace platform {

QtRunLoop::QtRunLoop() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] { turn(); });
}

QtRunLoop::~QtRunLoop() { RunLoop::main().setWakeUp(nullptr); }

void QtRunLoop::run() {
  RunLoop::main().setWakeUp([this] { wakeUp(); });
  wakeUp();
  QGuiApplication::exec();
  RunLoop::main().setWakeUp(nullptr);
}

void QtRunLoop::stop() {
  // `quit` would ask the windows first, and they never close by themselves.
  const auto leave = [] { QCoreApplication::exit(); };
  QMetaObject::invokeMethod(QCoreApplication::instance(), leave, Qt::QueuedConnection);
}

void QtRunLoop::wakeUp() {
  if (isTurnPosted_.exchange(true)) return;
  QMetaObject::invokeMethod(
      this, [this] { turn(); }, Qt::QueuedConnection);
}

void QtRunLoop::turn() {
  isTurnPosted_ = false;
  RunLoop::main().drainDueWork();
  const std::optional<double> wait = RunLoop::main().timeUntilNextWork();
  if (!wait) return timer_.stop();
  // A day at most; rounded up, so that the work is due when the timer fires.
  timer_.start(static_cast<int>(std::ceil(std::min(*wait, 86400.0) * 1000)));
}

}  // namespace platform
