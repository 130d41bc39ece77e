#pragma once

#include <optional>
#include <string>

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

/// One face of a family as the engine knows it. Made once, kept for the process. Lengths in parts of the font size.
struct FontFace {
  std::string family;
  std::string fontName;  ///< PostScript name
  int weight = 400;      ///< 100 to 900
  bool italic = false;
  double ascender = 0;   ///< above the baseline
  double descender = 0;  ///< below it, negative
  double leading = 0;
  double capHeight = 0;
  double xHeight = 0;
};

/// A face at a size (points). A plain value that is cheap to copy. Main thread.
class UIFont {
 public:
  /// The system font of size 17.
  UIFont();
  UIFont(const FontFace& face, double pointSize) : face_(&face), pointSize_(pointSize) {}
  /// Sizes that are not positive or not finite become 1; beyond 2000 they become 2000.
  static UIFont systemFont(double size, UIFontWeight weight = UIFontWeightRegular);
  static UIFont boldSystemFont(double size) { return systemFont(size, UIFontWeightBold); }
  static UIFont italicSystemFont(double size);
  static UIFont monospacedSystemFont(double size, UIFontWeight weight = UIFontWeightRegular);
  /// The font of that PostScript name (registered or installed), or of that family; none when there is no such font.
  static std::optional<UIFont> named(const std::string& name, double size);

  const std::string& fontName() const { return face_->fontName; }
  const std::string& familyName() const { return face_->family; }
  double pointSize() const { return pointSize_; }
  UIFont fontWithSize(double size) const;

  double ascender() const { return face_->ascender * pointSize_; }
  /// Negative: below the baseline.
  double descender() const { return face_->descender * pointSize_; }
  double leading() const { return face_->leading * pointSize_; }
  /// From one baseline to the next.
  double lineHeight() const { return ascender() - descender() + leading(); }
  double capHeight() const { return face_->capHeight * pointSize_; }
  double xHeight() const { return face_->xHeight * pointSize_; }

  const FontFace& face() const { return *face_; }
  friend bool operator==(const UIFont&, const UIFont&) = default;

 private:
  const FontFace* face_;
  double pointSize_;
};

}  // namespace platform
