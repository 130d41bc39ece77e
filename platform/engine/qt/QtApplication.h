#pragma once

namespace platform {

/// The one QGuiApplication, made when something first needs it and kept for the process. Without a display it draws to
/// nowhere. The platform owns Qt's arguments and messages.
class QtApplication {
 public:
  /// Makes it if it is not there yet. Main thread; elsewhere it is a fatal programming error unless it exists.
  static void ensure();
  /// Before the application is made: it draws to nowhere whatever display there is.
  static void goWithoutDisplay();
  /// False when windows are not seen.
  static bool isDisplayAvailable();
  /// Windows are not seen, and nobody asked for that.
  static bool isDisplayMissing();
};

}  // namespace platform
