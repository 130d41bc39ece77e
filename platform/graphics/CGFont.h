#pragma once

#include <memory>
#include <optional>
#include <string>

namespace platform {

/// Bytes of a file, read at once.
struct CGDataProvider {
  std::string data;
};
using CGDataProviderRef = std::shared_ptr<const CGDataProvider>;

/// A font file that holds one OpenType or TrueType font, checked as far as its tables and names go.
struct CGFont {
  std::string data;
  std::string postScriptName;  ///< empty when the file names none
};
using CGFontRef = std::shared_ptr<const CGFont>;

/// From a file address ("file:///...") or a path. None when it cannot be read or has more than 64 MB. Any thread.
CGDataProviderRef CGDataProviderCreateWithURL(const std::string& fileURL);
CGDataProviderRef CGDataProviderCreateWithData(std::string data);

/// None when the data is no font. Any thread.
CGFontRef CGFontCreateWithDataProvider(const CGDataProviderRef& provider);
std::optional<std::string> CGFontCopyPostScriptName(const CGFontRef& font);

/// Why a font was not registered.
struct CFError {
  std::string description;
};

/// Makes the font known to UIFont::named under its PostScript name for the life of the process. False when a font of
/// that name was registered before, or the font has no name; `error`, when given, tells why. Any thread.
bool CTFontManagerRegisterGraphicsFont(const CGFontRef& font, CFError* error = nullptr);

}  // namespace platform
