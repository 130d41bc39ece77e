// What capturing a demonstration costs the main thread.
// "x_unhooked" says how many times as long a call took as the same one in the same run, sent to the platform's own
// implementation. Registrations are of a press on a screen of 1,000 named views, among them 200 buttons, whose frames
// are drawn in between and not counted.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <unistd.h>

#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/capture/LumicorScreenshots.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/screen/LumicorElementsTask.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/FileManager.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/views/UILabel.h"

namespace {

using namespace lumicor;

/// Processor time of this thread, in seconds: what encodes in the background does not count.
double threadTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::size_t heapBytes() { return mallinfo2().uordblks; }

/// Where the files of a run go; removed at its end.
class Documents {
 public:
  Documents() : path_(std::filesystem::temp_directory_path() / ("capture_bench-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path_);
    FileManager::defaultManager().setDocumentDirectory(path_);
  }
  ~Documents() { std::filesystem::remove_all(path_); }

 private:
  std::filesystem::path path_;
};

/// A screen of that many named views, a fifth of them buttons, and its first button.
class Screen {
 public:
  explicit Screen(std::size_t named) {
    const auto controller = make<UIViewController>();
    controller->view()->setBackgroundColor(UIColor::white());
    window_->setRootViewController(controller);
    window_->makeKeyAndVisible();
    for (std::size_t i = 0; i < named; ++i) {
      const CGRect frame{static_cast<double>(i % 5) * 78, static_cast<double>(i / 5 % 40) * 20, 74, 18};
      Ref<UIView> view;
      if (i % 5 == 0) {
        const auto button = make<UIButton>(frame);
        button->setTitle("Add", UIControlState::normal);
        if (!button_) button_ = button;
        view = button;
      } else {
        const auto label = make<UILabel>(frame);
        label->setText("Darjeeling");
        view = label;
      }
      view->setAccessibilityIdentifier("view " + std::to_string(i));
      controller->view()->addSubview(view);
    }
    Lumicor::shared().setCurrentViewController(controller);
    Lumicor::shared().setCurrentView("UIViewController");
    RunLoop::advance(0.1);
  }
  ~Screen() { Lumicor::shared().setCurrentViewController(nullptr); }
  const Ref<UIButton>& button() const { return button_; }

 private:
  Ref<UIWindow> window_ = make<UIWindow>(CGRect{0, 0, 390, 844});
  Ref<UIButton> button_;
};

/// Holds a demonstration that nobody records.
class Demonstration {
 public:
  Demonstration() {
    LumicorHooks::install();
    Lumicor::shared().setInitialized(true);
    Lumicor::isTracking = true;
    LumicorScreenshots::begin();
  }
  ~Demonstration() {
    Lumicor::isTracking = false;
    LumicorTrackingTask::taskFlow.clear();
    LumicorScreenshots::drop();
    RunLoop::advance(5);
  }
};

struct Target : Object<Target, NSObject> {
  int presses = 0;
  void press(const Ref<NSObject>&) { ++presses; }
  static void exportMethods(MethodTable<Target>& table) { table.add<&Target::press>("press:"); }
};

/// An action of a named control while nothing is tracked, and the same past the hook.
void idleHook(benchmark::State& state) {
  const VirtualTime time;
  LumicorHooks::install();
  Lumicor::isTracking = false;
  const auto button = make<UIButton>(CGRect{0, 0, 40, 40});
  button->setAccessibilityIdentifier("pay");
  const auto target = make<Target>();
  const SEL press = sel("press:");
  const auto timeOf = [](auto&& call) {
    constexpr int calls = 200'000;
    const double begin = threadTime();
    for (int i = 0; i < calls; ++i) call();
    return (threadTime() - begin) / calls;
  };
  double hooked = 0;
  double plain = 0;
  for (auto _ : state) {
    plain += timeOf([&] { button->platformSendAction(press, target, nullptr); });
    hooked += timeOf([&] { button->sendAction(press, target, nullptr); });
  }
  const auto rounds = static_cast<double>(state.iterations());
  state.counters["ns_hooked"] = hooked / rounds * 1e9;
  state.counters["ns_unhooked"] = plain / rounds * 1e9;
  state.counters["x_unhooked"] = hooked / plain;
}
BENCHMARK(idleHook)->Unit(benchmark::kMillisecond);

/// One action on the main thread, and its parts.
void registration(benchmark::State& state) {
  const VirtualTime time;
  const Documents documents;
  const Screen screen(static_cast<std::size_t>(state.range(0)));
  const Demonstration demonstration;
  const Ref<UIView> view = Lumicor::shared().getCurrentViewController()->view();
  double whole = 0;
  double reading = 0;
  double picture = 0;
  for (auto _ : state) {
    RunLoop::advance(0.1);  // frames
    double begin = threadTime();
    LumicorTrackingTask::registerUserAction("press", screen.button());
    whole += threadTime() - begin;
    begin = threadTime();
    benchmark::DoNotOptimize(LumicorElementsTask::getAllElements(view, "press"));
    reading += threadTime() - begin;
    RunLoop::advance(0.1);
    begin = threadTime();
    LumicorScreenshots::take("UIViewController");
    picture += threadTime() - begin;
    if (LumicorTrackingTask::taskFlow.size() > 100) LumicorTrackingTask::taskFlow.clear();
  }
  const auto rounds = static_cast<double>(state.iterations());
  state.counters["us_registration"] = whole / rounds * 1e6;
  state.counters["us_reading"] = reading / rounds * 1e6;
  state.counters["us_picture"] = picture / rounds * 1e6;
}
BENCHMARK(registration)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(100);

/// The memory of a demonstration of 2,000 actions on a screen of so many named views, and of its files.
void longDemonstration(benchmark::State& state) {
  const VirtualTime time;
  const Documents documents;
  const Screen screen(static_cast<std::size_t>(state.range(0)));
  const Demonstration demonstration;
  RunLoop::advance(1);
  for (auto _ : state) {
    const std::size_t before = heapBytes();
    for (int action = 0; action < 2000; ++action) {
      LumicorTrackingTask::registerUserAction("press", screen.button());
      RunLoop::advance(0.5);
    }
    RunLoop::advance(5);
    state.counters["MB"] = static_cast<double>(heapBytes() - before) / 1e6;
    std::vector<LumicorSnapshot>().swap(LumicorTrackingTask::taskFlow);
    state.counters["MB_without_snapshots"] = (static_cast<double>(heapBytes()) - static_cast<double>(before)) / 1e6;
  }
}
BENCHMARK(longDemonstration)->Arg(200)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
