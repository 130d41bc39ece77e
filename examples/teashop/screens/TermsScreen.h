#pragma once

#include "platform/uikit/controllers/UIViewController.h"

namespace teashop {

/// The terms of the shop, as a page of its site.
class TermsScreen final : public platform::Object<TermsScreen, platform::UIViewController> {
 public:
  void viewDidLoad() override;
};

}  // namespace teashop
