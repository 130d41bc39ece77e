#include <numbers>

#include "platform/animation/CALayer.h"
#include "platform/graphics/CGContext.h"

namespace platform {
namespace {

Ref<CALayer> layerAt(const CGRect& frame) {
  auto layer = make<CALayer>();
  layer->setFrame(frame);
  return layer;
}

TEST(CALayer, FrameBoundsPositionAndAnchorAreOneThing) {
  const auto layer = layerAt({10, 20, 30, 40});
  EXPECT_EQ(layer->position(), (CGPoint{25, 40}));
  EXPECT_EQ(layer->bounds(), CGRect(0, 0, 30, 40));
  layer->setAnchorPoint({0, 1});
  EXPECT_EQ(layer->frame(), CGRect(25, 0, 30, 40));
  layer->setBounds({5, 5, 10, 10});
  EXPECT_EQ(layer->frame(), CGRect(25, 30, 10, 10));
}

TEST(CALayer, FrameOfATurnedLayerIsTheRectangleAroundIt) {
  const auto layer = layerAt({0, 0, 10, 20});
  layer->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
  EXPECT_NEAR(layer->frame().width(), 20, 1e-9);
  EXPECT_NEAR(layer->frame().minX(), -5, 1e-9);
  const auto scaled = layerAt({0, 0, 10, 10});
  scaled->setTransform(CGAffineTransform::scale(2, 2));
  scaled->setFrame({100, 100, 40, 40});
  EXPECT_EQ(scaled->bounds().size, (CGSize{20, 20}));
  EXPECT_EQ(scaled->frame(), CGRect(100, 100, 40, 40));
}

TEST(CALayer, ConvertsBetweenAnyTwoLayersOfATree) {
  const auto root = layerAt({5, 5, 100, 100}), a = layerAt({10, 10, 50, 50}), b = layerAt({60, 0, 20, 20});
  const auto inA = layerAt({3, 4, 5, 5});
  root->addSublayer(a);
  root->addSublayer(b);
  a->addSublayer(inA);
  a->setBounds({0, 7, 50, 50});  // scrolled
  EXPECT_EQ(inA->convertPoint({1, 1}, root.get()), (CGPoint{14, 8}));
  EXPECT_EQ(inA->convertPoint({1, 1}, b.get()), (CGPoint{-46, 8}));
  EXPECT_EQ(b->convertRect({0, 0, 2, 2}, inA.get()), CGRect(47, -7, 2, 2));
  EXPECT_EQ(inA->convertPoint({0, 0}, nullptr), (CGPoint{13, 7}));
}

TEST(CALayer, FreesTreesOfAnyDepth) {
  Ref<CALayer> nested = make<CALayer>(), masks = make<CALayer>();
  const Weak<CALayer> innermost = nested, lastMask = masks;
  for (int i = 0; i < 300000; ++i) {
    const auto around = make<CALayer>(), masked = make<CALayer>();
    around->addSublayer(nested);
    masked->setMask(masks);
    nested = around;
    masks = masked;
  }
  const Ref<CALayer> kept = nested->sublayers().front();
  nested = masks = nullptr;
  EXPECT_TRUE(lastMask.expired());
  EXPECT_FALSE(innermost.expired());
  EXPECT_EQ(kept->superlayer(), nullptr);
  kept->sublayers().front()->removeFromSuperlayer();
  EXPECT_TRUE(innermost.expired());
}

TEST(CALayer, HitsTheFrontMostVisibleLayer) {
  const auto root = layerAt({0, 0, 100, 100}), back = layerAt({0, 0, 60, 60}), front = layerAt({40, 40, 60, 60});
  root->addSublayer(back);
  root->addSublayer(front);
  EXPECT_EQ(root->hitTest({50, 50}), front);
  front->setHidden(true);
  EXPECT_EQ(root->hitTest({50, 50}), back);
  EXPECT_EQ(root->hitTest({90, 90}), root);
  EXPECT_EQ(root->hitTest({190, 90}), nullptr);
  const auto outside = layerAt({120, 0, 10, 10});
  root->addSublayer(outside);
  EXPECT_EQ(root->hitTest({125, 5}), outside);
  root->setMasksToBounds(true);
  EXPECT_EQ(root->hitTest({125, 5}), nullptr);
}

TEST(CALayer, KeepsItsSublayersInOrderAndOnlyOnce) {
  const auto root = make<CALayer>(), a = make<CALayer>(), b = make<CALayer>(), c = make<CALayer>();
  root->addSublayer(a);
  root->addSublayer(b);
  root->insertSublayerBelow(c, b.get());
  EXPECT_THAT(root->sublayers(), testing::ElementsAre(a, c, b));
  root->insertSublayerAbove(a, c.get());
  EXPECT_THAT(root->sublayers(), testing::ElementsAre(c, a, b));
  root->addSublayer(root->sublayers()[0]);
  EXPECT_THAT(root->sublayers(), testing::ElementsAre(a, b, c));
  const auto other = make<CALayer>();
  other->insertSublayer(b, 99);
  EXPECT_THAT(root->sublayers(), testing::ElementsAre(a, c));
  EXPECT_EQ(b->superlayer(), other.get());
  root->setMask(a);
  EXPECT_EQ(a->superlayer(), nullptr);
  EXPECT_THAT(root->sublayers(), testing::ElementsAre(c));
}

TEST(CALayerDeathTest, CannotBePutIntoItself) {
  const auto root = make<CALayer>(), child = make<CALayer>();
  root->addSublayer(child);
  EXPECT_DEATH(child->addSublayer(root), "fatal error: a layer cannot be put into itself");
}

class Owner : public CALayerDelegate {
 public:
  int draws = 0;
  std::function<void()> meanwhile;
  bool layerDrawsItself(const CALayer&) override { return true; }
  void drawLayer(CALayer& layer, CGContext& context) override {
    ++draws;
    context.fill(layer.bounds());
    if (meanwhile) meanwhile();
  }
};

TEST(CALayer, HasItsOwnerDrawOnceForEachTimeItWasMarked) {
  const auto root = layerAt({0, 0, 50, 50}), child = layerAt({0, 0, 10, 10});
  Owner owner;
  child->setDelegate(&owner);
  root->addSublayer(child);
  root->displayIfNeeded();
  root->displayIfNeeded();
  EXPECT_EQ(owner.draws, 1);
  EXPECT_TRUE(child->hasOwnContents());
  child->setNeedsDisplay();
  child->setNeedsDisplay();
  root->displayIfNeeded();
  EXPECT_EQ(owner.draws, 2);
  child->setPosition({30, 30});
  root->displayIfNeeded();
  EXPECT_EQ(owner.draws, 2) << "moving is not drawing";
  child->setBounds({0, 0, 20, 10});
  root->displayIfNeeded();
  EXPECT_EQ(owner.draws, 3) << "another size is";
}

TEST(CALayer, AnOwnerMayChangeTheTreeWhileItDraws) {
  const auto root = layerAt({0, 0, 50, 50});
  Owner owner;
  owner.meanwhile = [&] {
    root->setMask(make<CALayer>());
    root->addSublayer(make<CALayer>());
    if (owner.draws < 3) root->setNeedsDisplay();
  };
  root->setDelegate(&owner);
  for (int i = 0; i < 5; ++i) root->displayIfNeeded();
  EXPECT_EQ(owner.draws, 3);
  root->setDelegate(nullptr);
}

}  // namespace
}  // namespace platform
