#include <gmock/gmock.h>

#include "platform/animation/CALayer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/views/UIView.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AnimationTest : public AppFixture {
 protected:
  AnimationTest() {
    view = make<UIView>(CGRect{0, 0, 100, 100});
    content()->addSubview(view);
    settle();
  }
  UIView::Completion note(const std::string& name) {
    return [this, name](bool finished) { log.push_back(name + (finished ? " finished" : " cut short")); };
  }
  double shownX() const { return view->layer()->presentationLayer()->position().x; }
  double shownAlpha() const { return view->layer()->presentationLayer()->opacity(); }

  Ref<UIView> view;
  std::vector<std::string> log;
};

}  // namespace

TEST_F(AnimationTest, ShowsTheWayAndHoldsTheEnd) {
  UIView::animateWithDuration(
      1, 0, UIViewAnimationCurve::linear,
      [&] {
        view->setCenter({150, 50});
        view->setAlpha(0);
      },
      note("move"));
  EXPECT_EQ(view->center(), (CGPoint{150, 50})) << "the value is the new one at once";
  EXPECT_EQ(shownX(), 50);
  advance(0.25);
  EXPECT_NEAR(shownX(), 75, 0.01);
  EXPECT_NEAR(shownAlpha(), 0.75, 0.001);
  advance(0.5);
  EXPECT_NEAR(shownX(), 125, 0.01);
  EXPECT_THAT(log, IsEmpty());
  advance(0.26);
  EXPECT_EQ(shownX(), 150);
  EXPECT_THAT(log, ElementsAre("move finished"));
}

TEST_F(AnimationTest, KeepsTheCurvesApart) {
  struct Case {
    UIViewAnimationCurve curve;
    double quarter;  // bounds on how far it has come after a quarter of its time
    double threeQuarters;
  };
  for (const auto& [curve, early, late] :
       {Case{UIViewAnimationCurve::linear, 0.25, 0.75}, Case{UIViewAnimationCurve::easeIn, 0.09, 0.62},
        Case{UIViewAnimationCurve::easeOut, 0.38, 0.91}, Case{UIViewAnimationCurve::easeInOut, 0.13, 0.87}}) {
    SCOPED_TRACE(static_cast<int>(curve));
    view->setCenter({0, 0});
    UIView::animateWithDuration(1, 0, curve, [&] { view->setCenter({100, 0}); });
    advance(0.25);
    EXPECT_NEAR(shownX() / 100, early, 0.02);
    advance(0.5);
    EXPECT_NEAR(shownX() / 100, late, 0.02);
    advance(0.5);
  }
}

TEST_F(AnimationTest, WaitsForItsDelayAndSwingsLikeASpring) {
  UIView::animateWithDuration(
      0.5, 0.5, UIViewAnimationCurve::linear,
      [&] {
        view->setCenter({150, 50});
      },
      note("late"));
  advance(0.49);
  EXPECT_EQ(shownX(), 50);
  advance(0.26);
  EXPECT_NEAR(shownX(), 100, 1);
  advance(0.3);
  EXPECT_THAT(log, ElementsAre("late finished"));

  UIView::animateWithSpring(1, 0, 0.3, 0, [&] { view->setCenter({50, 50}); });
  double least = 150;
  for (int i = 0; i < 100; ++i) {
    advance(0.01);
    least = std::min(least, shownX());
  }
  EXPECT_LT(least, 40) << "it overshoots";
  advance(0.1);
  EXPECT_EQ(shownX(), 50);
}

TEST_F(AnimationTest, IsReplacedByALaterOneFromWhereItShows) {
  UIView::animateWithDuration(
      1, 0, UIViewAnimationCurve::linear,
      [&] {
        view->setCenter({150, 50});
      },
      note("there"));
  advance(0.5);
  UIView::animateWithDuration(
      1, 0, UIViewAnimationCurve::linear,
      [&] {
        view->setCenter({50, 50});
      },
      note("back"));
  EXPECT_NEAR(shownX(), 100, 0.01) << "no jump";
  RunLoop::settle();
  EXPECT_THAT(log, ElementsAre("there cut short"));
  advance(0.5);
  EXPECT_NEAR(shownX(), 75, 0.01);
  advance(0.6);
  EXPECT_THAT(log, ElementsAre("there cut short", "back finished"));
}

TEST_F(AnimationTest, CompletesAlsoWhenNothingMoves) {
  UIView::animateWithDuration(
      5, [] {}, note("nothing"));
  UIView::animateWithDuration(
      5, [&] { view->setAlpha(1); }, note("same value"));
  UIView::animateWithDuration(
      0, [&] { view->setAlpha(0.5); }, note("no time"));
  EXPECT_THAT(log, IsEmpty()) << "never inside the call";
  settle();
  EXPECT_THAT(log, ElementsAre("nothing finished", "same value finished", "no time finished"));
  EXPECT_EQ(shownAlpha(), 0.5);
}

TEST_F(AnimationTest, CanBeSwitchedOff) {
  UIView::animateWithDuration(1, [&] {
    view->setAlpha(0.2);
    UIView::performWithoutAnimation([&] { view->setCenter({150, 50}); });
  });
  EXPECT_EQ(shownX(), 150);
  EXPECT_EQ(shownAlpha(), 1);
  advance(2);

  UIView::setAnimationsEnabled(false);
  EXPECT_FALSE(UIView::areAnimationsEnabled());
  UIView::animateWithDuration(
      1,
      [&] {
        view->setCenter({10, 50});
      },
      note("off"));
  EXPECT_EQ(shownX(), 10);
  UIView::setAnimationsEnabled(true);
  settle();
  EXPECT_THAT(log, ElementsAre("off finished"));
}

TEST_F(AnimationTest, TakesTheOuterPaceInsideAnotherBlock) {
  const auto other = make<UIView>(CGRect{0, 0, 10, 10});
  content()->addSubview(other);
  UIView::animateWithDuration(
      2, 0, UIViewAnimationCurve::linear,
      [&] {
        view->setCenter({150, 50});
        UIView::animateWithDuration(
            0.1, [&] { other->setAlpha(0); }, note("inner"));
      },
      note("outer"));
  advance(1);
  EXPECT_NEAR(other->layer()->presentationLayer()->opacity(), 0.5, 0.01);
  EXPECT_THAT(log, IsEmpty());
  advance(1.1);
  EXPECT_THAT(log, testing::UnorderedElementsAre("inner finished", "outer finished"));
}

TEST_F(AnimationTest, AnimatesLayoutThatTheBlockBringsAbout) {
  const auto child = make<UIView>(CGRect{0, 0, 100, 20});
  child->setAutoresizingMask(UIViewAutoresizing::flexibleWidth);
  view->addSubview(child);
  settle();
  UIView::animateWithDuration(1, 0, UIViewAnimationCurve::linear, [&] {
    view->setFrame({0, 0, 200, 100});
    view->layoutIfNeeded();
  });
  advance(0.5);
  EXPECT_NEAR(child->layer()->presentationLayer()->bounds().size.width, 150, 0.1);
  EXPECT_EQ(child->bounds().size.width, 200);
}

TEST_F(AnimationTest, OutlivesTheViewItMoves) {
  UIView::animateWithDuration(
      1, [&] { view->setAlpha(0); }, note("gone"));
  advance(0.2);
  view->removeFromSuperview();
  view.reset();
  advance(1);
  EXPECT_EQ(log.size(), 1u) << "whoever waits is told once";
}

}  // namespace platform::test
