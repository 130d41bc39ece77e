#include "platform/uikit/device/UIDevice.h"

#include <utility>

namespace platform {

DeviceProfile DeviceProfile::simulator() {
  DeviceProfile profile;
  profile.machine = "arm64";
  return profile;
}

UIDevice& UIDevice::current() {
  static const Ref<UIDevice>* const device = new Ref<UIDevice>(make<UIDevice>());
  return **device;
}

void UIDevice::setProfile(DeviceProfile profile) { current().profile_ = std::move(profile); }

}  // namespace platform
