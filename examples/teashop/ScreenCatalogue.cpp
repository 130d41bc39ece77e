#include "examples/teashop/ScreenCatalogue.h"

#include <algorithm>

#include "examples/teashop/screens/ConfirmationScreen.h"
#include "examples/teashop/screens/DeliveryScreen.h"
#include "examples/teashop/screens/ProductScreen.h"
#include "platform/uikit/UINavigationController.h"

namespace teashop {

using namespace platform;

namespace {

enum Tab { shopTab, cartTab, accountTab };

Ref<UINavigationController> goTo(TeashopApplication& application, Tab tab) {
  application.tabs()->setSelectedIndex(tab);
  auto navigation = as<UINavigationController>(application.tabs()->selectedViewController());
  navigation->popToRootViewControllerAnimated(false);
  return navigation;
}

void fill(Cart& cart) {
  cart.clear();
  cart.add(*productWithId("sencha"), 2);
  cart.add(*productWithId("oolong"), 1);
}

Order sampleOrder(TeashopApplication& application) {
  fill(application.shop()->cart);
  return {1042,
          application.shop()->cart.lines(),
          application.shop()->cart.total(),
          {"Ada Lovelace", "12 Harbour Street", "Bristol"}};
}

}  // namespace

const std::vector<NamedScreen>& screenCatalogue() {
  static const std::vector<NamedScreen> screens = {
      {"shop", "the list of teas", [](TeashopApplication& application) { goTo(application, shopTab); }},
      {"product", "one tea",
       [](TeashopApplication& application) {
         goTo(application, shopTab)
             ->pushViewController(make<ProductScreen>(application.shop(), *productWithId("sencha")), false);
       }},
      {"cart", "what is to be bought",
       [](TeashopApplication& application) {
         fill(application.shop()->cart);
         goTo(application, cartTab);
       }},
      {"delivery", "where it goes",
       [](TeashopApplication& application) {
         fill(application.shop()->cart);
         goTo(application, cartTab)->pushViewController(make<DeliveryScreen>(application.shop()), false);
       }},
      {"confirmation", "the order that was placed",
       [](TeashopApplication& application) {
         goTo(application, cartTab)->pushViewController(make<ConfirmationScreen>(sampleOrder(application)), false);
       }},
      {"account", "the orders of the customer",
       [](TeashopApplication& application) {
         if (application.shop()->orders.orders().empty()) {
           fill(application.shop()->cart);
           application.shop()->orders.place(application.shop()->cart, sampleOrder(application).delivery);
         }
         goTo(application, accountTab);
       }},
  };
  return screens;
}

const NamedScreen* screenNamed(const std::string& name) {
  const auto& all = screenCatalogue();
  const auto found = std::ranges::find(all, name, &NamedScreen::name);
  return found == all.end() ? nullptr : &*found;
}

}  // namespace teashop
