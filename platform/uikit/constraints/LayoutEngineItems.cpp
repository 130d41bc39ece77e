#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/uikit/constraints/AutoresizingMask.h"
#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIViewStorage.h"

// How views and guides become unknowns, and constraints equations among them.

namespace platform {

namespace {

/// The frame of a root that does not translate its mask is a wish that any other may override.
constexpr double rootWish = 1;

/// Wishes that come from content rank just behind those that the host wrote at the same priority, so that a tie between
/// a limit and the text is settled for the limit.
double contentPriority(UILayoutPriority priority) {
  return priority >= UILayoutPriorityRequired ? 1000 : static_cast<double>(priority) - 0.001;
}

double finite(double value) { return std::isfinite(value) ? value : 0; }

}  // namespace

// ---- Items

LayoutItem* LayoutEngine::find(const NSObject& key) const {
  const auto found = itemsByKey_.find(&key);
  return found == itemsByKey_.end() ? nullptr : found->second;
}

LayoutItem& LayoutEngine::item(UIView& view) {
  if (LayoutItem* const known = find(view)) return *known;
  LayoutItem& made = makeItem(view, view, nullptr);
  const bool isRoot = &view == &root_;
  made.isFramed = isRoot ? !fitting_ : view.translatesAutoresizingMaskIntoConstraints();
  made.contentIsDirty = !made.isFramed;
  if (isRoot && fitting_) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      LinearExpression wish(variable(made, width + axis));
      wish.constant = -finite(fitting_->target[axis]);
      if (fitting_->priority[axis] <= 0) continue;
      setOwn(made.frame[width + axis], {wish, NSLayoutRelation::equal, fitting_->priority[axis]}, false);
    }
  }
  // Subviews whose mask follows this view can now follow its unknowns.
  if (!made.isFramed) {
    for (const Ref<UIView>& subview : view.subviews()) {
      LayoutItem* const known = find(*subview);
      if (known && known->isFramed) markDirty(*known);
    }
  }
  return made;
}

LayoutItem& LayoutEngine::item(UILayoutGuide& guide) {
  if (LayoutItem* const known = find(guide)) return *known;
  return makeItem(guide, *guide.owningView(), &guide);
}

LayoutItem& LayoutEngine::makeItem(const NSObject& key, UIView& view, UILayoutGuide* guide) {
  auto made = std::make_unique<LayoutItem>();
  made->key = &key;
  made->view = &view;
  made->guide = guide;
  LayoutItem& item = *made;
  item.index = items_.size();
  items_.push_back(std::move(made));
  itemsByKey_.emplace(&key, &item);
  markDirty(item);
  return item;
}

void LayoutEngine::markDirty(LayoutItem& item) {
  dirty_ = true;
  if (std::exchange(item.isDirty, true)) return;
  dirtyItems_.push_back(item.key);
}

void LayoutEngine::dropItem(const NSObject& key) {
  LayoutItem* const known = find(key);
  if (!known) return;
  LayoutItem& item = *known;
  for (LayoutConstraintId& id : item.frame) removeOwn(id);
  for (std::size_t axis = 0; axis < 2; ++axis) {
    removeOwn(item.atLeast[axis]);
    removeOwn(item.atMost[axis]);
    removeOwn(item.positive[axis]);
  }
  // The equations of subviews may still follow this one's size; they are dropped with it, by the same walk.
  if (!item.guide) {
    for (const Ref<UIView>& subview : item.view->subviews()) {
      LayoutItem* const below = find(*subview);
      if (!below) continue;
      for (std::size_t which = x; which <= height; ++which) {
        if (below->share[which] != 0) removeOwn(below->frame[which]);
      }
    }
  }
  for (const LayoutVariable variable : item.variables) {
    if (variable) solver_.removeVariable(variable);
  }
  for (const LayoutVariable variable : item.content) {
    if (variable) solver_.removeVariable(variable);
  }
  if (item.isDirty) std::erase(dirtyItems_, &key);
  itemsByKey_.erase(&key);
  items_.back()->index = item.index;
  std::swap(items_[item.index], items_.back());
  items_.pop_back();
}

LayoutVariable LayoutEngine::variable(LayoutItem& item, std::size_t which) {
  if (!item.variables[which]) {
    item.variables[which] = solver_.addVariable();
    if (item.isFramed) refreshFrame(item, which);
  }
  return item.variables[which];
}

// ---- The engine's own equations

void LayoutEngine::refreshFrame(LayoutItem& item, std::size_t which) {
  if (!item.variables[which]) return;
  UIView& view = *item.view;
  const std::size_t axis = which & 1;
  const bool isSize = which >= width;
  LinearExpression difference(item.variables[which]);
  if (&view == &root_) {
    const CGSize size = view.bounds().size;
    difference.constant = isSize ? -finite(axis == 0 ? size.width : size.height) : 0;
    const double priority = view.translatesAutoresizingMaskIntoConstraints() ? 1000 : rootWish;
    setOwn(item.frame[which], {difference, NSLayoutRelation::equal, priority}, true);
    return;
  }
  const CGRect frame = ViewLayout::plainFrame(view);
  const double before = finite(axis == 0 ? frame.minX() : frame.minY());
  const double size = finite(axis == 0 ? frame.width() : frame.height());
  double part = 0;
  double outer = 0;
  UIView* const superview = ViewLayout::superviewOf(view);
  LayoutItem* const above = superview ? find(*superview) : nullptr;
  if (above && view.autoresizingMask() != UIViewAutoresizing::none) {
    const CGSize superSize = superview->bounds().size;
    outer = finite(axis == 0 ? superSize.width : superSize.height);
    const AutoresizingShare share =
        autoresizingShare(view.autoresizingMask(), axis == 1, before, size, outer - before - size);
    part = isSize ? share.size : share.before;
  }
  if (part != 0) difference.add(LinearExpression(variable(*above, width + axis)), -part);
  difference.constant = part * outer - (isSize ? size : before);
  setOwn(item.frame[which], {difference, NSLayoutRelation::equal, 1000}, std::abs(item.share[which] - part) < 1e-9);
  item.share[which] = part;
}

void LayoutEngine::refreshInsets(LayoutItem& guide) {
  const UIEdgeInsets insets =
      ViewLayout::insetsOf(*guide.view, guide.guide->source() == UILayoutGuide::Source::safeArea);
  LayoutItem& owner = item(*guide.view);
  const double near[2] = {insets.left, insets.top};
  const double far[2] = {insets.right, insets.bottom};
  for (std::size_t axis = 0; axis < 2; ++axis) {
    LinearExpression start(variable(guide, x + axis));
    start.constant = -near[axis];
    setOwn(guide.frame[x + axis], {start, NSLayoutRelation::equal, 1000}, true);
    LinearExpression end(variable(guide, width + axis));
    end.add(LinearExpression(variable(owner, width + axis)), -1);
    end.constant = near[axis] + far[axis];
    setOwn(guide.frame[width + axis], {end, NSLayoutRelation::equal, 1000}, true);
  }
}

void LayoutEngine::refreshContent(LayoutItem& item) {
  const UIView& view = *item.view;
  CGSize size = view.intrinsicContentSize();
  const bool knowsWidth = !std::isnan(item.measuredWidth);
  const std::optional<double> wrapped = view.intrinsicHeightForWidth(knowsWidth ? item.measuredWidth : size.width);
  item.wraps = wrapped.has_value();
  if (item.wraps && knowsWidth) size.height = *wrapped;
  if (!item.wraps || !knowsWidth) item.measuredWidth = std::numeric_limits<double>::quiet_NaN();
  setContentLength(item, 0, size.width);
  setContentLength(item, 1, size.height);
}

void LayoutEngine::setContentLength(LayoutItem& item, std::size_t axis, double length) {
  if (!std::isfinite(length) || length < 0) {
    removeOwn(item.atLeast[axis]);
    removeOwn(item.atMost[axis]);
    return;
  }
  const auto which = axis == 0 ? UILayoutAxis::horizontal : UILayoutAxis::vertical;
  const UILayoutPriority resistance = item.view->contentCompressionResistancePriority(which);
  const UILayoutPriority hugging = item.view->contentHuggingPriority(which);
  LinearExpression difference(variable(item, width + axis));
  difference.constant = -length;
  const auto set = [&](LayoutConstraintId& id, float& before, UILayoutPriority now, NSLayoutRelation relation) {
    if (now <= 0) {
      removeOwn(id);
    } else {
      setOwn(id, {difference, relation, contentPriority(now)}, before == now);
    }
    before = now;
  };
  set(item.atLeast[axis], item.atLeastPriority[axis], resistance, NSLayoutRelation::greaterThanOrEqual);
  set(item.atMost[axis], item.atMostPriority[axis], hugging, NSLayoutRelation::lessThanOrEqual);
}

// ---- Expressions

LinearExpression LayoutEngine::positionIn(LayoutItem& start, std::size_t axis, const UIView& ancestor, bool& reads) {
  LinearExpression sum(variable(start, x + axis));
  UIView* at = start.guide ? start.view : ViewLayout::superviewOf(*start.view);
  for (; at != &ancestor; at = ViewLayout::superviewOf(*at)) {
    LayoutItem& between = item(*at);
    sum.add(LinearExpression(variable(between, x + axis)));
    const CGPoint offset = at->bounds().origin;
    sum.constant -= finite(axis == 0 ? offset.x : offset.y);
    between.originIsRead = true;
    between.origin = offset;
    reads = true;
  }
  return sum;
}

LinearExpression LayoutEngine::length(LayoutItem& item, std::size_t axis, bool ofContent) {
  if (!ofContent) return variable(item, width + axis);
  if (!item.content[axis]) item.content[axis] = solver_.addVariable();
  return item.content[axis];
}

LinearExpression LayoutEngine::expression(const Ref<NSObject>& object, NSLayoutAttribute attribute,
                                          const UIView& ancestor, bool& reads) {
  auto* view = dynamic_cast<UIView*>(object.get());
  Ref<UILayoutGuide> guide = view ? nullptr : std::static_pointer_cast<UILayoutGuide>(object);
  if (isMargin(attribute) && view) {
    guide = ViewLayout::marginsGuide(*view);
    view = nullptr;
    attribute = withoutMargin(attribute);
  }
  LayoutItem& subject = guide ? item(*guide) : item(*view);
  using A = NSLayoutAttribute;
  if (attribute == A::width || attribute == A::height) return variable(subject, attribute == A::width ? width : height);

  const std::size_t axis = kindOf(attribute) == LayoutAttributeKind::horizontalPosition ? 0 : 1;
  const bool isSelf = view == &ancestor;
  LinearExpression result = isSelf ? LinearExpression(0) : positionIn(subject, axis, ancestor, reads);
  const auto addLength = [&](double part) {
    result.add(length(subject, axis, isSelf && view->sizesContentByConstraints()), part);
  };
  switch (attribute) {
    case A::right:
    case A::trailing:
    case A::bottom:
      addLength(1);
      break;
    case A::centerX:
    case A::centerY:
      addLength(0.5);
      break;
    case A::firstBaseline:
    case A::lastBaseline: {
      if (!view) {
        addLength(1);
        break;
      }
      const double tall = view->bounds().size.height;
      const double first = view->firstBaselineOffset();
      const bool hangsFromTop = attribute == A::firstBaseline && first != tall;
      if (!hangsFromTop) addLength(1);
      result.constant += finite(hangsFromTop                    ? first
                                : attribute == A::firstBaseline ? 0
                                                                : view->lastBaselineOffset() - tall);
      subject.baselineIsRead = true;
      reads = true;
      break;
    }
    default:
      break;
  }
  return result;
}

LinearConstraint LayoutEngine::equation(Entry& entry) {
  const NSLayoutConstraint& constraint = *entry.constraint;
  const UIView& ancestor = *constraint.holder_;
  bool reads = false;
  LinearExpression difference = expression(constraint.firstItem(), constraint.firstAttribute(), ancestor, reads);
  if (constraint.secondAttribute() != NSLayoutAttribute::notAnAttribute) {
    difference.add(expression(constraint.secondItem(), constraint.secondAttribute(), ancestor, reads),
                   -constraint.multiplier());
  }
  difference.constant -= constraint.constant();
  if (reads && !std::exchange(entry.reads, true)) readers_.push_back(&entry);
  return {std::move(difference), constraint.relation(), static_cast<double>(constraint.priority())};
}

}  // namespace platform
