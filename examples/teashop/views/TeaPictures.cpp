#include "examples/teashop/views/TeaPictures.h"

#include <cmath>

#include "examples/teashop/views/TeaCupView.h"
#include "examples/teashop/views/Theme.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"

namespace teashop {

using namespace platform;

namespace {

/// From the first colour to the second.
UIColor mixed(const UIColor& from, const UIColor& to, double share) {
  const auto mix = [share](double a, double b) { return a + (b - a) * share; };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue()), 1};
}

void fillGround(CGContext& context, CGSize size, const UIColor& color) {
  context.setFillColor(color);
  context.fill({{0, 0}, size});
}

}  // namespace

Ref<UIImage> teaPictures::cup(CGSize size, const UIColor& liquor) {
  return UIGraphicsImageRenderer(size).imageWithActions([&](CGContext& context) {
    fillGround(context, size, mixed(theme::paper, liquor, 0.10));
    const double side = std::min(size.width, size.height) * 0.86;
    drawTeaCup(context, {(size.width - side) / 2, (size.height - side) / 2, side, side}, liquor);
  });
}

Ref<UIImage> teaPictures::tin(CGSize size, const UIColor& liquor, const std::string& name) {
  return UIGraphicsImageRenderer(size).imageWithActions([&](CGContext& context) {
    fillGround(context, size, mixed(theme::paper, liquor, 0.16));
    const CGSize body{size.height * 0.50, size.height * 0.60};
    const CGRect tin{(size.width - body.width) / 2, size.height * 0.26, body.width, body.height};
    context.setFillColor(UIColor::white(0, 0.07));
    context.fillEllipse({tin.minX() - 8, tin.maxY() - 9, body.width + 16, 18});
    context.setFillColor(theme::leaf);
    UIBezierPath::bezierPathWithRoundedRect(tin, 9)->fill(context);
    context.setFillColor(theme::leafPressed);
    UIBezierPath::bezierPathWithRoundedRect({tin.minX() - 2, tin.minY() - 18, body.width + 4, 30}, 7)->fill(context);
    const CGRect label{tin.minX(), tin.minY() + body.height * 0.38, body.width, body.height * 0.36};
    context.setFillColor(theme::paper);
    context.fill(label);
    context.setFillColor(liquor);
    context.fill({label.minX(), label.maxY() - 5, label.size.width, 5});
    TextStyle style{.font = UIFont::systemFont(11, UIFontWeightSemibold)};
    style.alignment = NSTextAlignment::center;
    style.numberOfLines = 2;
    const auto text = TextLayout::make(name, style, label.size.width - 12);
    context.drawText(text, {label.minX() + 6, label.midY() - text->size().height / 2 - 2}, theme::ink);
  });
}

Ref<UIImage> teaPictures::hills(CGSize size, const UIColor& tint, unsigned seed) {
  return UIGraphicsImageRenderer(size).imageWithActions([&](CGContext& context) {
    constexpr int ranges = 4;
    fillGround(context, size, mixed(UIColor::white(), tint, 0.28));
    const double sunX = size.width * (0.2 + 0.6 * ((seed * 37) % 100) / 100.0);
    context.setFillColor(mixed(UIColor::white(), theme::amber, 0.22));
    const double sun = size.height * 0.16;
    context.fillEllipse({sunX - sun, size.height * 0.28 - sun, 2 * sun, 2 * sun});
    for (int range = 0; range < ranges; ++range) {
      const double depth = (range + 1.0) / ranges;
      const double base = size.height * (0.34 + 0.16 * range);
      const double phase = seed * 1.7 + range * 2.3;
      context.beginPath();
      context.moveTo({0, size.height});
      for (int step = 0; step <= 32; ++step) {
        const double x = step / 32.0;
        const double rise = std::sin(x * 5.1 + phase) * 0.6 + std::sin(x * 11.7 + phase * 1.9) * 0.25;
        context.addLineTo({x * size.width, base - rise * size.height * 0.11});
      }
      context.addLineTo({size.width, size.height});
      context.closePath();
      context.setFillColor(mixed(mixed(UIColor::white(), tint, 0.42), mixed(tint, theme::ink, 0.35), depth));
      context.fillPath();
    }
  });
}

}  // namespace teashop
