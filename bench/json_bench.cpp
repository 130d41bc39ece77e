// Records to JSON and back: the elements of a screen, 1,000 and 10,000 of them, and 10,000 chat messages, against
// packaged libraries driven by hand. "times_as_fast_as_..." is how many times as long the reference takes, the two
// alternating in the same run, processor time, the shortest run of each.

// The parser checks itself with assertions unless they are switched off; both sides run without them.
#ifndef NDEBUG
#define NDEBUG
#endif

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <malloc.h>

#include "bench/ElementsByHand.h"
#include "platform/runtime/FatalError.h"

#ifdef BENCH_WITH_NLOHMANN
#include <nlohmann/json.hpp>
#endif

namespace lumicor::bench {
namespace {

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

template <class Ours, class Theirs>
void compare(benchmark::State& state, const char* name, Ours ours, Theirs theirs) {
  for (auto _ : state) ours();
  double own = 1e9;
  double reference = 1e9;
  for (int run = 0; run < 100; ++run) {
    own = std::min(own, timeOf(ours));
    reference = std::min(reference, timeOf(theirs));
  }
  state.counters[std::string("times_as_fast_as_") + name] = reference / own;
}

void countBytes(benchmark::State& state, const std::string& text, std::size_t records) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

// ---- elements

std::vector<LumicroElement> elements(std::size_t count) {
  struct Kind {
    const char* value;
    LumicorType type;
    LumicorInputType inputType;
  };
  using T = LumicorType;
  using I = LumicorInputType;
  static constexpr Kind kinds[] = {{"Add to cart", T::TYPE_DEFAULT, I::TYPE_BUTTON},
                                   {"Darjeeling, first flush", T::TYPE_TEXT, I::TYPE_DEFAULT},
                                   {"", T::TYPE_IMAGE, I::TYPE_DEFAULT},
                                   {"false", T::TYPE_DEFAULT, I::TYPE_TOGGLE},
                                   {"", T::TYPE_DEFAULT, I::TYPE_DEFAULT}};
  std::vector<LumicroElement> list;
  for (std::size_t i = 0; i < count; ++i) {
    const auto at = static_cast<std::int64_t>(i);
    const Kind& kind = kinds[i % std::size(kinds)];
    list.emplace_back("cart-item-" + std::to_string(i), "", at % 7 * 10, at % 11 * 4, 120, 44, "", false, "", "",
                      kind.value, "Default", kind.type, kind.inputType);
  }
  return list;
}

void decodeElements(benchmark::State& state) {
  const auto list = elements(static_cast<std::size_t>(state.range(0)));
  const std::string text = *encodeJSON(list);
  const simdjson::padded_string padded(text);
  std::vector<LumicroElement> byHand;
  if (!readByHand(padded, byHand) || byHand != list) fatalError("the two readers do not agree");
  compare(
      state, "the_on_demand_parser", [&] { benchmark::DoNotOptimize(decodeJSON<std::vector<LumicroElement>>(text)); },
      [&] {
        std::vector<LumicroElement> read;
        benchmark::DoNotOptimize(readByHand(padded, read));
      });
  countBytes(state, text, list.size());
}
BENCHMARK(decodeElements)->Arg(1000)->Arg(10000);

void encodeElements(benchmark::State& state) {
  const auto list = elements(static_cast<std::size_t>(state.range(0)));
  const std::string text = *encodeJSON(list);
  const auto ours = [&] { benchmark::DoNotOptimize(encodeJSON(list)); };
#ifdef BENCH_WITH_RAPIDJSON
  if (writeByHand(list) != text) fatalError("the two writers do not agree");
  compare(state, "the_packaged_writer", ours, [&] { benchmark::DoNotOptimize(writeByHand(list)); });
#else
  for (auto _ : state) ours();
#endif
  countBytes(state, text, list.size());
}
BENCHMARK(encodeElements)->Arg(1000)->Arg(10000);

// ---- chat messages

const std::vector<TLChatMessage>& messages() {
  static const std::vector<TLChatMessage> all = [] {
    std::vector<TLChatMessage> list;
    for (int i = 0; i < 10'000; ++i) {
      list.push_back({"Please open the third order of yesterday and tell me when it will arrive, number " +
                          std::to_string(i) + (i % 10 == 0 ? ", and say \"thanks\"" : ""),
                      i % 2 == 1, 1714564800000 + i});
    }
    return list;
  }();
  return all;
}

const std::string& document() {
  static const std::string text = *encodeJSON(messages());
  return text;
}

/// Beside the same messages in the packaged tree.
template <class Ours>
void encodeBesideTree(benchmark::State& state, Ours ours) {
#ifdef BENCH_WITH_NLOHMANN
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const TLChatMessage& one : messages()) {
    list.push_back({{"message", one.message}, {"isRemote", one.isRemote}, {"timestamp", one.timestamp}});
  }
  if (list.dump() != document()) fatalError("the two writers do not agree");
  compare(state, "a_packaged_tree", ours, [&] { benchmark::DoNotOptimize(list.dump()); });
#else
  for (auto _ : state) ours();
#endif
  countBytes(state, document(), messages().size());
}

void encodeMessages(benchmark::State& state) {
  encodeBesideTree(state, [] { benchmark::DoNotOptimize(encodeJSON(messages())); });
}
BENCHMARK(encodeMessages);

void decodeMessages(benchmark::State& state) {
  static const simdjson::padded_string padded(document());
  compare(
      state, "the_on_demand_parser",
      [] { benchmark::DoNotOptimize(decodeJSON<std::vector<TLChatMessage>>(document())); },
      [] {
        std::vector<TLChatMessage> read;
        if (!readByHand(padded, read)) fatalError("the document is not read by hand");
        benchmark::DoNotOptimize(read);
      });
  countBytes(state, document(), messages().size());
}
BENCHMARK(decodeMessages);

void encodeValue(benchmark::State& state) {
  const JSONValue value = toJSONValue(messages());
  if (*value.encode() != document()) fatalError("records and values are not written alike");
  encodeBesideTree(state, [&] { benchmark::DoNotOptimize(value.encode()); });
}
BENCHMARK(encodeValue);

void parseValue(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(JSONValue::parse(document()));
  countBytes(state, document(), messages().size());
}
BENCHMARK(parseValue);

}  // namespace
}  // namespace lumicor::bench

int main(int argc, char** argv) {
  // Memory that was used once stays with the process, as in an application that has run for a while; otherwise the
  // figures tell how fast the system hands out pages.
  mallopt(M_MMAP_THRESHOLD, 1 << 28);
  mallopt(M_TRIM_THRESHOLD, 1 << 28);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
