#pragma once

#include <memory>

#include "examples/teashop/model/Cart.h"

namespace teashop {

/// What every screen of the shop shares. One for a run of the application; screens hold it together. Main thread.
struct Shop {
  Cart cart;
  OrderBook orders;
};

using ShopRef = std::shared_ptr<Shop>;

}  // namespace teashop
