#include "lumicor/ui/LumicorFontHelper.h"

#include <cstdio>
#include <optional>

#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"
#include "platform/graphics/CGFont.h"

namespace lumicor {

namespace {

void print(const std::string& line) { std::puts(line.c_str()); }

}  // namespace

std::string LumicorFontHelper::registeredFontName() {
  const std::lock_guard lock(nameMutex_);
  return registeredFontName_;
}

void LumicorFontHelper::loadFont(const std::string& fontURL) {
  const std::optional<URL> url = URL::parse(fontURL);
  if (!url || fontLoaded_) return;
  downloadFont(*url, [](bool registered) { fontLoaded_ = registered; });
}

void LumicorFontHelper::downloadFont(const URL& url, Completion completion) {
  const auto finished = [completion = std::move(completion)](const std::optional<URL>& file,
                                                             const std::optional<HTTPURLResponse>&,
                                                             const std::optional<URLError>& error) {
    if (file && !error) return registerFont(*file, completion);
    print("Font download failed: " + (error ? error->localizedDescription() : std::string("Unknown error")));
    completion(false);
  };
  URLSession::withConfiguration()->downloadTask(url, finished)->resume();
}

void LumicorFontHelper::registerFont(const URL& file, const Completion& completion) {
  const CGDataProviderRef provider = CGDataProviderCreateWithURL(file.absoluteString());
  const CGFontRef font = provider ? CGFontCreateWithDataProvider(provider) : nullptr;
  if (!font) {
    print("Failed to create font from data provider.");
    return completion(false);
  }
  CFError error;
  const bool registered = CTFontManagerRegisterGraphicsFont(font, &error);
  if (registered) {
    if (const std::optional<std::string> name = CGFontCopyPostScriptName(font)) {
      const std::lock_guard lock(nameMutex_);
      registeredFontName_ = *name;
    }
  } else if (error.description.empty()) {
    print("Unknown error registering font.");
  } else {
    print("Error registering font: " + error.description);
  }
  completion(registered);
}

UIFontWeight LumicorFontHelper::fontWeight(std::int64_t weight) {
  switch (weight) {
    case 100:
    case 200:
      return UIFontWeightUltraLight;
    case 300:
      return UIFontWeightLight;
    case 500:
      return UIFontWeightMedium;
    case 600:
      return UIFontWeightSemibold;
    case 700:
      return UIFontWeightBold;
    case 800:
      return UIFontWeightHeavy;
    case 900:
      return UIFontWeightBlack;
    default:
      return UIFontWeightRegular;
  }
}

}  // namespace lumicor
