// What a person does to controls, bars and views, on its way through the hooks.

#include <gmock/gmock.h>

#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/capture/LumicorMethodExchange.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/touch/UILongPressGestureRecognizer.h"
#include "platform/uikit/touch/UIPanGestureRecognizer.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "tests/lumicor/capture/CaptureTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// ---- Controls

using ControlHookTest = CaptureTest;

TEST_F(ControlHookTest, RegistersANamedControlUnderItsOptionalNameAndThenSendsItsAction) {
  tap(addPressed<UIButton>("pay"));
  EXPECT_THAT(names(), ElementsAre("Action on Optional(\"pay\")"));
  EXPECT_EQ(names().at(0).size(), 25U);
  EXPECT_THAT(page()->heard, ElementsAre("press UIButton after 1"));
}

TEST_F(ControlHookTest, PassesOverWhatHasNoNameAndWhatItIsNotAskedToWatch) {
  const auto nameless = addPressed<UIButton>("");
  const auto named = addPressed<UIButton>("pay");
  tap(nameless);
  Lumicor::shared().setInitialized(false);
  tap(named);
  Lumicor::shared().setInitialized(true);
  Lumicor::isTracking = false;
  tap(named);
  Lumicor::isTracking = true;
  const auto field = add<UITextField>("name");
  field->addTarget(page(), sel("press:"), UIControlEvents::editingDidBegin);
  tap(field);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(page()->heard, ElementsAre("press UIButton after 0", "press UIButton after 0", "press UIButton after 0",
                                         "press UITextField after 0"));
}

TEST_F(ControlHookTest, SendsEachActionOnceWhateverItTakesAndWhereverItGoes) {
  const auto button = addPressed<UIButton>("pay");
  button->addTarget(page(), sel("plain"), UIControlEvents::touchUpInside);
  button->addTarget(page(), sel("press:event:"), UIControlEvents::touchUpInside);
  button->addTarget(nullptr, sel("save:"), UIControlEvents::touchUpInside);
  button->addTarget(page(), sel("nobody:"), UIControlEvents::touchUpInside);
  tap(button);
  EXPECT_THAT(page()->heard, ElementsAre("press UIButton after 1", "plain after 2", "press with event after 3",
                                         "save UIButton after 4"));
  EXPECT_THAT(names(), SizeIs(5));
}

TEST_F(ControlHookTest, RegistersWhatAControlHoldsAfterThePersonChangedIt) {
  tap(addPressed<UISwitch>("milk", UIControlEvents::valueChanged));
  EXPECT_EQ(lastAction().value().substr(0, 4), "true");
  const auto slider = addPressed<UISlider>("sweet", UIControlEvents::valueChanged);
  const CGPoint at = slider->convertRect(slider->bounds(), nullptr).origin;
  hands().drag({{at.x + 5, at.y + 30}, {at.x + 200, at.y + 30}}, 0.3);
  finishHands();
  EXPECT_GT(names().size(), 5U) << "each step of a drag is an action";
}

// ---- Somebody else's exchanges

int otherCalls = 0;
void otherSendAction(UIControl& self, SEL action, const Ref<NSObject>& target, const Ref<NSObject>& event) {
  ++otherCalls;
  self.perform(sel("other_sendAction"), action, target, event);
}

TEST_F(ControlHookTest, LivesBesideAnotherExchangeAndASecondInstallation) {
  Class& cls = UIControl::cls();
  class_addMethod<&otherSendAction>(cls, sel("other_sendAction"));
  const auto exchange = [&] {
    method_exchangeImplementations(class_getInstanceMethod(cls, sel("sendAction:to:forEvent:")),
                                   class_getInstanceMethod(cls, sel("other_sendAction")));
  };
  otherCalls = 0;
  exchange();
  LumicorHooks::install();
  tap(addPressed<UIButton>("pay"));
  exchange();
  EXPECT_EQ(otherCalls, 1);
  EXPECT_THAT(names(), SizeIs(1));
  EXPECT_THAT(page()->heard, SizeIs(1));

  // One that was there before us stands behind our own selector.
  const auto exchangeBehind = [&] {
    method_exchangeImplementations(class_getInstanceMethod(cls, sel("swizzled_sendAction:to:for:")),
                                   class_getInstanceMethod(cls, sel("other_sendAction")));
  };
  exchangeBehind();
  tap(addPressed<UIButton>("more"));
  exchangeBehind();
  EXPECT_EQ(otherCalls, 2);
  EXPECT_THAT(names(), SizeIs(2));
  EXPECT_THAT(page()->heard, SizeIs(2));
}

struct QuietButton : Object<QuietButton, UIButton> {
  void sendAction(SEL, Ref<NSObject>, Ref<UIEvent>) override {}
};

TEST_F(ControlHookTest, DoesNotSeeAControlThatKeepsItsActionsToItself) {
  tap(addPressed<QuietButton>("quiet"));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(page()->heard, IsEmpty());
}

void takenName(UIView&, bool) {}

TEST_F(ControlHookTest, LeavesAMethodAloneWhoseReplacementNameIsTaken) {
  Class& cls = UIView::cls();
  class_addMethod<&takenName>(cls, sel("own"));
  LumicorMethodExchange::install<&takenName>(cls, "setHidden:", "own");
  EXPECT_FALSE(class_getInstanceMethod(cls, sel("own"))->isExchanged());
  testing::internal::CaptureStdout();
  LumicorMethodExchange::exchange(cls, sel("missing:"), sel("own"), LumicorMethodExchange::WhenMissing::staySilent);
  LumicorMethodExchange::exchange(cls, sel("missing:"), sel("own"), LumicorMethodExchange::WhenMissing::printLine);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to get original/swizzled method.\n");
  EXPECT_DEATH(
      LumicorMethodExchange::exchange(cls, sel("missing:"), sel("own"), LumicorMethodExchange::WhenMissing::fail),
      "a method to exchange is missing: missing:");
}

// ---- Items of bars

class BarHookTest : public CaptureTest {
 protected:
  BarHookTest() {
    toolbar_ = make<UIToolbar>(CGRect{0, 600, 390, 44});
    page()->view()->addSubview(toolbar_);
  }
  Ref<UIBarButtonItem> showInToolbar(const Ref<UIBarButtonItem>& item, const std::string& name) {
    if (!name.empty()) item->setAccessibilityIdentifier(name);
    toolbar_->setItems({item});
    UIApplication::shared().layoutAndDisplayIfNeeded();
    return item;
  }
  Ref<UIBarButtonItem> systemItem(const Ref<NSObject>& target, const char* action) {
    return make<UIBarButtonItem>(UIBarButtonSystemItem::save, target, sel(action));
  }
  Ref<UIToolbar> toolbar_;
};

TEST_F(BarHookTest, RegistersAnItemOfAToolbarAndSendsItsActionInItsName) {
  const auto item =
      showInToolbar(make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, page(), sel("press:")), "add");
  tap(item->view());
  EXPECT_THAT(names(), ElementsAre("uiBarButtonItem"));
  EXPECT_EQ(lastAction().elementId(), "add");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_BAR_BUTTON_ITEM);
  EXPECT_EQ(lastAction().inputType(), LumicorInputType::TYPE_BAR_BUTTON_ITEM);
  EXPECT_EQ(lastAction().value(), "Add");
  EXPECT_GT(lastAction().width(), 0);
  EXPECT_THAT(page()->heard, ElementsAre("press UIBarButtonItem after 1"));
}

TEST_F(BarHookTest, RegistersAnItemOfANavigationBarAndNotTheWayBack) {
  const auto navigation = make<UINavigationController>(page());
  const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, page(), sel("press:"));
  item->setAccessibilityIdentifier("add");
  page()->navigationItem()->setRightBarButtonItem(item);
  show(navigation);
  RunLoop::advance(1);
  tap(item->view());
  EXPECT_THAT(names(), ElementsAre("uiBarButtonItem"));
  EXPECT_THAT(page()->heard, SizeIs(1));

  navigation->pushViewController(make<HostPage>(), false);
  RunLoop::advance(1);
  const Ref<UIView> back = navigation->navigationBar()->backButtonView();
  ASSERT_TRUE(back);
  tap(back);
  RunLoop::advance(2);
  EXPECT_EQ(navigation->topViewController(), page());
  EXPECT_THAT(names(), ElementsAre("uiBarButtonItem", "systemBack")) << "once, and not as an item";
}

TEST_F(BarHookTest, RegistersAPressOfASystemItemOnceAndSendsTheHostsActionOnce) {
  const auto item = showInToolbar(systemItem(page(), "press:"), "save");
  tap(item->view());
  EXPECT_THAT(names(), ElementsAre("uiBarButtonItem"));
  EXPECT_THAT(page()->heard, ElementsAre("press UIBarButtonItem after 1"));

  // Pressed by other means than its button, it is registered too.
  UIApplication::shared().sendAction(item->action(), item->target(), item, nullptr);
  EXPECT_THAT(names(), SizeIs(2));
  EXPECT_THAT(page()->heard, SizeIs(2));

  Lumicor::isTracking = false;
  tap(item->view());
  EXPECT_THAT(names(), SizeIs(2));
  EXPECT_THAT(page()->heard, SizeIs(3));
}

TEST_F(BarHookTest, KeepsTheWayOfASystemItemsActionUpTheChain) {
  const auto item = showInToolbar(systemItem(nullptr, "save:"), "save");
  Lumicor::isTracking = false;
  tap(item->view());
  Lumicor::isTracking = true;
  tap(item->view());
  EXPECT_THAT(page()->heard, ElementsAre("save UIBarButtonItem after 0", "save UIBarButtonItem after 1"));
}

TEST_F(BarHookTest, SendsNothingForATargetThatIsGoneOrAnActionThatWasNeverGiven) {
  auto target = make<HostPage>();
  const auto item = showInToolbar(systemItem(target, "save:"), "save");
  target = nullptr;
  tap(item->view());
  EXPECT_THAT(page()->heard, IsEmpty()) << "an action for the dead is not one for the chain";
  tap(showInToolbar(make<UIBarButtonItem>(UIBarButtonSystemItem::add, page(), SEL()), "add")->view());
  EXPECT_THAT(page()->heard, IsEmpty());
  EXPECT_THAT(names(), SizeIs(2));
}

TEST_F(BarHookTest, TellsThePersonOfAnItemWithoutANameAndSendsItsAction) {
  const auto item = showInToolbar(systemItem(page(), "press:"), "");
  tap(item->view());
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("Accessibility Identifier not found"));
  EXPECT_THAT(page()->heard, SizeIs(1));
}

struct invalidating : Object<invalidating, HostPage> {
  void invalidate(const Ref<NSObject>&) { note("invalidated"); }
  static void exportMethods(MethodTable<invalidating>& table) {
    table.add<&invalidating::invalidate>("invalidateAll:");
  }
};

TEST_F(BarHookTest, SwallowsAnActionThatInvalidates) {
  const auto host = make<invalidating>();
  const auto item =
      showInToolbar(make<UIBarButtonItem>("Stop", UIBarButtonItemStyle::plain, host, sel("invalidateAll:")), "stop");
  tap(item->view());
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(host->heard, IsEmpty());
  Lumicor::isTracking = false;
  tap(item->view());
  EXPECT_THAT(host->heard, SizeIs(1));
}

// ---- Gestures

using GestureHookTest = CaptureTest;

TEST_F(GestureHookTest, RegistersATapOnANamedViewAfterTheHostHeardOfItOnce) {
  const auto view = add<UIView>("card");
  view->addGestureRecognizer(make<UITapGestureRecognizer>(page(), sel("tapped:")));
  tap(view);
  EXPECT_THAT(names(), ElementsAre("UITapGestureRecognizer"));
  EXPECT_EQ(lastAction().elementId(), "card");
  EXPECT_THAT(page()->heard, ElementsAre("tapped after 0"));
}

TEST_F(GestureHookTest, RegistersNothingElse) {
  const auto nameless = add<UIView>("");
  nameless->addGestureRecognizer(make<UITapGestureRecognizer>(page(), sel("tapped:")));
  tap(nameless);
  const auto named = add<UIView>("card");
  named->addGestureRecognizer(make<UIPanGestureRecognizer>(page(), sel("plain")));
  named->addGestureRecognizer(make<UILongPressGestureRecognizer>(page(), sel("plain")));
  const CGPoint at = named->convertRect(named->bounds(), nullptr).origin;
  hands().drag({{at.x + 10, at.y + 10}, {at.x + 150, at.y + 10}}, 0.3);
  finishHands();
  named->addGestureRecognizer(make<UITapGestureRecognizer>(page(), sel("tapped:")));
  Lumicor::shared().setInitialized(false);
  tap(named);
  Lumicor::shared().setInitialized(true);
  Lumicor::isTracking = false;
  tap(named);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_EQ(std::ranges::count(page()->heard, "tapped after 0"), 3);
  EXPECT_GE(std::ranges::count(page()->heard, "plain after 0"), 3) << "pans reach the host";
}

TEST_F(GestureHookTest, TellsTheHostOnceWithTrackingOff) {
  Lumicor::isTracking = false;
  const auto view = add<UIView>("card");
  const auto tapRecognizer = make<UITapGestureRecognizer>(page(), sel("tapped:"));
  view->addGestureRecognizer(tapRecognizer);
  tap(view);
  EXPECT_THAT(page()->heard, SizeIs(1));
  tapRecognizer->removeTarget(page(), sel("tapped:"));
  tap(view);
  EXPECT_THAT(page()->heard, SizeIs(1)) << "taken away, the action is gone for good";
}

// ---- Text fields

using TextFieldHookTest = CaptureTest;

TEST_F(TextFieldHookTest, RegistersABurstOfTypingOnceTwoSecondsAfterItsEnd) {
  const auto field = add<UITextField>("name");
  tap(field);
  hands().setTypingInterval(1.5);
  type("Ada");
  RunLoop::advance(0.3);
  EXPECT_THAT(names(), IsEmpty());
  RunLoop::advance(1.9);
  EXPECT_THAT(names(), ElementsAre("textField"));
  EXPECT_EQ(lastAction().value(), "Ada");
  EXPECT_EQ(lastAction().elementId(), "name");
  RunLoop::advance(5);
  EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(TextFieldHookTest, RegistersNothingForAFieldWithoutANameOrAfterTheDemonstration) {
  tap(add<UITextField>(""));
  type("x");
  RunLoop::advance(3);
  const auto field = add<UITextField>("name");
  tap(field);
  type("y");
  Lumicor::isTracking = false;
  RunLoop::advance(3);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(TextFieldHookTest, RegistersWhatWasTypedBeforeTheNextAction) {
  const auto field = add<UITextField>("name");
  const auto button = addPressed<UIButton>("save");
  tap(button);
  tap(field);
  type("Ada");
  tap(button);
  EXPECT_THAT(names(), ElementsAre("Action on Optional(\"save\")", "textField", "Action on Optional(\"save\")"));
  const auto doing = [](std::size_t i) { return LumicorTrackingTask::taskFlow[i].actionElement().actionId(); };
  EXPECT_NE(doing(1), doing(0)) << "the first press has not brought the text about";
  EXPECT_NE(doing(1), doing(2));
  RunLoop::advance(5);
  EXPECT_THAT(names(), SizeIs(3));
}

TEST_F(TextFieldHookTest, RegistersWhatWasTypedOnTheScreenItWasTypedOn) {
  const auto field = add<UITextField>("name");
  tap(field);
  type("Ada");
  struct Other : Object<Other, UIViewController> {};
  page()->presentViewController(make<Other>(), false);
  RunLoop::advance(5);
  EXPECT_THAT(names(), ElementsAre("textField"));
  EXPECT_EQ(LumicorTrackingTask::taskFlow[0].viewName(), "HostPage");
  page()->dismissViewController(false);
  RunLoop::advance(2);
}

TEST_F(TextFieldHookTest, LetsAFieldGoThatDiesWhileItsPauseRuns) {
  auto field = add<UITextField>("name");
  tap(field);
  type("Ada");
  field->resignFirstResponder();
  field->removeFromSuperview();
  const Weak<UITextField> gone = field;
  field = nullptr;
  RunLoop::advance(1);
  EXPECT_TRUE(gone.expired());
  RunLoop::advance(5);
  EXPECT_THAT(names(), IsEmpty());
}

// ---- The way back

using BackHookTest = CaptureTest;

/// A screen with a button "done" that leads back by itself.
class LeavingPage : public Object<LeavingPage, UIViewController> {
 public:
  Ref<UIButton> done;
  void viewDidLoad() override {
    Super::viewDidLoad();
    done = make<UIButton>(CGRect{0, 200, 300, 60});
    done->setAccessibilityIdentifier("done");
    done->addTarget(self(), sel("leave"), UIControlEvents::touchUpInside);
    view()->addSubview(done);
  }
  void leave() { navigationController()->popViewControllerAnimated(false); }
  static void exportMethods(MethodTable<LeavingPage>& table) { table.add<&LeavingPage::leave>("leave"); }
};

TEST_F(BackHookTest, TellsAWayBackThatAnActionBringsAboutFromAnActionOfThePerson) {
  const auto navigation = make<UINavigationController>(page());
  show(navigation);
  const auto doings = [] {
    std::vector<std::string> ids;
    for (const LumicorSnapshot& snapshot : LumicorTrackingTask::taskFlow) {
      ids.push_back(snapshot.actionElement().actionId());
    }
    return ids;
  };
  for (const bool byThePerson : {false, true}) {
    const auto leaving = make<LeavingPage>();
    navigation->pushViewController(leaving, false);
    RunLoop::advance(1);
    tap(byThePerson ? navigation->navigationBar()->backButtonView() : leaving->done);
    RunLoop::advance(2);
    ASSERT_EQ(navigation->topViewController(), page());
  }
  EXPECT_THAT(names(), ElementsAre("Action on Optional(\"done\")", "systemBack", "systemBack"));
  EXPECT_THAT(doings(), ElementsAre("0", "0", "2"));
}

TEST_F(BackHookTest, NamesAndRegistersTheScreenThatIsPopped) {
  const auto navigation = make<UINavigationController>(page());
  show(navigation);
  const auto detail = make<HostPage>();
  navigation->pushViewController(detail, false);
  RunLoop::advance(1);
  navigation->popViewControllerAnimated(false);
  EXPECT_THAT(names(), ElementsAre("systemBack"));
  EXPECT_EQ(lastAction().elementId(), "backButton");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_SYSTEM_BACK);
  EXPECT_EQ(detail->view()->accessibilityIdentifier(), "backButton");

  Lumicor::isTracking = false;
  const auto other = make<HostPage>();
  navigation->pushViewController(other, false);
  RunLoop::advance(1);
  navigation->popViewControllerAnimated(false);
  EXPECT_THAT(names(), SizeIs(1));
  EXPECT_EQ(other->view()->accessibilityIdentifier(), std::nullopt);
}

TEST_F(BackHookTest, LoadsNoViewThatWasNeverShown) {
  const auto parent = make<UIViewController>();
  const auto child = make<HostPage>();
  parent->addChildViewController(child);
  child->willMoveToParent(nullptr);
  EXPECT_FALSE(child->isViewLoaded());
  EXPECT_THAT(names(), IsEmpty());
}

}  // namespace lumicor::test
