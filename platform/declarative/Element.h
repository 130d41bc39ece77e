#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/declarative/View.h"
#include "platform/uikit/views/UIView.h"

namespace platform::declarative {

/// What a parent offers; an absent side means "as large as you like to be".
struct ProposedSize {
  std::optional<double> width;
  std::optional<double> height;
};

/// What reaches a piece of interface from outside: fonts and colours of its surroundings, and the live view that it
/// stands in. A value.
struct Environment {
  UIFont font = UIFont::systemFont(17);
  std::optional<UIColor> foregroundColor;  ///< each kind of piece has a colour of its own when none was set
  Weak<UIView> host;
  std::function<void()> setNeedsLayout;
  std::function<bool()> isOnScreen;  ///< false while the whole description waits to be shown, or is hidden
};

/// The live counterpart of a description: it lasts as long as descriptions of its kind follow each other at its place,
/// owns the views, and knows their layout. Main thread.
class Element {
 public:
  virtual ~Element() = default;
  /// Takes over a description of its own kind.
  virtual void update(const Description& description, const Environment& environment) = 0;
  /// How large it would be; never larger than it wants, possibly larger than offered.
  virtual CGSize sizeThatFits(ProposedSize offered) = 0;
  /// Its rectangle in the host view.
  virtual void place(CGRect rect) = 0;
  /// Its views within the host, back to front.
  virtual void collectViews(std::vector<Ref<UIView>>& views) = 0;
  virtual void forEachChild(const std::function<void(Element&)>& visit) = 0;
  /// True when something outside its layout (a scrolled ancestor) moved a reader of geometry.
  virtual bool hasMoved() const { return false; }
  /// True for what only keeps others apart: a stack gives it what they leave.
  virtual bool isSpacer() const { return false; }

  /// Calls what waits for it, outermost first, once until the opposite happens.
  void appear();
  void disappear();

 protected:
  virtual void didAppear() {}
  virtual void didDisappear() {}

 private:
  bool appeared_ = false;
};

/// What a View points to. Two descriptions of the same kind at the same place continue each other.
class Description {
 public:
  virtual ~Description() = default;
  virtual std::unique_ptr<Element> makeElement() const = 0;
  virtual const void* kind() const = 0;
};

/// The description of an element class E, holding its `E::Properties`.
template <class E>
class DescriptionOf final : public Description {
 public:
  explicit DescriptionOf(typename E::Properties properties) : properties(std::move(properties)) {}
  std::unique_ptr<Element> makeElement() const override { return std::make_unique<E>(); }
  const void* kind() const override { return &tag; }

  const typename E::Properties properties;

 private:
  static constexpr char tag = 0;
};

template <class E>
View describe(typename E::Properties properties) {
  return View(std::make_shared<DescriptionOf<E>>(std::move(properties)));
}

template <class E>
const typename E::Properties& propertiesOf(const Description& description) {
  return static_cast<const DescriptionOf<E>&>(description).properties;
}

/// A place for one child: keeps the element as long as the kind of its descriptions stays the same.
class Slot {
 public:
  Slot() = default;
  Slot(Slot&&) = default;
  Slot& operator=(Slot&&) = default;
  ~Slot();

  void update(const View& view, const Environment& environment);
  explicit operator bool() const { return element_ != nullptr; }
  Element* operator->() const { return element_.get(); }
  Element& operator*() const { return *element_; }

 private:
  const void* kind_ = nullptr;
  std::unique_ptr<Element> element_;
};

/// An element with one child that it passes everything on to; modifiers override what they change.
class WrappingElement : public Element {
 public:
  CGSize sizeThatFits(ProposedSize offered) override { return child_->sizeThatFits(offered); }
  void place(CGRect rect) override { child_->place(rect); }
  void collectViews(std::vector<Ref<UIView>>& views) override { child_->collectViews(views); }
  void forEachChild(const std::function<void(Element&)>& visit) override {
    if (child_) visit(*child_);
  }

 protected:
  Slot child_;
};

/// An element that is one view of the platform.
class LeafElement : public Element {
 public:
  void place(CGRect rect) override;
  void collectViews(std::vector<Ref<UIView>>& views) override;
  void forEachChild(const std::function<void(Element&)>&) override {}

 protected:
  Ref<UIView> view_;
};

/// Brings a view's subviews in line with the list, touching only what differs.
void showViews(UIView& host, const std::vector<Ref<UIView>>& views);

/// Where something of a size stands in a rectangle.
CGRect aligned(CGSize size, CGRect within, Alignment alignment);

}  // namespace platform::declarative
