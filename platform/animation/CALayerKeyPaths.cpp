// The properties of a layer by name.

#include <string_view>
#include <unordered_map>

#include "platform/animation/CALayer.h"
#include "platform/animation/TransformParts.h"

namespace platform {

namespace {

/// Reads and writes one property of a layer's values. `set` is false for a value of another type.
template <class State>
struct Property {
  AnimatableValue (*get)(const State& state);
  bool (*set)(State& state, const AnimatableValue& value);
};

/// Writes through a reference to a part of the state.
template <class State, class T, auto part>
constexpr Property<State> property() {
  return {[](const State& state) -> AnimatableValue { return T(part(state)); },
          [](State& state, const AnimatableValue& value) {
            const T* const given = std::get_if<T>(&value);
            if (given) part(state) = *given;
            return given != nullptr;
          }};
}

/// A background that is not there moves as a clear one of the colour it becomes.
template <class State>
Property<State> backgroundProperty() {
  return {[](const State& state) -> AnimatableValue { return state.backgroundColor.value_or(UIColor::clear()); },
          [](State& state, const AnimatableValue& value) {
            const UIColor* const color = std::get_if<UIColor>(&value);
            if (color) state.backgroundColor = *color;
            return color != nullptr;
          }};
}

template <class State, double TransformParts::*part>
constexpr Property<State> transformPart() {
  return {[](const State& state) -> AnimatableValue { return TransformParts(state.transform).*part; },
          [](State& state, const AnimatableValue& value) {
            const double* const number = std::get_if<double>(&value);
            if (!number) return false;
            TransformParts parts(state.transform);
            parts.*part = *number;
            state.transform = parts.transform();
            return true;
          }};
}

template <class State>
Property<State> evenScale() {
  return {[](const State& state) -> AnimatableValue {
            const TransformParts parts(state.transform);
            return (parts.scaleX + parts.scaleY) / 2;
          },
          [](State& state, const AnimatableValue& value) {
            const double* const number = std::get_if<double>(&value);
            if (!number) return false;
            TransformParts parts(state.transform);
            parts.scaleX = parts.scaleY = *number;
            state.transform = parts.transform();
            return true;
          }};
}

template <class S>
const std::unordered_map<std::string_view, Property<S>>& properties() {
  using T = TransformParts;
  static const std::unordered_map<std::string_view, Property<S>> all = {
      {"position", property < S, CGPoint, [](auto& s) -> auto& {return s.position;
}
> ()
}  // namespace
, {"position.x", property < S, double, [](auto& s) -> auto& {return s.position.x;
}  // namespace platform
> ()
}
, {"position.y", property < S, double, [](auto& s) -> auto& {return s.position.y;
}
> ()
}
, {"bounds", property < S, CGRect, [](auto& s) -> auto& {return s.bounds;
}
> ()
}
, {"bounds.origin", property < S, CGPoint, [](auto& s) -> auto& {return s.bounds.origin;
}
> ()
}
, {"bounds.origin.x", property < S, double, [](auto& s) -> auto& {return s.bounds.origin.x;
}
> ()
}
, {"bounds.origin.y", property < S, double, [](auto& s) -> auto& {return s.bounds.origin.y;
}
> ()
}
, {"bounds.size", property < S, CGSize, [](auto& s) -> auto& {return s.bounds.size;
}
> ()
}
, {"bounds.size.width", property < S, double, [](auto& s) -> auto& {return s.bounds.size.width;
}
> ()
}
, {"bounds.size.height", property < S, double, [](auto& s) -> auto& {return s.bounds.size.height;
}
> ()
}
, {"anchorPoint", property < S, CGPoint, [](auto& s) -> auto& {return s.anchorPoint;
}
> ()
}
, {"opacity", property < S, double, [](auto& s) -> auto& {return s.opacity;
}
> ()
}
, {"cornerRadius", property < S, double, [](auto& s) -> auto& {return s.cornerRadius;
}
> ()
}
, {"borderWidth", property < S, double, [](auto& s) -> auto& {return s.borderWidth;
}
> ()
}
, {"borderColor", property < S, UIColor, [](auto& s) -> auto& {return s.borderColor;
}
> ()
}
, {"shadowOpacity", property < S, double, [](auto& s) -> auto& {return s.shadowOpacity;
}
> ()
}
, {"shadowRadius", property < S, double, [](auto& s) -> auto& {return s.shadowRadius;
}
> ()
}
, {"shadowOffset", property < S, CGSize, [](auto& s) -> auto& {return s.shadowOffset;
}
> ()
}
, {"shadowColor", property < S, UIColor, [](auto& s) -> auto& {return s.shadowColor;
}
> ()
}
, {"backgroundColor", backgroundProperty<S>()},
    {"transform", property < S, CGAffineTransform, [](auto& s) -> auto& {return s.transform;
}
> ()
}
, {"transform.rotation", transformPart<S, &T::rotation>()}, {"transform.rotation.z", transformPart<S, &T::rotation>()},
    {"transform.scale", evenScale<S>()}, {"transform.scale.x", transformPart<S, &T::scaleX>()},
    {"transform.scale.y", transformPart<S, &T::scaleY>()},
    {"transform.translation.x", transformPart<S, &T::translationX>()},
    {"transform.translation.y", transformPart<S, &T::translationY>()},
}
;
return all;
}

}  // namespace

AnimatableValue CALayer::valueForKeyPath(const std::string& keyPath) const {
  const auto& all = properties<State>();
  const auto found = all.find(keyPath);
  return found == all.end() ? AnimatableValue() : found->second.get(state_);
}

bool CALayer::setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath) {
  const auto& all = properties<State>();
  const auto found = all.find(keyPath);
  if (found == all.end() || !found->second.set(state_, value)) return false;
  state_.hasTransform = !state_.transform.isIdentity();
  changed();
  return true;
}

}  // namespace platform
