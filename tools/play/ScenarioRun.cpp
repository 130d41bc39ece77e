#include "tools/play/ScenarioRun.h"

#include <cstdio>
#include <fstream>

#include "lumicor/actions/TLActionsTask.h"
#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "tools/play/ScenarioLog.h"

namespace play {

using namespace platform;
using namespace lumicor;

namespace {

// Seconds. A step takes at most 1.5 before it, 3 of look-ups and 2 after it.
constexpr double settlingTime = 1.2;
constexpr double longestStep = 8;

void writePicture(const std::filesystem::path& folder, std::size_t step, std::ostream& out) {
  char name[32];
  std::snprintf(name, sizeof name, "step-%02zu.png", step + 1);
  std::ofstream file(folder / name, std::ios::binary);
  file << UIApplication::shared().screenshot()->pngRepresentation();
  if (!file.flush()) out << "           the picture " << name << " could not be written\n";
}

}  // namespace

Outcome playScenario(teashop::TeashopApplication& application, const teashop::NamedScreen& screen,
                     std::vector<TLAction> steps, const std::optional<std::filesystem::path>& pictures,
                     std::ostream& out) {
  LumicorHooks::install();
  screen.show(application);
  RunLoop::advance(settlingTime);
  // The hooks came after the shop: its first screen appeared unnoticed.
  Lumicor::shared().setCurrentViewController(LumicorUtils::getCurrentViewController());

  const std::size_t count = steps.size();
  const auto log = std::make_shared<ScenarioLog>(out, count, [&](std::size_t i) {
    if (!pictures) return;
    DispatchQueue::main().asyncAfter(settlingTime, [&, i] { writePicture(*pictures, i, out); });
  });
  std::optional<TLTaskResult> end;
  {
    const auto task = make<TLActionsTask>(std::move(steps), [&end](const TLTaskResult& result) { end = result; });
    task->setObserver(log);
    task->start();
  }
  const double limit = longestStep * static_cast<double>(count) + settlingTime;
  RunLoop::advanceUntil([&end] { return end.has_value(); }, limit);
  if (!end) return Outcome::stalled;
  return end->success ? Outcome::succeeded : Outcome::failed;
}

}  // namespace play
