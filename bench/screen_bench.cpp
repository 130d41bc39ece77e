// What it costs to read a screen and to write it as JSON: 1,000 named views among 10,000.
// Every benchmark works on the whole screen; "ns_per_named" is its time for each named element, and the counters that
// begin with "x_" say how many times as long it took as a reference measured in the same run. "x_plain" is against a
// plain tree of the same shape whose JSON is the same, byte for byte.

#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <string>
#include <vector>

#include "bench/PlainScreen.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/screen/LumicorElementsTask.h"
#include "lumicor/screen/LumicorSnapshot.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace {

using namespace lumicor;
using lumicor::bench::PlainView;

constexpr std::size_t namedViews = 1000;
constexpr std::size_t allViews = 10000;

Ref<UIView> namedView(std::size_t i) {
  const CGRect frame{static_cast<double>(i % 7) * 10.5, static_cast<double>(i % 11) * 4.25, 120, 44};
  switch (i % 5) {
    case 0: {
      const auto button = make<UIButton>(frame);
      button->setTitle("Add to cart", UIControlState::normal);
      return button;
    }
    case 1: {
      const auto label = make<UILabel>(frame);
      label->setText("Darjeeling, first flush");
      return label;
    }
    case 2:
      return make<UIImageView>(frame);
    case 3:
      return make<UISwitch>(frame);
    default:
      return make<UIView>(frame);
  }
}

/// A window with sections of ten rows of ten cells of ten views, the first of which is named; ten sections make 10,000.
/// Some named views bring views of their own along; fewer plain ones are added then.
struct Screen {
  Ref<UIWindow> window = make<UIWindow>(CGRect{0, 0, 390, 844});
  std::size_t views = 0;

  explicit Screen(std::size_t wanted) {
    const auto controller = make<UIViewController>();
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    Ref<UIView> section;
    Ref<UIView> row;
    for (std::size_t cell = 0; cell < wanted / 10; ++cell) {
      if (cell % 100 == 0) section = add(controller->view(), make<UIView>(CGRect{0, 0, 390, 800}));
      if (cell % 10 == 0) row = add(section, make<UIView>(CGRect{0, static_cast<double>(cell % 100) * 8, 390, 80}));
      fillCell(row, cell);
    }
    views = count(*controller->view());
    while (views < wanted) {
      add(controller->view(), make<UIView>(CGRect{0, 0, 1, 1}));
      ++views;
    }
  }

  Ref<UIView> root() const { return window->rootViewController()->view(); }

  static std::size_t count(const UIView& view) {
    std::size_t sum = 1;
    for (const Ref<UIView>& subview : view.subviews()) sum += count(*subview);
    return sum;
  }

 private:
  static Ref<UIView> add(const Ref<UIView>& parent, const Ref<UIView>& child) {
    parent->addSubview(child);
    return child;
  }
  static void fillCell(const Ref<UIView>& row, std::size_t i) {
    const auto cell = add(row, make<UIView>(CGRect{0, 0, 39, 80}));
    const auto view = add(cell, namedView(i));
    view->setAccessibilityIdentifier("cart-item-" + std::to_string(i));
    for (std::size_t used = count(*view) + 1; used < 9; ++used) add(cell, make<UIView>(CGRect{0, 0, 10, 10}));
  }
};

const Screen& screen() {
  static const Screen screen(allViews);
  return screen;
}

LumicorScreenElements readScreen() { return LumicorElementsTask::getAllElements(screen().root(), "tap"); }

/// The plain tree of a screen, which must give what reading the screen gives.
std::unique_ptr<PlainView> plainCopy(const Screen& screen) {
  screen.window->makeKeyAndVisible();
  auto plain = PlainView::copyOf(*screen.root());
  if (*encodeJSON(plain->elements()) !=
      *encodeJSON(LumicorElementsTask::getAllElements(screen.root(), "tap").elements)) {
    fatalError("the plain tree is not the same screen");
  }
  return plain;
}

const PlainView& plainScreen() {
  static const std::unique_ptr<PlainView> plain = plainCopy(screen());
  return *plain;
}

void readPlain() { benchmark::DoNotOptimize(plainScreen().elements()); }
void readAndEncodePlain() { benchmark::DoNotOptimize(encodeJSON(plainScreen().elements())); }

const LumicorScreenElements& elements() {
  static const LumicorScreenElements read = readScreen();
  return read;
}

const std::string& encodedElements() {
  static const std::string encoded = *encodeJSON(elements().elements);
  return encoded;
}

double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// The shortest of a few runs of the work, in seconds of processor time.
template <class Work>
double timeOf(Work work) {
  double best = 1e9;
  for (int run = 0; run < 30; ++run) {
    const double start = processorTime();
    work();
    best = std::min(best, processorTime() - start);
  }
  return best;
}

void copyBytes() {
  static std::string target(encodedElements().size(), '\0');
  std::memcpy(target.data(), encodedElements().data(), target.size());
  benchmark::DoNotOptimize(target.data());
  benchmark::ClobberMemory();
}

template <class Work>
void measure(benchmark::State& state, Work work, std::initializer_list<std::pair<const char*, void (*)()>> references) {
  for (auto _ : state) work();
  const double own = timeOf(work);
  state.counters["ns_per_named"] = own / namedViews * 1e9;
  for (const auto& [name, reference] : references) state.counters[name] = own / timeOf(reference);
}

void Read(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(readScreen()); }, {{"x_plain", readPlain}});
  state.counters["views"] = static_cast<double>(screen().views);
  state.counters["named"] = static_cast<double>(elements().elements.size());
}
BENCHMARK(Read);

void Encode(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(encodeJSON(elements().elements)); }, {{"x_memcpy", copyBytes}});
  state.counters["bytes"] = static_cast<double>(encodedElements().size());
}
BENCHMARK(Encode);

void ReadAndEncode(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(encodeJSON(readScreen().elements)); },
          {{"x_plain", readAndEncodePlain}});
}
BENCHMARK(ReadAndEncode);

/// The same for screens of other sizes: the time for each named view should stay.
void ReadAndEncodeScreenOf(benchmark::State& state) {
  const auto views = static_cast<std::size_t>(state.range(0));
  const Screen other(views);
  other.window->makeKeyAndVisible();
  const auto work = [&] {
    benchmark::DoNotOptimize(encodeJSON(LumicorElementsTask::getAllElements(other.root(), "tap").elements));
  };
  const auto plain = plainCopy(other);
  for (auto _ : state) work();
  const double own = timeOf(work), limit = timeOf([&] { benchmark::DoNotOptimize(encodeJSON(plain->elements())); });
  state.counters["ns_per_named"] = own / static_cast<double>(views / 10) * 1e9;
  state.counters["plain_ns_per_named"] = limit / static_cast<double>(views / 10) * 1e9;
  state.counters["x_plain"] = own / limit;
  screen().window->makeKeyAndVisible();
}
BENCHMARK(ReadAndEncodeScreenOf)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);

/// Named views nested in one another. Every one has a place and, when it scrolls, a screen to be found above it.
template <class View>
void ReadNested(benchmark::State& state) {
  const Screen other(0);
  std::vector<Ref<UIView>> views;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    views.push_back(make<View>(CGRect{1, 0, 300, 300}));
    views.back()->setAccessibilityIdentifier("nested-" + std::to_string(i));
  }
  for (std::size_t i = views.size() - 1; i > 0; --i) views[i - 1]->addSubview(views[i]);
  other.root()->addSubview(views.front());
  Lumicor::shared().setCurrentView("UIViewController");
  for (auto _ : state) benchmark::DoNotOptimize(LumicorElementsTask::getAllElements(other.root(), "tap"));
  Lumicor::shared().setCurrentView("");
  screen().window->makeKeyAndVisible();
}
BENCHMARK(ReadNested<UIView>)->Arg(1000)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadNested<UIScrollView>)->Arg(1000)->Arg(8000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  // Memory that was used once stays with the process, as in an application that has run for a while; otherwise the
  // figures tell how fast the system hands out pages.
  mallopt(M_MMAP_THRESHOLD, 1 << 28);
  mallopt(M_TRIM_THRESHOLD, 1 << 28);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
