#pragma once

#include <string>

namespace platform {

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

/// A face at a size (points): what a text is set in. A plain value that is cheap to copy. Main thread.
class FontAtSize {
 public:
  /// The system font of size 17.
  FontAtSize();
  /// Sizes that are not positive or not finite become 1; beyond 2000 they become 2000.
  FontAtSize(const FontFace& face, double pointSize);
  FontAtSize fontWithSize(double size) const { return {*face_, size}; }

  const std::string& fontName() const { return face_->fontName; }
  const std::string& familyName() const { return face_->family; }
  double pointSize() const { return pointSize_; }

  double ascender() const { return face_->ascender * pointSize_; }
  /// Negative: below the baseline.
  double descender() const { return face_->descender * pointSize_; }
  double leading() const { return face_->leading * pointSize_; }
  /// From one baseline to the next.
  double lineHeight() const { return ascender() - descender() + leading(); }
  double capHeight() const { return face_->capHeight * pointSize_; }
  double xHeight() const { return face_->xHeight * pointSize_; }

  const FontFace& face() const { return *face_; }
  friend bool operator==(const FontAtSize&, const FontAtSize&) = default;

 private:
  const FontFace* face_;
  double pointSize_;
};

}  // namespace platform
