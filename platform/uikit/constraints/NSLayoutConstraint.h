#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/runtime/Object.h"
#include "platform/solver/LinearExpression.h"
#include "platform/uikit/Forward.h"
#include "platform/uikit/constraints/NSLayoutAttribute.h"

namespace platform {

class LayoutEngine;
class ViewLayout;

/// `first item's attribute = (or <=, >=) second item's attribute * multiplier + constant`, with a priority. Items are
/// views or layout guides.
///
/// Owner: whoever keeps the Ref; while it is active, the nearest common ancestor of its items also does. It becomes
/// inactive when one of its items leaves that ancestor's tree, and stays so until it is activated again. Items are not
/// kept alive. Thread: main.
/// Failure: activating it without a common ancestor, mixing axes, and numbers that are not finite are fatal programming
/// errors. Of required constraints that contradict one another the one activated last yields, whenever layout ran in
/// between; it is reported on one line of standard error when that begins, and holds again when it can.
class NSLayoutConstraint : public Object<NSLayoutConstraint, NSObject> {
 public:
  static Ref<NSLayoutConstraint> constraintWithItem(const Ref<NSObject>& first, NSLayoutAttribute firstAttribute,
                                                    NSLayoutRelation relation, const Ref<NSObject>& second,
                                                    NSLayoutAttribute secondAttribute, double multiplier,
                                                    double constant);
  NSLayoutConstraint() = default;
  ~NSLayoutConstraint() override = default;

  Ref<NSObject> firstItem() const { return first_.lock(); }
  NSLayoutAttribute firstAttribute() const { return firstAttribute_; }
  NSLayoutRelation relation() const { return relation_; }
  /// None for a constraint against a constant.
  Ref<NSObject> secondItem() const { return second_.lock(); }
  NSLayoutAttribute secondAttribute() const { return secondAttribute_; }
  double multiplier() const { return multiplier_; }
  double constant() const { return constant_; }
  /// Cheap at any time; the views move in the next layout pass (call layoutIfNeeded inside an animation for a smooth
  /// move).
  void setConstant(double constant);
  float priority() const { return priority_; }
  /// From required (1000) to optional or back only while the constraint is inactive; otherwise a fatal programming
  /// error.
  void setPriority(float priority);
  bool isActive() const { return holder_ != nullptr; }
  void setActive(bool active);
  /// For log lines.
  const std::string& identifier() const { return identifier_; }
  void setIdentifier(const std::string& identifier) { identifier_ = identifier; }

  static void activateConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints);
  static void deactivateConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints);

  /// "<NSLayoutConstraint 'bubble width' UILabel.width <= 250 @750>".
  std::string description() const override;

 private:
  friend class LayoutEngine;
  friend class ViewLayout;
  void activate();
  void deactivate();
  bool speaksOfViewIn(const UIView& subtree) const;

  Weak<NSObject> first_;
  Weak<NSObject> second_;
  std::string identifier_;
  double multiplier_ = 1;
  double constant_ = 0;
  float priority_ = 1000;
  NSLayoutAttribute firstAttribute_ = NSLayoutAttribute::notAnAttribute;
  NSLayoutAttribute secondAttribute_ = NSLayoutAttribute::notAnAttribute;
  NSLayoutRelation relation_ = NSLayoutRelation::equal;
  UIView* holder_ = nullptr;      // cleared by ViewLayout when the holder goes
  std::uint64_t activation_ = 0;  // counts over all constraints
};

}  // namespace platform
