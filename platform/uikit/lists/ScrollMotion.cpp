#include "platform/uikit/lists/ScrollMotion.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double slowest = 12;            // points a second: slower gliding counts as rest
constexpr double springFrequency = 11;    // radians a second, critically damped
constexpr double springRest = 0.25;       // points: nearer than this the spring is at rest
constexpr double rubberStiffness = 0.55;  // how much of a small pull beyond the edge is shown

}  // namespace

double ScrollMotion::rubberBand(double distance, double dimension) {
  if (dimension <= 0) return 0;
  const double pulled = std::abs(distance);
  const double shown = (1 - 1 / (pulled * rubberStiffness / dimension + 1)) * dimension;
  return std::copysign(shown, distance);
}

double ScrollMotion::rubberBandInverse(double shown, double dimension) {
  if (dimension <= 0) return 0;
  const double part = std::min(std::abs(shown) / dimension, 0.99);
  return std::copysign((1 / (1 - part) - 1) * dimension / rubberStiffness, shown);
}

double ScrollMotion::restingPlace(double position, double velocity, double rate) {
  const double logRate = 1000 * std::log(std::clamp(rate, 0.5, 0.9999));
  return position - velocity / logRate;
}

ScrollMotion ScrollMotion::glide(double position, double velocity, Limits limits, double rate) {
  limits.most = std::max(limits.least, limits.most);
  const double edge = std::clamp(position, limits.least, limits.most);
  if (position != edge) {
    // Outside. A push strong enough to carry it past the edge glides on inside; any other leaves it to the spring.
    const bool comesIn = (edge - position) * (restingPlace(position, velocity, rate) - edge) > 0;
    if (!comesIn) return limits.bounces ? spring(position, velocity, edge) : ScrollMotion(edge);
  }
  ScrollMotion motion(position);
  if (std::abs(velocity) <= slowest) return motion;
  motion.logRate_ = 1000 * std::log(std::clamp(rate, 0.5, 0.9999));
  motion.glideVelocity_ = velocity;
  motion.glideTime_ = std::log(slowest / std::abs(velocity)) / motion.logRate_;
  const double rest = motion.glided(motion.glideTime_);
  motion.target_ = std::clamp(rest, limits.least, limits.most);
  if (motion.target_ == rest) return motion;
  // It reaches the edge while it still has speed: there the spring takes over.
  const double reach = 1 + (motion.target_ - position) * motion.logRate_ / velocity;
  motion.glideTime_ = std::log(reach) / motion.logRate_;
  if (limits.bounces) motion.springFrom(motion.target_, velocity * reach, motion.target_);
  return motion;
}

void ScrollMotion::springFrom(double position, double velocity, double target) {
  kind_ = Kind::spring;
  target_ = target;
  offset_ = position - target;
  offsetVelocity_ = velocity + springFrequency * offset_;
  // The time after which the envelope (|a| + |b| t) e^-wt stays below the rest distance; it falls beyond t = 1 / w.
  double time = 1 / springFrequency;
  while (time < 5 &&
         (std::abs(offset_) + std::abs(offsetVelocity_) * time) * std::exp(-springFrequency * time) > springRest) {
    time += 1.0 / 120;
  }
  endTime_ = time;
}

ScrollMotion ScrollMotion::spring(double position, double velocity, double target) {
  ScrollMotion motion(position);
  motion.springFrom(position, velocity, target);
  return motion;
}

ScrollMotion ScrollMotion::travel(double from, double to, double seconds) {
  ScrollMotion motion(from);
  motion.kind_ = Kind::travel;
  motion.target_ = to;
  motion.offset_ = from - to;
  motion.endTime_ = std::max(seconds, 0.0);
  return motion;
}

double ScrollMotion::glided(double seconds) const {
  return from_ + glideVelocity_ * (std::exp(logRate_ * seconds) - 1) / logRate_;
}

double ScrollMotion::travelLeft(double seconds) const {
  const double part = seconds / endTime_;
  return 1 - part * part * (3 - 2 * part);
}

void ScrollMotion::retarget(double seconds, double target) {
  if (kind_ != Kind::travel || seconds >= endTime_) return;
  offset_ = (position(seconds) - target) / travelLeft(seconds);
  target_ = target;
}

double ScrollMotion::position(double seconds) const {
  if (seconds < glideTime_) return glided(seconds);
  const double inPhase = seconds - glideTime_;
  switch (kind_) {
    case Kind::rest:
      return target_;
    case Kind::spring:
      if (inPhase >= endTime_) return target_;
      return target_ + (offset_ + offsetVelocity_ * inPhase) * std::exp(-springFrequency * inPhase);
    case Kind::travel: {
      if (inPhase >= endTime_) return target_;
      return target_ + offset_ * travelLeft(inPhase);
    }
  }
  return target_;
}

double ScrollMotion::velocity(double seconds) const {
  if (seconds < glideTime_) return glideVelocity_ * std::exp(logRate_ * seconds);
  constexpr double instant = 1e-4;
  return (position(seconds + instant) - position(seconds)) / instant;
}

}  // namespace platform
