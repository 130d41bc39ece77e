#include "platform/uikit/views/UIStackView.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"

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

void UIStackView::init(std::vector<Ref<UIView>> arrangedSubviews) {
  initWithFrame(CGRect{});
  for (const Ref<UIView>& view : arrangedSubviews) addArrangedSubview(view);
}

void UIStackView::initWithFrame(CGRect frame) { Super::initWithFrame(frame); }

// ---- What is arranged

void UIStackView::addArrangedSubview(const Ref<UIView>& view) { insertArrangedSubview(view, arranged_.size()); }

void UIStackView::insertArrangedSubview(const Ref<UIView>& view, std::size_t index) {
  if (!view || view.get() == this) return;
  const Ref<UIView> keeper = view;  // it may be an entry of the very list that changes
  const auto old = std::find(arranged_.begin(), arranged_.end(), view);
  if (old != arranged_.end()) {
    if (static_cast<std::size_t>(old - arranged_.begin()) < index) --index;
    arranged_.erase(old);
  }
  arranged_.insert(arranged_.begin() + static_cast<std::ptrdiff_t>(std::min(index, arranged_.size())), keeper);
  keeper->setTranslatesAutoresizingMaskIntoConstraints(false);
  if (keeper->superview().get() != this) addSubview(keeper);
  arrangementDidChange();
}

void UIStackView::removeArrangedSubview(const Ref<UIView>& view) {
  const Ref<UIView> keeper = view;
  if (std::erase(arranged_, keeper) == 0) return;
  customSpacings_.erase(keeper.get());
  arrangementDidChange();
}

void UIStackView::willRemoveSubview(const Ref<UIView>& subview) {
  Super::willRemoveSubview(subview);
  removeArrangedSubview(subview);
}

// ---- How

void UIStackView::setAxis(UILayoutAxis axis) {
  axis_ = axis;
  arrangementDidChange();
}
void UIStackView::setDistribution(UIStackViewDistribution distribution) {
  distribution_ = distribution;
  arrangementDidChange();
}
void UIStackView::setAlignment(UIStackViewAlignment alignment) {
  alignment_ = alignment;
  arrangementDidChange();
}
void UIStackView::setSpacing(double spacing) {
  spacing_ = spacing;
  arrangementDidChange();
}
void UIStackView::setCustomSpacing(double spacing, const Ref<UIView>& view) {
  customSpacings_[view.get()] = spacing;
  arrangementDidChange();
}
void UIStackView::setLayoutMarginsRelativeArrangement(bool uses) {
  usesMargins_ = uses;
  arrangementDidChange();
}

void UIStackView::arrangementDidChange() {
  stale_ = true;
  setNeedsUpdateConstraints();
  setNeedsLayout();
}

std::vector<Ref<UIView>> UIStackView::visible() const {
  std::vector<Ref<UIView>> views;
  for (const Ref<UIView>& view : arranged_) {
    if (!view->isHidden()) views.push_back(view);
  }
  return views;
}

std::vector<bool> UIStackView::hiddenStates() const {
  std::vector<bool> states;
  for (const Ref<UIView>& view : arranged_) states.push_back(view->isHidden());
  return states;
}

// ---- The constraints

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

void UIStackView::layoutSubviews() {
  if (builtFor_ != hiddenStates()) arrangementDidChange();
  Super::layoutSubviews();
}

}  // namespace platform
