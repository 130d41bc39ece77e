#pragma once

#include <optional>
#include <string>

#include "platform/engine/FontFace.h"

namespace platform {

/// How heavy letters are, from -1 to 1.
using UIFontWeight = double;
inline constexpr UIFontWeight UIFontWeightUltraLight = -0.8;
inline constexpr UIFontWeight UIFontWeightThin = -0.6;
inline constexpr UIFontWeight UIFontWeightLight = -0.4;
inline constexpr UIFontWeight UIFontWeightRegular = 0;
inline constexpr UIFontWeight UIFontWeightMedium = 0.23;
inline constexpr UIFontWeight UIFontWeightSemibold = 0.3;
inline constexpr UIFontWeight UIFontWeightBold = 0.4;
inline constexpr UIFontWeight UIFontWeightHeavy = 0.56;
inline constexpr UIFontWeight UIFontWeightBlack = 0.62;

/// A face at a size (points), by the names that people know. A plain value that is cheap to copy. Main thread.
class UIFont : public FontAtSize {
 public:
  /// The system font of size 17.
  UIFont() = default;
  using FontAtSize::FontAtSize;
  explicit UIFont(const FontAtSize& font) : FontAtSize(font) {}
  static UIFont systemFont(double size, UIFontWeight weight = UIFontWeightRegular);
  static UIFont boldSystemFont(double size) { return systemFont(size, UIFontWeightBold); }
  static UIFont italicSystemFont(double size);
  static UIFont monospacedSystemFont(double size, UIFontWeight weight = UIFontWeightRegular);
  /// The font of that PostScript name (registered or installed), or of that family; none when there is no such font.
  static std::optional<UIFont> named(const std::string& name, double size);
  UIFont fontWithSize(double size) const { return {face(), size}; }
  friend bool operator==(const UIFont&, const UIFont&) = default;
};

}  // namespace platform
