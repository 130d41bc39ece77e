#include "examples/teashop/demo/DemoScribe.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"

namespace teashop {

using namespace platform;

namespace {

double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

}  // namespace

DemoScribe::DemoScribe(DemoReport& report, std::string prefix)
    : report_(report),
      prefix_(std::move(prefix)),
      startedAt_(Clock::mediaTime()),
      processorAtStart_(processorSeconds()),
      lastStageAt_(startedAt_) {}

bool DemoScribe::until(const std::string& what, const std::function<bool()>& condition, double seconds) {
  if (RunLoop::advanceUntil(condition, seconds)) return true;
  report_.add(
      DemoReport::Check{what, false, "it did not happen within " + std::to_string(static_cast<int>(seconds)) + " s"});
  std::printf("   never happened: %s\n", what.c_str());
  return false;
}

void DemoScribe::stage(const std::string& title, const std::string& asked, const std::string& done) {
  const double before = processorSeconds();
  char number[16];
  std::snprintf(number, sizeof number, "%02zu.png", ++stages_);
  const std::string name = prefix_ + number;
  std::ofstream(report_.folder() / name, std::ios::binary) << UIApplication::shared().screenshot()->pngRepresentation();
  pictureSeconds_ += processorSeconds() - before;
  const double now = Clock::mediaTime();
  report_.add(DemoReport::Stage{title, asked, done, name, now - lastStageAt_});
  std::printf("   [%5.1f s] %s\n", now - startedAt_, title.c_str());
  std::fflush(stdout);
  lastStageAt_ = now;
}

DemoReport::Times DemoScribe::times() const {
  return {Clock::mediaTime() - startedAt_, Clock::isVirtual(),
          processorSeconds() - processorAtStart_ - pictureSeconds_};
}

}  // namespace teashop
