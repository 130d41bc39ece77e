#pragma once

namespace platform {

/// How one axis of a scroll view moves by itself: it glides to rest, springs back from beyond an edge, or travels to a
/// place in a given time. A pure function of the seconds since it began, so that the frame rate changes nothing.
/// Units: points, points a second, seconds.
class ScrollMotion {
 public:
  /// At rest where it is.
  explicit ScrollMotion(double position) : from_(position), target_(position) {}

  struct Limits {
    double least;
    double most;
    bool bounces;
  };
  /// Gliding on from a speed; `rate` is what a millisecond leaves of the speed. Beyond the limits it springs back.
  static ScrollMotion glide(double position, double velocity, Limits limits, double rate);
  /// Where gliding would come to rest if there were no limits.
  static double restingPlace(double position, double velocity, double rate);
  /// A spring to the target that begins with a speed and never swings past it from rest.
  static ScrollMotion spring(double position, double velocity, double target);
  /// Slow, fast, slow from one place to another.
  static ScrollMotion travel(double from, double to, double seconds);

  double position(double seconds) const;
  double velocity(double seconds) const;
  bool isOver(double seconds) const { return seconds >= glideTime_ + endTime_; }
  double target() const { return target_; }
  /// A travel under way goes on to another place from where it is after so many seconds, arriving when it would have.
  void retarget(double seconds, double target);
  /// The whole motion takes place elsewhere.
  void shift(double by) {
    from_ += by;
    target_ += by;
  }

  /// Where content is shown that a finger has pulled `distance` beyond an edge of a view `dimension` wide, and back.
  static double rubberBand(double distance, double dimension);
  static double rubberBandInverse(double shown, double dimension);

 private:
  enum class Kind { rest, spring, travel };
  double glided(double seconds) const;
  /// What part of a travel still lies ahead.
  double travelLeft(double seconds) const;
  void springFrom(double position, double velocity, double target);

  double from_ = 0;
  double target_ = 0;
  // First phase: gliding, for glideTime_ seconds.
  double glideVelocity_ = 0;
  double logRate_ = -2;  // natural logarithm of what a second leaves of the speed
  double glideTime_ = 0;
  // Second phase: springing or travelling, for endTime_ seconds.
  Kind kind_ = Kind::rest;
  double offset_ = 0;
  double offsetVelocity_ = 0;
  double endTime_ = 0;
};

}  // namespace platform
