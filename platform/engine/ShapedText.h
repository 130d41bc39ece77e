#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/engine/FontFace.h"

namespace platform {

class TextLayout;
struct TextStyle;

/// A text whose letters are chosen and measured, which is what costs; breaking it into lines for this or that width is
/// cheap beside it. Main thread.
class ShapedText : public std::enable_shared_from_this<ShapedText> {
 public:
  virtual ~ShapedText() = default;
  ShapedText(const ShapedText&) = delete;
  ShapedText& operator=(const ShapedText&) = delete;

  const std::string& text() const { return text_; }
  const FontAtSize& font() const { return font_; }
  bool isUnderlined() const { return underlined_; }
  /// The style must be of this font and underline.
  virtual std::shared_ptr<const TextLayout> layOut(const TextStyle& style, double width) = 0;

 protected:
  ShapedText(std::string_view text, const FontAtSize& font, bool underlined)
      : text_(text), font_(font), underlined_(underlined) {}

 private:
  const std::string text_;
  const FontAtSize font_;
  const bool underlined_;
};

}  // namespace platform
