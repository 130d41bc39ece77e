#pragma once

#include "examples/teashop/model/Cart.h"
#include "platform/uikit/UIViewController.h"

namespace teashop {

/// Says that the order was placed, and what it was.
class ConfirmationScreen final : public platform::Object<ConfirmationScreen, platform::UIViewController> {
 public:
  explicit ConfirmationScreen(Order order) : order_(std::move(order)) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<ConfirmationScreen>& table);

 private:
  void done();
  Order order_;
};

}  // namespace teashop
