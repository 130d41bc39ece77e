// One frame of the chat screen with 14 bubbles, at scale 2, against filling as many pixels once with memset; the same
// where the screen keeps its picture, against clearing it first each time, and a part of it; and the chat opened after
// 14 messages and after 100,000: the short one is the reference of the long one.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <memory>
#include <utility>
#include <vector>

#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/TLChatViewController.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/LayerDisplay.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIWindow.h"

namespace {

using namespace platform;

constexpr CGSize screen{390, 844};
constexpr double scale = 2;
constexpr std::size_t bytesOfFrame = 780 * 1688 * 4;

void setHistory(std::int64_t messages) {
  std::vector<lumicor::TLChatMessage> history;
  for (std::int64_t i = 0; i < messages; ++i) {
    history.push_back(
        {i % 2 == 0 ? "Two packets of sencha, please, to the harbour." : "Done Place order", i % 2 == 1, i});
  }
  lumicor::Lumicor::shared().setChatHistory(std::move(history));
}

struct Chat {
  Chat() {
    lumicor::TLLayout layout;
    layout.closeButton = "";
    screenOfChat->layoutData = layout;
    window->setRootViewController(screenOfChat);
    window->makeKeyAndVisible();
    RunLoop::advance(1);
  }
  void draw() const { benchmark::DoNotOptimize(renderLayer(*window->layer(), screen, scale)); }

  Ref<lumicor::TLChatViewController> screenOfChat = make<lumicor::TLChatViewController>();
  Ref<UIWindow> window = make<UIWindow>(CGRect{{0, 0}, screen});
};

void fillPixelsOnce(benchmark::State& state) {
  std::vector<char> pixels(bytesOfFrame);
  for (auto _ : state) {
    std::memset(pixels.data(), 255, pixels.size());
    benchmark::DoNotOptimize(pixels.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(fillPixelsOnce)->Unit(benchmark::kMillisecond);

void drawWholeChatFrame(benchmark::State& state) {
  const VirtualTime time;
  setHistory(14);
  const Chat chat;
  for (auto _ : state) chat.draw();
}
BENCHMARK(drawWholeChatFrame)->Unit(benchmark::kMillisecond);

double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
double timeOf(Work work) {
  const double start = processorTime();
  work();
  return processorTime() - start;
}

/// The picture that the device's screen keeps, and a bubble in it that changes.
struct Shown {
  Shown() {
    bubble->setFrame({200, 400, 150, 60});
    bubble->setBackgroundColor(UIColor::systemBlue());
    chat.window->layer()->addSublayer(bubble);
  }
  void redrawWhole() {
    display.invalidate();
    benchmark::DoNotOptimize(display.update());
  }
  /// As if its ground were not opaque.
  void clearAndRedrawWhole() {
    const_cast<Bitmap&>(display.bitmap()).clear();
    redrawWhole();
  }
  CGRect redrawBubble() {
    bubble->setOpacity(bubble->opacity() == 1 ? 0.5 : 1);
    return display.update();
  }

  Chat chat;
  Ref<CALayer> bubble = CALayer::layer();
  LayerDisplay display{UIApplication::shared().screenLayer(), screen, scale};
};

/// The whole again, and how many times as long it takes when the picture is cleared first, the two alternating.
void redrawWholeChat(benchmark::State& state) {
  const VirtualTime time;
  setHistory(14);
  Shown shown;
  for (auto _ : state) shown.redrawWhole();
  double own = 1e9, cleared = 1e9;
  for (int run = 0; run < 200; ++run) {
    own = std::min(own, timeOf([&] { shown.redrawWhole(); }));
    cleared = std::min(cleared, timeOf([&] { shown.clearAndRedrawWhole(); }));
  }
  state.counters["times_when_cleared_first"] = cleared / own;
}
BENCHMARK(redrawWholeChat)->Unit(benchmark::kMillisecond);

void redrawOneBubble(benchmark::State& state) {
  const VirtualTime time;
  setHistory(14);
  Shown shown;
  double drawn = 0;
  for (auto _ : state) {
    const CGRect pixels = shown.redrawBubble();
    drawn += pixels.width() * pixels.height() * 4;
  }
  state.counters["part_drawn"] = drawn / bytesOfFrame / static_cast<double>(state.iterations());
}
BENCHMARK(redrawOneBubble)->Unit(benchmark::kMillisecond);

/// From the screen's making to its first picture.
void firstPictureOfChat(benchmark::State& state) {
  const VirtualTime time;
  setHistory(state.range(0));
  for (auto _ : state) {
    const auto chat = std::make_unique<Chat>();
    chat->draw();
  }
}
BENCHMARK(firstPictureOfChat)->Arg(14)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
