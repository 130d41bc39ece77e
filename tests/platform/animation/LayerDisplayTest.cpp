#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/animation/FrameClock.h"
#include "platform/animation/LayerDisplay.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

const UIColor red(1, 0, 0, 1), blue(0, 0, 1, 1);

Ref<CALayer> layerAt(const CGRect& frame, std::optional<UIColor> color = std::nullopt) {
  auto layer = make<CALayer>();
  layer->setFrame(frame);
  layer->setBackgroundColor(color);
  return layer;
}

class LayerDisplayTest : public testing::Test {
 protected:
  LayerDisplayTest() {
    root_->addSublayer(box_);
    display_.update();
  }
  /// What the display holds must be what drawing everything anew gives.
  void expectUpToDate(const std::string& after) {
    const auto whole = renderLayer(*root_, {100, 100}, 1)->cgImage();
    const Bitmap& kept = display_.bitmap();
    int wrong = 0;
    for (int y = 0; y < 100; ++y) {
      for (int x = 0; x < 100; ++x) wrong += kept.pixel(x, y) != whole->pixel(x, y);
    }
    EXPECT_EQ(wrong, 0) << "after " << after;
  }

  VirtualTime time_;
  Ref<CALayer> root_ = layerAt({0, 0, 100, 100}, UIColor::white());
  Ref<CALayer> box_ = layerAt({10, 10, 20, 20}, red);
  LayerDisplay display_{root_, {100, 100}, 1};
};

TEST_F(LayerDisplayTest, DrawsNothingWhenNothingChanged) {
  EXPECT_FALSE(display_.needsUpdate());
  EXPECT_EQ(display_.update(), CGRectZero);
  box_->setBackgroundColor(red);
  box_->setPosition(box_->position());
  EXPECT_EQ(display_.update(), CGRectZero);
}

TEST_F(LayerDisplayTest, LetsNothingOldShowThroughARootThatDoesNotCoverIt) {
  const auto check = [&](const std::string& name, const std::function<void()>& change) {
    change();
    display_.update();
    box_->setBackgroundColor(blue);
    display_.update();
    box_->setBackgroundColor(red);
    display_.update();
    expectUpToDate(name);
  };
  check("an opaque root", [] {});
  check("a see-through colour", [&] { root_->setBackgroundColor(UIColor(0, 1, 0, 0.5)); });
  check("no colour", [&] { root_->setBackgroundColor(std::nullopt); });
  check("a see-through root", [&] {
    root_->setBackgroundColor(UIColor::white());
    root_->setOpacity(0.5);
  });
  check("a smaller root", [&] {
    root_->setOpacity(1);
    root_->setBounds({0, 0, 25, 25});
  });
  check("round corners", [&] {
    root_->setBounds({0, 0, 100, 100});
    root_->setCornerRadius(40);
  });
  check("a mask", [&] {
    root_->setCornerRadius(0);
    const auto mask = make<CAShapeLayer>();
    mask->setPath(CGPath::oval({0, 0, 100, 100}));
    root_->setMask(mask);
  });
  root_->setMask(nullptr);
  display_.update();
  root_->setHidden(true);
  display_.update();
  EXPECT_EQ(display_.bitmap().pixel(50, 50), 0u) << "hidden";
}

TEST_F(LayerDisplayTest, DrawsWhereTheChangedLayerWasAndIs) {
  box_->setFrame({50, 10, 20, 20});
  const CGRect changed = display_.update();
  EXPECT_TRUE(changed.contains(CGRect(10, 10, 60, 20)));
  EXPECT_LT(changed.height(), 30);
  expectUpToDate("a move");
  box_->setBackgroundColor(blue);
  EXPECT_LT(display_.update().width(), 30);
  expectUpToDate("a new colour");
}

TEST_F(LayerDisplayTest, KeepsUpWithEveryKindOfChange) {
  const auto check = [&](const std::string& name, const std::function<void()>& change) {
    change();
    EXPECT_FALSE(display_.update().isEmpty()) << name;
    expectUpToDate(name);
  };
  const auto child = layerAt({5, 5, 30, 8}, blue), other = layerAt({60, 60, 30, 30}, blue);
  check("a new sublayer", [&] { box_->addSublayer(child); });
  check("clipping", [&] { box_->setMasksToBounds(true); });
  check("scrolling", [&] { box_->setBounds({3, 3, 20, 20}); });
  check("a move of the parent", [&] { box_->setPosition({40, 40}); });
  check("opacity", [&] { box_->setOpacity(0.4); });
  check("hiding", [&] { box_->setHidden(true); });
  child->setBackgroundColor(red);
  display_.update();
  expectUpToDate("a change out of sight");
  check("showing again", [&] { box_->setHidden(false); });
  check("a shadow", [&] {
    box_->setMasksToBounds(false);
    box_->setShadowOpacity(1);
  });
  check("a mask", [&] {
    const auto mask = make<CAShapeLayer>();
    mask->setPath(CGPath::oval({0, 0, 20, 20}));
    box_->setMask(mask);
  });
  check("a change of the mask", [&] { as<CAShapeLayer>(box_->mask())->setPath(CGPath::rect({5, 5, 9, 9})); });
  check("a removal", [&] { child->removeFromSuperlayer(); });
  check("moving to another parent", [&] {
    root_->addSublayer(other);
    other->addSublayer(child);
  });
  check("a new order", [&] { root_->insertSublayer(other, 0); });
  check("removing a whole branch", [&] { other->removeFromSuperlayer(); });
  check("a turn", [&] { box_->setTransform(CGAffineTransform::rotation(0.4)); });
  check("everything", [&] { display_.invalidate(); });
}

TEST_F(LayerDisplayTest, AsksForFramesAsLongAsSomethingMovesAndNoLonger) {
  int updates = 0;
  const std::uint64_t observer = FrameClock::shared().addObserver(FrameClock::Phase::display, [&](double) {
    display_.update();
    ++updates;
  });
  RunLoop::advance(1);
  updates = 0;
  auto slide = make<CABasicAnimation>("position.x");
  slide->setToValue(80.0);
  slide->setDuration(0.5);
  box_->addAnimation(slide, "slide");
  RunLoop::advance(0.25);
  display_.update();
  expectUpToDate("half a slide");
  RunLoop::advance(10);
  expectUpToDate("the slide");
  EXPECT_NEAR(updates, 31, 3);
  EXPECT_FALSE(FrameClock::shared().isFramePending());
  FrameClock::shared().removeObserver(observer);
}

TEST_F(LayerDisplayTest, FollowsAnAnimationThatComesInFromOutside) {
  const auto guest = layerAt({200, 40, 10, 10}, blue);
  root_->addSublayer(guest);
  display_.update();
  auto enter = make<CABasicAnimation>("position.x");
  enter->setToValue(50.0);
  enter->setDuration(1);
  guest->addAnimation(enter, "enter");
  for (int i = 0; i < 11; ++i) {
    RunLoop::advance(0.09);
    display_.update();
    expectUpToDate("a step");
  }
  EXPECT_NE(display_.bitmap().pixel(52, 45), 0xFFFFFFFFu);
}

using LayerDisplayDeathTest = LayerDisplayTest;

TEST_F(LayerDisplayDeathTest, ATreeHasOneDisplayAtATime) {
  EXPECT_DEATH(LayerDisplay(root_, CGSize{10, 10}, 1), "fatal error: a layer tree can have one display at a time");
}

}  // namespace
}  // namespace platform
