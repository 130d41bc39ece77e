#include <string>

#include "fuzz/Harnesses.h"
#include "platform/engine/OpenTypeFile.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGFont.h"
#include "platform/graphics/UIFont.h"

namespace fuzz {

using namespace platform;

void font(std::string_view input) {
  (void)OpenTypeFile::postScriptNameInTable(input);
  const CGFontRef font = CGFontCreateWithDataProvider(CGDataProviderCreateWithData(std::string(input)));
  expect(static_cast<bool>(font) == OpenTypeFile::isFont(input), "a font is one by its directory");
  if (!font) return;
  const std::string renamed = OpenTypeFile::renamed(input, "Fuzzed");
  expect(OpenTypeFile::isFont(renamed), "a renamed font is one");
  expect(OpenTypeFile::postScriptName(renamed) == "Fuzzed", "a renamed font has the name");
  // Fonts are kept for the life of the process.
  static int registrations = 0;
  if (registrations >= 500 || !CTFontManagerRegisterGraphicsFont(font)) return;
  ++registrations;
  TextStyle style;
  if (const auto named = UIFont::named(font->postScriptName, 16)) style.font = *named;
  (void)TextLayout::measure("Tea time", style);
}

}  // namespace fuzz
