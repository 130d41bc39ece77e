#pragma once

#include <string>

#include "examples/teashop/Shop.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UITabBarController.h"

namespace teashop {

/// The shop as an application: its window, its tabs, what they share. Main thread.
class TeashopApplication {
 public:
  /// Makes the window with the three tabs and shows it.
  TeashopApplication();

  /// Starts the assistant as a host does: with the shop's key, the customer's name and the service's address.
  static void startAssistant(const std::string& endpoint, const std::string& userId = "ada");

  const ShopRef& shop() const { return shop_; }
  const platform::Ref<platform::UIWindow>& window() const { return window_; }
  const platform::Ref<platform::UITabBarController>& tabs() const { return tabs_; }

 private:
  ShopRef shop_ = std::make_shared<Shop>();
  platform::Ref<platform::UITabBarController> tabs_;
  platform::Ref<platform::UIWindow> window_;
};

}  // namespace teashop
