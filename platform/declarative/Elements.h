#pragma once

// The kinds of elements that descriptions are made of. Included by the sources of this folder alone.

#include <functional>
#include <string>
#include <vector>

#include "platform/declarative/Element.h"

namespace platform {
class UIButton;
class UIImageView;
class UILabel;
class UIScrollView;
class UISwitch;
}  // namespace platform

namespace platform::declarative {

// ---- Leaves (LeafElements.cpp)

class TextElement final : public LeafElement {
 public:
  struct Properties {
    std::string text;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
};

class ImageElement final : public LeafElement {
 public:
  struct Properties {
    Ref<UIImage> image;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
};

class ColorElement final : public LeafElement {
 public:
  struct Properties {
    UIColor color;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
};

class SpacerElement final : public LeafElement {
 public:
  struct Properties {
    double minimum;
  };
  void update(const Description& description, const Environment& environment) override;
  /// Along a stack's direction alone: the stack asks with the other side at zero.
  CGSize sizeThatFits(ProposedSize offered) override;
  bool isSpacer() const override { return true; }

 private:
  double minimum_ = 0;
};

class RepresentedElement final : public LeafElement {
 public:
  struct Properties {
    std::function<Ref<UIView>()> make;
    std::function<void(UIView&)> update;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
};

// ---- Controls (ControlElements.cpp)

/// The target of a control that runs a closure.
class ActionTarget final : public Object<ActionTarget, NSObject> {
 public:
  static void exportMethods(MethodTable<ActionTarget>& table) { table.add<&ActionTarget::fire>("fire:"); }
  std::function<void(const Ref<NSObject>& sender)> action;

 private:
  void fire(const Ref<NSObject>& sender) {
    if (const auto run = action) run(sender);
  }
};

class ButtonElement final : public LeafElement {
 public:
  struct Properties {
    std::string title;
    std::function<void()> action;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;

 private:
  Ref<ActionTarget> target_;
};

class ToggleElement final : public LeafElement {
 public:
  struct Properties {
    bool isOn;
    std::function<void(bool)> changed;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;

 private:
  Ref<ActionTarget> target_;
};

// ---- Layout (LayoutElements.cpp, StackElement.cpp)

class PaddingElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    UIEdgeInsets insets;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
  void place(CGRect rect) override;

 private:
  UIEdgeInsets insets_;
};

class FrameElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    std::optional<double> width;
    std::optional<double> height;
    bool expandsHorizontally = false;
    bool expandsVertically = false;
    Alignment alignment;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
  void place(CGRect rect) override;

 private:
  ProposedSize limited(ProposedSize offered) const;
  std::optional<double> width_;
  std::optional<double> height_;
  bool expandsHorizontally_ = false;
  bool expandsVertically_ = false;
  Alignment alignment_;
};

/// A view with another one of the same size behind or above it.
class LayeredElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    View companion;
    bool isBehind;
  };
  void update(const Description& description, const Environment& environment) override;
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override;
  void forEachChild(const std::function<void(Element&)>& visit) override;

 private:
  Slot companion_;
  bool isBehind_ = true;
};

class StackElement final : public Element {
 public:
  enum class Direction { horizontal, vertical, depth };
  struct Properties {
    std::vector<View> children;
    Direction direction;
    double spacing;
    Alignment alignment;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override;
  void forEachChild(const std::function<void(Element&)>& visit) override;

 private:
  std::vector<CGSize> childSizes(ProposedSize offered);
  double lengthOf(CGSize size) const { return isHorizontal() ? size.width : size.height; }
  bool isHorizontal() const { return direction_ == Direction::horizontal; }
  ProposedSize along(std::optional<double> length, ProposedSize offered) const;

  std::vector<Slot> children_;
  CGSize fitted_;  // the last answer of sizeThatFits, and the children's sizes in it
  std::vector<CGSize> fittedChildren_;
  Direction direction_ = Direction::vertical;
  double spacing_ = 0;
  Alignment alignment_;
};

// ---- Containers (ContainerElements.cpp)

/// Fonts and colours for everything inside.
class EnvironmentElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    std::optional<UIFont> font;
    std::optional<UIColor> foregroundColor;
  };
  void update(const Description& description, const Environment& environment) override;
};

/// Holds its content in a view of its own, for what concerns the content as a whole.
class GroupElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    double opacity = 1;
    double cornerRadius = 0;
    std::optional<std::string> identifier = std::nullopt;
    std::function<void()> tapped = nullptr;
  };
  void update(const Description& description, const Environment& environment) override;
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override { views.push_back(view_); }

 private:
  Weak<UIView> host_;
  Ref<UIView> view_;
  Ref<ActionTarget> target_;
};

class ScrollElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override;

 private:
  Weak<UIView> host_;
  Ref<UIScrollView> view_;
};

class LifecycleElement final : public WrappingElement {
 public:
  struct Properties {
    View content;
    std::function<void()> appeared;
    std::function<void()> disappeared;
  };
  void update(const Description& description, const Environment& environment) override;

 protected:
  void didAppear() override;
  void didDisappear() override;

 private:
  std::function<void()> appeared_;
  std::function<void()> disappeared_;
};

class GeometryElement final : public WrappingElement {
 public:
  struct Properties {
    std::function<View(const GeometryProxy&)> content;
  };
  void update(const Description& description, const Environment& environment) override;
  CGSize sizeThatFits(ProposedSize offered) override;
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override;
  bool hasMoved() const override;

 private:
  CGRect globalFrame() const;
  std::function<View(const GeometryProxy&)> content_;
  Environment environment_;
  CGRect rect_;
  std::optional<CGRect> evaluatedAt_;
};

}  // namespace platform::declarative
