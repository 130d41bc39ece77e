#include "examples/teashop/ScreenCatalogue.h"

#include <algorithm>

#include "examples/teashop/screens/ConfirmationScreen.h"
#include "examples/teashop/screens/DeliveryScreen.h"
#include "examples/teashop/screens/FilterScreen.h"
#include "examples/teashop/screens/PreferencesScreen.h"
#include "examples/teashop/screens/ProductScreen.h"
#include "examples/teashop/screens/SearchScreen.h"
#include "examples/teashop/screens/StoryScreen.h"
#include "examples/teashop/screens/TermsScreen.h"
#include "examples/teashop/screens/TimerScreen.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace teashop {

using namespace platform;

namespace {

enum Tab { shopTab, cartTab, storiesTab, accountTab };

Ref<UINavigationController> goTo(TeashopApplication& application, Tab tab) {
  if (application.tabs()->presentedViewController()) application.tabs()->dismissViewController(false);
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
          application.shop()->cart.total() + giftWrapPrice,
          {"Ada Lovelace", "12 Harbour Street", "Bristol", "2030-12-24", "Afternoon, ring the bell", "The blue door",
           true}};
}

}  // namespace

const std::vector<NamedScreen>& screenCatalogue() {
  static const std::vector<NamedScreen> screens = {
      {"shop", "the list of teas", [](TeashopApplication& application) { goTo(application, shopTab); }},
      {"filter", "which teas to show",
       [](TeashopApplication& application) {
         goTo(application, shopTab)
             ->presentViewController(make<UINavigationController>(make<FilterScreen>(TeaFilter{}, [](const auto&) {})),
                                     false);
       }},
      {"search", "finding a tea by words",
       [](TeashopApplication& application) {
         goTo(application, shopTab)->pushViewController(make<SearchScreen>(application.shop()), false);
       }},
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
      {"stories", "a gallery to read", [](TeashopApplication& application) { goTo(application, storiesTab); }},
      {"story", "one story",
       [](TeashopApplication& application) {
         auto screen = make<StoryScreen>(application.shop());
         screen->setStory(storyShelves()[1].stories[5]);
         goTo(application, storiesTab)->pushViewController(screen, false);
       }},
      {"account", "the customer's corner",
       [](TeashopApplication& application) {
         if (application.shop()->orders.orders().empty()) {
           fill(application.shop()->cart);
           application.shop()->orders.place(application.shop()->cart, sampleOrder(application).delivery);
         }
         goTo(application, accountTab);
       }},
      {"timer", "how long a pot takes",
       [](TeashopApplication& application) {
         goTo(application, accountTab)->pushViewController(make<TimerScreen>(), false);
       }},
      {"preferences", "how the customer likes tea",
       [](TeashopApplication& application) {
         goTo(application, accountTab)->pushViewController(make<PreferencesScreen>(application.shop()), false);
       }},
      {"terms", "the small print",
       [](TeashopApplication& application) {
         goTo(application, accountTab)->pushViewController(make<TermsScreen>(), false);
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
