#pragma once

#include "examples/teashop/model/Cart.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace teashop {

/// What an order holds, what it costs and where and when it goes: a card inside another screen.
class OrderSummary final : public platform::Object<OrderSummary, platform::UIViewController> {
 public:
  explicit OrderSummary(Order order) : order_(std::move(order)) {}
  void viewDidLoad() override;

 private:
  Order order_;
};

}  // namespace teashop
