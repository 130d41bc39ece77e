#pragma once

#include <gmock/gmock.h>
#include <string>

#include "examples/teashop/ScreenCatalogue.h"
#include "platform/dispatch/Clock.h"
#include "platform/uikit/application/TouchDriver.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace teashop::test {

using namespace platform;

/// The shop in virtual time, and hands.
class ShopFixture : public testing::Test {
 protected:
  ~ShopFixture() override;

  /// Goes to a screen of the catalogue.
  void open(const std::string& name);
  /// The view of that identifier that is on the screen; a failure and none when there is none.
  Ref<UIView> find(const std::string& identifier) const;
  template <class T>
  Ref<T> find(const std::string& identifier) const {
    return as<T>(find(identifier));
  }
  bool shows(const std::string& identifier) const;
  std::string text(const std::string& identifier) const;
  /// The class of the screen in front.
  std::string screenName() const;
  Ref<UINavigationController> navigation() const;

  void tap(const std::string& identifier);
  /// A button or label that reads so.
  void tapText(const std::string& text);
  /// The bar button of the screen in front.
  void tapBarButton(const std::string& identifier);
  void drag(const std::string& identifier, double dx, double dy);
  void type(const std::string& text);

  const ShopRef& shop() const { return application_.shop(); }

 private:
  VirtualTime time_;
  TeashopApplication application_;
  TouchDriver hands_;
};

}  // namespace teashop::test
