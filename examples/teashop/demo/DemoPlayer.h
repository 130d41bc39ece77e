#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/DemoReport.h"
#include "platform/uikit/TouchDriver.h"

namespace teashop {

/// Plays the story of one request on the running shop, as a person would: it finds what it touches on the screen, taps,
/// types and looks. It knows neither the assistant's insides nor the shop's, except for the order that must exist at
/// last. Works in real and in virtual time. Main thread.
class DemoPlayer {
 public:
  DemoPlayer(TeashopApplication& application, std::string serviceAddress, std::filesystem::path folder);

  /// Plays everything and writes the report; true when all that had to hold holds.
  bool play();

 private:
  using Condition = std::function<bool()>;

  void openChat();
  void ask();
  void watch();
  void readOutcome();
  void check();

  /// Waits until the condition holds, at most so many seconds; a condition that never holds is noted as a failed check.
  bool until(const std::string& what, const Condition& condition, double seconds = 20);
  void tap(const platform::Ref<platform::UIView>& view);
  void stage(const std::string& title, const std::string& asked, const std::string& done);
  void checkOrder();
  void checkEvents();

  TeashopApplication& application_;
  std::string serviceAddress_;
  DemoReport report_;
  platform::TouchDriver driver_;
  double startedAt_;
  double lastStageAt_;
  bool isBroken_ = false;  // a condition never held: what follows makes no sense any more
};

}  // namespace teashop
