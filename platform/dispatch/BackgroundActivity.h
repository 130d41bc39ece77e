#pragma once

#include <cstddef>

namespace platform {

/// Held while something is under way off the main thread: work of the pool, of a serial queue, a network task. While
/// any is held, virtual time stands still, so that what it posts to the main queue arrives at the instant it belongs
/// to. Movable, released by its end. Any thread.
class BackgroundActivity {
 public:
  /// `what` is a literal that names the activity when a wait for it runs too long.
  explicit BackgroundActivity(const char* what);
  BackgroundActivity(BackgroundActivity&& other) noexcept;
  BackgroundActivity& operator=(BackgroundActivity&& other) noexcept;
  ~BackgroundActivity();

  /// Ends it early; a second call does nothing.
  void end();
  /// How many are under way in the process.
  static std::size_t count();

 private:
  const char* what_;
};

}  // namespace platform
