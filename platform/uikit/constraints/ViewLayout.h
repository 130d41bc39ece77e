#pragma once

#include <memory>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

class LayoutEngine;
struct UIViewLayoutStorage;

/// What layout keeps for one view besides plain flags: the constraints that it holds as the nearest common ancestor of
/// their items, its guides and, on the root of a tree, the engine that solves the whole tree.
///
/// The static members are the hooks by which the other half of UIView (tree, geometry) tells the layout half what
/// happened, and the passes themselves. Owner: the view's storage, made when first needed. Thread: main.
class ViewLayout {
 public:
  ViewLayout();
  ~ViewLayout();
  ViewLayout(const ViewLayout&) = delete;
  ViewLayout& operator=(const ViewLayout&) = delete;

  // ---- Hooks, called by the rest of UIView
  /// After bounds or position of the layer changed, by whomever. Resizes subviews by their masks when the size
  /// changed, and marks what needs a pass.
  static void didChangeGeometry(UIView& view, CGSize oldSize);
  /// Before the view is unlinked from its superview (which is still set): its subtree leaves the engine of the tree and
  /// constraints between inside and outside are deactivated.
  static void willLeaveSuperview(UIView& view);
  /// After the view was linked below its superview: its subtree joins the tree's engine, the superview needs layout.
  static void didEnterSuperview(UIView& view);
  /// After safeAreaInsets of the view changed.
  static void didChangeSafeArea(UIView& view);

  // ---- Passes
  /// Whether the view or anything below it waits for a pass.
  static bool needsPass(const UIView& view);
  /// Runs passes on the view and everything below until nothing waits: updateConstraints, solving, layoutSubviews.
  /// Superviews that wait too are laid out first.
  static void runPasses(UIView& view);
  /// updateConstraints for whoever asked for it, subviews before their superviews.
  static void updateConstraintsBelow(UIView& view);
  /// Gives the subviews the frames that constraints found for them.
  static void placeSubviews(UIView& view);

  // ---- For the rest of this room and the sources of UIView
  static UIViewLayoutStorage& storageOf(const UIView& view);
  static ViewLayout& of(UIView& view);
  static ViewLayout* ifAny(const UIView& view);
  static UIView* superviewOf(const UIView& view);
  static UIView& rootOf(UIView& view);
  static UIView* commonAncestor(UIView& a, UIView& b);
  /// The engine of the view's tree; none while no constraint was solved there.
  static LayoutEngine* engineOf(UIView& view);

  static void markNeedsLayout(UIView& view);
  static void markNeedsUpdateConstraints(UIView& view);
  /// A frame is wanted to run a pass in.
  static void wake(const UIView& view);

  static void hold(UIView& holder, const Ref<NSLayoutConstraint>& constraint);
  static void letGo(UIView& holder, NSLayoutConstraint& constraint);
  static void constantDidChange(UIView& holder, NSLayoutConstraint& constraint);
  static void priorityDidChange(UIView& holder, NSLayoutConstraint& constraint);
  static void addGuide(UIView& view, const Ref<UILayoutGuide>& guide);
  static void removeGuide(UIView& view, const Ref<UILayoutGuide>& guide);
  /// The safe area, or the margins (which keep clear of the safe area too).
  static UIEdgeInsets insetsOf(UIView& view, bool safeArea);
  static Ref<UILayoutGuide> safeAreaGuide(UIView& view);
  static Ref<UILayoutGuide> marginsGuide(UIView& view);

  /// The frame without regard to the transform: from center and the size of bounds.
  static CGRect plainFrame(const UIView& view);
  static void setPlainFrame(UIView& view, CGRect frame);

  const std::vector<Ref<NSLayoutConstraint>>& constraints() const { return constraints_; }
  const std::vector<Ref<UILayoutGuide>>& guides() const { return guides_; }
  /// Those of the safe area and the margins, as far as they were asked for.
  std::vector<Ref<UILayoutGuide>> insetGuides() const;

 private:
  static LayoutEngine* ensureEngine(UIView& root);
  static void layOut(UIView& root, UIView& top);
  static void resizeSubviews(UIView& view, CGSize oldSize);
  Ref<UILayoutGuide>& ownGuide(Ref<UILayoutGuide>& guide, UIView& view, bool safeArea);

  std::vector<Ref<NSLayoutConstraint>> constraints_;
  std::vector<Ref<UILayoutGuide>> guides_;
  Ref<UILayoutGuide> safeAreaGuide_;
  Ref<UILayoutGuide> marginsGuide_;
  std::unique_ptr<LayoutEngine> engine_;
};

}  // namespace platform
