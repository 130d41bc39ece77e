// One frame of the chat screen with 14 bubbles, at scale 2, against filling as many pixels once with memset.

#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/TLChatViewController.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIWindow.h"

namespace {

using namespace platform;

constexpr CGSize screen{390, 844};
constexpr double scale = 2;
constexpr std::size_t bytesOfFrame = 780 * 1688 * 4;

Ref<UIWindow> windowWithChat() {
  std::vector<lumicor::TLChatMessage> history;
  for (std::int64_t i = 0; i < 14; ++i) {
    history.push_back(
        {i % 2 == 0 ? "Two packets of sencha, please, to the harbour." : "Done Place order", i % 2 == 1, i});
  }
  lumicor::Lumicor::shared().setChatHistory(history);
  const auto chat = make<lumicor::TLChatViewController>();
  lumicor::TLLayout layout;
  layout.closeButton = "";
  chat->layoutData = layout;
  auto window = make<UIWindow>(CGRect{{0, 0}, screen});
  window->setRootViewController(chat);
  window->makeKeyAndVisible();
  RunLoop::advance(1);
  return window;
}

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
  const auto window = windowWithChat();
  for (auto _ : state) benchmark::DoNotOptimize(renderLayer(*window->layer(), screen, scale));
}
BENCHMARK(drawWholeChatFrame)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
