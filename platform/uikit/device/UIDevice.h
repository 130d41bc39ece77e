#pragma once

#include <string>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"

namespace platform {

enum class UIDeviceOrientation {
  unknown,
  portrait,
  portraitUpsideDown,
  landscapeLeft,
  landscapeRight,
  faceUp,
  faceDown
};

/// What the application runs on. Chosen once at start (`UIDevice::setProfile`), before the first window.
struct DeviceProfile {
  std::string machine = "phone14,7";  ///< as uname tells it
  std::string systemVersion = "16.4";
  CGSize screenSize{390, 844};  ///< points
  double scale = 2;             ///< pixels a point
  UIEdgeInsets safeArea{47, 0, 34, 0};
  UIDeviceOrientation orientation = UIDeviceOrientation::portrait;

  static DeviceProfile phone() { return {}; }
  static DeviceProfile simulator();
};

/// The device as the program finds it. Main thread.
class UIDevice : public Object<UIDevice, NSObject> {
 public:
  static UIDevice& current();
  static void setProfile(DeviceProfile profile);
  const DeviceProfile& profile() const { return profile_; }
  const std::string& systemVersion() const { return profile_.systemVersion; }
  const std::string& machine() const { return profile_.machine; }
  UIDeviceOrientation orientation() const { return profile_.orientation; }
  void setOrientation(UIDeviceOrientation orientation) { profile_.orientation = orientation; }

 private:
  DeviceProfile profile_;
};

}  // namespace platform
