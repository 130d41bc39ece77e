#pragma once

#include "examples/teashop/model/Cart.h"
#include "examples/teashop/views/RatingControl.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// The order was placed: its number, what it holds, and stars to say how ordering was.
class ConfirmationScreen final : public platform::Object<ConfirmationScreen, platform::UIViewController> {
 public:
  explicit ConfirmationScreen(Order order) : order_(std::move(order)) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<ConfirmationScreen>& table);

 private:
  platform::Ref<platform::UIView> makeSummary();
  void rated();
  void done();

  Order order_;
  platform::Ref<RatingControl> rating_;
  platform::Ref<platform::UILabel> ratingNote_;
};

}  // namespace teashop
