#include "platform/graphics/UIFont.h"

#include <cmath>

#include "platform/engine/Engine.h"

namespace platform {

namespace {

/// The nearest of the nine steps.
int numericWeight(UIFontWeight weight) {
  struct Step {
    UIFontWeight weight;
    int number;
  };
  static constexpr Step steps[] = {
      {UIFontWeightUltraLight, 100}, {UIFontWeightThin, 200},   {UIFontWeightLight, 300},
      {UIFontWeightRegular, 400},    {UIFontWeightMedium, 500}, {UIFontWeightSemibold, 600},
      {UIFontWeightBold, 700},       {UIFontWeightHeavy, 800},  {UIFontWeightBlack, 900},
  };
  const Step* best = &steps[3];
  for (const Step& step : steps) {
    if (std::abs(step.weight - weight) < std::abs(best->weight - weight)) best = &step;
  }
  return best->number;
}

}  // namespace

UIFont UIFont::systemFont(double size, UIFontWeight weight) {
  return {Engine::shared().systemFace(numericWeight(weight), false), size};
}

UIFont UIFont::italicSystemFont(double size) { return {Engine::shared().systemFace(400, true), size}; }

UIFont UIFont::monospacedSystemFont(double size, UIFontWeight weight) {
  return {Engine::shared().monospacedFace(numericWeight(weight)), size};
}

std::optional<UIFont> UIFont::named(const std::string& name, double size) {
  const FontFace* const face = Engine::shared().faceNamed(name);
  if (!face) return std::nullopt;
  return UIFont(*face, size);
}

}  // namespace platform
