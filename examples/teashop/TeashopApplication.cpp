#include "examples/teashop/TeashopApplication.h"

#include "examples/teashop/screens/AccountScreen.h"
#include "examples/teashop/screens/CartScreen.h"
#include "examples/teashop/screens/ShopScreen.h"
#include "examples/teashop/screens/StoriesScreen.h"
#include "examples/teashop/views/Theme.h"
#include "lumicor/core/Lumicor.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

Ref<UIViewController> tab(const Ref<UIViewController>& screen, const std::string& title, const std::string& symbol,
                          const std::string& identifier) {
  auto navigation = make<UINavigationController>(screen);
  auto item = make<UITabBarItem>(title, UISystemSymbol::image(symbol), 0);
  item->setAccessibilityIdentifier(identifier);
  navigation->setTabBarItem(item);
  return navigation;
}

}  // namespace

TeashopApplication::TeashopApplication() {
  tabs_ = make<UITabBarController>();
  tabs_->setViewControllers({
      tab(make<ShopScreen>(shop_), "Shop", "cup.and.saucer", "tabShop"),
      tab(make<CartScreen>(shop_), "Cart", "cart", "tabCart"),
      tab(make<StoriesScreen>(shop_), "Stories", "book", "tabStories"),
      tab(make<AccountScreen>(shop_), "Account", "person", "tabAccount"),
  });
  tabs_->tabBar()->setAccessibilityIdentifier("tabBar");
  shop_->cart.observe([item = tabs_->viewControllers()[1]->tabBarItem(), cart = &shop_->cart] {
    item->setBadgeValue(cart->isEmpty() ? std::nullopt : std::optional(std::to_string(cart->count())));
  });
  window_ = make<UIWindow>(UIScreen::main().bounds());
  window_->setTintColor(theme::leaf);
  window_->setRootViewController(tabs_);
  window_->makeKeyAndVisible();
}

void TeashopApplication::startAssistant(const std::string& endpoint, const std::string& userId) {
  lumicor::Lumicor::shared().initialize("teashop-demo-key", userId, endpoint);
}

}  // namespace teashop
