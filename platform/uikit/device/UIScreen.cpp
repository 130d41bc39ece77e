#include "platform/uikit/device/UIScreen.h"

namespace platform {

UIScreen& UIScreen::main() {
  static const Ref<UIScreen>* const screen = new Ref<UIScreen>(make<UIScreen>());
  return **screen;
}

CGRect UIScreen::bounds() const { return {{0, 0}, UIDevice::current().profile().screenSize}; }
double UIScreen::scale() const { return UIDevice::current().profile().scale; }

}  // namespace platform
