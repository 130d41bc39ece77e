#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/uikit/controls/UIControl.h"

namespace platform {

class NSAttributedString;
class UIImageView;
class UILabel;

enum class UIButtonType { custom, system, close };

enum class UIControlContentHorizontalAlignment { center, left, right, fill };

/// A button with a title and a picture for each of its states. What a state has not been given it takes from the normal
/// state. A system button's title and template picture take the tint colour and fade while it is held. Main thread.
class UIButton : public Object<UIButton, UIControl> {
 public:
  UIButton();
  ~UIButton() override;
  using UIView::init;
  void init(UIButtonType type);
  void initWithFrame(CGRect frame) override;
  UIButtonType buttonType() const { return type_; }

  void setTitle(std::optional<std::string> title, unsigned state);
  std::optional<std::string> title(unsigned state) const;
  void setAttributedTitle(const Ref<NSAttributedString>& title, unsigned state);
  Ref<NSAttributedString> attributedTitle(unsigned state) const;
  void setTitleColor(std::optional<UIColor> color, unsigned state);
  std::optional<UIColor> titleColor(unsigned state) const;
  void setImage(const Ref<UIImage>& image, unsigned state);
  Ref<UIImage> image(unsigned state) const;
  void setBackgroundImage(const Ref<UIImage>& image, unsigned state);
  Ref<UIImage> backgroundImage(unsigned state) const;
  /// The view's own backgroundColor is that of the normal state.
  void setBackgroundColor(std::optional<UIColor> color, unsigned state);
  std::optional<UIColor> backgroundColor(unsigned state) const;
  std::optional<UIColor> backgroundColor() const override;
  void setBackgroundColor(std::optional<UIColor> color) override;

  std::optional<std::string> currentTitle() const;
  UIColor currentTitleColor() const;
  Ref<UIImage> currentImage() const;

  /// The label of the title, made when first asked for.
  virtual Ref<UILabel> titleLabel();
  /// The same, without making one: none for a button that never had a title and was never asked for its label. Whoever
  /// overrides one of the two overrides the other.
  virtual Ref<UILabel> titleLabelIfMade() const { return titleLabel_; }
  virtual Ref<UIImageView> imageView();
  UIEdgeInsets contentEdgeInsets() const { return contentInsets_; }
  void setContentEdgeInsets(UIEdgeInsets insets);
  UIEdgeInsets titleEdgeInsets() const { return titleInsets_; }
  void setTitleEdgeInsets(UIEdgeInsets insets);
  UIEdgeInsets imageEdgeInsets() const { return imageInsets_; }
  void setImageEdgeInsets(UIEdgeInsets insets);
  UIControlContentHorizontalAlignment contentHorizontalAlignment() const { return alignment_; }
  void setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment);
  bool adjustsImageWhenHighlighted() const { return adjustsImageWhenHighlighted_; }
  void setAdjustsImageWhenHighlighted(bool adjusts) { adjustsImageWhenHighlighted_ = adjusts; }

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  double firstBaselineOffset() const override;
  double lastBaselineOffset() const override;
  void layoutSubviews() override;
  void stateDidChange() override;
  void tintColorDidChange() override;

 protected:
  bool sendsPrimaryAction() const override { return true; }

 private:
  struct Look {
    std::optional<std::string> title;
    Ref<NSAttributedString> attributedTitle;
    std::optional<UIColor> titleColor;
    Ref<UIImage> image;
    Ref<UIImage> backgroundImage;
    std::optional<UIColor> backgroundColor;
  };
  template <class T>
  T lookFor(unsigned state, T Look::*part) const;
  void lookDidChange();
  void applyLook(bool animated);
  CGSize contentSize(CGSize within) const;

  UIButtonType type_ = UIButtonType::custom;
  std::map<unsigned, Look> looks_;
  Ref<UILabel> titleLabel_;
  Ref<UIImageView> imageView_;
  Ref<UIImageView> backgroundView_;
  UIEdgeInsets contentInsets_;
  UIEdgeInsets titleInsets_;
  UIEdgeInsets imageInsets_;
  UIControlContentHorizontalAlignment alignment_ = UIControlContentHorizontalAlignment::center;
  bool adjustsImageWhenHighlighted_ = true;
};

}  // namespace platform
