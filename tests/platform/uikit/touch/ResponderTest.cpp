#include <gmock/gmock.h>

#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ResponderTest : public AppFixture {};

/// A view that can be edited, and says what it hears.
class EditedView : public Object<EditedView, UIView> {
 public:
  bool canBecomeFirstResponder() override { return willing; }
  bool canResignFirstResponder() override { return yielding; }
  bool resignFirstResponder() override {
    log.push_back("resign");
    return UIView::resignFirstResponder();
  }
  bool keyPressed(const UIKey& key) override {
    if (!usesKeys) return false;
    log.push_back("key " + key.text);
    return true;
  }
  bool willing = true;
  bool yielding = true;
  bool usesKeys = true;
  std::vector<std::string> log;
};

class ActionController : public Object<ActionController, UIViewController> {
 public:
  void plain() { log.push_back("plain"); }
  void withSender(const Ref<NSObject>& sender) { log.push_back(sender ? "sender" : "none"); }
  void withEvent(const Ref<NSObject>&, const Ref<UIEvent>& event) { log.push_back(event ? "event" : "no event"); }
  bool keyPressed(const UIKey& key) override {
    log.push_back("key " + key.text);
    return true;
  }
  static void exportMethods(MethodTable<ActionController>& table) {
    table.add<&ActionController::plain>("plain")
        .add<&ActionController::withSender>("withSender:")
        .add<&ActionController::withEvent>("withEvent:event:");
  }
  std::vector<std::string> log;
};

}  // namespace

TEST_F(ResponderTest, FollowsTheChainFromViewToApplication) {
  const auto view = make<UIView>();
  content()->addSubview(view);
  std::vector<Ref<UIResponder>> chain;
  for (Ref<UIResponder> at = view; at; at = at->nextResponder()) chain.push_back(at);
  EXPECT_THAT(chain, ElementsAre(view, content(), window()->rootViewController(), window(),
                                 UIApplication::shared().shared_from_this()));
}

TEST_F(ResponderTest, HandsTheFirstRespondersPlaceOver) {
  const auto a = make<EditedView>();
  const auto b = make<EditedView>();
  EXPECT_FALSE(a->becomeFirstResponder()) << "it is in no window";
  content()->addSubview(a);
  content()->addSubview(b);
  EXPECT_TRUE(a->becomeFirstResponder());
  EXPECT_TRUE(a->isFirstResponder());
  a->yielding = false;
  EXPECT_FALSE(b->becomeFirstResponder());
  EXPECT_EQ(UIResponder::firstResponder(), a);
  a->yielding = true;
  b->willing = false;
  EXPECT_FALSE(b->becomeFirstResponder());
  EXPECT_TRUE(a->isFirstResponder()) << "nobody is asked to resign for one that cannot take over";
  b->willing = true;
  EXPECT_TRUE(b->becomeFirstResponder());
  EXPECT_THAT(a->log, ElementsAre("resign"));
  EXPECT_TRUE(b->resignFirstResponder());
  EXPECT_EQ(UIResponder::firstResponder(), nullptr);
}

TEST_F(ResponderTest, EndsEditingBelowAViewAndWhenTheViewLeaves) {
  const auto outer = make<UIView>();
  const auto beside = make<UIView>();
  auto edited = make<EditedView>();
  outer->addSubview(edited);
  content()->addSubview(outer);
  content()->addSubview(beside);
  edited->becomeFirstResponder();
  EXPECT_TRUE(beside->endEditing(false));
  EXPECT_TRUE(edited->isFirstResponder());
  edited->yielding = false;
  EXPECT_FALSE(outer->endEditing(false));
  EXPECT_TRUE(outer->endEditing(true));
  EXPECT_FALSE(edited->isFirstResponder());

  edited->becomeFirstResponder();
  outer->removeFromSuperview();
  EXPECT_EQ(UIResponder::firstResponder(), nullptr) << "even one that does not want to resign";

  content()->addSubview(edited);
  edited->becomeFirstResponder();
  edited->removeFromSuperview();
  edited.reset();
  EXPECT_EQ(UIResponder::firstResponder(), nullptr);
}

TEST_F(ResponderTest, OffersKeysUpTheChainUntilOneIsUsed) {
  const auto controller = make<ActionController>();
  show(controller);
  const auto edited = make<EditedView>();
  controller->view()->addSubview(edited);
  edited->becomeFirstResponder();
  UIApplication::shared().deliverKey({UIKey::Code::character, "a"});
  edited->usesKeys = false;
  UIApplication::shared().deliverKey({UIKey::Code::character, "b"});
  EXPECT_THAT(edited->log, ElementsAre("key a"));
  EXPECT_THAT(controller->log, ElementsAre("key b"));
  edited->resignFirstResponder();
  UIApplication::shared().deliverKey({UIKey::Code::character, "c"});
  EXPECT_THAT(controller->log, ElementsAre("key b")) << "without a first responder keys start at the window";
}

TEST_F(ResponderTest, SendsActionsByTheirColonsAndUpTheChain) {
  const auto controller = make<ActionController>();
  show(controller);
  const auto sender = make<UIView>();
  controller->view()->addSubview(sender);
  UIApplication& application = UIApplication::shared();
  const Ref<UIEvent> event = make<UIEvent>();
  EXPECT_TRUE(application.sendAction(sel("plain"), controller, sender, event));
  EXPECT_TRUE(application.sendAction(sel("withSender:"), nullptr, sender, event));
  EXPECT_TRUE(application.sendAction(sel("withEvent:event:"), nullptr, sender, event));
  EXPECT_THAT(controller->log, ElementsAre("plain", "sender", "event"));
  EXPECT_FALSE(application.sendAction(sel("nobodyHasThis:"), nullptr, sender, event));
  EXPECT_FALSE(application.sendAction(sel("plain"), sender, sender, event)) << "the target itself must answer";
  EXPECT_FALSE(application.sendAction(SEL(), controller, sender, event));
}

TEST_F(ResponderTest, KeepsWhatWasCopied) {
  UIPasteboard& pasteboard = UIPasteboard::general();
  pasteboard.setString(std::nullopt);
  EXPECT_EQ(pasteboard.string(), std::nullopt);
  pasteboard.setString("tea for two");
  EXPECT_EQ(pasteboard.string(), "tea for two");
  EXPECT_TRUE(pasteboard.hasStrings());
  pasteboard.setString(std::nullopt);
  EXPECT_FALSE(pasteboard.hasStrings());
}

}  // namespace platform::test
