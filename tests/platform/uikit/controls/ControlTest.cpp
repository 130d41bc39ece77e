#include "platform/animation/CALayer.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Listener : public Object<Listener, NSObject> {
 public:
  Journal journal;
  std::function<void()> onUp;
  void down() { journal.note("down"); }
  void up(const Ref<NSObject>& sender) {
    journal.note(sender ? "up" : "up-without-sender");
    if (onUp) onUp();
  }
  void upWithEvent(const Ref<NSObject>&, const Ref<UIEvent>& event) { journal.note(event ? "up+event" : "up+none"); }
  void outside() { journal.note("outside"); }
  void cancel() { journal.note("cancel"); }
  void enter() { journal.note("enter"); }
  void exit() { journal.note("exit"); }
  void primary() { journal.note("primary"); }
  static void exportMethods(MethodTable<Listener>& table) {
    table.add<&Listener::down>("down");
    table.add<&Listener::up>("up:");
    table.add<&Listener::upWithEvent>("up:event:");
    table.add<&Listener::outside>("outside");
    table.add<&Listener::cancel>("cancel");
    table.add<&Listener::enter>("enter");
    table.add<&Listener::exit>("exit");
    table.add<&Listener::primary>("primary");
  }
};

class ControlTest : public AppFixture {
 protected:
  ControlTest() {
    button->setTitle("Pay", UIControlState::normal);
    button->setFrame({100, 200, 120, 44});
    content()->addSubview(button);
    using E = UIControlEvents;
    for (const auto& [name, events] : std::vector<std::pair<const char*, E>>{{"down", E::touchDown},
                                                                             {"up:", E::touchUpInside},
                                                                             {"outside", E::touchUpOutside},
                                                                             {"cancel", E::touchCancel},
                                                                             {"enter", E::touchDragEnter},
                                                                             {"exit", E::touchDragExit},
                                                                             {"primary", E::primaryActionTriggered}}) {
      button->addTarget(listener, sel(name), events);
    }
    settle();
  }
  void touch(UITouchPhase phase, CGPoint at) {
    window()->deliverTouch(1, phase, at, Clock::mediaTime());
    advance(0.02);
  }
  Ref<UIButton> button = make<UIButton>(UIButtonType::system);
  Ref<Listener> listener = make<Listener>();
};

TEST_F(ControlTest, ATapGoesDownAndUpAndTriggersThePrimaryAction) {
  hands().tap(button);
  advance(1);
  EXPECT_EQ(listener->journal.take(), "down up primary");
  EXPECT_FALSE(button->isHighlighted());
}

TEST_F(ControlTest, AFingerMayStrayALittleButNotFar) {
  touch(UITouchPhase::began, {160, 222});
  EXPECT_TRUE(button->isHighlighted());
  EXPECT_TRUE(button->isTracking());
  touch(UITouchPhase::moved, {160, 300});  // 56 points below the edge
  EXPECT_TRUE(button->isHighlighted());
  touch(UITouchPhase::moved, {160, 340});
  EXPECT_FALSE(button->isHighlighted());
  touch(UITouchPhase::moved, {160, 230});
  EXPECT_TRUE(button->isHighlighted());
  touch(UITouchPhase::moved, {160, 400});
  touch(UITouchPhase::ended, {160, 400});
  EXPECT_EQ(listener->journal.take(), "down exit enter exit outside");
  EXPECT_FALSE(button->isTracking());
}

TEST_F(ControlTest, DisablingItInMidTouchCancelsAndTheRestOfTheTouchIsNothing) {
  touch(UITouchPhase::began, {160, 222});
  button->setEnabled(false);
  EXPECT_FALSE(button->isHighlighted());
  EXPECT_EQ(button->state(), UIControlState::disabled);
  touch(UITouchPhase::moved, {162, 222});
  touch(UITouchPhase::ended, {162, 222});
  hands().tap(button);
  advance(1);
  EXPECT_EQ(listener->journal.take(), "down cancel");
}

TEST_F(ControlTest, RemovingItInMidTouchEndsTheTouch) {
  touch(UITouchPhase::began, {160, 222});
  button->removeFromSuperview();
  touch(UITouchPhase::ended, {160, 222});
  EXPECT_EQ(listener->journal.take(), "down cancel");
  EXPECT_FALSE(button->isTracking());
}

TEST_F(ControlTest, ATapRecogniserAroundItLeavesTheTapToIt) {
  const auto around = make<UITapGestureRecognizer>(listener, sel("outside"));
  content()->addGestureRecognizer(around);
  hands().tap(button);
  advance(1);
  EXPECT_EQ(listener->journal.take(), "down up primary");
}

TEST_F(ControlTest, ActionsAreSentInTheOrderTheyWereAddedAndEachOnce) {
  const auto control = make<UIControl>();
  const auto a = make<Listener>();
  control->addTarget(listener, sel("outside"), UIControlEvents::valueChanged);
  control->addTarget(listener, sel("up:event:"), UIControlEvents::valueChanged);
  control->addTarget(listener, sel("outside"), UIControlEvents::valueChanged | UIControlEvents::touchDown);
  control->addTarget(a, sel("primary"), UIControlEvents::valueChanged);
  control->sendActionsForControlEvents(UIControlEvents::valueChanged);
  EXPECT_EQ(listener->journal.take(), "outside up+none");
  EXPECT_EQ(a->journal.take(), "primary");
  EXPECT_EQ(control->allTargets(), (std::vector<Ref<NSObject>>{listener, a}));
  EXPECT_EQ(control->actionsForTarget(listener, UIControlEvents::touchDown), std::vector<SEL>{sel("outside")});
  control->removeTarget(listener, sel("outside"), UIControlEvents::valueChanged);
  control->sendActionsForControlEvents(UIControlEvents::valueChanged | UIControlEvents::touchDown);
  EXPECT_EQ(listener->journal.take(), "outside up+none");
  control->removeTarget(nullptr, SEL(), UIControlEvents::valueChanged | UIControlEvents::touchDown);
  EXPECT_TRUE(control->allTargets().empty());
}

TEST_F(ControlTest, ATargetThatDiedOrWasTakenAwayByAnEarlierActionHearsNothing) {
  auto mortal = make<Listener>();
  const auto last = make<Listener>();
  listener->onUp = [&] { button->removeTarget(last, SEL(), UIControlEvents::touchUpInside); };
  button->addTarget(mortal, sel("up:"), UIControlEvents::touchUpInside);
  button->addTarget(last, sel("up:"), UIControlEvents::touchUpInside);
  mortal = nullptr;
  button->sendActionsForControlEvents(UIControlEvents::touchUpInside);
  EXPECT_EQ(listener->journal.take(), "up");
  EXPECT_EQ(last->journal.take(), "");
  EXPECT_EQ(button->allTargets(), std::vector<Ref<NSObject>>{listener});
}

TEST_F(ControlTest, AnActionMayDestroyItsControl) {
  const auto holder = make<UIView>();
  auto doomed = make<UIControl>();
  holder->addSubview(doomed);
  listener->onUp = [&] { doomed->removeFromSuperview(); };
  doomed->addTarget(listener, sel("up:"), UIControlEvents::touchUpInside);
  doomed->addTarget(listener, sel("outside"), UIControlEvents::touchUpInside);
  const Weak<UIControl> watch = doomed;
  UIControl& raw = *doomed;
  listener->onUp = [&] {
    doomed->removeFromSuperview();
    doomed = nullptr;
  };
  raw.sendActionsForControlEvents(UIControlEvents::touchUpInside);
  EXPECT_EQ(listener->journal.take(), "up outside");
  EXPECT_TRUE(watch.expired());
}

// ---- Buttons

TEST_F(ControlTest, AButtonShowsWhatItsStateHasAndOtherwiseWhatTheNormalStateHas) {
  button->setTitle("Paid", UIControlState::selected);
  button->setTitleColor(UIColor::systemRed(), UIControlState::normal);
  button->setTitleColor(UIColor::gray(), UIControlState::disabled);
  button->setBackgroundColor(UIColor::white());
  button->setBackgroundColor(UIColor::black(), UIControlState::highlighted);
  const auto shown = [&] { return *button->titleLabel()->text(); };
  EXPECT_EQ(shown(), "Pay");
  EXPECT_EQ(button->titleLabel()->textColor(), UIColor::systemRed());
  button->setSelected(true);
  EXPECT_EQ(shown(), "Paid");
  EXPECT_EQ(button->currentTitleColor(), UIColor::systemRed());
  button->setEnabled(false);
  EXPECT_EQ(shown(), "Pay");  // nothing was given for selected and disabled together
  button->setSelected(false);
  EXPECT_EQ(button->titleLabel()->textColor(), UIColor::gray());
  EXPECT_EQ(button->titleLabel()->alpha(), 1);
  button->setEnabled(true);
  button->setHighlighted(true);
  EXPECT_EQ(button->layer()->backgroundColor(), UIColor::black());
  EXPECT_EQ(button->backgroundColor(), UIColor::white());
  EXPECT_EQ(button->title(UIControlState::highlighted), "Pay");
}

TEST_F(ControlTest, AButtonIsAsLargeAsItsContentsWantAndTellsWhenTheyChange) {
  const CGSize before = button->intrinsicContentSize();
  button->setTitle("Pay now and for good", UIControlState::normal);
  EXPECT_GT(button->intrinsicContentSize().width, before.width);
  button->setContentEdgeInsets({10, 20, 10, 20});
  const CGSize label = button->titleLabel()->intrinsicContentSize();
  EXPECT_EQ(button->intrinsicContentSize().width, label.width + 40);
  EXPECT_EQ(button->intrinsicContentSize().height, label.height + 20);
  button->sizeToFit();
  settle();
  EXPECT_NEAR(button->titleLabel()->frame().midX(), button->bounds().midX(), 0.5);
  EXPECT_NEAR(button->titleLabel()->frame().midY(), button->bounds().midY(), 0.5);
}

}  // namespace
}  // namespace platform::test
