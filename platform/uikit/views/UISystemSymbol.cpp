#include "platform/uikit/views/UISystemSymbol.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>
#include <tuple>

#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

/// A shape on a square of 24 by 24. `area` is filled, holes where it overlaps itself; `line` is stroked.
///
/// M, L, Q, C, Z as usual; O x y radius is a circle; R x y width height radius a rounded rectangle; A x y radius from
/// to an arc, clockwise, in degrees; X x y arm thickness a diagonal cross; S x y outer inner a star; G x y outer inner
/// a gear wheel.
struct Shape {
  const char* line;
  const char* area;
};

constexpr double grid = 24;

constexpr const char* houseDoor = "M9.8 20.4 L9.8 14.6 Q9.8 13.6 10.8 13.6 L13.2 13.6 Q14.2 13.6 14.2 14.6 L14.2 20.4";
constexpr const char* person = "O12 8 3.9 M4.6 20 C4.6 15.6 8 14 12 14 C16 14 19.4 15.6 19.4 20 Z";
constexpr const char* heart =
    "M12 20 C5 15.5 2.8 12 2.8 8.9 C2.8 6 5 4.2 7.4 4.2 C9.3 4.2 11 5.2 12 7 C13 5.2 14.7 4.2 16.6 4.2 "
    "C19 4.2 21.2 6 21.2 8.9 C21.2 12 19 15.5 12 20 Z";
constexpr const char* star = "S12 12.6 9.6 4.4";
constexpr const char* bell =
    "M5.6 16.6 C7 15 6.8 13 6.8 10.5 C6.8 7 9 5 12 5 C15 5 17.2 7 17.2 10.5 C17.2 13 17 15 18.4 16.6 Z";
constexpr const char* bellClapper = "M12 5 L12 3.6 M10 19.4 C10.5 20.9 13.5 20.9 14 19.4";
constexpr const char* bubble =
    "M12 4 C17 4 21 7 21 11.2 C21 15.5 17 18.5 12 18.5 C11 18.5 10 18.4 9.1 18.1 L4.8 20.5 L5.6 16.5 "
    "C4 15.1 3 13.3 3 11.2 C3 7 7 4 12 4 Z";
constexpr const char* cup = "M4.5 7 L16.5 7 L16.5 11.5 C16.5 15 14.5 17 10.5 17 C6.5 17 4.5 15 4.5 11.5 Z";
constexpr const char* leaf = "M5.6 17.6 C2.6 9.6 9 4.5 20 4.5 C20.5 14.5 13.6 20.6 5.6 17.6 Z";

const std::map<std::string, std::vector<Shape>>& shapes() {
  static const std::map<std::string, std::vector<Shape>> all{
      {"chevron.left", {{"M15 4.5 L7.5 12 L15 19.5", ""}}},
      {"chevron.right", {{"M9 4.5 L16.5 12 L9 19.5", ""}}},
      {"chevron.down", {{"M4.5 9 L12 16.5 L19.5 9", ""}}},
      {"plus", {{"M12 4 L12 20 M4 12 L20 12", ""}}},
      {"minus", {{"M4 12 L20 12", ""}}},
      {"xmark", {{"M5.5 5.5 L18.5 18.5 M18.5 5.5 L5.5 18.5", ""}}},
      {"xmark.circle.fill", {{"", "O12 12 9.8 X12 12 5.6 0.85"}}},
      {"checkmark", {{"M4.5 12.5 L9.5 18 L19.5 6", ""}}},
      {"magnifyingglass", {{"O10.5 10.5 6.6 M15.4 15.4 L20.6 20.6", ""}}},
      {"trash",
       {{"M4 6.4 L20 6.4 M9 6.4 L9 4.6 Q9 3.4 10.2 3.4 L13.8 3.4 Q15 3.4 15 4.6 L15 6.4 M5.8 6.4 L6.6 18.8 "
         "Q6.7 20.5 8.4 20.5 L15.6 20.5 Q17.3 20.5 17.4 18.8 L18.2 6.4 M9.8 10 L10.1 17 M14.2 10 L13.9 17",
         ""}}},
      {"square.and.arrow.up",
       {{"M8.5 9.5 L7 9.5 Q5.5 9.5 5.5 11 L5.5 19 Q5.5 20.5 7 20.5 L17 20.5 Q18.5 20.5 18.5 19 L18.5 11 "
         "Q18.5 9.5 17 9.5 L15.5 9.5 M12 3 L12 14.5 M8.5 6.3 L12 2.8 L15.5 6.3",
         ""}}},
      {"square.and.pencil",
       {{"M12 5 L6.2 5 Q4 5 4 7.2 L4 17.8 Q4 20 6.2 20 L16.8 20 Q19 20 19 17.8 L19 12 M10 14.5 L10.7 11.7 L18.6 3.8 "
         "Q19.3 3.1 20 3.8 L20.4 4.2 Q21 4.9 20.3 5.6 L12.6 13.6 Z",
         ""}}},
      {"arrowshape.turn.up.left", {{"M10 5 L3.5 11 L10 17 L10 13.3 Q16.5 13 20.5 18.5 Q19.5 9 10 8.6 Z", ""}}},
      {"arrow.clockwise", {{"A12 12.4 8 25 334 M19.6 4 L19.6 8.8 L14.8 8.8", ""}}},
      {"arrow.uturn.backward",
       {{"M8.5 5 L4 9.5 L8.5 14 M4.5 9.5 L14.5 9.5 C21.5 9.5 21.5 19.5 14.5 19.5 L9 19.5", ""}}},
      {"arrow.uturn.forward",
       {{"M15.5 5 L20 9.5 L15.5 14 M19.5 9.5 L9.5 9.5 C2.5 9.5 2.5 19.5 9.5 19.5 L15 19.5", ""}}},
      {"camera",
       {{"M4.6 7.5 L7.4 7.5 L9 5 L15 5 L16.6 7.5 L19.4 7.5 Q21.5 7.5 21.5 9.6 L21.5 17.4 Q21.5 19.5 19.4 19.5 L4.6 "
         "19.5 "
         "Q2.5 19.5 2.5 17.4 L2.5 9.6 Q2.5 7.5 4.6 7.5 Z O12 13.2 3.8",
         ""}}},
      {"folder",
       {{"M3 8 L3 6.5 Q3 5 4.5 5 L9 5 L11 7.2 L19.5 7.2 Q21 7.2 21 8.7 L21 17.5 Q21 19 19.5 19 L4.5 19 Q3 19 3 17.5 Z",
         ""}}},
      {"book",
       {{"M12 6.5 C9.5 4.5 6 4.3 3 5.2 L3 18.7 C6 17.8 9.5 18 12 20 C14.5 18 18 17.8 21 18.7 L21 5.2 C18 4.3 14.5 4.5 "
         "12 6.5 Z M12 6.5 L12 20",
         ""}}},
      {"play.fill", {{"M7 5 L19 12 L7 19 Z", "M7 5 L19 12 L7 19 Z"}}},
      {"pause.fill", {{"", "R6.4 4.8 4 14.4 1.2 R13.6 4.8 4 14.4 1.2"}}},
      {"backward.fill",
       {{"M11 6.5 L11 17.5 L3.5 12 Z M20.5 6.5 L20.5 17.5 L13 12 Z",
         "M11 6.5 L11 17.5 L3.5 12 Z M20.5 6.5 L20.5 17.5 L13 12 Z"}}},
      {"forward.fill",
       {{"M13 6.5 L13 17.5 L20.5 12 Z M3.5 6.5 L3.5 17.5 L11 12 Z",
         "M13 6.5 L13 17.5 L20.5 12 Z M3.5 6.5 L3.5 17.5 L11 12 Z"}}},
      {"house",
       {{"M3.2 11.2 L12 3.8 L20.8 11.2 M5.5 9.5 L5.5 18.8 Q5.5 20.4 7.1 20.4 L16.9 20.4 Q18.5 20.4 18.5 18.8 L18.5 9.5",
         ""},
        {houseDoor, ""}}},
      {"house.fill",
       {{"M3.2 11.2 L12 3.8 L20.8 11.2", ""},
        {"",
         "M12 5.4 L19.2 11.4 L19.2 19 Q19.2 21 17.2 21 L14.6 21 L14.6 15 Q14.6 14 13.6 14 L10.4 14 Q9.4 14 9.4 15 "
         "L9.4 21 L6.8 21 Q4.8 21 4.8 19 L4.8 11.4 Z"}}},
      {"storefront",
       {{"M4.6 11 L4.6 18.8 Q4.6 20.4 6.2 20.4 L17.8 20.4 Q19.4 20.4 19.4 18.8 L19.4 11 M5 4 L19 4 L21 8.5 C21 12 16.8 "
         "12 16.5 9 C16.2 12 12.3 12 12 9 C11.7 12 7.8 12 7.5 9 C7.2 12 3 12 3 8.5 Z M9.4 20.2 L9.4 15 L14.6 15 L14.6 "
         "20.2",
         ""}}},
      {"storefront.fill",
       {{"M4.6 11 L4.6 18.8 Q4.6 20.4 6.2 20.4 L17.8 20.4 Q19.4 20.4 19.4 18.8 L19.4 11 M9.4 20.2 L9.4 15 L14.6 15 "
         "L14.6 20.2",
         ""},
        {"M5 4 L19 4 L21 8.5 C21 12 16.8 12 16.5 9 C16.2 12 12.3 12 12 9 C11.7 12 7.8 12 7.5 9 C7.2 12 3 12 3 8.5 Z",
         "M5 4 L19 4 L21 8.5 C21 12 16.8 12 16.5 9 C16.2 12 12.3 12 12 9 C11.7 12 7.8 12 7.5 9 C7.2 12 3 12 3 8.5 Z"}}},
      {"cart",
       {{"M2.6 4 L5 4 L7.3 14.8 Q7.6 16 8.8 16 L17.4 16 Q18.6 16 18.9 14.8 L20.8 7.4 L5.8 7.4", ""},
        {"", "O9.4 19.6 1.5 O16.8 19.6 1.5"}}},
      {"cart.fill",
       {{"M2.6 4 L5 4 L7.3 14.8 Q7.6 16 8.8 16 L17.4 16 Q18.6 16 18.9 14.8 L20.8 7.4 L5.8 7.4",
         "M5.8 7.4 L20.8 7.4 L18.9 14.8 Q18.6 16 17.4 16 L8.8 16 Q7.6 16 7.3 14.8 Z"},
        {"", "O9.4 19.6 1.5 O16.8 19.6 1.5"}}},
      {"person", {{person, ""}}},
      {"person.fill", {{person, person}}},
      {"heart", {{heart, ""}}},
      {"heart.fill", {{heart, heart}}},
      {"star", {{star, ""}}},
      {"star.fill", {{star, star}}},
      {"bell", {{bell, ""}, {bellClapper, ""}}},
      {"bell.fill", {{bell, bell}, {bellClapper, ""}}},
      {"gearshape", {{"G12 12 9.4 7.2 O12 12 3", ""}}},
      {"list.bullet", {{"M9 6 L20.5 6 M9 12 L20.5 12 M9 18 L20.5 18", "O4.6 6 1.3 O4.6 12 1.3 O4.6 18 1.3"}}},
      {"ellipsis", {{"", "O5 12 1.8 O12 12 1.8 O19 12 1.8"}}},
      {"cup.and.saucer",
       {{cup, ""}, {"M16.5 8.5 L18 8.5 C21.2 8.5 21.2 13.2 18 13.2 L16.2 13.2 M3.4 20.2 L17.6 20.2", ""}}},
      {"cup.and.saucer.fill",
       {{cup, cup}, {"M16.5 8.5 L18 8.5 C21.2 8.5 21.2 13.2 18 13.2 L16.2 13.2 M3.4 20.2 L17.6 20.2", ""}}},
      {"leaf", {{leaf, ""}, {"M3.8 20.8 C6 16 9.5 12.5 14 10.5", ""}}},
      {"leaf.fill", {{leaf, leaf}, {"M3.8 20.8 L6.2 17", ""}}},
      {"shippingbox",
       {{"M12 3.2 L20 7.2 L20 16.8 L12 20.8 L4 16.8 L4 7.2 Z M4 7.2 L12 11.2 L20 7.2 M12 11.2 L12 20.8 M8 5.2 L16 9.2",
         ""}}},
      {"line.3.horizontal.decrease", {{"M4 7 L20 7 M7 12 L17 12 M10 17 L14 17", ""}}},
      {"message", {{bubble, ""}}},
      {"message.fill", {{bubble, bubble}}},
      {"clock", {{"O12 12 9 M12 6.6 L12 12 L15.8 14", ""}}},
      {"info.circle", {{"O12 12 9 M12 11.2 L12 16.6", "O12 7.8 1.2"}}},
      {"slider.horizontal.3",
       {{"M3.5 6.5 L13 6.5 M17.4 6.5 L20.5 6.5 O15.2 6.5 2.2 M3.5 12 L6.6 12 M11 12 L20.5 12 O8.8 12 2.2 M3.5 17.5 L13 "
         "17.5 M17.4 17.5 L20.5 17.5 O15.2 17.5 2.2",
         ""}}},
  };
  return all;
}

// ---- From the notation to paths

void addPolygon(CGPath& path, const std::vector<CGPoint>& corners) {
  for (std::size_t i = 0; i < corners.size(); ++i) i == 0 ? path.move(corners[i]) : path.line(corners[i]);
  path.close();
}

CGPoint around(CGPoint center, double radius, double degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

void addCross(CGPath& path, CGPoint center, double arm, double thickness) {
  std::vector<CGPoint> corners;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const double turn = 45 + 90 * quarter;
    const double spread = std::atan2(thickness, arm) * 180 / std::numbers::pi;
    const double reach = std::hypot(arm, thickness);
    corners.push_back(around(center, reach, turn - spread));
    corners.push_back(around(center, reach, turn + spread));
    corners.push_back(around(center, thickness * std::numbers::sqrt2, turn + 45));
  }
  addPolygon(path, corners);
}

void addStar(CGPath& path, CGPoint center, double outer, double inner) {
  std::vector<CGPoint> corners;
  for (int i = 0; i < 10; ++i) corners.push_back(around(center, i % 2 == 0 ? outer : inner, -90 + 36 * i));
  addPolygon(path, corners);
}

void addGear(CGPath& path, CGPoint center, double outer, double inner) {
  std::vector<CGPoint> corners;
  for (int tooth = 0; tooth < 8; ++tooth) {
    const double middle = 45 * tooth;
    corners.push_back(around(center, inner, middle - 14));
    corners.push_back(around(center, outer, middle - 9));
    corners.push_back(around(center, outer, middle + 9));
    corners.push_back(around(center, inner, middle + 14));
  }
  addPolygon(path, corners);
}

CGPath parse(const char* text) {
  CGPath path;
  double n[5] = {};
  const auto read = [&](int count) {
    for (int i = 0; i < count; ++i) {
      char* end = nullptr;
      n[i] = std::strtod(text, &end);
      text = end;
    }
  };
  const auto point = [&] {
    read(2);
    return CGPoint{n[0], n[1]};
  };
  while (*text) {
    switch (*text++) {
      case 'M':
        path.move(point());
        break;
      case 'L':
        path.line(point());
        break;
      case 'Q': {
        const CGPoint control = point();
        path.quad(control, point());
        break;
      }
      case 'C': {
        const CGPoint control1 = point();
        const CGPoint control2 = point();
        path.curve(control1, control2, point());
        break;
      }
      case 'Z':
        path.close();
        break;
      case 'O':
        read(3);
        path.append(CGPath::oval({n[0] - n[2], n[1] - n[2], 2 * n[2], 2 * n[2]}));
        break;
      case 'R':
        read(5);
        path.append(CGPath::roundedRect({n[0], n[1], n[2], n[3]}, n[4]));
        break;
      case 'A':
        read(5);
        path.move(around({n[0], n[1]}, n[2], n[3]));
        path.arc({n[0], n[1]}, n[2], n[3] * std::numbers::pi / 180, n[4] * std::numbers::pi / 180, true);
        break;
      case 'X':
        read(4);
        addCross(path, {n[0], n[1]}, n[2], n[3]);
        break;
      case 'S':
        read(4);
        addStar(path, {n[0], n[1]}, n[2], n[3]);
        break;
      case 'G':
        read(4);
        addGear(path, {n[0], n[1]}, n[2], n[3]);
        break;
      default:
        break;  // space between the pieces
    }
  }
  return path;
}

double lineWidth(UISymbolWeight weight) {
  switch (weight) {
    case UISymbolWeight::light:
      return 1.2;
    case UISymbolWeight::regular:
      return 1.6;
    case UISymbolWeight::medium:
      return 1.9;
    case UISymbolWeight::semibold:
      return 2.4;
  }
  return 1.6;
}

}  // namespace

Ref<UIImage> UISystemSymbol::image(const std::string& name, double pointSize, UISymbolWeight weight) {
  const auto symbol = shapes().find(name);
  if (symbol == shapes().end() || !(pointSize > 0)) return nullptr;
  static std::map<std::tuple<std::string, double, UISymbolWeight, double>, Ref<UIImage>> made;
  const double scale = UIScreen::main().scale();
  Ref<UIImage>& image = made[{name, pointSize, weight, scale}];
  if (image) return image;
  const double side = std::round(pointSize * 1.2);
  const Ref<UIImage> drawn = UIGraphicsImageRenderer({side, side}, scale).imageWithActions([&](CGContext& context) {
    context.scaleBy(side / grid, side / grid);
    context.setStrokeColor(UIColor::black());
    context.setFillColor(UIColor::black());
    context.setLineWidth(lineWidth(weight));
    context.setLineCap(CGLineCap::round);
    context.setLineJoin(CGLineJoin::round);
    for (const Shape& shape : symbol->second) {
      context.addPath(parse(shape.area));
      context.fillPath(true);
      context.addPath(parse(shape.line));
      context.strokePath();
    }
  });
  image = drawn->imageWithRenderingMode(UIImageRenderingMode::alwaysTemplate);
  return image;
}

std::vector<std::string> UISystemSymbol::names() {
  std::vector<std::string> names;
  for (const auto& [name, shape] : shapes()) names.push_back(name);
  return names;
}

}  // namespace platform
