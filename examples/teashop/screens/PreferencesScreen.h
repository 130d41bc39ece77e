#pragma once

#include "examples/teashop/Shop.h"
#include "platform/declarative/UIHostingController.h"
#include "platform/uikit/Forward.h"

namespace teashop {

/// How the customer likes tea. A declarative screen; its parts are known to the assistant by their labels:
/// "preferenceGreeting", "preferenceStrength", "preferenceNewsletter", "preferenceSummary".
class PreferencesScreen final : public platform::Object<PreferencesScreen, platform::UIHostingController> {
 public:
  explicit PreferencesScreen(ShopRef shop);
  void viewDidLoad() override;

 private:
  platform::declarative::View body();
  platform::declarative::View strengthChoice();
  platform::declarative::View newsletter();
  void change(const std::function<void(Preferences&)>& edit);

  ShopRef shop_;
};

}  // namespace teashop
