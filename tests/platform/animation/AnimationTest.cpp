#include <numbers>

#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

using testing::ElementsAre;

class Listener : public Object<Listener, NSObject> {
 public:
  using Log = std::vector<std::string>;
  void init(std::shared_ptr<Log> log) { log_ = std::move(log); }
  void didStart(Ref<CAAnimation>) { log_->push_back("start"); }
  void didStop(Ref<CAAnimation>, bool finished) { log_->push_back(finished ? "finished" : "unfinished"); }
  static void exportMethods(MethodTable<Listener>& table) {
    table.add<&Listener::didStart>("animationDidStart:");
    table.add<&Listener::didStop>("animationDidStop:finished:");
  }

 private:
  std::shared_ptr<Log> log_;
};

class AnimationTest : public testing::Test {
 protected:
  double now() const { return Clock::mediaTime(); }
  static Ref<CABasicAnimation> basic(const char* keyPath, AnimatableValue from, AnimatableValue to,
                                     double duration = 1) {
    auto animation = make<CABasicAnimation>(keyPath);
    animation->setFromValue(std::move(from));
    animation->setToValue(std::move(to));
    animation->setDuration(duration);
    return animation;
  }
  double shownOpacity() const { return layer_->presentationLayer()->opacity(); }
  CGPoint shownPosition() const { return layer_->presentationLayer()->position(); }

  VirtualTime time_;
  std::shared_ptr<Listener::Log> heard_ = std::make_shared<Listener::Log>();
  Ref<CAShapeLayer> layer_ = make<CAShapeLayer>();
};

TEST_F(AnimationTest, ShowsTheValueOfTheInstantAndLeavesTheLayersOwnAlone) {
  layer_->addAnimation(basic("opacity", 0.0, 0.5), "fade");
  EXPECT_EQ(shownOpacity(), 0);
  RunLoop::advance(0.5);
  EXPECT_NEAR(shownOpacity(), 0.25, 1e-9);
  EXPECT_EQ(layer_->opacity(), 1);
  RunLoop::advance(0.5);
  EXPECT_EQ(shownOpacity(), 1) << "over: the layer shows its own value again";
  EXPECT_FALSE(layer_->hasAnimations());
}

TEST_F(AnimationTest, TakesMissingEndsFromTheLayer) {
  layer_->setPosition({10, 20});
  layer_->addAnimation(basic("position.x", {}, 30.0), "to");
  RunLoop::advance(0.5);
  EXPECT_EQ(shownPosition(), (CGPoint{20, 20}));
  layer_->setPosition({20, 20});
  EXPECT_EQ(shownPosition(), (CGPoint{25, 20})) << "the layer's own value is looked up when it is needed";

  layer_->addAnimation(basic("position.y", 100.0, {}), "from");
  RunLoop::advance(0.25);
  EXPECT_NEAR(shownPosition().y, 80, 1e-9);

  auto by = make<CABasicAnimation>("position.x");
  by->setByValue(8.0);
  by->setDuration(1);
  layer_->addAnimation(by, "to");
  RunLoop::advance(0.5);
  EXPECT_NEAR(shownPosition().x, 24, 1e-9);
}

TEST_F(AnimationTest, BeginsWhenItIsToldAndGoesBackAndForthForEver) {
  // A dot that rises five points, half a second each way, two tenths after the others.
  layer_->setPosition({0, 6});
  auto bob = basic("position.y", 6.0, 1.0, 0.5);
  bob->setAutoreverses(true);
  bob->setRepeatCount(CARepeatForever);
  bob->setBeginTime(CACurrentMediaTime() + 0.2);
  layer_->addAnimation(bob);
  EXPECT_EQ(shownPosition().y, 6);
  RunLoop::advance(0.45);
  EXPECT_NEAR(shownPosition().y, 3.5, 1e-6);
  RunLoop::advance(0.25);
  EXPECT_NEAR(shownPosition().y, 1, 1e-6);
  RunLoop::advance(0.25);
  EXPECT_NEAR(shownPosition().y, 3.5, 1e-6);
  RunLoop::advance(3600);
  EXPECT_NEAR(shownPosition().y, 3.5, 1e-6);
  EXPECT_TRUE(layer_->hasAnimations());
}

TEST_F(AnimationTest, CumulativeTurnsGoOnWhereTheLastOneEnded) {
  auto spin = basic("transform.rotation.z", {}, 2 * std::numbers::pi);
  spin->setCumulative(true);
  spin->setRepeatCount(CARepeatForever);
  layer_->addAnimation(spin, "rotationAnimation");
  RunLoop::advance(7.25);
  const CGPoint tip = layer_->presentationLayer()->transform().apply(CGPoint{1, 0});
  EXPECT_NEAR(tip.x, 0, 1e-6);
  EXPECT_NEAR(tip.y, 1, 1e-6);

  auto climb = basic("position.x", 0.0, 10.0);
  climb->setCumulative(true);
  climb->setRepeatCount(3);
  layer_->addAnimation(climb, "climb");
  RunLoop::advance(2.5);
  EXPECT_NEAR(shownPosition().x, 25, 1e-6);
}

TEST_F(AnimationTest, FillsTheTimeBeforeAndAfterAsItIsTold) {
  auto fade = basic("opacity", 0.2, 0.6);
  fade->setBeginTime(now() + 1);
  fade->setFillMode(kCAFillModeBoth);
  fade->setRemovedOnCompletion(false);
  layer_->addAnimation(fade, "fade");
  EXPECT_EQ(shownOpacity(), 0.2);
  RunLoop::advance(5);
  EXPECT_NEAR(shownOpacity(), 0.6, 1e-9);
  EXPECT_NE(layer_->animationForKey("fade"), nullptr);

  fade->setFillMode(kCAFillModeRemoved);
  fade->setBeginTime(now() + 1);
  layer_->addAnimation(fade, "fade");
  EXPECT_EQ(shownOpacity(), 1);
  RunLoop::advance(5);
  EXPECT_EQ(shownOpacity(), 1);
}

TEST_F(AnimationTest, EndsAHalfRepetitionInTheMiddle) {
  auto fade = basic("opacity", 0.0, 1.0);
  fade->setRepeatCount(1.5);
  fade->setFillMode(kCAFillModeForwards);
  fade->setRemovedOnCompletion(false);
  layer_->addAnimation(fade, "fade");
  RunLoop::advance(9);
  EXPECT_NEAR(shownOpacity(), 0.5, 1e-9);
  auto back = basic("opacity", 0.0, 1.0);
  back->setAutoreverses(true);
  back->setFillMode(kCAFillModeForwards);
  back->setRemovedOnCompletion(false);
  layer_->addAnimation(back, "fade");
  RunLoop::advance(9);
  EXPECT_NEAR(shownOpacity(), 0, 1e-9);
}

TEST_F(AnimationTest, MovesPathsStrokesColoursAndBounds) {
  layer_->addAnimation(basic("path", CGPath::roundedRect({0, 0, 10, 10}, 5), CGPath::roundedRect({0, 0, 30, 50}, 0.1)));
  layer_->addAnimation(basic("strokeEnd", 0.0, 1.0));
  layer_->addAnimation(basic("fillColor", UIColor::black(), UIColor::white()));
  layer_->addAnimation(basic("backgroundColor", {}, UIColor(1, 0, 0, 1)));
  layer_->addAnimation(basic("bounds", CGRect(0, 0, 10, 10), CGRect(10, 0, 20, 10)));
  layer_->addAnimation(basic("transform", CGAffineTransform(), CGAffineTransform::scale(3, 3)));
  RunLoop::advance(0.5);
  const auto shown = as<CAShapeLayer>(layer_->presentationLayer());
  ASSERT_NE(shown, nullptr);
  EXPECT_NEAR(shown->path()->bounds().width(), 20, 1e-6);
  EXPECT_NEAR(shown->strokeEnd(), 0.5, 1e-9);
  EXPECT_EQ(shown->fillColor(), UIColor::white(0.5, 1));
  EXPECT_NEAR(shown->backgroundColor()->alpha(), 0.5, 1e-9);
  EXPECT_EQ(shown->bounds(), CGRect(5, 0, 15, 10));
  EXPECT_NEAR(shown->transform().a, 2, 1e-9);
  EXPECT_FALSE(layer_->path());
}

TEST_F(AnimationTest, IgnoresUnknownKeyPathsAndValuesOfAnotherType) {
  layer_->addAnimation(basic("no.such.property", 0.0, 1.0));
  layer_->addAnimation(basic("opacity", CGPoint{1, 1}, CGPoint{2, 2}));
  RunLoop::advance(0.5);
  EXPECT_EQ(shownOpacity(), 1);
  RunLoop::advance(1);
  EXPECT_FALSE(layer_->hasAnimations());
}

TEST_F(AnimationTest, TellsItsDelegateOfStartAndEndAndHoldsItUntilThen) {
  auto listener = make<Listener>(heard_);
  const Weak<Listener> alive = listener;
  auto fade = basic("opacity", 0.0, 1.0);
  fade->setDelegate(listener);
  fade->setBeginTime(now() + 0.5);
  layer_->addAnimation(fade, "fade");
  fade = nullptr;
  RunLoop::advance(0.4);
  EXPECT_TRUE(heard_->empty());
  RunLoop::advance(0.2);
  EXPECT_THAT(*heard_, ElementsAre("start"));
  listener = nullptr;
  EXPECT_FALSE(alive.expired());
  RunLoop::advanceUntil([&] { return heard_->size() == 2; }, 1);
  EXPECT_NEAR(now() - Clock::virtualMediaTimeAtStart, 1.5, 1e-6) << "told at the very instant";
  EXPECT_THAT(*heard_, ElementsAre("start", "finished"));
  EXPECT_TRUE(alive.expired());
}

TEST_F(AnimationTest, EndsUnfinishedWhenRemovedReplacedOrItsLayerGoes) {
  const auto listener = make<Listener>(heard_);
  const auto add = [&](const char* key) {
    auto fade = basic("opacity", 0.0, 1.0);
    fade->setDelegate(listener);
    layer_->addAnimation(fade, key);
  };
  add("a");
  RunLoop::advance(0.1);
  layer_->removeAnimationForKey("a");
  EXPECT_THAT(*heard_, ElementsAre("start", "unfinished"));
  heard_->clear();
  add("b");
  add("b");
  add("");
  EXPECT_THAT(*heard_, ElementsAre("unfinished"));
  EXPECT_THAT(layer_->animationKeys(), ElementsAre("b"));
  layer_->removeAllAnimations();
  EXPECT_EQ(heard_->size(), 3u);
  add("c");
  heard_->clear();
  layer_ = nullptr;
  EXPECT_THAT(*heard_, ElementsAre("unfinished"));
  RunLoop::advance(5);
  EXPECT_EQ(heard_->size(), 1u);
}

TEST_F(AnimationTest, IsACopyOfWhatWasAdded) {
  auto fade = basic("opacity", 0.0, 1.0);
  layer_->addAnimation(fade, "fade");
  fade->setDuration(100);
  fade->setToValue(0.0);
  RunLoop::advance(0.5);
  EXPECT_NEAR(shownOpacity(), 0.5, 1e-9);
  EXPECT_NE(layer_->animationForKey("fade"), fade);
}

TEST_F(AnimationTest, ADelegateMayDropTheLayerWhenItIsTold) {
  class Dropper : public Object<Dropper, NSObject> {
   public:
    Ref<CAShapeLayer>* layer = nullptr;
    void didStop(Ref<CAAnimation>, bool) { layer->reset(); }
    static void exportMethods(MethodTable<Dropper>& table) {
      table.add<&Dropper::didStop>("animationDidStop:finished:");
    }
  };
  const auto dropper = make<Dropper>();
  dropper->layer = &layer_;
  auto fade = basic("opacity", 0.0, 1.0);
  fade->setDelegate(dropper);
  layer_->addAnimation(fade, "fade");
  RunLoop::advance(2);
  EXPECT_EQ(layer_, nullptr);
}

}  // namespace
}  // namespace platform
