#pragma once

#include <memory>
#include <set>
#include <string>

#include "examples/teashop/model/Cart.h"
#include "examples/teashop/model/TeaFilter.h"

namespace teashop {

/// How the customer likes tea.
struct Preferences {
  std::string strength = "medium";
  bool wantsNewsletter = false;
};

/// What every screen of the shop shares. One for a run of the application; screens hold it together. Main thread.
struct Shop {
  Cart cart;
  OrderBook orders;
  Preferences preferences;
  TeaFilter filter;                        ///< of the list of teas
  std::set<std::string> favourites;        ///< identifiers of teas
  std::set<std::string> favouriteStories;  ///< titles
};

using ShopRef = std::shared_ptr<Shop>;

}  // namespace teashop
