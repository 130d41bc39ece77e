#include "fuzz/Harnesses.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

std::span<const Harness> harnesses() {
  static constexpr Harness all[] = {{"json", json},         {"records", records},
                                    {"url", url},           {"color", color},
                                    {"font", font},         {"picture", picture},
                                    {"request", request},   {"connection", connection},
                                    {"tasks", tasks},       {"demonstration", demonstration},
                                    {"scenario", scenario}, {"solver", solver}};
  return all;
}

const Harness* harnessNamed(std::string_view name) {
  const auto all = harnesses();
  const auto found = std::find_if(all.begin(), all.end(), [name](const Harness& each) { return each.name == name; });
  return found == all.end() ? nullptr : &*found;
}

void expect(bool isSo, const char* claim) {
  if (isSo) return;
  std::fprintf(stderr, "not so: %s\n", claim);
  std::abort();
}

}  // namespace fuzz
