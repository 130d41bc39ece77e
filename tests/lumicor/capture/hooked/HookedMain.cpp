// Runs the platform's own tests with the hooks installed: an application has to behave as it does without them. With
// LUMICOR_TESTS_TRACK set, a demonstration is under way the whole time.

#include <cstdlib>
#include <gmock/gmock.h>

#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"

namespace {

/// Each test begins with an empty flow.
class Demonstration : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    lumicor::LumicorTrackingTask::taskFlow.clear();
    lumicor::Lumicor::shared().setCurrentViewController(nullptr);
  }
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  lumicor::LumicorHooks::install();
  if (std::getenv("LUMICOR_TESTS_TRACK")) {
    lumicor::Lumicor::shared().setInitialized(true);
    lumicor::Lumicor::isTracking = true;
    testing::UnitTest::GetInstance()->listeners().Append(new Demonstration);
  }
  return RUN_ALL_TESTS();
}
