#include <numbers>

#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAGradientLayer.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIFont.h"
#include "tests/support/Pictures.h"

namespace platform {
namespace {

const UIColor red(1, 0, 0, 1), green(0, 1, 0, 1), blue(0, 0, 1, 1);

template <class L = CALayer>
Ref<L> layerAt(const CGRect& frame, std::optional<UIColor> color = std::nullopt) {
  auto layer = make<L>();
  layer->setFrame(frame);
  layer->setBackgroundColor(color);
  return layer;
}

/// A root of 40 x 40 points on a clear ground, a pixel a point.
class LayerCompositorTest : public testing::Test {
 protected:
  CGImageRef picture(double scale = 1) { return renderLayer(*root_, {40, 40}, scale)->cgImage(); }
  static int alpha(const CGImageRef& image, int x, int y) { return static_cast<int>(image->pixel(x, y) >> 24); }

  VirtualTime time_;
  Ref<CALayer> root_ = layerAt({0, 0, 40, 40});
};

TEST_F(LayerCompositorTest, PaintsBackToFrontInTheParentsCoordinates) {
  const auto parent = layerAt({10, 10, 20, 20}, red), child = layerAt({5, 5, 10, 30}, blue);
  root_->addSublayer(parent);
  parent->addSublayer(child);
  const auto image = picture();
  EXPECT_EQ(image->pixel(9, 15), 0u);
  EXPECT_EQ(image->pixel(10, 10), 0xFFFF0000u);
  EXPECT_EQ(image->pixel(15, 15), 0xFF0000FFu);
  EXPECT_EQ(image->pixel(20, 35), 0xFF0000FFu) << "sublayers show beyond their parent";
  parent->setMasksToBounds(true);
  EXPECT_EQ(picture()->pixel(20, 35), 0u);
  parent->setBounds({0, -5, 20, 20});
  EXPECT_EQ(picture()->pixel(16, 17), 0xFFFF0000u) << "the origin of the bounds scrolls what is inside";
  parent->setHidden(true);
  EXPECT_EQ(picture()->pixel(12, 12), 0u);
}

TEST_F(LayerCompositorTest, FadesALayerWithAllThatIsInItAsOnePicture) {
  const auto group = layerAt({0, 0, 40, 40}, red);
  group->addSublayer(layerAt({0, 0, 20, 40}, blue));
  group->setOpacity(0.5);
  root_->addSublayer(group);
  const auto image = picture();
  EXPECT_NEAR(alpha(image, 5, 5), 128, 1);
  EXPECT_EQ(image->pixel(5, 5) >> 16 & 255, 0u) << "the red below does not shine through the blue";
  EXPECT_NEAR(static_cast<int>(image->pixel(30, 5) >> 16 & 255), 128, 1);
}

TEST_F(LayerCompositorTest, RoundsCornersOfTheBackgroundAndOfWhatIsInside) {
  const auto card = layerAt({0, 0, 40, 40}, red);
  card->setCornerRadius(12);
  const auto inside = layerAt({0, 0, 40, 40}, blue);
  card->addSublayer(inside);
  root_->addSublayer(card);
  EXPECT_EQ(picture()->pixel(0, 0), 0xFF0000FFu) << "only clipping rounds what is inside";
  card->setMasksToBounds(true);
  const auto image = picture();
  EXPECT_EQ(alpha(image, 0, 0), 0);
  EXPECT_EQ(alpha(image, 39, 39), 0);
  EXPECT_EQ(image->pixel(20, 0), 0xFF0000FFu);
  EXPECT_EQ(image->pixel(20, 20), 0xFF0000FFu);
  EXPECT_GT(alpha(image, 3, 4), 20) << "the edge is smooth";
  EXPECT_LT(alpha(image, 3, 2), 235);
}

TEST_F(LayerCompositorTest, DrawsBordersInsideTheBoundsAboveEverything) {
  const auto box = layerAt({4, 4, 32, 32}, red);
  box->addSublayer(layerAt({0, 0, 32, 32}, blue));
  box->setBorderWidth(3);
  box->setBorderColor(green);
  root_->addSublayer(box);
  for (const double radius : {0.0, 6.0}) {
    box->setCornerRadius(radius);
    const auto image = picture();
    EXPECT_EQ(image->pixel(20, 3), 0u);
    EXPECT_EQ(image->pixel(20, 4), 0xFF00FF00u);
    EXPECT_EQ(image->pixel(20, 6), 0xFF00FF00u);
    EXPECT_EQ(image->pixel(20, 7), 0xFF0000FFu);
    EXPECT_EQ(image->pixel(35, 20), 0xFF00FF00u);
  }
}

TEST_F(LayerCompositorTest, ShowsOnlyWhatTheMaskCovers) {
  const auto target = layerAt({0, 0, 40, 40}, UIColor::white(0, 0.65));
  const auto mask = make<CAShapeLayer>();
  CGPath quarter;
  quarter.arc({40, 40}, 32, std::numbers::pi, 1.5 * std::numbers::pi, true);
  quarter.line({40, 40});
  quarter.close();
  mask->setPath(quarter);
  target->setMask(mask);
  root_->addSublayer(target);
  const auto image = picture();
  EXPECT_EQ(alpha(image, 10, 10), 0);
  EXPECT_NEAR(alpha(image, 30, 30), 166, 1);
  EXPECT_NEAR(alpha(image, 39, 39), 166, 1);
  int smooth = 0;
  for (int x = 0; x < 40; ++x) smooth += alpha(image, x, 20) > 5 && alpha(image, x, 20) < 160;
  EXPECT_GT(smooth, 0);
  mask->setOpacity(0.5);
  EXPECT_NEAR(alpha(picture(), 30, 30), 83, 1);
  target->setMask(make<CALayer>());
  EXPECT_EQ(alpha(picture(), 30, 30), 0) << "an empty mask hides everything";
}

TEST_F(LayerCompositorTest, AnAnimatedMaskGrowsAndTheRestStaysAway) {
  const auto screen = layerAt({0, 0, 40, 40}, red);
  const auto mask = make<CAShapeLayer>();
  const CGPath end = CGPath::roundedRect({0, 0, 40, 40}, 0.1);
  mask->setPath(end);
  screen->setMask(mask);
  root_->addSublayer(screen);
  auto grow = make<CABasicAnimation>("path");
  grow->setFromValue(CGPath::roundedRect({30, 16, 8, 8}, 4));
  grow->setToValue(end);
  grow->setDuration(0.3);
  mask->addAnimation(grow, "pathAnimation");
  EXPECT_EQ(alpha(picture(), 10, 20), 0);
  EXPECT_EQ(alpha(picture(), 34, 20), 255);
  RunLoop::advance(0.15);
  EXPECT_EQ(alpha(picture(), 5, 20), 0);
  EXPECT_EQ(alpha(picture(), 20, 20), 255);
  RunLoop::advance(0.2);
  EXPECT_EQ(alpha(picture(), 5, 20), 255);
}

TEST_F(LayerCompositorTest, DrawsAPartOfAnArcWithRoundEnds) {
  const auto spinner = make<CAShapeLayer>();
  CGPath arc;
  arc.arc({20, 20}, 15, -std::numbers::pi / 2, 2 * std::numbers::pi, true);
  spinner->setPath(arc);
  spinner->setFillColor(std::nullopt);
  spinner->setStrokeColor(UIColor::black());
  spinner->setLineWidth(4);
  spinner->setStrokeEnd(0.25);
  root_->addSublayer(spinner);
  auto image = picture();
  EXPECT_EQ(alpha(image, 30, 9), 255) << "the first quarter, from the top to the right";
  EXPECT_EQ(alpha(image, 30, 31), 0);
  EXPECT_EQ(alpha(image, 35, 21), 0) << "a butt end";
  EXPECT_EQ(alpha(image, 20, 20), 0);
  spinner->setLineCap(kCALineCapRound);
  EXPECT_GT(alpha(picture(), 35, 20), 100);
}

TEST_F(LayerCompositorTest, ThrowsShadowsOfBackgroundsPathsAndContents) {
  const auto card = layerAt({12, 12, 16, 16}, UIColor::white());
  card->setShadowOpacity(0.8);
  card->setShadowOffset({0, 4});
  card->setShadowRadius(2);
  root_->addSublayer(card);
  auto image = picture();
  EXPECT_EQ(image->pixel(20, 20), 0xFFFFFFFFu);
  EXPECT_GT(alpha(image, 20, 30), alpha(image, 20, 34));
  EXPECT_GT(alpha(image, 20, 30), 60);
  EXPECT_EQ(alpha(image, 20, 4), 0);

  card->setBackgroundColor(std::nullopt);
  card->addSublayer(layerAt({4, 4, 8, 8}, red));
  image = picture();
  EXPECT_GT(alpha(image, 20, 26), 60) << "the shadow is that of what is drawn";
  EXPECT_LT(alpha(image, 20, 32), 60);
  card->setShadowPath(CGPath::rect({0, 0, 16, 16}));
  EXPECT_GT(alpha(picture(), 20, 31), 60);
  card->setMasksToBounds(true);
  EXPECT_EQ(alpha(picture(), 20, 31), 0);
}

TEST_F(LayerCompositorTest, TurnsLayersAroundTheirAnchor) {
  const auto bar = layerAt({10, 18, 20, 4}, red);
  bar->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
  root_->addSublayer(bar);
  const auto image = picture();
  EXPECT_EQ(image->pixel(20, 12), 0xFFFF0000u);
  EXPECT_EQ(image->pixel(12, 20), 0u);
}

TEST_F(LayerCompositorTest, LaysRestingLayersOnWholePixels) {
  root_->addSublayer(layerAt({10.3, 10.3, 10, 10}, red));
  const auto image = picture(2);
  EXPECT_EQ(image->pixel(21, 21), 0xFFFF0000u);
  EXPECT_EQ(image->pixel(20, 21), 0u);
  EXPECT_EQ(image->pixel(40, 30), 0xFFFF0000u);
}

TEST_F(LayerCompositorTest, FitsContentsByTheirGravity) {
  Bitmap bitmap(20, 10);
  for (int y = 0; y < 10; ++y) std::fill(bitmap.row(y), bitmap.row(y) + 20, 0xFFFF0000u);
  root_->setContents(UIImage::imageWithBitmap(std::move(bitmap)));
  using Gravity = CALayerContentsGravity;
  const struct {
    Gravity gravity;
    CGRect shown;
  } cases[] = {{Gravity::resize, {0, 0, 40, 40}},           {Gravity::resizeAspect, {0, 10, 40, 20}},
               {Gravity::resizeAspectFill, {0, 0, 40, 40}}, {Gravity::center, {10, 15, 20, 10}},
               {Gravity::topLeft, {0, 0, 20, 10}},          {Gravity::bottomRight, {20, 30, 20, 10}}};
  for (const auto& [gravity, shown] : cases) {
    root_->setContentsGravity(gravity);
    const auto image = picture();
    int wrong = 0;
    for (int y = 0; y < 40; ++y) {
      for (int x = 0; x < 40; ++x) wrong += (alpha(image, x, y) == 255) != shown.contains(CGPoint{x + 0.5, y + 0.5});
    }
    EXPECT_EQ(wrong, 0) << static_cast<int>(gravity);
  }
}

TEST_F(LayerCompositorTest, ShowsTheFrameOfAMovingPictureThatIsDue) {
  const auto plain = [](std::uint32_t pixel) {
    Bitmap bitmap(1, 1);
    bitmap.row(0)[0] = pixel;
    return UIImage::imageWithBitmap(std::move(bitmap));
  };
  root_->setContents(UIImage::animatedImage({plain(0xFFFF0000), plain(0xFF0000FF)}, 1));
  EXPECT_EQ(picture()->pixel(5, 5), 0xFFFF0000u);
  RunLoop::advance(0.6);
  EXPECT_EQ(picture()->pixel(5, 5), 0xFF0000FFu);
  RunLoop::advance(0.5);
  EXPECT_EQ(picture()->pixel(5, 5), 0xFFFF0000u);
}

TEST_F(LayerCompositorTest, SurvivesSizesThatAreNotDrawable) {
  const double nothing = std::nan("");
  const auto odd = layerAt({nothing, 0, nothing, 10}, red);
  odd->setCornerRadius(nothing);
  odd->setShadowOpacity(1);
  root_->addSublayer(odd);
  root_->addSublayer(layerAt({-1e9, -1e9, 2e9, 2e9}, green));
  const auto faint = layerAt({-1e9, -1e9, 2e9, 2e9}, blue);
  faint->setOpacity(0.5);
  faint->addSublayer(layerAt({1e9, 1e9, 1, 1}, red));
  root_->addSublayer(faint);
  const auto flat = layerAt({0, 0, 10, 10}, red);
  flat->setTransform(CGAffineTransform::scale(0, 0));
  root_->addSublayer(flat);
  EXPECT_EQ(alpha(picture(), 20, 20), 255);
}

/// Draws a text centred in the layer.
class Label : public CALayerDelegate {
 public:
  Label(std::string text, const UIFont& font, const UIColor& color) : text_(std::move(text)), color_(color) {
    style_.font = font;
    style_.alignment = NSTextAlignment::center;
  }
  bool layerDrawsItself(const CALayer&) override { return true; }
  void drawLayer(CALayer& layer, CGContext& context) override {
    const double height = TextLayout::measure(text_, style_, layer.bounds().width()).height;
    const double top = (layer.bounds().height() - height) / 2;
    context.drawText(text_, style_, layer.bounds().insetBy(UIEdgeInsets{top, 0, 0, 0}), color_);
  }

 private:
  std::string text_;
  TextStyle style_;
  UIColor color_;
};

TEST_F(LayerCompositorTest, ComposesACardAsStored) {
  const auto ground = layerAt({0, 0, 200, 150}, UIColor::systemGray6());
  const auto card = layerAt({20, 16, 160, 84}, UIColor::white());
  card->setCornerRadius(18);
  card->setCornerCurve(CALayerCornerCurve::continuous);
  card->setShadowOpacity(0.2);
  card->setShadowRadius(8);
  card->setShadowOffset({0, 4});
  const auto head = layerAt<CAGradientLayer>({0, 0, 160, 40});
  head->setColors({UIColor::systemIndigo(), UIColor::systemTeal()});
  head->setStartPoint({0, 0.5});
  head->setEndPoint({1, 0.5});
  const auto clip = layerAt({0, 0, 160, 84});
  clip->setCornerRadius(18);
  clip->setCornerCurve(CALayerCornerCurve::continuous);
  clip->setMasksToBounds(true);
  Label title("Oolong", UIFont::systemFont(17, UIFontWeightSemibold), UIColor::white());
  Label note("Half price today", UIFont::systemFont(14), UIColor::label());
  const auto titleLayer = layerAt({0, 0, 160, 40}), noteLayer = layerAt({0, 40, 160, 44});
  titleLayer->setDelegate(&title);
  noteLayer->setDelegate(&note);
  clip->addSublayer(head);
  clip->addSublayer(titleLayer);
  clip->addSublayer(noteLayer);
  card->addSublayer(clip);
  ground->addSublayer(card);
  const auto badge = layerAt({150, 88, 36, 36}, UIColor::systemRed());
  badge->setCornerRadius(18);
  badge->setBorderWidth(2);
  badge->setBorderColor(UIColor::white());
  badge->setOpacity(0.85);
  badge->setTransform(CGAffineTransform::rotation(-0.2));
  Label percent("-50", UIFont::systemFont(13, UIFontWeightBold), UIColor::white());
  const auto percentLayer = layerAt({0, 0, 36, 36});
  percentLayer->setDelegate(&percent);
  badge->addSublayer(percentLayer);
  ground->addSublayer(badge);
  test::expectPicture(*renderLayer(*ground, {200, 150}, 2), "card");
}

}  // namespace
}  // namespace platform
