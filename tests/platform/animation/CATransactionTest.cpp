#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/CATransaction.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

using testing::ElementsAre;

class CATransactionTest : public testing::Test {
 protected:
  /// The changes as one transaction of that length.
  void animate(double seconds, const std::function<void()>& changes, const std::string& name = {}) {
    CATransaction::begin();
    CATransaction::setAnimationDuration(seconds);
    if (!name.empty()) {
      CATransaction::setCompletionBlock(
          [this, name](bool ok) { log_.push_back(name + (ok ? " done" : " broken off")); });
    }
    changes();
    CATransaction::commit();
  }
  double shown() const { return layer_->presentationLayer()->opacity(); }

  VirtualTime time_;
  Ref<CALayer> layer_ = make<CALayer>();
  std::vector<std::string> log_;
};

TEST_F(CATransactionTest, ChangesApplyAtOnceOutsideAndMoveInside) {
  layer_->setOpacity(0.5);
  EXPECT_FALSE(layer_->hasAnimations());
  animate(1, [&] { layer_->setOpacity(0); });
  EXPECT_EQ(layer_->opacity(), 0);
  EXPECT_EQ(shown(), 0.5);
  RunLoop::advance(0.5);
  EXPECT_NEAR(shown(), 0.25, 1e-9);
  RunLoop::advance(0.6);
  EXPECT_EQ(shown(), 0);
}

TEST_F(CATransactionTest, AChangeOnTheWayStartsFromWhatShows) {
  animate(1, [&] { layer_->setOpacity(0); });
  RunLoop::advance(0.5);
  animate(1, [&] { layer_->setOpacity(1); });
  EXPECT_NEAR(shown(), 0.5, 1e-9);
  RunLoop::advance(0.5);
  EXPECT_NEAR(shown(), 0.75, 1e-9);
}

TEST_F(CATransactionTest, AChangeWithoutAnimationMovesTheGoal) {
  animate(1, [&] { layer_->setPosition({100, 0}); });
  RunLoop::advance(0.5);
  layer_->setPosition({200, 0});
  EXPECT_NEAR(layer_->presentationLayer()->position().x, 100, 1e-9);
}

TEST_F(CATransactionTest, WaitsItsDelayInTheOldLook) {
  CATransaction::begin();
  CATransaction::setAnimationDuration(1);
  CATransaction::setAnimationDelay(0.5);
  layer_->setOpacity(0);
  CATransaction::commit();
  RunLoop::advance(0.5);
  EXPECT_EQ(shown(), 1);
  RunLoop::advance(0.5);
  EXPECT_NEAR(shown(), 0.5, 1e-9);
}

TEST_F(CATransactionTest, TellsItsCompletionOnceEverythingInItIsOver) {
  const auto other = make<CALayer>();
  animate(
      1,
      [&] {
        layer_->setOpacity(0);
        other->setFrame({0, 0, 50, 50});
        auto longer = make<CABasicAnimation>("cornerRadius");
        longer->setToValue(5.0);
        longer->setDuration(2);
        other->addAnimation(longer);
      },
      "all");
  RunLoop::advance(1.5);
  EXPECT_TRUE(log_.empty());
  RunLoop::advance(0.5);
  EXPECT_THAT(log_, ElementsAre("all done"));
}

TEST_F(CATransactionTest, TellsItsCompletionSoonWhenNothingMoves) {
  animate(
      1, [&] { layer_->setOpacity(1); }, "nothing");
  EXPECT_TRUE(log_.empty()) << "never before the call returns";
  RunLoop::settle();
  EXPECT_THAT(log_, ElementsAre("nothing done"));
}

TEST_F(CATransactionTest, CompletionsComeInTheOrderOfTheEndsAndTellWhatBrokeOff) {
  animate(
      0.5, [&] { layer_->setOpacity(0); }, "first");
  const auto other = make<CALayer>();
  animate(
      0.3, [&] { other->setOpacity(0); }, "short");
  animate(
      0.5, [&] { other->setCornerRadius(3); }, "same time");
  RunLoop::advance(0.1);
  animate(
      0.2, [&] { other->setOpacity(1); }, "instead");
  RunLoop::advance(1);
  EXPECT_THAT(log_, ElementsAre("short broken off", "instead done", "first done", "same time done"));
}

TEST_F(CATransactionTest, InnerOnesInheritAndMayDisable) {
  const auto inner = make<CALayer>(), still = make<CALayer>();
  animate(
      1,
      [&] {
        animate(
            2, [&] { inner->setOpacity(0); }, "inner");
        CATransaction::begin();
        CATransaction::setDisableActions(true);
        still->setOpacity(0);
        CATransaction::commit();
        layer_->setOpacity(0);
      },
      "outer");
  EXPECT_FALSE(still->hasAnimations());
  EXPECT_EQ(inner->animationForKey("opacity")->duration(), 2);
  EXPECT_EQ(layer_->animationForKey("opacity")->duration(), 1);
  RunLoop::advance(1.5);
  EXPECT_THAT(log_, ElementsAre("outer done"));
  RunLoop::advance(1);
  EXPECT_THAT(log_, ElementsAre("outer done", "inner done"));
}

using CATransactionDeathTest = CATransactionTest;

TEST_F(CATransactionDeathTest, ACommitWithoutABeginEndsTheProcess) {
  EXPECT_DEATH(CATransaction::commit(), "fatal error: CATransaction::commit needs a transaction");
}

}  // namespace
}  // namespace platform
