#include "lumicor/ui/TLChatFont.h"

#include "lumicor/ui/LumicorFontHelper.h"

namespace lumicor {

platform::UIFont chatFont(double size, std::int64_t weight) {
  const platform::UIFont system = platform::UIFont::systemFont(size, LumicorFontHelper::fontWeight(weight));
  if (!LumicorFontHelper::isFontLoaded()) return system;
  return platform::UIFont::named(LumicorFontHelper::registeredFontName(), size).value_or(system);
}

}  // namespace lumicor
