#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

/// Text on the screen, on one line or many. Its text may be absent. Main thread.
/// A label of more than one line takes the width that layout gives it and tells the height that its text needs there.
class UILabel : public Object<UILabel, UIView> {
 public:
  void initWithFrame(CGRect frame) override;

  virtual std::optional<std::string> text() const;
  virtual void setText(std::optional<std::string> text);
  /// The text with its attributes; of a plain text the attributes of the label. Setting it replaces the text.
  virtual Ref<NSAttributedString> attributedText() const;
  virtual void setAttributedText(const Ref<NSAttributedString>& text);

  const UIFont& font() const { return font_; }
  virtual void setFont(const UIFont& font);
  UIColor textColor() const { return textColor_; }
  virtual void setTextColor(const UIColor& color);
  std::optional<UIColor> highlightedTextColor() const { return highlightedTextColor_; }
  void setHighlightedTextColor(std::optional<UIColor> color);
  NSTextAlignment textAlignment() const { return alignment_; }
  void setTextAlignment(NSTextAlignment alignment);
  NSLineBreakMode lineBreakMode() const { return lineBreakMode_; }
  void setLineBreakMode(NSLineBreakMode mode);
  /// 0 for as many as the text needs.
  std::int64_t numberOfLines() const { return numberOfLines_; }
  void setNumberOfLines(std::int64_t lines);
  double preferredMaxLayoutWidth() const { return preferredMaxLayoutWidth_; }
  void setPreferredMaxLayoutWidth(double width);
  bool adjustsFontSizeToFitWidth() const { return adjustsFontSize_; }
  void setAdjustsFontSizeToFitWidth(bool adjusts);
  /// The smallest part of the font size that adjusting may go down to; 0 for half.
  double minimumScaleFactor() const { return minimumScaleFactor_; }
  void setMinimumScaleFactor(double factor);
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);
  bool isHighlighted() const { return highlighted_; }
  void setHighlighted(bool highlighted);

  /// The rectangle that the text takes within the bounds.
  virtual CGRect textRect(CGRect bounds, std::int64_t numberOfLines) const;
  virtual void drawText(CGRect rect, CGContext& context);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  std::optional<double> intrinsicHeightForWidth(double width) const override;
  double firstBaselineOffset() const override;
  double lastBaselineOffset() const override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void tintColorDidChange() override;

 private:
  void textDidChange();
  UIColor currentColor() const;
  std::shared_ptr<const TextLayout> laidOut(CGSize size, std::int64_t lines) const;

  std::optional<std::string> text_;
  Ref<NSAttributedString> attributedText_;
  UIFont font_;
  UIColor textColor_;
  std::optional<UIColor> highlightedTextColor_;
  NSTextAlignment alignment_ = NSTextAlignment::natural;
  NSLineBreakMode lineBreakMode_ = NSLineBreakMode::byTruncatingTail;
  std::int64_t numberOfLines_ = 1;
  double preferredMaxLayoutWidth_ = 0;
  double minimumScaleFactor_ = 0;
  bool adjustsFontSize_ = false;
  bool enabled_ = true;
  bool highlighted_ = false;
};

}  // namespace platform
