#include "platform/uikit/device/UIScreen.h"

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

UIScreen& UIScreen::main() {
  static const Ref<UIScreen>* const screen = new Ref<UIScreen>(make<UIScreen>());
  return **screen;
}

CGRect UIScreen::bounds() const { return {{0, 0}, UIDevice::current().profile().screenSize}; }
double UIScreen::scale() const { return UIDevice::current().profile().scale; }

}  // namespace platform
