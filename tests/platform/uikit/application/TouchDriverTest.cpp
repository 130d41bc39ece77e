#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "tests/platform/uikit/touch/TouchLog.h"

namespace platform::test {

namespace {

class TouchDriverTest : public TouchTest {
 protected:
  Log unheard_;
};

}  // namespace

TEST_F(TouchDriverTest, DoesOneThingAfterTheOtherAndSaysWhenItIsDone) {
  const auto box = addBox("box", {100, 100, 100, 100});
  std::vector<std::string> done;
  const auto note = [&](const char* what) { return [&done, what] { done.emplace_back(what); }; };
  TouchDriver driver;
  driver.tap(box, note("tap"));
  driver.wait(1, note("wait"));
  driver.drag({{110, 110}, {190, 110}}, 0.1, note("drag"));
  EXPECT_TRUE(driver.isBusy());
  EXPECT_THAT(log, IsEmpty()) << "never inside the call";
  RunLoop::settle();
  EXPECT_THAT(taken(), ElementsAre("box began 50,50"));
  advance(0.5);
  EXPECT_THAT(taken(), ElementsAre("box ended 50,50"));
  EXPECT_THAT(done, ElementsAre("tap"));
  advance(1);
  EXPECT_THAT(taken(), ElementsAre("box began 10,10", "box moved 23,10", "box moved 37,10", "box moved 50,10",
                                   "box moved 63,10", "box moved 77,10", "box moved 90,10", "box ended 90,10"));
  EXPECT_THAT(done, ElementsAre("tap", "wait", "drag"));
  EXPECT_FALSE(driver.isBusy());
}

TEST_F(TouchDriverTest, FindsAViewWhereItLiesWhenItsTurnComes) {
  const auto box = addBox("box", {100, 100, 100, 100});
  TouchDriver driver;
  driver.wait(1);
  driver.tap(box);
  advance(0.5);
  box->setFrame({300, 700, 20, 20});
  advance(1);
  EXPECT_THAT(taken(), ElementsAre("box began 10,10", "box ended 10,10"));
  bool done = false;
  box->removeFromSuperview();
  driver.tap(box, [&] { done = true; });
  advance(1);
  EXPECT_THAT(taken(), IsEmpty());
  EXPECT_TRUE(done);
}

TEST_F(TouchDriverTest, TapsTwiceWithinTheTimeOfADoubleTap) {
  const auto box = addBox("box", {100, 100, 100, 100});
  const auto twice = watch<UITapGestureRecognizer>("double", box);
  twice->setNumberOfTapsRequired(2);
  box->log = &unheard_;
  tap({150, 150}, 2);
  EXPECT_THAT(taken(), ElementsAre("double ended"));
}

TEST_F(TouchDriverTest, ScrollsByTheDistanceAskedFor) {
  const auto scrollView = make<UIScrollView>(CGRect{0, 100, 390, 400});
  scrollView->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
  scrollView->setContentSize({390, 5000});
  scrollView->setAccessibilityIdentifier("feed");
  content()->addSubview(scrollView);
  settle();
  scroll("feed", 0, 120);
  advance(2);
  EXPECT_NEAR(scrollView->contentOffset().y, 120, 0.6);
  scroll("feed", 0, 1000);
  advance(2);
  EXPECT_NEAR(scrollView->contentOffset().y, 1120, 3) << "in several strokes";
  scroll("feed", 0, -620);
  advance(2);
  EXPECT_NEAR(scrollView->contentOffset().y, 500, 5);
  hands().flick({200, 400}, 0, -150);
  advance(5);
  EXPECT_GT(scrollView->contentOffset().y, 800) << "thrown content goes on by itself";
}

TEST_F(TouchDriverTest, LiftsItsFingerWhenItIsDropped) {
  const auto box = addBox("box", {100, 100, 100, 100});
  auto driver = std::make_unique<TouchDriver>();
  driver->longPress({150, 150}, 5);
  advance(1);
  driver.reset();
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 50,50"));
  advance(10);
  EXPECT_THAT(taken(), IsEmpty());

  driver = std::make_unique<TouchDriver>();
  driver->tap({150, 150}, 1, [&] { driver.reset(); });
  driver->tap({150, 150});
  advance(5);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box ended 50,50")) << "dropped by its own report";
}

TEST(Application, RunsInRealTimeUntilItIsTerminated) {
  int turns = 0;
  DispatchQueue::main().async([&] { ++turns; });
  DispatchQueue::main().asyncAfter(0.02, [] { UIApplication::shared().terminate(); });
  EXPECT_EQ(UIApplication::shared().run("test"), 0);
  EXPECT_EQ(turns, 1);
}

}  // namespace platform::test
