// The chat of 10 to 100,000 messages, each a text of its own of one to four lines: from the tap on the button to the
// first picture, a step of scrolling, a message more, a key stroke, and memory; beside the same bubbles placed by hand.
// Times are those of the main thread: what the host would feel. And one frame against filling as many pixels once.
// The same where the screen keeps its picture, against clearing it first each time, and a part of it.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <malloc.h>
#include <memory>
#include <stdlib.h>
#include <utility>
#include <vector>

#include "bench/HandPlacedChat.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/LayerDisplay.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URLProtocol.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace {

using namespace platform;

constexpr CGSize screen{390, 844};
constexpr double scale = 2;
constexpr std::size_t bytesOfFrame = 780 * 1688 * 4;
constexpr int steps = 600;
constexpr double stepOfFrame = 37;  // points: a quick flick

double mainThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work>
double secondsOf(const Work& work) {
  const double start = mainThreadSeconds();
  work();
  return mainThreadSeconds() - start;
}

std::string textOf(std::int64_t number) {
  std::string text = "Parcel " + std::to_string(number) + " left the harbour.";
  for (std::int64_t i = 0; i < number % 4; ++i)
    text += " It was weighed and sealed again at counter " + std::to_string(i);
  return text;
}

std::vector<lumicor::TLChatMessage> conversation(std::int64_t messages) {
  std::vector<lumicor::TLChatMessage> all;
  for (std::int64_t i = 0; i < messages; ++i) all.push_back({textOf(i), i % 2 == 1, i});
  return all;
}

/// New texts, so that no cache knows them.
lumicor::TLChatMessage newMessage() {
  static std::int64_t number = 1'000'000;
  ++number;
  return {textOf(number), number % 2 == 1, number};
}

/// A window that is drawn when it is asked to be.
struct Screen {
  Ref<UIWindow> window = make<UIWindow>(CGRect{{0, 0}, screen});
  void layOut() const { UIApplication::shared().layoutAndDisplayIfNeeded(); }
  void draw() const {
    layOut();
    benchmark::DoNotOptimize(renderLayer(*window->layer(), screen, scale));
  }
};

/// A host with the assistant's button and, behind a tap on it, the chat. The service says yes to everything.
struct Chat : Screen {
  explicit Chat(std::int64_t messages) {
    std::string path = (std::filesystem::temp_directory_path() / "chat-bench-XXXXXX").string();
    folder = mkdtemp(path.data());
    UserDefaults::setStandardDirectory(folder);
    lumicor::Lumicor::shared().setChatHistory(conversation(messages));
    window->setRootViewController(navigation);
    window->makeKeyAndVisible();
    newChat();
  }
  ~Chat() {
    close();
    manager().setChatViewController(nullptr);
    UserDefaults::standard().synchronize();
    std::filesystem::remove_all(folder);
  }
  void newChat() const {
    lumicor::TLLayout layout;
    layout.image = layout.closeButton = "";
    manager().setLayoutData(layout);
    manager().show();
    manager().floaterView()->setShow(true);
    RunLoop::advance(1);
    draw();
  }
  void tap() const { manager().floaterView()->tapGesture(); }
  void open() const {
    tap();
    RunLoop::advance(1);
  }
  void close() const {
    if (const auto responder = UIResponder::firstResponder()) responder->resignFirstResponder();
    navigation->popToRootViewControllerAnimated(false);
    RunLoop::advance(1);
  }
  static lumicor::TLFloaterManager& manager() { return lumicor::TLFloaterManager::shared(); }
  static lumicor::TLChatViewController& chat() { return *manager().chatViewController(); }

  URLProtocol::Registration service = URLProtocol::registerHandler(
      [](const URLRequest&) { return URLProtocol::Reply::json(200, *JSONValue::parse(R"({"statusCode":200})")); });
  std::filesystem::path folder;
  Ref<UINavigationController> navigation = make<UINavigationController>(make<UIViewController>());
};

/// The reference in a window of its own.
struct ByHand : Screen {
  explicit ByHand(std::int64_t messages) : all(conversation(messages)) {
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    RunLoop::advance(1);
    draw();
  }
  void open() {
    list = make<bench::HandPlacedChat>(CGRect{0, 87, screen.width, 653});
    list->setMessages(all);
    controller->view()->addSubview(list);
    list->scrollToEnd();
  }
  void close() {
    list->removeFromSuperview();
    list = nullptr;
  }
  std::vector<lumicor::TLChatMessage> all;
  Ref<UIViewController> controller = make<UIViewController>();
  Ref<bench::HandPlacedChat> list;
};

void forEachLength(benchmark::internal::Benchmark* benchmark) {
  for (const int messages : {10, 1000, 10000, 100000}) benchmark->Arg(messages);
  benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

// ---- From the tap to the first picture

void firstPicture(benchmark::State& state) {
  const VirtualTime time;
  Chat chat(state.range(0));
  double shortest = 1e9;
  for (auto _ : state) {
    const double seconds = secondsOf([&] {
      chat.tap();
      chat.draw();
    });
    shortest = std::min(shortest, seconds);
    state.SetIterationTime(seconds);
    RunLoop::advance(1);
    chat.close();
    chat.newChat();
  }
  state.counters["least_ms"] = shortest * 1e3;
}

void firstPictureByHand(benchmark::State& state) {
  const VirtualTime time;
  ByHand hand(state.range(0));
  double shortest = 1e9;
  for (auto _ : state) {
    const double seconds = secondsOf([&] {
      hand.open();
      hand.draw();
    });
    shortest = std::min(shortest, seconds);
    state.SetIterationTime(seconds);
    hand.close();
  }
  state.counters["least_ms"] = shortest * 1e3;
}
BENCHMARK(firstPicture)->Apply(forEachLength);
BENCHMARK(firstPictureByHand)->Apply(forEachLength);

// ---- A step of scrolling, up from the end and back where the list is short

template <class Step, class Draw>
void scrollSteps(benchmark::State& state, const Step& step, const Draw& draw) {
  std::vector<double> moves, frames;
  for (auto _ : state) {
    for (int i = 0; i < steps; ++i) {
      moves.push_back(secondsOf([&] { step(i); }));
      frames.push_back(moves.back() + secondsOf(draw));
    }
    state.SetIterationTime(moves.back());
  }
  std::ranges::sort(moves);
  std::ranges::sort(frames);
  state.counters["step_median_ms"] = moves[moves.size() / 2] * 1e3;
  state.counters["step_worst_ms"] = moves.back() * 1e3;
  state.counters["drawn_median_ms"] = frames[frames.size() / 2] * 1e3;
  state.counters["drawn_worst_ms"] = frames.back() * 1e3;
}

void scroll(benchmark::State& state) {
  const VirtualTime time;
  const Chat chat(state.range(0));
  chat.open();
  const Ref<UITableView> list = chat.chat().tableView();
  const auto step = [&](int) {
    list->setContentOffset({0, std::max(0.0, list->contentOffset().y - stepOfFrame)}, false);
    chat.layOut();
  };
  scrollSteps(state, step, [&] { chat.draw(); });
}

void scrollByHand(benchmark::State& state) {
  const VirtualTime time;
  ByHand hand(state.range(0));
  hand.open();
  const auto step = [&](int) {
    hand.list->scrollBy(-stepOfFrame);
    hand.layOut();
  };
  scrollSteps(state, step, [&] { hand.draw(); });
}
BENCHMARK(scroll)->Apply(forEachLength)->Iterations(1);
BENCHMARK(scrollByHand)->Apply(forEachLength)->Iterations(1);

// ---- A message more

void append(benchmark::State& state) {
  const VirtualTime time;
  const Chat chat(state.range(0));
  chat.open();
  chat.chat().addMessage(newMessage().message);  // the keyboard comes with the first one
  RunLoop::advance(2);
  double shortest = 1e9;
  for (auto _ : state) {
    const std::string text = newMessage().message;
    const double seconds = secondsOf([&] {
      chat.chat().addMessage(text);
      RunLoop::advance(0);
      chat.layOut();
    });
    shortest = std::min(shortest, seconds);
    state.SetIterationTime(seconds);
    RunLoop::advance(1);
  }
  state.counters["least_ms"] = shortest * 1e3;
}

void appendByHand(benchmark::State& state) {
  const VirtualTime time;
  ByHand hand(state.range(0));
  hand.open();
  double shortest = 1e9;
  for (auto _ : state) {
    const lumicor::TLChatMessage message = newMessage();
    const double seconds = secondsOf([&] {
      hand.list->append(message);
      hand.layOut();
    });
    shortest = std::min(shortest, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["least_ms"] = shortest * 1e3;
}
BENCHMARK(append)->Apply(forEachLength)->Iterations(200);
BENCHMARK(appendByHand)->Apply(forEachLength)->Iterations(200);

// ---- A key stroke and its frame

void keyStroke(benchmark::State& state) {
  const VirtualTime time;
  const Chat chat(state.range(0));
  chat.open();
  chat.chat().inputTextField()->becomeFirstResponder();
  RunLoop::advance(1);
  chat.draw();
  double shortest = 1e9;
  int typed = 0;
  for (auto _ : state) {
    if (++typed % 30 == 0) chat.chat().inputTextField()->setText("");
    const double seconds = secondsOf([&] {
      chat.chat().inputTextField()->insertText("a");
      chat.draw();
    });
    shortest = std::min(shortest, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["least_ms"] = shortest * 1e3;
}
BENCHMARK(keyStroke)->Apply(forEachLength)->Iterations(200);

// ---- Memory that an open chat takes beyond the history itself

void memory(benchmark::State& state) {
  const VirtualTime time;
  const Chat chat(state.range(0));
  for (auto _ : state) {
    chat.open();
    chat.close();
    chat.newChat();
    const std::size_t before = mallinfo2().uordblks;
    state.SetIterationTime(secondsOf([&] { chat.open(); }));
    state.counters["KB"] = static_cast<double>(mallinfo2().uordblks - before) / 1024;
  }
}
BENCHMARK(memory)->Apply(forEachLength)->Iterations(1);

// ---- Drawing

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
  const Chat chat(14);
  chat.open();
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
    chat.open();
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

  Chat chat{14};
  Ref<CALayer> bubble = CALayer::layer();
  LayerDisplay display{UIApplication::shared().screenLayer(), screen, scale};
};

/// The whole again, and how many times as long it takes when the picture is cleared first, the two alternating.
void redrawWholeChat(benchmark::State& state) {
  const VirtualTime time;
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
  Shown shown;
  double drawn = 0;
  for (auto _ : state) {
    const CGRect pixels = shown.redrawBubble();
    drawn += pixels.width() * pixels.height() * 4;
  }
  state.counters["part_drawn"] = drawn / bytesOfFrame / static_cast<double>(state.iterations());
}
BENCHMARK(redrawOneBubble)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
