#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/geometry/UIColor.h"
#include "platform/uikit/touch/TouchSurface.h"

namespace platform {

class WindowHost;

enum class UIViewContentMode { scaleToFill, scaleAspectFit, scaleAspectFill, center, top, bottom, left, right, redraw };

/// Which distances stretch when the superview is resized; flags.
struct UIViewAutoresizing {
  static constexpr unsigned none = 0;
  static constexpr unsigned flexibleLeftMargin = 1;
  static constexpr unsigned flexibleWidth = 2;
  static constexpr unsigned flexibleRightMargin = 4;
  static constexpr unsigned flexibleTopMargin = 8;
  static constexpr unsigned flexibleHeight = 16;
  static constexpr unsigned flexibleBottomMargin = 32;
};

enum class UIViewAnimationCurve { easeInOut, easeIn, easeOut, linear };

enum class UILayoutAxis { horizontal, vertical };

using UILayoutPriority = float;
inline constexpr UILayoutPriority UILayoutPriorityRequired = 1000;
inline constexpr UILayoutPriority UILayoutPriorityDefaultHigh = 750;
inline constexpr UILayoutPriority UILayoutPriorityDefaultLow = 250;
inline constexpr UILayoutPriority UILayoutPriorityFittingSizeLevel = 50;

/// The value of an intrinsic size's side that the view has no opinion about.
inline constexpr double UIViewNoIntrinsicMetric = -1;

/// A rectangle of the screen: it draws, lays out its subviews, takes touches. Owned by its superview; its layer is its
/// own. Members that reading a screen needs are virtual, so that a view can stand for something that is not of this
/// platform. Thread: main. Units: points, y grows downwards.
class UIView : public Object<UIView, TouchSurface> {
 public:
  static constexpr bool usesObjectPool = true;
  /// Called by make<T>: a class that overrides nothing of what a walk asks need not be asked.
  template <class T>
  void madeAs() {
    if constexpr (requires {
                    { &T::accessibilityIdentifier } -> std::same_as<std::optional<std::string> (UIView::*)() const>;
                    { &T::subviews } -> std::same_as<const std::vector<Ref<UIView>>& (UIView::*)() const>;
                    { &T::nextResponder } -> std::same_as<Ref<UIResponder> (UIView::*)()>;
                  }) {
      namesBelow_ &= ~answersForItself;
    }
  }
  UIView();
  ~UIView() override;
  void init() { initWithFrame(CGRect{}); }
  void init(CGRect frame) { initWithFrame(frame); }
  /// The designated initialiser: subclasses call the base first, then build their subviews.
  virtual void initWithFrame(CGRect frame);
  static void exportMethods(MethodTable<UIView>& table);

  // ---- Geometry
  /// Undefined once a transform is set: use bounds and center then.
  virtual CGRect frame() const;
  virtual void setFrame(CGRect frame);
  virtual CGRect bounds() const;
  virtual void setBounds(CGRect bounds);
  CGPoint center() const;
  void setCenter(CGPoint center);
  CGAffineTransform transform() const;
  void setTransform(const CGAffineTransform& transform);
  /// Between this view and another, or the window's coordinates for none. Between two windows by way of the screen on
  /// which both stand; other trees count as standing on the same origin.
  CGPoint convertPoint(CGPoint point, const UIView* to) const;
  CGPoint convertPointFrom(CGPoint point, const UIView* from) const;
  virtual CGRect convertRect(CGRect rect, const UIView* to) const;
  CGRect convertRectFrom(CGRect rect, const UIView* from) const;
  unsigned autoresizingMask() const;
  void setAutoresizingMask(unsigned mask);
  virtual CGSize sizeThatFits(CGSize size) const;
  void sizeToFit();
  UIEdgeInsets safeAreaInsets() const;
  virtual void safeAreaInsetsDidChange() {}
  /// What the subviews inherit; a scroll view, which spends the safe area on its content insets, gives none.
  virtual UIEdgeInsets safeAreaInsetsForSubviews() const { return safeAreaInsets(); }
  /// Works the safe area out anew, here and below where it changes. Geometry and tree changes do it by themselves; a
  /// controller does it when its additional insets change.
  void updateSafeAreaInsets();
  /// True for a window: its frame says where on the screen the tree stands.
  virtual bool standsOnScreen() const { return false; }
  UIEdgeInsets layoutMargins() const;
  void setLayoutMargins(UIEdgeInsets margins);

  // ---- Tree
  virtual Ref<UIView> superview() const;
  /// Back to front.
  virtual const std::vector<Ref<UIView>>& subviews() const;
  /// Grows whenever a view comes into a superview, changes its place there or leaves it, and whenever a controller
  /// comes to a view or leaves it, anywhere: plain pointers into a tree whose root is held are good as long as it stays
  /// the same.
  static std::uint64_t hierarchyChanges() { return hierarchyChanges_; }
  /// False when the class overrides its name, its subviews or its next responder: then every answer may differ from
  /// the one before.
  bool answersAsItIs() const { return (namesBelow_ & answersForItself) == 0; }
  /// Tells this view from every other of the process, also from one that stood at its address before.
  std::uint64_t serialNumber() const { return serialNumber_; }
  virtual Ref<UIWindow> window() const;
  /// The window as a view, for the rooms below windows.
  Ref<UIView> windowView() const;
  void addSubview(const Ref<UIView>& view);
  void insertSubview(const Ref<UIView>& view, std::size_t index);
  void insertSubviewBelow(const Ref<UIView>& view, const Ref<UIView>& sibling);
  void insertSubviewAbove(const Ref<UIView>& view, const Ref<UIView>& sibling);
  void bringSubviewToFront(const Ref<UIView>& view);
  void sendSubviewToBack(const Ref<UIView>& view);
  /// Among its siblings a view lies in front of all of a lower level, wherever they are inserted and however late they
  /// come: so the place asked for above counts among those of the same level. 0 unless it is set. A window's subviews
  /// that must be reached above whatever is presented in it have a higher one.
  int frontLevel() const;
  void setFrontLevel(int level);
  void removeFromSuperview();
  bool isDescendantOfView(const UIView* view) const;
  /// Depth first, this view first; none when no view has the tag.
  Ref<UIView> viewWithTag(std::int64_t tag);
  std::int64_t tag() const;
  void setTag(std::int64_t tag);
  virtual void willMoveToSuperview(const Ref<UIView>& superview);
  virtual void didMoveToSuperview() {}
  virtual void didAddSubview(const Ref<UIView>& subview);
  virtual void willRemoveSubview(const Ref<UIView>& subview);
  virtual void willMoveToWindow(const Ref<UIWindow>& window);
  virtual void didMoveToWindow() {}

  // ---- Look
  virtual std::optional<UIColor> backgroundColor() const;
  virtual void setBackgroundColor(std::optional<UIColor> color);
  virtual double alpha() const;
  virtual void setAlpha(double alpha);
  virtual bool isHidden() const;
  virtual void setHidden(bool hidden);
  /// After a subview was hidden or shown.
  virtual void subviewVisibilityDidChange() {}
  /// Private to the person in front of the screen: pictures for others (screenshots, videos, what
  /// `snapshotViewAfterScreenUpdates` makes of it in them) are black where the view and its subviews are, and what lies
  /// over it there is not seen in them either.
  bool isHiddenFromCapture() const;
  void setHiddenFromCapture(bool hidden);
  bool clipsToBounds() const;
  void setClipsToBounds(bool clips);
  /// Its own or the nearest superview's, at last the system blue.
  UIColor tintColor() const;
  void setTintColor(std::optional<UIColor> color);
  virtual void tintColorDidChange();
  UIViewContentMode contentMode() const;
  virtual void setContentMode(UIViewContentMode mode);
  const Ref<CALayer>& layer() const;
  /// Draws into the bounds; called when the view was marked by setNeedsDisplay. The plain view draws nothing.
  virtual void draw(CGRect rect, CGContext& context);
  /// True for a subclass that draws; its contents are then painted by draw().
  virtual bool drawsItself() const { return false; }
  void setNeedsDisplay();

  // ---- Layout (constraints: see platform/uikit/constraints)
  void setNeedsLayout();
  void layoutIfNeeded();
  /// Places the subviews; the base does what autoresizing and constraints say.
  virtual void layoutSubviews();
  /// The size of the content by itself (of text on one line), UIViewNoIntrinsicMetric where there is none.
  virtual CGSize intrinsicContentSize() const;
  /// The height of content that wraps, at a width; none when the intrinsic height holds for every width. A view that
  /// tells one is laid out by constraints in two steps: first its width, then this height.
  virtual std::optional<double> intrinsicHeightForWidth(double width) const;
  void invalidateIntrinsicContentSize();
  /// True for a view that scrolls: constraints from inside to its edges mean those of its content, whose size they
  /// then decide.
  virtual bool sizesContentByConstraints() const { return false; }
  virtual void setContentSizeFromConstraints(CGSize) {}
  bool translatesAutoresizingMaskIntoConstraints() const;
  void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
  UILayoutPriority contentHuggingPriority(UILayoutAxis axis) const;
  void setContentHuggingPriority(UILayoutPriority priority, UILayoutAxis axis);
  UILayoutPriority contentCompressionResistancePriority(UILayoutAxis axis) const;
  void setContentCompressionResistancePriority(UILayoutPriority priority, UILayoutAxis axis);
  virtual void updateConstraints();
  void setNeedsUpdateConstraints();
  CGSize systemLayoutSizeFitting(CGSize targetSize, UILayoutPriority horizontal = UILayoutPriorityFittingSizeLevel,
                                 UILayoutPriority vertical = UILayoutPriorityFittingSizeLevel);
  std::vector<Ref<NSLayoutConstraint>> constraints() const;
  void addConstraint(const Ref<NSLayoutConstraint>& constraint);
  void removeConstraint(const Ref<NSLayoutConstraint>& constraint);
  NSLayoutXAxisAnchor leftAnchor();
  NSLayoutXAxisAnchor rightAnchor();
  NSLayoutXAxisAnchor leadingAnchor();
  NSLayoutXAxisAnchor trailingAnchor();
  NSLayoutXAxisAnchor centerXAnchor();
  NSLayoutYAxisAnchor topAnchor();
  NSLayoutYAxisAnchor bottomAnchor();
  NSLayoutYAxisAnchor centerYAnchor();
  NSLayoutYAxisAnchor firstBaselineAnchor();
  NSLayoutYAxisAnchor lastBaselineAnchor();
  NSLayoutDimension widthAnchor();
  NSLayoutDimension heightAnchor();
  Ref<UILayoutGuide> safeAreaLayoutGuide();
  Ref<UILayoutGuide> layoutMarginsGuide();
  void addLayoutGuide(const Ref<UILayoutGuide>& guide);
  void removeLayoutGuide(const Ref<UILayoutGuide>& guide);
  /// Distances of the first and last baseline from the top, for baseline anchors; the height for a view without text.
  virtual double firstBaselineOffset() const;
  virtual double lastBaselineOffset() const;

  // ---- Touches
  virtual bool isUserInteractionEnabled() const;
  virtual void setUserInteractionEnabled(bool enabled);
  bool isMultipleTouchEnabled() const override;
  void setMultipleTouchEnabled(bool enabled);
  /// The front-most descendant that takes a touch there, or none. Hidden, disabled and nearly clear views take none.
  virtual Ref<UIView> hitTest(CGPoint point, const Ref<UIEvent>& event);
  virtual bool pointInside(CGPoint point, const Ref<UIEvent>& event) const;
  void addGestureRecognizer(const Ref<UIGestureRecognizer>& recognizer);
  void removeGestureRecognizer(const Ref<UIGestureRecognizer>& recognizer);
  const std::vector<Ref<UIGestureRecognizer>>& gestureRecognizers() const override;
  /// Asked of the recogniser's view and of every view between it and the one that was touched. A view that claims taps
  /// answers no to a tap of one of its superviews.
  bool gestureRecognizerShouldBegin(const Ref<UIGestureRecognizer>& recognizer) override;
  /// Whether a tap is the view's own: a control's, or an editable text's.
  virtual bool claimsTaps() const { return false; }
  /// Ends editing in this view or below; true when no first responder is left in it.
  bool endEditing(bool force);

  // ---- Names for people who cannot see it, and for the assistant
  virtual std::optional<std::string> accessibilityIdentifier() const;
  virtual void setAccessibilityIdentifier(std::optional<std::string> identifier);
  std::optional<std::string> accessibilityLabel() const;
  void setAccessibilityLabel(std::optional<std::string> label);

  // ---- Responder
  Ref<UIResponder> nextResponder() override;
  /// Never in no window.
  bool becomeFirstResponder() override;
  /// The controller whose root view this is, or none.
  Ref<UIViewController> viewController() const;  // with the controllers

  /// A view of this size that shows what this one shows now, and stays so. With `afterScreenUpdates` what waits to be
  /// laid out is laid out before.
  Ref<UIView> snapshotViewAfterScreenUpdates(bool afterScreenUpdates);

  // ---- For touches
  Ref<TouchSurface> surfaceAt(CGPoint point, const Ref<UIEvent>& event) final { return hitTest(point, event); }
  Ref<TouchSurface> surfaceAround() const final { return superview(); }
  CGPoint pointFromWindow(CGPoint point, const TouchSurface* window) const final;
  CGPoint pointToWindow(CGPoint point) const final { return convertPoint(point, nullptr); }

  // ---- Animation of frame, bounds, center, transform, alpha, colours and what else layers animate. What is set inside
  // the block is so at once and shows on its way. The completion comes through the main queue, also when nothing moved,
  // and is told whether everything ran to its end. A block inside a block takes the outer one's time and pace.
  using Completion = std::function<void(bool finished)>;
  static void animateWithDuration(double seconds, std::function<void()> animations, Completion completion = nullptr);
  static void animateWithDuration(double seconds, double delay, UIViewAnimationCurve curve,
                                  std::function<void()> animations, Completion completion = nullptr);
  /// A spring: damping ratio 0..1 and the initial velocity in multiples of the distance a second.
  static void animateWithSpring(double seconds, double delay, double damping, double velocity,
                                std::function<void()> animations, Completion completion = nullptr);
  static void performWithoutAnimation(const std::function<void()>& actions);
  /// Blocks of animation that `actions` begin take this time and pace, whatever theirs is: for what moves along with
  /// something. What is changed outside of a block changes at once, as ever.
  static void performAlongside(double seconds, UIViewAnimationCurve curve, const std::function<void()>& actions);
  /// Seconds of the block of animation that is being run; 0 outside of one.
  static double inheritedAnimationDuration();
  static bool areAnimationsEnabled();
  static void setAnimationsEnabled(bool enabled);

 private:
  friend class NamedViewWalk;
  friend class UIViewController;
  friend class UIWindow;
  friend class ViewLayout;
  void moveInto(UIView& superview, std::size_t index);
  std::size_t placeByLevel(std::size_t index, int level) const;
  void detach();
  void enterWindow(WindowHost* window);
  void announceWindow(const Ref<UIWindow>& window);
  void leaveWindow();
  void inheritTintColor();
  void spreadTintColor();
  void forgetTintColor();
  void changeGeometry(CGRect bounds, CGPoint center);
  struct Placement;
  Placement placement() const;
  static CGAffineTransform between(const Placement& from, const Placement& to);
  bool takeSafeArea();
  static void hierarchyChanged() { ++hierarchyChanges_; }
  inline static std::uint64_t hierarchyChanges_ = 0;

  // Which subviews may hold a name, themselves or below: the subviews fall into `nameGroups` groups of one size, one
  // bit each. A set bit may be wrong, a clear one never.
  static constexpr int nameGroups = 62;
  static constexpr std::uint64_t namesUncertain = std::uint64_t{1} << 62;    ///< the bits are to be worked out anew
  static constexpr std::uint64_t answersForItself = std::uint64_t{1} << 63;  ///< see answersAsItIs; nothing is known
  bool mayHoldName() const { return accessibilityIdentifier_ || namesBelow_ != 0; }
  /// The first subview that may hold a name; none also while nothing is certain.
  const UIView* firstNamed() const { return namesBelow_ != 0 && namesBelow_ < namesUncertain ? firstNamed_ : nullptr; }
  void noteNameHere();
  void noteSubviewsChanged();
  void findNamesBelow();

  // What a walk through a screen asks of every view, together in the object's first two cache lines: a screen may have
  // thousands.
  std::unique_ptr<std::string> accessibilityIdentifier_;  // none for most views
  std::uint64_t namesBelow_ = answersForItself;
  UIView* firstNamed_ = nullptr;  // of those with a bit set in namesBelow_, as long as that is certain
  // The parent owns its children, and clears their way up when it lets a child go or dies itself.
  std::vector<Ref<UIView>> subviews_;
  UIView* superview_ = nullptr;
  CALayer* layer_;  // geometry and look: bounds, position, transform, opacity, hidden, background; the storage holds it
  const std::uint64_t serialNumber_;

  struct Storage;
  std::unique_ptr<Storage>
      storage_;  // all else; platform/uikit/views/UIViewStorage.h, shared by the sources of this class
};

}  // namespace platform
