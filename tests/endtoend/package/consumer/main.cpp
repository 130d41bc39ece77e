// The smallest host: a screen with a named button, and the assistant started beside it.
#include <cstdio>

#include "lumicor/core/Lumicor.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIScreen.h"

using namespace platform;

class HomeScreen : public Object<HomeScreen, UIViewController> {
 public:
  void viewDidLoad() override {
    Super::viewDidLoad();
    button_ = make<UIButton>();
    button_->setAccessibilityIdentifier("hello");
    view()->addSubview(button_);
  }

 private:
  Ref<UIButton> button_;
};

int main() {
  const auto window = make<UIWindow>(UIScreen::main().bounds());
  window->setRootViewController(make<HomeScreen>());
  window->makeKeyAndVisible();
  const auto button = window->rootViewController()->view()->subviews().front();
  std::printf("%s %s\n", lumicor::Lumicor::FRAMEWORK_NATIVE.c_str(),
              button->accessibilityIdentifier().value_or("").c_str());
  return button->window() ? 0 : 1;
}
