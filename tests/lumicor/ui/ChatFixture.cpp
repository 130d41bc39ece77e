#include "tests/lumicor/ui/ChatFixture.h"

#include "platform/dispatch/RunLoop.h"

namespace lumicor::test {

ChatFixture::ChatFixture() {
  navigation_ = make<UINavigationController>(make<PlainScreen>());
  tabs_ = make<UITabBarController>();
  tabs_->setViewControllers({navigation_, make<PlainScreen>()});
  show(tabs_);
  TLFloaterManager& manager = TLFloaterManager::shared();
  TLLayout layout;
  layout.image = "";
  layout.closeButton = "";
  manager.setLayoutData(layout);
  manager.show();
  button()->setShow(true);
  pass(1);
}

ChatFixture::~ChatFixture() {
  if (const auto responder = UIResponder::firstResponder()) responder->resignFirstResponder();
  pass(1);
  if (button()) button()->removeFromSuperview();
  TLFloaterManager::shared().setChatViewController(nullptr);
}

void ChatFixture::pass(double seconds) { RunLoop::advance(seconds); }

void ChatFixture::openChat() {
  navigation_->pushViewController(chat(), false);
  pass(0.5);
}

void ChatFixture::tap(const Ref<UIView>& view) {
  driver_.tap(view);
  pass(0.4);
}

void ChatFixture::tap(CGPoint point) {
  driver_.tap(point);
  pass(0.4);
}

}  // namespace lumicor::test
