// Records to JSON and back: a list of 10,000 chat messages, against the parser driven by hand and a packaged writer.

// The parser checks itself with assertions unless they are switched off; both sides run without them.
#ifndef NDEBUG
#define NDEBUG
#endif

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include "platform/foundation/Record.h"

#ifdef BENCH_WITH_NLOHMANN
#include <nlohmann/json.hpp>
#endif

namespace platform {
namespace {

class Message {
 public:
  Message(std::string message, bool isRemote, std::int64_t timestamp)
      : message_(std::move(message)), isRemote_(isRemote), timestamp_(timestamp) {}
  const std::string& message() const { return message_; }
  bool isRemote() const { return isRemote_; }
  std::int64_t timestamp() const { return timestamp_; }
  static constexpr auto fields() {
    return std::tuple{field("message", &Message::message_), field("isRemote", &Message::isRemote_),
                      field("timestamp", &Message::timestamp_)};
  }

 private:
  std::string message_;
  bool isRemote_;
  std::int64_t timestamp_;
};

const std::vector<Message>& messages() {
  static const std::vector<Message> all = [] {
    std::vector<Message> list;
    for (int i = 0; i < 10'000; ++i) {
      list.emplace_back("Please open the third order of yesterday and tell me when it will arrive, number " +
                            std::to_string(i) + (i % 10 == 0 ? ", and say \"thanks\"" : ""),
                        i % 2 == 1, 1714564800000 + i);
    }
    return list;
  }();
  return all;
}

const std::string& document() {
  static const std::string text = *encodeJSON(messages());
  return text;
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document().size()));
}

void encodeRecords(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(encodeJSON(messages()));
  countBytes(state);
}
BENCHMARK(encodeRecords);

void encodeValue(benchmark::State& state) {
  const JSONValue value = toJSONValue(messages());
  for (auto _ : state) benchmark::DoNotOptimize(value.encode());
  countBytes(state);
}
BENCHMARK(encodeValue);

#ifdef BENCH_WITH_NLOHMANN
void encodeWithPackagedWriter(benchmark::State& state) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Message& one : messages()) {
    list.push_back({{"message", one.message()}, {"isRemote", one.isRemote()}, {"timestamp", one.timestamp()}});
  }
  if (list.dump() != document()) state.SkipWithError("the two writers do not agree");
  for (auto _ : state) benchmark::DoNotOptimize(list.dump());
  countBytes(state);
}
BENCHMARK(encodeWithPackagedWriter);
#endif

void decodeRecords(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(decodeJSON<std::vector<Message>>(document()));
  countBytes(state);
}
BENCHMARK(decodeRecords);

void decodeByHandFromTree(benchmark::State& state) {
  simdjson::dom::parser parser;
  for (auto _ : state) {
    const simdjson::dom::array list = parser.parse(document());
    std::vector<Message> all;
    for (const simdjson::dom::element one : list) {
      all.emplace_back(std::string(std::string_view(one["message"])), bool(one["isRemote"]),
                       std::int64_t(one["timestamp"]));
    }
    benchmark::DoNotOptimize(all);
  }
  countBytes(state);
}
BENCHMARK(decodeByHandFromTree);

void decodeByHandOnDemand(benchmark::State& state) {
  simdjson::ondemand::parser parser;
  for (auto _ : state) {
    const simdjson::padded_string padded(document());  // the text has to be copied in either case
    simdjson::ondemand::document list = parser.iterate(padded);
    std::vector<Message> all;
    for (simdjson::ondemand::object one : list.get_array()) {
      const std::string_view message = one["message"];
      const bool isRemote = one["isRemote"];
      const std::int64_t timestamp = one["timestamp"];
      all.emplace_back(std::string(message), isRemote, timestamp);
    }
    benchmark::DoNotOptimize(all);
  }
  countBytes(state);
}
BENCHMARK(decodeByHandOnDemand);

void parseValue(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(JSONValue::parse(document()));
  countBytes(state);
}
BENCHMARK(parseValue);

}  // namespace
}  // namespace platform

BENCHMARK_MAIN();
