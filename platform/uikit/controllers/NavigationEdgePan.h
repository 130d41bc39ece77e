#pragma once

#include "platform/uikit/touch/UIPanGestureRecognizer.h"

namespace platform {

/// Leads a navigation controller back with a finger that comes from the left edge: target and delegate of its
/// recogniser. Owned by the navigation controller. Main thread.
class NavigationEdgePan : public Object<NavigationEdgePan, NSObject> {
 public:
  static void exportMethods(MethodTable<NavigationEdgePan>& table);
  void init(const Ref<UINavigationController>& controller);

  /// Points from the left edge within which a finger must go down.
  static constexpr double edgeWidth = 24;
  const Ref<UIPanGestureRecognizer>& recognizer() const { return recognizer_; }

 private:
  void panned(Ref<UIGestureRecognizer> recognizer);
  bool shouldBegin(Ref<UIGestureRecognizer> recognizer);
  bool shouldReceiveTouch(Ref<UIGestureRecognizer> recognizer, Ref<UITouch> touch);
  bool othersWait(Ref<UIGestureRecognizer> recognizer, Ref<UIGestureRecognizer> other);

  Weak<UINavigationController> controller_;
  Ref<UIPanGestureRecognizer> recognizer_;
};

}  // namespace platform
