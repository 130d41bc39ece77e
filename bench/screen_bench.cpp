// What it costs to read a screen and to write it as JSON: 1,000 named views among 10,000.
// Every benchmark works on the whole screen; "ns_per_named" is its time for each named element, and the counters that
// begin with "x_" say how many times as long it took as a reference measured in the same run. "x_plain" is against a
// plain tree of the same shape whose JSON is the same, byte for byte.

// The parser checks itself with assertions wherever they are not switched off. Both sides read without them.
#ifndef NDEBUG
#define NDEBUG
#endif

#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <simdjson.h>
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
#ifdef BENCH_WITH_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef BENCH_WITH_RAPIDJSON
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#endif

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

#ifdef BENCH_WITH_NLOHMANN
nlohmann::ordered_json nlohmannElement(const LumicroElement& e) {
  return {{"elementId", e.elementId()},
          {"fragmentId", e.fragmentId()},
          {"x", e.x()},
          {"y", e.y()},
          {"width", e.width()},
          {"height", e.height()},
          {"actionName", e.actionName()},
          {"isNavigational", e.isNavigational()},
          {"actionId", e.actionId()},
          {"destination", e.destination()},
          {"value", e.value()},
          {"elementDescription", e.elementDescription()},
          {"type", std::string(rawValue(e.type()))},
          {"inputType", std::string(rawValue(e.inputType()))}};
}

void dumpWithNlohmann() {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const LumicroElement& element : elements().elements) list.push_back(nlohmannElement(element));
  benchmark::DoNotOptimize(list.dump());
}
#endif

#ifdef BENCH_WITH_RAPIDJSON
/// The same text by a packaged streaming writer, keys and all named by hand.
void writeWithRapidJson() {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  const auto text = [&writer](const char* key, std::string_view value) {
    writer.Key(key);
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  };
  const auto number = [&writer](const char* key, std::int64_t value) {
    writer.Key(key);
    writer.Int64(value);
  };
  writer.StartArray();
  for (const LumicroElement& e : elements().elements) {
    writer.StartObject();
    text("elementId", e.elementId());
    text("fragmentId", e.fragmentId());
    number("x", e.x());
    number("y", e.y());
    number("width", e.width());
    number("height", e.height());
    text("actionName", e.actionName());
    writer.Key("isNavigational");
    writer.Bool(e.isNavigational());
    text("actionId", e.actionId());
    text("destination", e.destination());
    text("value", e.value());
    text("elementDescription", e.elementDescription());
    text("type", rawValue(e.type()));
    text("inputType", rawValue(e.inputType()));
    writer.EndObject();
  }
  writer.EndArray();
  benchmark::DoNotOptimize(buffer.GetString());
}
#endif

/// The same records read by hand with the parser that the platform builds on.
std::vector<LumicroElement> parseBySimdjson(const simdjson::padded_string& text) {
  static simdjson::ondemand::parser parser;
  simdjson::ondemand::document document = parser.iterate(text);
  std::vector<LumicroElement> read;
  for (simdjson::ondemand::object object : document.get_array()) {
    const auto string = [&](const char* key) {
      return std::string(std::string_view(object.find_field(key).get_string()));
    };
    const auto number = [&](const char* key) { return std::int64_t(object.find_field(key).get_int64()); };
    std::string elementId = string("elementId"), fragmentId = string("fragmentId");
    const std::int64_t x = number("x"), y = number("y"), width = number("width"), height = number("height");
    std::string actionName = string("actionName");
    const bool isNavigational = object.find_field("isNavigational").get_bool();
    std::string actionId = string("actionId"), destination = string("destination"), value = string("value");
    std::string description = string("elementDescription");
    const auto type = caseFromRawValue<LumicorType>(string("type"));
    const auto inputType = caseFromRawValue<LumicorInputType>(string("inputType"));
    read.emplace_back(std::move(elementId), std::move(fragmentId), x, y, width, height, std::move(actionName),
                      isNavigational, std::move(actionId), std::move(destination), std::move(value),
                      std::move(description), *type, *inputType);
  }
  return read;
}

void parseByHand() {
  static const simdjson::padded_string text(encodedElements());
  benchmark::DoNotOptimize(parseBySimdjson(text));
}

template <class Work>
void measure(benchmark::State& state, Work work, std::initializer_list<std::pair<const char*, void (*)()>> references) {
  for (auto _ : state) work();
  const double own = timeOf(work);
  state.counters["ns_per_named"] = own / namedViews * 1e9;
  for (const auto& [name, reference] : references) state.counters[name] = own / timeOf(reference);
}

/// Of a benchmark that wrote the elements: how long it took against packaged writers.
void compareWithWriters([[maybe_unused]] benchmark::State& state) {
#ifdef BENCH_WITH_RAPIDJSON
  state.counters["x_rapidjson"] = state.counters["ns_per_named"] * namedViews / 1e9 / timeOf(writeWithRapidJson);
#endif
#ifdef BENCH_WITH_NLOHMANN
  state.counters["x_nlohmann"] = state.counters["ns_per_named"] * namedViews / 1e9 / timeOf(dumpWithNlohmann);
#endif
}

void Read(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(readScreen()); }, {{"x_plain", readPlain}});
  state.counters["views"] = static_cast<double>(screen().views);
  state.counters["named"] = static_cast<double>(elements().elements.size());
}
BENCHMARK(Read);

void Encode(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(encodeJSON(elements().elements)); }, {{"x_memcpy", copyBytes}});
  compareWithWriters(state);
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

void Decode(benchmark::State& state) {
  measure(state, [] { benchmark::DoNotOptimize(decodeJSON<std::vector<LumicroElement>>(encodedElements())); },
          {{"x_simdjson", parseByHand}});
}
BENCHMARK(Decode);

}  // namespace

int main(int argc, char** argv) {
  // Memory that was used once stays with the process, as in an application that has run for a while; otherwise the
  // figures tell how fast the system hands out pages.
  mallopt(M_MMAP_THRESHOLD, 1 << 28);
  mallopt(M_TRIM_THRESHOLD, 1 << 28);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
