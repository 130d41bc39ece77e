#pragma once

#include <string>

#include "platform/geometry/UIColor.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// The shop's look in one place: colours, type scale, spacing.
namespace theme {

inline const platform::UIColor leaf = platform::UIColor(0x1F / 255.0, 0x4D / 255.0, 0x3A / 255.0, 1);
inline const platform::UIColor leafPressed = platform::UIColor(0x16 / 255.0, 0x3A / 255.0, 0x2B / 255.0, 1);
inline const platform::UIColor leafTint = platform::UIColor(0xE4 / 255.0, 0xEE / 255.0, 0xE7 / 255.0, 1);
inline const platform::UIColor paper = platform::UIColor(0xFA / 255.0, 0xF7 / 255.0, 0xF2 / 255.0, 1);
inline const platform::UIColor card = platform::UIColor(1, 1, 1, 1);
inline const platform::UIColor ink = platform::UIColor(0x22 / 255.0, 0x26 / 255.0, 0x24 / 255.0, 1);
inline const platform::UIColor inkSoft = platform::UIColor(0x6B / 255.0, 0x71 / 255.0, 0x6D / 255.0, 1);
inline const platform::UIColor line = platform::UIColor(0xE6 / 255.0, 0xE1 / 255.0, 0xD8 / 255.0, 1);
inline const platform::UIColor amber = platform::UIColor(0xB8 / 255.0, 0x6A / 255.0, 0x22 / 255.0, 1);

inline constexpr double margin = 20;
inline constexpr double gap = 12;
inline constexpr double radius = 14;

platform::UIFont title();     ///< 26 bold
platform::UIFont headline();  ///< 17 semibold
platform::UIFont body();      ///< 15 regular
platform::UIFont caption();   ///< 13 regular

}  // namespace theme

/// A label for constraints, wrapping over as many lines as it needs.
platform::Ref<platform::UILabel> makeLabel(const std::string& text, const platform::UIFont& font,
                                           const platform::UIColor& color);

/// A colour of 0xRRGGBB.
platform::UIColor colorOf(unsigned rgb);

}  // namespace teashop
