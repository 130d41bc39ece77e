#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Watcher : public Object<Watcher, NSObject> {
 public:
  Journal journal;
  int scrolls = 0;
  std::function<void()> onScroll;
  std::function<void()> onLetGo;
  void didScroll(const Ref<NSObject>&) {
    ++scrolls;
    if (onScroll) onScroll();
  }
  void willDrag(const Ref<NSObject>&) { journal.note("drag"); }
  void didDrag(const Ref<NSObject>&, bool decelerates) {
    journal.note(decelerates ? "let-go" : "put-down");
    if (onLetGo) onLetGo();
  }
  void willDecelerate(const Ref<NSObject>&) { journal.note("glide"); }
  void didDecelerate(const Ref<NSObject>&) { journal.note("rest"); }
  void didAnimate(const Ref<NSObject>&) { journal.note("arrived"); }
  void tapped() { journal.note("tapped"); }
  void cancelled() { journal.note("cancelled"); }
  static void exportMethods(MethodTable<Watcher>& table) {
    table.add<&Watcher::didScroll>("scrollViewDidScroll:");
    table.add<&Watcher::willDrag>("scrollViewWillBeginDragging:");
    table.add<&Watcher::didDrag>("scrollViewDidEndDragging:willDecelerate:");
    table.add<&Watcher::willDecelerate>("scrollViewWillBeginDecelerating:");
    table.add<&Watcher::didDecelerate>("scrollViewDidEndDecelerating:");
    table.add<&Watcher::didAnimate>("scrollViewDidEndScrollingAnimation:");
    table.add<&Watcher::tapped>("tapped");
    table.add<&Watcher::cancelled>("cancelled");
  }
};

class ScrollViewTest : public AppFixture {
 protected:
  ScrollViewTest() {
    scroll->setFrame({0, 100, 390, 400});
    scroll->setContentSize({390, 2000});
    scroll->setDelegate(watcher);
    content()->addSubview(scroll);
    settle();
  }
  double y() const { return scroll->contentOffset().y; }
  void touch(UITouchPhase phase, CGPoint at) {
    window()->deliverTouch(1, phase, at, Clock::mediaTime());
    advance(0.016);
  }
  /// A finger goes down and moves in steps; it stays down.
  void pull(CGPoint from, double dx, double dy) {
    touch(UITouchPhase::began, from);
    for (int i = 1; i <= 20; ++i) touch(UITouchPhase::moved, {from.x + dx * i / 20, from.y + dy * i / 20});
  }
  Ref<UIScrollView> scroll = make<UIScrollView>();
  Ref<Watcher> watcher = make<Watcher>();
};

TEST_F(ScrollViewTest, ADragMovesTheContentWithTheFinger) {
  pull({200, 400}, 0, -150);
  EXPECT_TRUE(scroll->isDragging());
  EXPECT_NEAR(y(), 140, 6);  // the first ten points are what makes it a drag
  for (int i = 0; i < 15; ++i) touch(UITouchPhase::moved, {200, 250});
  touch(UITouchPhase::ended, {200, 250});
  EXPECT_FALSE(scroll->isDragging());
  advance(1);
  EXPECT_NEAR(y(), 140, 6);
  EXPECT_EQ(watcher->journal.take(), "drag put-down");
  EXPECT_GT(watcher->scrolls, 10);
}

TEST_F(ScrollViewTest, AFlickGlidesOnAndComesToRest) {
  hands().flick({200, 450}, 0, -200);
  advance(0.3);
  const double early = y();
  EXPECT_TRUE(scroll->isDecelerating());
  advance(3);
  EXPECT_FALSE(scroll->isDecelerating());
  EXPECT_GT(y(), early + 100);
  EXPECT_LE(y(), 1600);
  EXPECT_EQ(watcher->journal.take(), "drag let-go glide rest");
}

TEST_F(ScrollViewTest, PulledBeyondItsEdgeItGivesLessAndLessAndSpringsBack) {
  pull({200, 200}, 0, 200);
  EXPECT_LT(y(), -50);
  EXPECT_GT(y(), -150);
  touch(UITouchPhase::ended, {200, 400});
  advance(2);
  EXPECT_EQ(y(), 0);
  EXPECT_EQ(watcher->journal.take(), "drag let-go glide rest");
  scroll->setBounces(false);
  pull({200, 200}, 0, 200);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {200, 400});
}

TEST_F(ScrollViewTest, ContentThatFitsDoesNotScrollUnlessItAlwaysBounces) {
  scroll->setContentSize({390, 100});
  pull({200, 200}, 0, 100);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {200, 300});
  scroll->setAlwaysBounceVertical(true);
  pull({200, 200}, 0, 100);
  EXPECT_LT(y(), 0);
  touch(UITouchPhase::ended, {200, 300});
  advance(2);
  EXPECT_EQ(y(), 0);
  scroll->setScrollEnabled(false);
  pull({200, 200}, 0, 100);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {200, 300});
}

TEST_F(ScrollViewTest, AnOffsetSetByProgramIsToldAndMayLieAnywhere) {
  scroll->setContentOffset({0, 300});
  EXPECT_EQ(watcher->scrolls, 1);
  scroll->setContentOffset({0, 300});
  EXPECT_EQ(watcher->scrolls, 1);
  scroll->setContentOffset({0, -10.5});
  settle();
  EXPECT_EQ(y(), -10.5);
  scroll->setContentOffset({0, std::numeric_limits<double>::quiet_NaN()});
  EXPECT_EQ(y(), -10.5);
  EXPECT_EQ(watcher->journal.take(), "");
}

TEST_F(ScrollViewTest, AnAnimatedOffsetTakesItsTimeAndTellsWhenItArrived) {
  scroll->setContentOffset({0, 500}, true);
  EXPECT_EQ(y(), 0);
  advance(0.15);
  EXPECT_GT(y(), 100);
  EXPECT_LT(y(), 400);
  advance(0.3);
  EXPECT_EQ(y(), 500);
  EXPECT_EQ(watcher->journal.take(), "arrived");
  EXPECT_GT(watcher->scrolls, 10);
  scroll->setContentOffset({0, 0}, true);
  advance(0.1);
  scroll->setContentOffset({0, 77});  // a program that knows better
  advance(1);
  EXPECT_EQ(y(), 77);
}

TEST_F(ScrollViewTest, ADelegateMaySendItElsewhereFromInsideItsCall) {
  watcher->onScroll = [&] {
    if (y() > 200) scroll->setContentOffset({0, 50});
  };
  scroll->setContentOffset({0, 500}, true);
  advance(2);
  EXPECT_EQ(y(), 50);
  watcher->onScroll = [&] { scroll->removeFromSuperview(); };
  hands().flick({200, 450}, 0, -200);
  advance(2);
  EXPECT_EQ(scroll->superview(), nullptr);
  EXPECT_FALSE(scroll->isDecelerating());
}

TEST_F(ScrollViewTest, AFingerOnGlidingContentStopsItAndPressesNothing) {
  const auto button = make<UIButton>();
  button->setFrame({0, 0, 390, 2000});
  button->addTarget(watcher, sel("tapped"), UIControlEvents::touchUpInside);
  scroll->addSubview(button);
  hands().flick({200, 450}, 0, -300);
  advance(0.4);
  ASSERT_TRUE(scroll->isDecelerating());
  watcher->journal.take();
  tap(CGPoint{200, 300});
  EXPECT_FALSE(scroll->isDecelerating());
  const double stopped = y();
  advance(1);
  EXPECT_EQ(y(), stopped);
  EXPECT_EQ(watcher->journal.take(), "rest");
  tap(CGPoint{200, 300});
  EXPECT_EQ(watcher->journal.take(), "tapped");
}

TEST_F(ScrollViewTest, ADragTakesTheTouchFromAButtonButNotFromASlider) {
  const auto button = make<UIButton>();
  button->setFrame({0, 0, 390, 200});
  button->addTarget(watcher, sel("tapped"), UIControlEvents::touchUpInside);
  button->addTarget(watcher, sel("cancelled"), UIControlEvents::touchCancel);
  const auto slider = make<UISlider>();
  slider->setFrame({20, 250, 350, 34});
  scroll->addSubview(button);
  scroll->addSubview(slider);
  settle();
  pull({200, 250}, 0, -60);
  touch(UITouchPhase::ended, {200, 190});
  EXPECT_EQ(watcher->journal.take().substr(0, 14), "cancelled drag");
  EXPECT_FALSE(button->isHighlighted());
  advance(3);
  scroll->setContentOffset({0, 0});
  watcher->journal.take();
  pull({34, 367}, 200, 30);
  EXPECT_TRUE(slider->isTracking());
  EXPECT_GT(slider->value(), 0.3f);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {234, 397});
  scroll->setCanCancelContentTouches(false);
  pull({200, 250}, 0, -60);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {200, 190});
  EXPECT_EQ(watcher->journal.take(), "tapped");
}

TEST_F(ScrollViewTest, OfTwoInOneAnotherTheOneScrollsWhoseDirectionItIs) {
  const auto row = make<UIScrollView>();
  row->setFrame({0, 0, 390, 200});
  row->setContentSize({2000, 200});
  scroll->addSubview(row);
  settle();
  pull({300, 200}, -150, -10);
  EXPECT_GT(row->contentOffset().x, 100);
  EXPECT_EQ(y(), 0);
  touch(UITouchPhase::ended, {150, 190});
  advance(3);
  const double x = row->contentOffset().x;
  pull({300, 280}, -10, -150);
  EXPECT_EQ(row->contentOffset().x, x);
  EXPECT_GT(y(), 100);
  touch(UITouchPhase::ended, {290, 130});
}

TEST_F(ScrollViewTest, PagesTurnOneAtATime) {
  scroll->setPagingEnabled(true);
  hands().flick({200, 450}, 0, -250, 0.1);
  advance(2);
  EXPECT_EQ(y(), 400);
  pull({200, 300}, 0, -100);
  for (int i = 0; i < 15; ++i) touch(UITouchPhase::moved, {200, 200});
  touch(UITouchPhase::ended, {200, 200});
  advance(2);
  EXPECT_EQ(y(), 400);  // not far enough
}

TEST_F(ScrollViewTest, InsetsMoveTheEdges) {
  scroll->setContentInset({30, 0, 50, 0});
  settle();
  EXPECT_EQ(y(), -30);
  scroll->setContentOffset({0, 5000});
  scroll->setContentSize({390, 1999});
  EXPECT_EQ(y(), 1999 + 50 - 400);
  scroll->setFrame({0, 100, 390, 600});
  settle();
  EXPECT_EQ(y(), 1999 + 50 - 600);
}

TEST_F(ScrollViewTest, TheSafeAreaCountsWhereTheContentScrolls) {
  scroll->setFrame({0, 0, 390, 844});
  settle();
  EXPECT_EQ(scroll->adjustedContentInset(), (UIEdgeInsets{47, 0, 34, 0}));
  EXPECT_EQ(y(), -47);
  scroll->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
  settle();
  EXPECT_EQ(scroll->adjustedContentInset(), UIEdgeInsets{});
  EXPECT_EQ(y(), 0);
}

TEST_F(ScrollViewTest, ScrollsTheLeastThatShowsARectangle) {
  const struct {
    double from;
    CGRect rect;
    double expected;
  } table[] = {{0, {0, 100, 10, 10}, 0},      {0, {0, 600, 10, 50}, 250},    {500, {0, 100, 10, 10}, 100},
               {500, {0, 700, 10, 100}, 500}, {0, {0, 1990, 10, 100}, 1600}, {800, {0, 100, 10, 900}, 100}};
  for (const auto& row : table) {
    scroll->setContentOffset({0, row.from});
    scroll->scrollRectToVisible(row.rect, false);
    EXPECT_EQ(y(), row.expected) << row.from << " " << row.rect.origin.y;
  }
}

TEST_F(ScrollViewTest, ADragPutsTheKeyboardAwayWhereThatIsWished) {
  const auto field = make<UITextField>();
  field->setFrame({20, 20, 200, 30});
  scroll->addSubview(field);
  scroll->setKeyboardDismissMode(UIScrollViewKeyboardDismissMode::onDrag);
  field->becomeFirstResponder();
  advance(1);
  drag({{200, 400}, {200, 300}});
  EXPECT_FALSE(field->isFirstResponder());
}

TEST_F(ScrollViewTest, WhatTheDelegateDoesAsTheFingerLetsGoHolds) {
  watcher->onLetGo = [&] { scroll->setContentInset({60, 0, 0, 0}); };  // room for a spinner while it reloads
  pull({200, 200}, 0, 200);
  const double pulled = y();
  ASSERT_LT(pulled, -70);
  touch(UITouchPhase::ended, {200, 400});
  EXPECT_LT(y(), -60) << "it springs there, it does not jump";
  advance(2);
  EXPECT_EQ(y(), -60);
  watcher->onLetGo = [&] { scroll->setContentOffset({0, 333}, false); };
  watcher->journal.take();
  hands().flick({200, 450}, 0, -200);
  advance(3);
  EXPECT_EQ(y(), 333);
  EXPECT_EQ(watcher->journal.take(), "drag let-go rest") << "who was told that it glides is told that it rests";
}

TEST_F(ScrollViewTest, ContentThatShrinksUnderAGlideIsNotLeftBehind) {
  for (const bool isPaging : {false, true}) {
    scroll->setPagingEnabled(isPaging);
    scroll->setContentSize({390, 20000});
    scroll->setContentOffset({0, 3000});
    hands().flick({200, 450}, 0, -250, 0.1);
    advance(0.25);
    ASSERT_TRUE(scroll->isDecelerating());
    watcher->journal.take();
    scroll->setContentSize({390, 1000});
    advance(3);
    EXPECT_EQ(y(), 600);
    EXPECT_EQ(watcher->journal.take(), "rest");
  }
}

TEST_F(ScrollViewTest, APageThatAFingerStoppedInMidTurnGoesOnToItsPlace) {
  scroll->setPagingEnabled(true);
  hands().flick({200, 450}, 0, -250, 0.1);
  advance(0.25);
  ASSERT_TRUE(scroll->isDecelerating());
  touch(UITouchPhase::began, {200, 300});
  const double held = y();
  ASSERT_NE(std::fmod(held, 400), 0);
  advance(1);
  EXPECT_EQ(y(), held);
  watcher->journal.take();
  touch(UITouchPhase::ended, {200, 300});
  advance(2);
  EXPECT_EQ(std::fmod(y(), 400), 0);
  EXPECT_EQ(watcher->journal.take(), "glide rest");

  hands().flick({200, 450}, 0, -250, 0.1);
  advance(0.25);
  watcher->journal.take();
  pull({200, 300}, 0, -60);  // caught, and dragged on by the same finger
  EXPECT_EQ(watcher->journal.take(), "rest drag");
  touch(UITouchPhase::ended, {200, 240});
}

TEST_F(ScrollViewTest, OnlyAControlThatFollowsTheFingerKeepsTheContentStill) {
  const auto slider = make<UISlider>();
  slider->setFrame({20, 150, 350, 34});
  scroll->addSubview(slider);
  settle();
  pull({200, 240}, 0, 30);  // begins beside the slider and crosses it
  EXPECT_LT(y(), 0);
  touch(UITouchPhase::ended, {200, 270});
  advance(2);
  pull({300, 267}, 0, -60);  // begins on the track, which is nothing to take hold of
  EXPECT_GT(y(), 30);
  touch(UITouchPhase::ended, {300, 207});
  advance(3);
  scroll->setContentOffset({0, 0});
  slider->setEnabled(false);
  pull({34, 267}, 0, -60);  // on the knob of a slider that is switched off
  EXPECT_GT(y(), 30);
  touch(UITouchPhase::ended, {34, 207});
}

TEST_F(ScrollViewTest, AMousesWheelTurnsPagesWhole) {
  scroll->setPagingEnabled(true);
  for (int i = 0; i < 5; ++i) UIApplication::shared().deliverScroll({200, 300}, {0, -50});
  EXPECT_EQ(y(), 250);
  advance(2);
  EXPECT_EQ(y(), 400);
  for (int i = 0; i < 3; ++i) {  // one notch after the other turns a page each
    UIApplication::shared().deliverScroll({200, 300}, {0, -50});
    advance(2);
  }
  EXPECT_EQ(y(), 1600);
  UIApplication::shared().deliverScroll({200, 300}, {0, 50});
  advance(0.1);
  scroll->setContentOffset({0, 77}, false);
  advance(2);
  EXPECT_EQ(y(), 77) << "a program that moves it meanwhile has the last word";
}

}  // namespace
}  // namespace platform::test
