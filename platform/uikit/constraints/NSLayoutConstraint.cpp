#include "platform/uikit/constraints/NSLayoutConstraint.h"

#include <charconv>
#include <cmath>

#include "platform/runtime/FatalError.h"
#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

namespace {

void requireFinite(double value, const char* what) {
  if (!std::isfinite(value)) fatalError(std::string("NSLayoutConstraint: ") + what + " is not finite");
}

std::string numberText(double value) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end.ptr);
}

std::string itemText(const Ref<NSObject>& item, NSLayoutAttribute attribute) {
  return (item ? NSStringFromClass(item->classForCoder()) : std::string("(gone)")) + "." + nameOf(attribute);
}

/// The view of an item: itself, or a guide's owner.
UIView* viewOf(const Ref<NSObject>& item) {
  if (auto* const view = dynamic_cast<UIView*>(item.get())) return view;
  const auto* const guide = dynamic_cast<UILayoutGuide*>(item.get());
  return guide ? guide->owningView().get() : nullptr;
}

}  // namespace

Ref<NSLayoutConstraint> NSLayoutConstraint::constraintWithItem(const Ref<NSObject>& first,
                                                               NSLayoutAttribute firstAttribute,
                                                               NSLayoutRelation relation, const Ref<NSObject>& second,
                                                               NSLayoutAttribute secondAttribute, double multiplier,
                                                               double constant) {
  requireFinite(multiplier, "the multiplier");
  requireFinite(constant, "the constant");
  if (!second) secondAttribute = NSLayoutAttribute::notAnAttribute;
  const LayoutAttributeKind firstKind = kindOf(firstAttribute);
  const LayoutAttributeKind secondKind = kindOf(secondAttribute);
  const bool isAgainstConstant = secondKind == LayoutAttributeKind::none;
  if (!first || firstKind == LayoutAttributeKind::none || (!isAgainstConstant && firstKind != secondKind) ||
      (isAgainstConstant && firstKind != LayoutAttributeKind::dimension)) {
    fatalError(std::string("NSLayoutConstraint: ") + nameOf(firstAttribute) + " cannot be compared with " +
               nameOf(secondAttribute));
  }
  auto constraint = make<NSLayoutConstraint>();
  constraint->first_ = first;
  if (!isAgainstConstant) constraint->second_ = second;
  constraint->firstAttribute_ = firstAttribute;
  constraint->secondAttribute_ = secondAttribute;
  constraint->relation_ = relation;
  constraint->multiplier_ = multiplier;
  constraint->constant_ = constant;
  return constraint;
}

void NSLayoutConstraint::setConstant(double constant) {
  requireFinite(constant, "the constant");
  if (constant == constant_) return;
  constant_ = constant;
  if (holder_) ViewLayout::constantDidChange(*holder_, *this);
}

void NSLayoutConstraint::setPriority(float priority) {
  requireFinite(priority, "the priority");
  if (priority == priority_) return;
  if (holder_ && (priority >= 1000) != (priority_ >= 1000)) {
    fatalError(
        "NSLayoutConstraint: the priority of an active constraint cannot change between required and optional: " +
        description());
  }
  priority_ = priority;
  if (holder_) ViewLayout::priorityDidChange(*holder_, *this);
}

void NSLayoutConstraint::setActive(bool active) {
  if (active == isActive()) return;
  if (active) {
    activate();
  } else {
    deactivate();
  }
}

void NSLayoutConstraint::activate() {
  UIView* const first = viewOf(firstItem());
  const bool hasSecond = secondAttribute_ != NSLayoutAttribute::notAnAttribute;
  UIView* const second = hasSecond ? viewOf(secondItem()) : first;
  UIView* const holder = first && second ? ViewLayout::commonAncestor(*first, *second) : nullptr;
  if (!holder) fatalError("NSLayoutConstraint: the items have no common ancestor: " + description());
  static std::uint64_t activations = 0;
  activation_ = ++activations;
  holder_ = holder;
  ViewLayout::hold(*holder, self());
}

void NSLayoutConstraint::deactivate() {
  UIView& holder = *std::exchange(holder_, nullptr);
  ViewLayout::letGo(holder, *this);  // may be what kept this constraint alive
}

bool NSLayoutConstraint::speaksOfViewIn(const UIView& subtree) const {
  const UIView* const first = viewOf(firstItem());
  if (first && first->isDescendantOfView(&subtree)) return true;
  const UIView* const second = viewOf(secondItem());
  return second && second->isDescendantOfView(&subtree);
}

void NSLayoutConstraint::activateConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints) {
  for (const Ref<NSLayoutConstraint>& constraint : constraints) constraint->setActive(true);
}

void NSLayoutConstraint::deactivateConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints) {
  for (const Ref<NSLayoutConstraint>& constraint : constraints) constraint->setActive(false);
}

std::string NSLayoutConstraint::description() const {
  std::string text = "<NSLayoutConstraint ";
  if (!identifier_.empty()) text += "'" + identifier_ + "' ";
  text += itemText(firstItem(), firstAttribute_);
  text += relation_ == NSLayoutRelation::equal             ? " == "
          : relation_ == NSLayoutRelation::lessThanOrEqual ? " <= "
                                                           : " >= ";
  if (secondAttribute_ == NSLayoutAttribute::notAnAttribute) {
    text += numberText(constant_);
  } else {
    text += itemText(secondItem(), secondAttribute_);
    if (multiplier_ != 1) text += " * " + numberText(multiplier_);
    if (constant_ != 0) text += (constant_ < 0 ? " - " : " + ") + numberText(std::abs(constant_));
  }
  if (priority_ < 1000) text += " @" + numberText(static_cast<double>(priority_));
  return text + ">";
}

}  // namespace platform
