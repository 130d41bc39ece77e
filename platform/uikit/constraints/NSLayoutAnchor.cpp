#include "platform/uikit/constraints/NSLayoutAnchor.h"

namespace platform {

Ref<NSLayoutConstraint> NSLayoutAnchor::make(NSLayoutRelation relation, const NSLayoutAnchor& other, double multiplier,
                                             double constant) const {
  return NSLayoutConstraint::constraintWithItem(item(), attribute_, relation, other.item(), other.attribute(),
                                                multiplier, constant);
}

Ref<NSLayoutConstraint> NSLayoutAnchor::make(NSLayoutRelation relation, double constant) const {
  return NSLayoutConstraint::constraintWithItem(item(), attribute_, relation, nullptr,
                                                NSLayoutAttribute::notAnAttribute, 1, constant);
}

}  // namespace platform
