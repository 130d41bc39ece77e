#pragma once

#include <string>

#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/uikit/application/TouchDriver.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

class PlainScreen final : public Object<PlainScreen, UIViewController> {};

/// A host of two tabs, the first one a navigation controller, with the assistant's button and chat over it.
class ChatFixture : public SessionTest {
 protected:
  ChatFixture();
  ~ChatFixture() override;

  void openChat();
  /// Lets so many seconds pass.
  static void pass(double seconds);
  void tap(const Ref<UIView>& view);
  void tap(CGPoint point);

  const Ref<TLChatViewController>& chat() const { return TLFloaterManager::shared().chatViewController(); }
  const Ref<TLFloaterView>& button() const { return TLFloaterManager::shared().floaterView(); }

  StubService service_;
  Ref<UITabBarController> tabs_;
  Ref<UINavigationController> navigation_;
  TouchDriver driver_;
};

}  // namespace lumicor::test
