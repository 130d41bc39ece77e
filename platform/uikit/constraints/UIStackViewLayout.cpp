#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/views/UIStackView.h"

// The layout half of a stack view: the constraints that arrange its views.

namespace platform {

namespace {

using Attribute = NSLayoutAttribute;
using Relation = NSLayoutRelation;

/// The attributes along and across an axis.
struct Sides {
  Attribute start;
  Attribute end;
  Attribute center;
  Attribute length;
};

Sides sidesAlong(UILayoutAxis axis) {
  if (axis == UILayoutAxis::horizontal) {
    return {Attribute::leading, Attribute::trailing, Attribute::centerX, Attribute::width};
  }
  return {Attribute::top, Attribute::bottom, Attribute::centerY, Attribute::height};
}

UILayoutAxis crossing(UILayoutAxis axis) {
  return axis == UILayoutAxis::horizontal ? UILayoutAxis::vertical : UILayoutAxis::horizontal;
}

Ref<NSLayoutConstraint> relate(const Ref<NSObject>& a, Attribute first, Relation relation, const Ref<NSObject>& b,
                               Attribute second, double constant, float priority = UILayoutPriorityRequired,
                               double multiplier = 1) {
  const Ref<NSLayoutConstraint> constraint =
      NSLayoutConstraint::constraintWithItem(a, first, relation, b, second, multiplier, constant);
  constraint->setPriority(priority);
  return constraint;
}

constexpr float almostRequired = 999;
/// Keeps the stack from being larger than its views need, when nothing else says how large it is.
constexpr float shrinking = 40;

}  // namespace

void UIStackView::updateConstraints() {
  Super::updateConstraints();
  if (!stale_ && builtFor_ == hiddenStates()) return;
  stale_ = false;
  builtFor_ = hiddenStates();
  NSLayoutConstraint::deactivateConstraints(made_);
  made_.clear();
  for (const Ref<UILayoutGuide>& guide : guides_) removeLayoutGuide(guide);
  guides_.clear();
  const std::vector<Ref<UIView>> views = visible();
  constrainAlong(views);
  constrainAcross(views);
  NSLayoutConstraint::activateConstraints(made_);
}

void UIStackView::constrainAlong(const std::vector<Ref<UIView>>& views) {
  if (views.empty()) return;
  const Sides sides = sidesAlong(axis_);
  const Ref<NSObject> room = usesMargins_ ? Ref<NSObject>(layoutMarginsGuide()) : Ref<NSObject>(self());
  made_.push_back(relate(views.front(), sides.start, Relation::equal, room, sides.start, 0));
  made_.push_back(relate(views.back(), sides.end, Relation::equal, room, sides.end, 0, almostRequired));
  Ref<UILayoutGuide> firstGap;
  for (std::size_t i = 1; i < views.size(); ++i) {
    const Ref<UIView>& before = views[i - 1];
    const auto custom = customSpacings_.find(before.get());
    const double gap = custom == customSpacings_.end() ? spacing_ : custom->second;
    const bool spread = distribution_ == UIStackViewDistribution::equalSpacing ||
                        distribution_ == UIStackViewDistribution::equalCentering;
    made_.push_back(
        relate(views[i], sides.start, spread ? Relation::greaterThanOrEqual : Relation::equal, before, sides.end, gap));
    if (distribution_ == UIStackViewDistribution::fillEqually) {
      made_.push_back(relate(views[i], sides.length, Relation::equal, views.front(), sides.length, 0, almostRequired));
    }
    if (distribution_ == UIStackViewDistribution::fillProportionally) {
      const auto lengthOf = [this](const Ref<UIView>& view) {
        const CGSize size = view->intrinsicContentSize();
        return axis_ == UILayoutAxis::horizontal ? size.width : size.height;
      };
      const double first = lengthOf(views.front());
      const double own = lengthOf(views[i]);
      if (first > 0 && own > 0) {
        made_.push_back(relate(views[i], sides.length, Relation::equal, views.front(), sides.length, 0, almostRequired,
                               own / first));
      }
    }
    if (!spread) continue;
    // The gaps are guides of one length: from edge to edge, or from middle to middle.
    const bool centers = distribution_ == UIStackViewDistribution::equalCentering;
    const Ref<UILayoutGuide> guide = make<UILayoutGuide>();
    addLayoutGuide(guide);
    guides_.push_back(guide);
    made_.push_back(relate(guide, sides.start, Relation::equal, before, centers ? sides.center : sides.end, 0));
    made_.push_back(relate(guide, sides.end, Relation::equal, views[i], centers ? sides.center : sides.start, 0));
    if (firstGap) {
      made_.push_back(relate(guide, sides.length, Relation::equal, firstGap, sides.length, 0, centers ? 149 : 999));
    } else {
      firstGap = guide;
    }
  }
}

void UIStackView::constrainAcross(const std::vector<Ref<UIView>>& views) {
  const Sides sides = sidesAlong(crossing(axis_));
  const Ref<NSObject> room = usesMargins_ ? Ref<NSObject>(layoutMarginsGuide()) : Ref<NSObject>(self());
  for (const Ref<UIView>& view : views) {
    const bool fills = alignment_ == UIStackViewAlignment::fill;
    const bool atStart = fills || alignment_ == UIStackViewAlignment::leading;
    const bool atEnd = fills || alignment_ == UIStackViewAlignment::trailing;
    made_.push_back(
        relate(view, sides.start, atStart ? Relation::equal : Relation::greaterThanOrEqual, room, sides.start, 0));
    made_.push_back(relate(view, sides.end, atEnd ? Relation::equal : Relation::lessThanOrEqual, room, sides.end, 0,
                           almostRequired));
    if (alignment_ == UIStackViewAlignment::center) {
      made_.push_back(relate(view, sides.center, Relation::equal, room, sides.center, 0));
    }
  }
  if (!views.empty() && alignment_ != UIStackViewAlignment::fill) {
    made_.push_back(relate(self(), sides.length, Relation::equal, nullptr, Attribute::notAnAttribute, 0, shrinking));
  }
}

}  // namespace platform
