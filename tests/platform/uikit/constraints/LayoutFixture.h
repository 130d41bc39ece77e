#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/views/UIView.h"

namespace platform::layouttest {

/// Content of fixed-width letters, 10 x 20 points each, that wraps between any two: what a label is to layout, without
/// fonts.
class Letters : public Object<Letters, UIView> {
 public:
  using UIView::init;
  void init(std::size_t count) {
    initWithFrame({});
    count_ = count;
  }
  void setCount(std::size_t count) {
    count_ = count;
    invalidateIntrinsicContentSize();
  }
  void setWraps(bool wraps) { wraps_ = wraps; }
  CGSize intrinsicContentSize() const override { return {10.0 * static_cast<double>(count_), 20}; }
  std::optional<double> intrinsicHeightForWidth(double width) const override {
    if (!wraps_) return std::nullopt;
    const double perLine = std::max(1.0, std::floor(width / 10));
    return 20 * std::max(1.0, std::ceil(static_cast<double>(count_) / perLine));
  }
  double firstBaselineOffset() const override { return 15; }
  double lastBaselineOffset() const override { return bounds().height() - 5; }

 private:
  std::size_t count_ = 0;
  bool wraps_ = true;
};

/// A view that constraints place.
template <class View = UIView, class... Args>
Ref<View> placed(const Ref<UIView>& superview, const std::string& name, Args... args) {
  const Ref<View> view = make<View>(args...);
  view->setTranslatesAutoresizingMaskIntoConstraints(false);
  view->setAccessibilityIdentifier(name);
  if (superview) superview->addSubview(view);
  return view;
}

inline Ref<UIView> root(double width, double height) {
  const Ref<UIView> view = make<UIView>(CGRect{0, 0, width, height});
  view->setAccessibilityIdentifier("root");
  return view;
}

inline void activate(const std::vector<Ref<NSLayoutConstraint>>& constraints) {
  NSLayoutConstraint::activateConstraints(constraints);
}

inline Ref<NSLayoutConstraint> at(const Ref<NSLayoutConstraint>& constraint, float priority) {
  constraint->setPriority(priority);
  return constraint;
}

inline std::string number(double value) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end.ptr);
}

inline std::string text(const CGRect& frame) {
  return number(frame.minX()) + " " + number(frame.minY()) + "  " + number(frame.width()) + " x " +
         number(frame.height());
}

/// One line a view: its name and its frame in its superview, indented by depth.
inline std::string dump(const UIView& view, int depth = 0) {
  std::string lines(static_cast<std::size_t>(depth) * 2, ' ');
  lines += view.accessibilityIdentifier().value_or("-") + ": " + text(view.frame()) + "\n";
  for (const Ref<UIView>& subview : view.subviews()) lines += dump(*subview, depth + 1);
  return lines;
}

}  // namespace platform::layouttest
