#include "lumicor/capture/LumicorMethodExchange.h"

#include <cstdio>

namespace lumicor {

void LumicorMethodExchange::exchange(Class& cls, SEL platformMethod, SEL own, WhenMissing whenMissing) {
  Method* const original = class_getInstanceMethod(cls, platformMethod);
  Method* const replacement = class_getInstanceMethod(cls, own);
  if (original && replacement) return method_exchangeImplementations(original, replacement);
  if (whenMissing == WhenMissing::fail) fatalError("a method to exchange is missing: " + platformMethod.name());
  if (whenMissing == WhenMissing::printLine) std::puts("Failed to get original/swizzled method.");
}

}  // namespace lumicor
