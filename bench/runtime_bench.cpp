// What the object runtime costs: an exchangeable operation and a message by selector, against a plain virtual call.

#include <benchmark/benchmark.h>

#include "platform/runtime/Exchangeable.h"

namespace platform {
namespace {

class Counter : public Object<Counter, NSObject> {
 public:
  virtual void addVirtually(std::int64_t amount) { sum_ += amount; }
  virtual void add(std::int64_t amount) { Exchangeable<&Counter::add, &Counter::addAsUsual>::call(*this, amount); }
  virtual void addHooked(std::int64_t amount) {
    Exchangeable<&Counter::addHooked, &Counter::addAsUsualToo>::call(*this, amount);
  }
  static void exportMethods(MethodTable<Counter>& table) {
    Exchangeable<&Counter::add, &Counter::addAsUsual>::addTo(table.owner(), "add:");
    Exchangeable<&Counter::addHooked, &Counter::addAsUsualToo>::addTo(table.owner(), "addHooked:");
    table.add<&Counter::addVirtually>("addVirtually:");
  }

 private:
  void addAsUsual(std::int64_t amount) { sum_ += amount; }
  void addAsUsualToo(std::int64_t amount) { sum_ += amount; }
  std::int64_t sum_ = 0;
};

class Derived final : public Object<Derived, Counter> {
 public:
  void addVirtually(std::int64_t amount) override { Counter::addVirtually(-amount); }
  void add(std::int64_t amount) override { Counter::add(-amount); }
  void addHooked(std::int64_t amount) override { Counter::addHooked(-amount); }
};

void hook(Counter& self, std::int64_t amount) {
  static const MethodCall<void(std::int64_t)> original(Counter::cls(), sel("hook_addHooked:"));
  original(self, amount);
}

/// One of two classes, so that the compiler cannot know which.
Ref<Counter> counter(const benchmark::State& state) {
  if (state.max_iterations == 1) return make<Derived>();
  return make<Counter>();
}

void virtualCall(benchmark::State& state) {
  const Ref<Counter> object = counter(state);
  Counter* at = object.get();
  for (auto _ : state) {
    benchmark::DoNotOptimize(at);
    at->addVirtually(1);
  }
}
BENCHMARK(virtualCall);

void exchangeableCall(benchmark::State& state) {
  Counter::cls();
  const Ref<Counter> object = counter(state);
  Counter* at = object.get();
  for (auto _ : state) {
    benchmark::DoNotOptimize(at);
    at->add(1);
  }
}
BENCHMARK(exchangeableCall);

void messageBySelector(benchmark::State& state) {
  const Ref<Counter> object = counter(state);
  Counter* at = object.get();
  const SEL selector = sel("addVirtually:");
  for (auto _ : state) {
    benchmark::DoNotOptimize(at);
    at->perform(selector, std::int64_t{1});
  }
}
BENCHMARK(messageBySelector);

void questionAnsweredNo(benchmark::State& state) {
  const Ref<Counter> object = counter(state);
  Counter* at = object.get();
  const SEL selector = sel("multiply:");
  for (auto _ : state) {
    benchmark::DoNotOptimize(at);
    benchmark::DoNotOptimize(at->respondsToSelector(selector));
  }
}
BENCHMARK(questionAnsweredNo);

/// An exchanged call runs a hook, which calls the original on.
void exchangedCall(benchmark::State& state) {
  static const bool isExchanged = [] {
    class_addMethod<&hook>(Counter::cls(), sel("hook_addHooked:"));
    method_exchangeImplementations(class_getInstanceMethod(Counter::cls(), sel("addHooked:")),
                                   class_getInstanceMethod(Counter::cls(), sel("hook_addHooked:")));
    return true;
  }();
  benchmark::DoNotOptimize(isExchanged);
  const Ref<Counter> object = counter(state);
  Counter* at = object.get();
  for (auto _ : state) {
    benchmark::DoNotOptimize(at);
    at->addHooked(1);
  }
}
BENCHMARK(exchangedCall);

}  // namespace
}  // namespace platform

BENCHMARK_MAIN();
