// All harnesses with the fuzzer: the first argument names the one to run, the others are the fuzzer's own.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/Harnesses.h"

namespace {
const fuzz::Harness* chosen = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int* count, char*** words) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  chosen = *count > 1 ? fuzz::harnessNamed((*words)[1]) : nullptr;
  if (!chosen) {
    std::fputs("usage: fuzzers NAME [ARGUMENT ...], where NAME is one of", stderr);
    for (const fuzz::Harness& each : fuzz::harnesses()) std::fprintf(stderr, " %s", each.name.data());
    std::fputs("\n", stderr);
    std::exit(2);
  }
  (*words)[1] = (*words)[0];
  ++*words;
  --*count;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  chosen->run({reinterpret_cast<const char*>(data), size});
  return 0;
}
