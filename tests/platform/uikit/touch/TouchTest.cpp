#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/touch/UIPanGestureRecognizer.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "tests/platform/uikit/touch/TouchLog.h"

namespace platform::test {

TEST_F(TouchTest, ReachesTheFrontMostViewUnderTheFinger) {
  const auto back = addBox("back", {50, 50, 100, 100});
  const auto front = addBox("front", {100, 50, 100, 100});
  const auto child = addBox("child", {80, 80, 40, 40}, back);
  struct Place {
    const char* what;
    CGPoint at;
    Log expected;
  };
  const std::vector<Place> places = {
      {"only the back", {60, 60}, {"back began 10,10", "back ended 10,10"}},
      {"both", {120, 60}, {"front began 20,10", "front ended 20,10"}},
      {"the child where the front covers it", {140, 140}, {"front began 40,90", "front ended 40,90"}},
      {"the child outside of its superview", {160, 160}, {}},
  };
  for (const Place& place : places) {
    SCOPED_TRACE(place.what);
    tapAt(place.at.x, place.at.y);
    EXPECT_EQ(taken(), place.expected);
    advance(1);
  }
  struct Obstacle {
    const char* what;
    std::function<void(bool)> put;
  };
  const std::vector<Obstacle> obstacles = {{"hidden", [&](bool on) { front->setHidden(on); }},
                                           {"clear", [&](bool on) { front->setAlpha(on ? 0.005 : 1); }},
                                           {"not interested", [&](bool on) { front->setUserInteractionEnabled(!on); }}};
  for (const Obstacle& obstacle : obstacles) {
    SCOPED_TRACE(obstacle.what);
    obstacle.put(true);
    EXPECT_EQ(window()->hitTest({120, 60}, nullptr), back);
    EXPECT_EQ(window()->hitTest({140, 140}, nullptr), child);
    obstacle.put(false);
    EXPECT_EQ(window()->hitTest({120, 60}, nullptr), front);
  }
}

TEST_F(TouchTest, FollowsTransformsAndScrolledContent) {
  const auto scrolled = addBox("scrolled", {100, 100, 100, 100});
  scrolled->setBounds({0, 400, 100, 100});
  const auto inside = addBox("inside", {20, 420, 40, 40}, scrolled);
  tapAt(130, 130);
  EXPECT_THAT(taken(), ElementsAre("inside began 10,10", "inside ended 10,10"));
  inside->setTransform(CGAffineTransform::rotation(M_PI_2));
  tapAt(125, 125);
  EXPECT_THAT(taken(), ElementsAre("inside began 5,35", "inside ended 5,35"));
}

TEST_F(TouchTest, IsHeldBackUntilADelayingRecogniserHasFailed) {
  const auto box = addBox("box", {100, 100, 100, 100});
  const auto tap = watch<UITapGestureRecognizer>("tap", box);
  tap->setDelaysTouchesBegan(true);

  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("tap ended")) << "the view hears nothing of a tap";
  advance(1);

  down(150, 150);
  move(155, 150);
  EXPECT_THAT(log, IsEmpty());
  move(165, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box moved 65,50")) << "from where the finger came down";
  move(170, 150);
  up(170, 150);
  EXPECT_THAT(taken(), ElementsAre("box moved 70,50", "box ended 70,50"));
  advance(1);

  down(150, 150);
  advance(0.7);
  EXPECT_THAT(log, IsEmpty());
  advance(0.1);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50")) << "too long for a tap";
  up(150, 150);
}

TEST_F(TouchTest, EndsForTheViewOnlyOnceNoDoubleTapCanFollow) {
  const auto box = addBox("box", {100, 100, 100, 100});
  const auto twice = watch<UITapGestureRecognizer>("double", box);
  twice->setNumberOfTapsRequired(2);
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50"));
  advance(0.4);
  EXPECT_THAT(taken(), ElementsAre("box ended 50,50"));
  twice->setDelaysTouchesEnded(false);
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box ended 50,50"));
}

TEST_F(TouchTest, IsTakenFromTheViewWhenARecogniserRecognises) {
  const auto box = addBox("box", {100, 100, 100, 100});
  const auto pan = watch<UIPanGestureRecognizer>("pan", content());
  down(150, 150);
  slide({150, 150}, {170, 150}, 0.02);
  up(170, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 60,50", "pan began", "pan changed", "pan ended"));
  pan->setCancelsTouchesInView(false);
  down(150, 150);
  slide({150, 150}, {165, 150}, 0.01);
  up(165, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "pan began", "box moved 65,50", "pan ended", "box ended 65,50"));
}

TEST_F(TouchTest, LeavesAControlItsTapBeforeTheViewsAroundIt) {
  const auto control = make<UIControl>(CGRect{100, 100, 100, 40});
  content()->addSubview(control);
  const auto target = make<GestureTarget>();
  target->name = "control";
  target->log = &log;
  control->addTarget(target, sel("firedAlone"), UIControlEvents::touchUpInside);
  watch<UITapGestureRecognizer>("around", content());
  tapAt(150, 120);
  EXPECT_THAT(taken(), ElementsAre("control alone"));
  tapAt(50, 50);
  EXPECT_THAT(taken(), ElementsAre("around ended"));
  watch<UITapGestureRecognizer>("own", control);
  tapAt(150, 120);
  EXPECT_THAT(taken(), ElementsAre("own ended")) << "its own recogniser is another matter";
}

TEST_F(TouchTest, GivesAViewOneFingerUnlessItTakesMore) {
  const auto box = addBox("box", {100, 100, 100, 100});
  down(110, 110, 1);
  down(120, 120, 2);
  up(120, 120, 2);
  up(110, 110, 1);
  EXPECT_THAT(taken(), ElementsAre("box began 10,10", "box ended 10,10"));
  box->setMultipleTouchEnabled(true);
  down(110, 110, 1);
  down(120, 120, 2);
  EXPECT_THAT(taken(), ElementsAre("box began 10,10", "box began 20,20"));
}

TEST_F(TouchTest, IsDroppedWhileInteractionIsIgnored) {
  const auto box = addBox("box", {100, 100, 100, 100});
  UIApplication& application = UIApplication::shared();
  application.beginIgnoringInteractionEvents();
  application.beginIgnoringInteractionEvents();
  application.endIgnoringInteractionEvents();
  down(150, 150);
  application.endIgnoringInteractionEvents();
  move(160, 150);
  up(160, 150);
  EXPECT_THAT(log, IsEmpty()) << "a touch whose beginning was dropped never begins";

  down(150, 150);
  application.beginIgnoringInteractionEvents();
  move(160, 150);
  up(160, 150);
  application.endIgnoringInteractionEvents();
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 60,50"));
}

TEST_F(TouchTest, IsCancelledWhenItsViewLeavesOrItsWindowCloses) {
  const auto box = addBox("box", {100, 100, 100, 100});
  down(150, 150);
  box->removeFromSuperview();
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 150,150"));
  move(160, 150);
  up(160, 150);
  EXPECT_THAT(taken(), IsEmpty());

  content()->addSubview(box);
  down(150, 150);
  window()->setHidden(true);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 50,50"));
  window()->makeKeyAndVisible();

  auto second = make<UIWindow>(CGRect{0, 0, 390, 844});
  second->makeKeyAndVisible();
  const auto inSecond = addBox("second", {0, 0, 50, 50}, second);
  const auto pan = watch<UIPanGestureRecognizer>("pan", inSecond);
  UIApplication::shared().deliverTouch(7, UITouchPhase::began, {10, 10}, Clock::mediaTime());
  UIApplication::shared().deliverTouch(7, UITouchPhase::moved, {40, 10}, Clock::mediaTime());
  EXPECT_THAT(taken(), ElementsAre("second began 10,10", "second cancelled 40,10", "pan began"));
  second.reset();
  EXPECT_THAT(taken(), ElementsAre("pan cancelled"));
  EXPECT_TRUE(window()->isKeyWindow());
  UIApplication::shared().deliverTouch(7, UITouchPhase::ended, {40, 10}, Clock::mediaTime());
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(TouchTest, SurvivesAViewThatGoesWhileItIsTold) {
  auto box = addBox("box", {100, 100, 100, 100});
  const Weak<UIView> watched = box;
  box->onTouch = [&](const std::string& phase) {
    if (phase != "moved") return;
    watched.lock()->removeFromSuperview();
    box.reset();
  };
  down(150, 150);
  move(160, 150);
  EXPECT_TRUE(watched.expired() || log.back() == "box cancelled 160,150") << log.back();
  up(160, 150);
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(log[0], "box began 50,50");
  EXPECT_EQ(log[1], "box moved 60,50");
  EXPECT_EQ(log.size(), 3u) << "moved, then cancelled, then nothing";
}

TEST_F(TouchTest, CountsTheTapsOfOnePlace) {
  const auto box = addBox("box", {100, 100, 100, 100});
  std::vector<std::int64_t> counts;
  const auto tap = watch<UITapGestureRecognizer>("tap", box);
  class Counter : public Object<Counter, NSObject> {
   public:
    bool receive(const Ref<NSObject>&, const Ref<NSObject>& touch) {
      counts->push_back(as<UITouch>(touch)->tapCount());
      return true;
    }
    static void exportMethods(MethodTable<Counter>& table) {
      table.add<&Counter::receive>("gestureRecognizer:shouldReceiveTouch:");
    }
    std::vector<std::int64_t>* counts = nullptr;
  };
  const auto counter = make<Counter>();
  counter->counts = &counts;
  tap->setDelegate(counter);
  for (const auto& [x, pause] : {std::pair{110, 0.1}, {112, 0.1}, {111, 0.5}, {111, 0.1}, {190, 0.0}}) {
    tapAt(x, 150);
    advance(pause);
  }
  EXPECT_THAT(counts, ElementsAre(1, 2, 3, 1, 1));
  advance(1);
  counts.clear();
  down(110, 150);
  slide({110, 150}, {140, 150}, 0.1);
  slide({140, 150}, {110, 150}, 0.1);
  up(110, 150);
  tapAt(110, 150);
  EXPECT_THAT(counts, ElementsAre(1, 1)) << "a stroke is no tap";
}

}  // namespace platform::test
