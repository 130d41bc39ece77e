#pragma once

#include <memory>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace platform {

class UIViewControllerContextTransitioning;

/// One change of the screen that a navigation controller shows: moves the views, by the platform's slide, by a finger
/// or by an animation controller, and tells the navigation controller when it is over. The callbacks before and after
/// are the controller's business. Owned by the controller. Main thread.
class NavigationTransition : public std::enable_shared_from_this<NavigationTransition> {
 public:
  using Screens = std::vector<Ref<UIViewController>>;
  struct Plan {
    Ref<UIViewController> from;  ///< none for the first screen
    Ref<UIViewController> to;    ///< none when the stack has become empty
    UINavigationControllerOperation operation = UINavigationControllerOperation::none;
    bool animated = false;
    Ref<NSObject> animator;  ///< none for the platform's slide
    Screens entering;        ///< told didMoveToParent at the end
    Screens leaving;         ///< told to leave once it is certain
    Screens before;          ///< the stack to go back to when it is cancelled
  };
  /// Seconds that a custom transition may go beyond its stated duration.
  static constexpr double grace = 1.0;

  NavigationTransition(const Ref<UINavigationController>& controller, Plan plan);
  ~NavigationTransition();

  const Plan& plan() const { return plan_; }
  void start();
  /// Ends it now, as completed.
  void finish();

  /// A finger leads: the views stand at the start, then where the fraction (0 to 1) says, then run to either end.
  void startInteractive();
  void moveTo(double fraction);
  void release(bool complete);
  bool isInteractive() const { return interactive_; }
  /// False while a finger may still take it back: who is to leave has not been told so.
  bool isCertain() const { return certain_; }

 private:
  void placeForSlide();
  void slide();
  void runAnimator();
  void end(bool completed);
  void becomeCertain();
  /// The two views and the shade between them as they stand at a fraction of the way.
  void arrange(double fraction);
  void clearSlide();

  Weak<UINavigationController> controller_;
  Plan plan_;
  Ref<UIViewControllerContextTransitioning> context_;
  Ref<UIView> shade_;
  CGAffineTransform fromTransform_;
  CGAffineTransform toTransform_;
  double fraction_ = 0;
  bool slides_ = false;
  bool fades_ = false;  // in place of sliding
  bool interactive_ = false;
  bool certain_ = true;
  bool ended_ = false;
};

}  // namespace platform
