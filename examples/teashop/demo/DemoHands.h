#pragma once

#include <cstdint>
#include <string>

#include "platform/uikit/application/TouchDriver.h"

namespace teashop {

/// A person's hands: a call returns when the thing is done, the run loop turns meanwhile. Main thread.
class DemoHands {
 public:
  /// Scrolls first when the view is out of sight. One that cannot be reached is not touched, and false returned.
  bool tap(const platform::Ref<platform::UIView>& view);
  /// Into whatever has the keyboard; "\n" is return.
  void type(const std::string& text);
  /// Taps that row of a picker's wheel, which lets it come to the middle; the row has to be in sight.
  void turn(const platform::Ref<platform::UIView>& picker, std::int64_t row, std::int64_t component);
  void wait(double seconds);

 private:
  void finish(double longest);
  bool bringIntoSight(const platform::Ref<platform::UIView>& view);

  platform::TouchDriver driver_;
};

}  // namespace teashop
