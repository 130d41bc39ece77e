#include "platform/engine/qt/QtApplication.h"

#include <QGuiApplication>
#include <atomic>
#include <clocale>
#include <cstdio>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

std::atomic<bool> isMade{false};
/// Somebody said which window system it is to be, or none.
bool isChosen = false;

/// Qt's warnings go where the platform's do. What it says about the machine when nobody sees a window,
/// and about letters that another font draws, is left out.
void tell(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  if (message.contains(QLatin1String("XDG_RUNTIME_DIR")) || message.contains(QLatin1String("propagateSizeHints")) ||
      message.contains(QLatin1String("OpenType support missing"))) {
    return;
  }
  std::fprintf(stderr, "engine: %s\n", message.toUtf8().constData());
}

/// Which window systems to try, in order; the last one always works, and shows nothing.
QByteArray windowSystems() {
  if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) return "wayland;xcb;offscreen";
  if (qEnvironmentVariableIsSet("DISPLAY")) return "xcb;offscreen";
  return "offscreen";
}

}  // namespace

void QtApplication::goWithoutDisplay() {
  if (!isMade) qputenv("QT_QPA_PLATFORM", "offscreen");
}

void QtApplication::ensure() {
  if (isMade) return;
  assertMainThread("the first use of windows, fonts or text");
  qInstallMessageHandler(&tell);
  isChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
  if (!isChosen) qputenv("QT_QPA_PLATFORM", windowSystems());
  // Sizes of text must not depend on the screen.
  QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
  static int argumentCount = 1;
  static char name[] = "application";
  static char* arguments[] = {name, nullptr};
  static const QGuiApplication* const application = new QGuiApplication(argumentCount, arguments);
  (void)application;
  QGuiApplication::setQuitOnLastWindowClosed(false);
  // Qt takes over the person's locale; numbers in files and messages keep their point.
  std::setlocale(LC_NUMERIC, "C");
  isMade = true;
}

bool QtApplication::isDisplayAvailable() {
  ensure();
  const QString name = QGuiApplication::platformName();
  return name != QLatin1String("offscreen") && name != QLatin1String("minimal");
}

bool QtApplication::isDisplayMissing() { return !isDisplayAvailable() && !isChosen; }

}  // namespace platform
