#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Ref.h"
#include "platform/solver/LayoutSolver.h"
#include "platform/uikit/Forward.h"
#include "platform/uikit/constraints/LayoutItem.h"
#include "platform/uikit/constraints/NSLayoutAttribute.h"

namespace platform {

/// Solves the constraints of one tree of views. It knows the views that constraints mention and the ones between them;
/// the rest of the tree is none of its business. A frame is four unknowns in the coordinates of the superview. Views
/// that translate their autoresizing mask have theirs given by equations; the others have their content's size as
/// wishes and get what the solver finds. Seen from inside, the far edges of a scroll view are those of its content.
///
/// Changes are only noted; update() solves them and marks the superviews of what moved for layout.
///
/// Owner: ViewLayout of the tree's root, or the call of systemLayoutSizeFitting. Thread: main.
/// Failure: of required constraints that contradict one another the one that was activated last yields (it stays as
/// close to being met as the others allow); what views themselves require never does. That depends on what is active
/// and in which order it was activated, not on when layout ran. When one begins to yield, one line of standard error
/// says so.
class LayoutEngine {
 public:
  /// Wishes for the root's size in place of its frame, by axis.
  struct Fitting {
    double target[2];
    double priority[2];
  };
  explicit LayoutEngine(UIView& root, std::optional<Fitting> fitting = std::nullopt);
  ~LayoutEngine();
  LayoutEngine(const LayoutEngine&) = delete;
  LayoutEngine& operator=(const LayoutEngine&) = delete;

  // ---- What changed
  /// Takes over every constraint held by the view and below.
  void adopt(UIView& subtree);
  /// Forgets the subtree, its constraints and its unknowns.
  void drop(UIView& subtree);
  void dropGuide(UILayoutGuide& guide);
  void addConstraint(const Ref<NSLayoutConstraint>& constraint);
  void removeConstraint(const NSLayoutConstraint& constraint);
  void constantDidChange(const NSLayoutConstraint& constraint);
  void priorityDidChange(const NSLayoutConstraint& constraint);
  void frameDidChange(const UIView& view);
  void contentSizeDidChange(const UIView& view);
  void insetsDidChange(const UIView& view);
  void translationDidChange(const UIView& view);

  // ---- Solving
  bool isDirty() const { return dirty_; }
  /// Solves what changed, measures wrapped text at the widths that come out, and solves again.
  void update();
  /// Frame of a view or guide as of the last update, its edges on whole pixels; none when no constraint speaks of it.
  std::optional<CGRect> frameOf(const NSObject& item) const;
  /// The size of what scrolls in the view, when constraints decide it.
  std::optional<CGSize> contentSizeOf(const UIView& view) const;
  /// The root's size, on whole pixels, never smaller than solved.
  CGSize fittingSize() const;
  /// Equal but for the dust of adding and subtracting.
  static bool isSame(const CGRect& a, const CGRect& b);

  const LayoutSolver& solver() const { return solver_; }

 private:
  struct Entry {
    Ref<NSLayoutConstraint> constraint;
    LayoutConstraintId id = noLayoutConstraint;
    bool isPending = true;
    bool reads = false;  ///< numbers that may change: see LayoutItem
  };
  enum Which : std::size_t { x, y, width, height };

  // Items and expressions
  LayoutItem* find(const NSObject& key) const;
  LayoutItem& item(UIView& view);
  LayoutItem& item(UILayoutGuide& guide);
  LayoutItem& makeItem(const NSObject& key, UIView& view, UILayoutGuide* guide);
  void dropItem(const NSObject& key);
  void markDirty(LayoutItem& item);
  LayoutVariable variable(LayoutItem& item, std::size_t which);
  LinearExpression positionIn(LayoutItem& item, std::size_t axis, const UIView& ancestor, bool& reads);
  LinearExpression length(LayoutItem& item, std::size_t axis, bool ofContent);
  LinearExpression expression(const Ref<NSObject>& object, NSLayoutAttribute attribute, const UIView& ancestor,
                              bool& reads);
  LinearConstraint equation(Entry& entry);

  // The engine's own constraints
  void refreshFrame(LayoutItem& item, std::size_t which);
  void refreshInsets(LayoutItem& item);
  void refreshContent(LayoutItem& item);
  void setContentLength(LayoutItem& item, std::size_t axis, double length);
  void setOwn(LayoutConstraintId& id, const LinearConstraint& constraint, bool hasSameShape);
  void removeOwn(LayoutConstraintId& id);

  // The host's constraints
  void install(Entry& entry);
  void uninstall(Entry& entry);
  void queue(Entry& entry);
  void refreshConstant(Entry& entry);
  void reportConflicts();
  void setOwner(LayoutConstraintId id, Entry* owner);

  // The steps of update()
  void flush();
  void installPending();
  bool refine();
  bool keepSizesPositive();
  bool measureWrappedContent();
  bool readAgain();
  void publish();
  CGRect roundedFrame(const LayoutItem& item) const;

  UIView& root_;
  std::optional<Fitting> fitting_;
  LayoutSolver solver_;
  std::vector<std::unique_ptr<LayoutItem>> items_;
  std::unordered_map<const NSObject*, LayoutItem*> itemsByKey_;
  std::unordered_map<const NSLayoutConstraint*, std::unique_ptr<Entry>> entries_;
  std::vector<Entry*> owners_;  // by constraint id; none for the engine's own
  std::vector<Entry*> pending_;
  std::vector<const NSLayoutConstraint*> changedConstants_;
  std::vector<const NSObject*> dirtyItems_;
  std::vector<Entry*> readers_;  // those that read
  double pixelsPerPoint_;
  bool dirty_ = true;
  bool readsAreStale_ = false;
  bool updating_ = false;
};

}  // namespace platform
