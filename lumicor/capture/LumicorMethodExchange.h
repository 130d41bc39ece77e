#pragma once

#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// Puts a function of the assistant's in the place of a platform method. What was there answers to the function's own
/// selector from then on, so the function calls through by that selector, and reaches whatever another exchange made of
/// it meanwhile. Main thread.
class LumicorMethodExchange {
 public:
  enum class WhenMissing { staySilent, printLine, fail };

  /// `R function(C& self, Args...)` of the signature of `platformMethod`. Nothing is exchanged when the class has a
  /// method of the name `own` already (this was done before, or the name is somebody else's), nor when there is no
  /// platform method: then what `whenMissing` says.
  template <auto function>
  static void install(Class& cls, std::string_view platformMethod, std::string_view own,
                      WhenMissing whenMissing = WhenMissing::staySilent) {
    if (class_addMethod<function>(cls, sel(own))) exchange(cls, sel(platformMethod), sel(own), whenMissing);
  }

  /// The exchange alone, of two methods that the class has.
  static void exchange(Class& cls, SEL platformMethod, SEL own, WhenMissing whenMissing);
};

}  // namespace lumicor
