#include <numbers>

#include "platform/engine/Engine.h"
#include "platform/engine/Painter.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/DrawingRecord.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "tests/support/Pictures.h"

namespace platform {
namespace {

using Drawing = std::function<void(CGContext&)>;

Bitmap drawn(int width, int height, const Drawing& drawing) {
  const auto image = UIGraphicsImageRenderer({double(width), double(height)}, 1).imageWithActions(drawing);
  return image->cgImage()->copy();
}

int alphaAt(const Bitmap& bitmap, int x, int y) { return static_cast<int>(bitmap.pixel(x, y) >> 24); }

TEST(CGContext, RestoresColoursTransformAndClipTogether) {
  const Bitmap bitmap = drawn(20, 10, [](CGContext& context) {
    context.setFillColor(UIColor(1, 0, 0, 1));
    context.saveGState();
    context.setFillColor(UIColor(0, 1, 0, 1));
    context.translateBy(10, 0);
    context.clip(CGRect(0, 0, 5, 10));
    context.fill(CGRect(-50, 0, 100, 10));
    EXPECT_EQ(context.ctm(), CGAffineTransform::translation(10, 0));
    context.restoreGState();
    context.restoreGState();  // one too many
    context.fill(CGRect(0, 0, 4, 10));
  });
  EXPECT_EQ(bitmap.pixel(2, 5), 0xFFFF0000u);
  EXPECT_EQ(bitmap.pixel(7, 5), 0u);
  EXPECT_EQ(bitmap.pixel(12, 5), 0xFF00FF00u);
  EXPECT_EQ(bitmap.pixel(17, 5), 0u);
}

TEST(CGContext, FillsAntialiasedAndByEvenOdd) {
  const Bitmap bitmap = drawn(20, 20, [](CGContext& context) {
    context.addEllipse(CGRect(0, 0, 20, 20));
    context.addEllipse(CGRect(5, 5, 10, 10));
    context.fillPath(true);
    context.fillPath();  // the path is used up
  });
  EXPECT_EQ(alphaAt(bitmap, 10, 10), 0);
  EXPECT_EQ(alphaAt(bitmap, 2, 10), 255);
  EXPECT_EQ(alphaAt(bitmap, 0, 0), 0);
  int halfCovered = 0;
  for (int i = 0; i < 20; ++i) halfCovered += alphaAt(bitmap, i, 2) % 255 != 0;
  EXPECT_GT(halfCovered, 0);
}

TEST(CGContext, StrokesAlongTheMiddleOfTheLineWithTheCapItIsTold) {
  for (const CGLineCap cap : {CGLineCap::butt, CGLineCap::square}) {
    const Bitmap bitmap = drawn(20, 10, [cap](CGContext& context) {
      context.setLineWidth(4);
      context.setLineCap(cap);
      context.moveTo({5, 5});
      context.addLineTo({15, 5});
      context.strokePath();
    });
    EXPECT_EQ(alphaAt(bitmap, 10, 3), 255);
    EXPECT_EQ(alphaAt(bitmap, 10, 6), 255);
    EXPECT_EQ(alphaAt(bitmap, 10, 7), 0);
    EXPECT_EQ(alphaAt(bitmap, 3, 5), cap == CGLineCap::square ? 255 : 0);
  }
}

TEST(CGContext, DashesInPointsWhateverTheWidthOfTheLine) {
  const Bitmap bitmap = drawn(30, 6, [](CGContext& context) {
    context.setLineWidth(2);
    context.setLineDash(0, {6, 4});
    context.moveTo({0, 3});
    context.addLineTo({30, 3});
    context.strokePath();
  });
  for (const int x : {0, 5, 10, 15, 20, 25}) EXPECT_EQ(alphaAt(bitmap, x, 3), 255) << x;
  for (const int x : {6, 9, 16, 19, 26, 29}) EXPECT_EQ(alphaAt(bitmap, x, 3), 0) << x;
}

TEST(CGContext, ShadowsFadeOutWithTheirBlurAndLieUnderTheShape) {
  const Bitmap bitmap = drawn(60, 60, [](CGContext& context) {
    context.setShadow({0, 6}, 8, UIColor(0, 0, 0, 1));
    context.setFillColor(UIColor::white());
    context.fill(CGRect(20, 20, 20, 20));
  });
  EXPECT_EQ(bitmap.pixel(30, 30), 0xFFFFFFFFu);
  EXPECT_GT(alphaAt(bitmap, 30, 43), alphaAt(bitmap, 30, 47));
  EXPECT_GT(alphaAt(bitmap, 30, 47), alphaAt(bitmap, 30, 52));
  EXPECT_GT(alphaAt(bitmap, 30, 43), alphaAt(bitmap, 30, 16)) << "the offset points down";
  EXPECT_EQ(alphaAt(bitmap, 30, 2), 0);
}

TEST(CGContext, GradientsRunBetweenTheirPoints) {
  const Bitmap bitmap = drawn(100, 4, [](CGContext& context) {
    context.drawLinearGradient({{UIColor::black(), UIColor::white()}, {}}, {20, 0}, {80, 0});
  });
  EXPECT_EQ(bitmap.pixel(5, 2), 0xFF000000u);
  EXPECT_EQ(bitmap.pixel(95, 2), 0xFFFFFFFFu);
  EXPECT_NEAR(static_cast<int>(bitmap.pixel(50, 2) & 255), 128, 4);
}

TEST(CGContext, DrawsPicturesPixelForPixelWhereTheyFitAndScaledElsewhere) {
  auto checker = std::make_shared<Bitmap>(4, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) checker->row(y)[x] = (x + y) % 2 ? 0xFF000000 : 0xFFFFFFFF;
  }
  const Bitmap same = drawn(10, 10, [&](CGContext& context) { context.drawBitmap(checker, CGRect(3, 3, 4, 4)); });
  EXPECT_EQ(same.pixel(3, 3), 0xFFFFFFFFu);
  EXPECT_EQ(same.pixel(4, 3), 0xFF000000u);
  const Bitmap small = drawn(4, 4, [&](CGContext& context) { context.drawBitmap(checker, CGRect(1, 1, 2, 2)); });
  EXPECT_NEAR(static_cast<int>(small.pixel(1, 1) & 255), 128, 3) << "four pixels make one of their mean";
  const Bitmap faint = drawn(4, 4, [&](CGContext& context) {
    context.setAlpha(0.5);
    context.drawBitmap(checker, CGRect(0, 0, 4, 4));
  });
  EXPECT_NEAR(alphaAt(faint, 0, 0), 128, 1);
  for (const double side : {1e5, 1e12, 1e300}) {
    SCOPED_TRACE(side);
    auto halves = std::make_shared<Bitmap>(2, 1);
    halves->row(0)[0] = 0xFFFF0000;
    halves->row(0)[1] = 0xFF0000FF;
    const Bitmap large = drawn(40, 20, [&](CGContext& context) {
      context.drawBitmap(halves, CGRect(-side / 4, -side / 2, side, side));
      context.drawBitmap(halves, CGRect(-2 * side, 0, side, side));
    });
    EXPECT_EQ(large.pixel(20, 10), 0xFFFF0000u) << "a quarter from the left";
  }
}

TEST(DrawingRecord, PaintsTheSameAsDrawingDirectly) {
  const Drawing drawing = [](CGContext& context) {
    context.saveGState();
    context.translateBy(4, 4);
    context.rotateBy(0.2);
    context.setFillColor(UIColor::systemIndigo());
    context.setShadow({1, 2}, 4);
    context.fillPath(CGPath::roundedRect({4, 2, 40, 24}, 8));
    context.restoreGState();
    context.clip(CGPath::oval({2, 2, 56, 36}));
    TextStyle style;
    style.font = UIFont::systemFont(14);
    context.drawText("Tea", style, CGRect(14, 12, 60, 20), UIColor::white());
    context.saveGState();  // left open on purpose
    context.setStrokeColor(UIColor::systemRed());
    context.stroke(CGRect(10, 10, 30, 20));
  };
  DrawingRecord record;
  {
    CGContext context(record);
    drawing(context);
  }
  Bitmap replayed(60, 40);
  {
    const auto canvas = Engine::shared().makeCanvas(replayed);
    record.replay(*canvas);
    record.replay(*canvas);
    canvas->clear(CGRect(0, 0, 60, 40));  // the clip inside the record ended with it
    record.replay(*canvas);
  }
  const Bitmap direct = drawn(60, 40, drawing);
  EXPECT_TRUE(std::equal(direct.data(), direct.data() + 60 * 40, replayed.data()));
}

TEST(CGContext, DrawsPathsShadowsAndTypeAsStored) {
  const auto image = UIGraphicsImageRenderer({160, 120}, 2).imageWithActions([](CGContext& context) {
    context.setFillColor(UIColor::systemGray6());
    context.fill(CGRect(0, 0, 160, 120));
    context.saveGState();
    context.setShadow({0, 3}, 10, UIColor::white(0, 0.3));
    context.setFillColor(UIColor::white());
    context.fillPath(CGPath::continuousRoundedRect({15, 12, 130, 60}, 16));
    context.restoreGState();
    TextStyle style;
    style.font = UIFont::systemFont(17, UIFontWeightSemibold);
    style.alignment = NSTextAlignment::center;
    context.drawText("Green tea", style, CGRect(15, 20, 130, 24), UIColor::label());
    style.font = UIFont::systemFont(13);
    context.drawText("3 minutes, 80 °C", style, CGRect(15, 44, 130, 20), UIColor::secondaryLabel());
    const auto arc = UIBezierPath::bezierPathWithArcCenter({80, 96}, 14, -std::numbers::pi / 2, 0.6, true);
    arc->setLineWidth(4);
    arc->setLineCapStyle(CGLineCap::round);
    context.setStrokeColor(UIColor::systemGreen());
    arc->stroke(context);
  });
  test::expectPicture(*image, "paths-shadows-type");
}

}  // namespace
}  // namespace platform
