#pragma once

#include "platform/uikit/constraints/NSLayoutConstraint.h"

namespace platform {

/// What the three kinds of anchor share: an attribute of a view or guide, from which constraints are made. A light
/// value; it does not keep its item alive. The constraints it makes are inactive. Thread: main.
class NSLayoutAnchor {
 public:
  NSLayoutAnchor(Weak<NSObject> item, NSLayoutAttribute attribute) : item_(std::move(item)), attribute_(attribute) {}
  Ref<NSObject> item() const { return item_.lock(); }
  NSLayoutAttribute attribute() const { return attribute_; }

 protected:
  Ref<NSLayoutConstraint> make(NSLayoutRelation relation, const NSLayoutAnchor& other, double multiplier,
                               double constant) const;
  Ref<NSLayoutConstraint> make(NSLayoutRelation relation, double constant) const;

 private:
  Weak<NSObject> item_;
  NSLayoutAttribute attribute_;
};

/// The relations between two anchors of the same kind; what does not fit does not compile.
template <class Anchor>
class NSLayoutAnchorOf : public NSLayoutAnchor {
 public:
  using NSLayoutAnchor::NSLayoutAnchor;
  Ref<NSLayoutConstraint> constraintEqualToAnchor(const Anchor& other, double constant = 0) const {
    return make(NSLayoutRelation::equal, other, 1, constant);
  }
  Ref<NSLayoutConstraint> constraintLessThanOrEqualToAnchor(const Anchor& other, double constant = 0) const {
    return make(NSLayoutRelation::lessThanOrEqual, other, 1, constant);
  }
  Ref<NSLayoutConstraint> constraintGreaterThanOrEqualToAnchor(const Anchor& other, double constant = 0) const {
    return make(NSLayoutRelation::greaterThanOrEqual, other, 1, constant);
  }
};

class NSLayoutXAxisAnchor final : public NSLayoutAnchorOf<NSLayoutXAxisAnchor> {
 public:
  using NSLayoutAnchorOf::NSLayoutAnchorOf;
};

class NSLayoutYAxisAnchor final : public NSLayoutAnchorOf<NSLayoutYAxisAnchor> {
 public:
  using NSLayoutAnchorOf::NSLayoutAnchorOf;
};

/// A width or a height. With two numbers the first is the multiplier, the second the constant.
class NSLayoutDimension final : public NSLayoutAnchorOf<NSLayoutDimension> {
 public:
  using NSLayoutAnchorOf::constraintEqualToAnchor;
  using NSLayoutAnchorOf::constraintGreaterThanOrEqualToAnchor;
  using NSLayoutAnchorOf::constraintLessThanOrEqualToAnchor;
  using NSLayoutAnchorOf::NSLayoutAnchorOf;
  Ref<NSLayoutConstraint> constraintEqualToAnchor(const NSLayoutDimension& other, double multiplier,
                                                  double constant) const {
    return make(NSLayoutRelation::equal, other, multiplier, constant);
  }
  Ref<NSLayoutConstraint> constraintLessThanOrEqualToAnchor(const NSLayoutDimension& other, double multiplier,
                                                            double constant) const {
    return make(NSLayoutRelation::lessThanOrEqual, other, multiplier, constant);
  }
  Ref<NSLayoutConstraint> constraintGreaterThanOrEqualToAnchor(const NSLayoutDimension& other, double multiplier,
                                                               double constant) const {
    return make(NSLayoutRelation::greaterThanOrEqual, other, multiplier, constant);
  }
  Ref<NSLayoutConstraint> constraintEqualToConstant(double constant) const {
    return make(NSLayoutRelation::equal, constant);
  }
  Ref<NSLayoutConstraint> constraintLessThanOrEqualToConstant(double constant) const {
    return make(NSLayoutRelation::lessThanOrEqual, constant);
  }
  Ref<NSLayoutConstraint> constraintGreaterThanOrEqualToConstant(double constant) const {
    return make(NSLayoutRelation::greaterThanOrEqual, constant);
  }
};

}  // namespace platform
