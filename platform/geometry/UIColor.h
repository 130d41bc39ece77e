#pragma once

namespace platform {

/// A colour in sRGB, components 0 to 1, not multiplied by alpha. A plain value; any thread.
/// Components outside the range are kept and clamped when drawn. `red()`, `green()`, `blue()` are components; the
/// colours of those names are systemRed() and so on.
class UIColor {
 public:
  /// Opaque black.
  constexpr UIColor() = default;
  constexpr UIColor(double red, double green, double blue, double alpha)
      : red_(red), green_(green), blue_(blue), alpha_(alpha) {}
  /// A grey.
  static constexpr UIColor white(double white, double alpha) { return {white, white, white, alpha}; }

  constexpr double red() const { return red_; }
  constexpr double green() const { return green_; }
  constexpr double blue() const { return blue_; }
  constexpr double alpha() const { return alpha_; }
  constexpr UIColor colorWithAlphaComponent(double alpha) const { return {red_, green_, blue_, alpha}; }
  /// The colour on the straight line to another: 0 is this one, 1 the other.
  constexpr UIColor blendedTo(const UIColor& other, double fraction) const {
    return {red_ + (other.red_ - red_) * fraction, green_ + (other.green_ - green_) * fraction,
            blue_ + (other.blue_ - blue_) * fraction, alpha_ + (other.alpha_ - alpha_) * fraction};
  }
  friend constexpr bool operator==(const UIColor&, const UIColor&) = default;

  static constexpr UIColor black() { return white(0, 1); }
  static constexpr UIColor white() { return white(1, 1); }
  static constexpr UIColor clear() { return white(0, 0); }
  static constexpr UIColor gray() { return white(0.5, 1); }
  static constexpr UIColor lightGray() { return white(2.0 / 3, 1); }
  static constexpr UIColor darkGray() { return white(1.0 / 3, 1); }

  static constexpr UIColor systemBlue() { return bytes(0, 122, 255); }
  static constexpr UIColor systemRed() { return bytes(255, 59, 48); }
  static constexpr UIColor systemGreen() { return bytes(52, 199, 89); }
  static constexpr UIColor systemOrange() { return bytes(255, 149, 0); }
  static constexpr UIColor systemYellow() { return bytes(255, 204, 0); }
  static constexpr UIColor systemTeal() { return bytes(48, 176, 199); }
  static constexpr UIColor systemIndigo() { return bytes(88, 86, 214); }
  static constexpr UIColor systemPurple() { return bytes(175, 82, 222); }
  static constexpr UIColor systemPink() { return bytes(255, 45, 85); }
  static constexpr UIColor systemGray() { return bytes(142, 142, 147); }
  static constexpr UIColor systemGray2() { return bytes(174, 174, 178); }
  static constexpr UIColor systemGray3() { return bytes(199, 199, 204); }
  static constexpr UIColor systemGray4() { return bytes(209, 209, 214); }
  static constexpr UIColor systemGray5() { return bytes(229, 229, 234); }
  static constexpr UIColor systemGray6() { return bytes(242, 242, 247); }

  static constexpr UIColor label() { return black(); }
  static constexpr UIColor secondaryLabel() { return bytes(60, 60, 67, 0.6); }
  static constexpr UIColor tertiaryLabel() { return bytes(60, 60, 67, 0.3); }
  static constexpr UIColor placeholderText() { return bytes(60, 60, 67, 0.3); }
  static constexpr UIColor separator() { return bytes(60, 60, 67, 0.29); }
  static constexpr UIColor opaqueSeparator() { return bytes(198, 198, 200); }
  static constexpr UIColor systemBackground() { return white(); }
  static constexpr UIColor secondarySystemBackground() { return systemGray6(); }
  static constexpr UIColor systemGroupedBackground() { return systemGray6(); }
  static constexpr UIColor secondarySystemGroupedBackground() { return white(); }
  static constexpr UIColor systemFill() { return bytes(120, 120, 128, 0.2); }
  static constexpr UIColor tertiarySystemFill() { return bytes(118, 118, 128, 0.12); }

 private:
  static constexpr UIColor bytes(int red, int green, int blue, double alpha = 1) {
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
  }
  double red_ = 0, green_ = 0, blue_ = 0, alpha_ = 1;
};

}  // namespace platform
