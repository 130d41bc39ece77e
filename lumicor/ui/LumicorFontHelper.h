#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

#include "platform/foundation/URL.h"
#include "platform/graphics/UIFont.h"

namespace lumicor {

using namespace platform;

/// Fetches the chat's font and makes it known to the system. What goes wrong is told on the standard output, and the
/// chat stays with the system font. Thread: any; completions run on the session's queue.
class LumicorFontHelper {
 public:
  using Completion = std::function<void(bool registered)>;

  /// The outcome of the last registration.
  static bool isFontLoaded() { return fontLoaded_; }
  /// The PostScript name of the font registered last, empty before that.
  static std::string registeredFontName();

  /// Loads the font of that address unless one is loaded or the text is no address.
  static void loadFont(const std::string& fontURL);
  static void downloadFont(const URL& url, Completion completion);
  /// From a file on this machine. The completion runs before this returns.
  static void registerFont(const URL& file, const Completion& completion);

  /// The weight of a number from 100 to 900; regular for every number that is not listed.
  static UIFontWeight fontWeight(std::int64_t weight);

 private:
  inline static std::atomic<bool> fontLoaded_ = false;
  inline static std::mutex nameMutex_;
  inline static std::string registeredFontName_;  // guarded by nameMutex_
};

}  // namespace lumicor
