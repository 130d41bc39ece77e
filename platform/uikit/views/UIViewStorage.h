#pragma once

// What a UIView holds. Included by the sources of UIView (UIView*.cpp), by UIWindow.cpp, UIViewController.cpp and by
// ViewLayout alone.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/animation/CALayer.h"
#include "platform/uikit/views/RootViewHost.h"
#include "platform/uikit/views/UIView.h"
#include "platform/uikit/views/WindowHost.h"

namespace platform {

class ViewLayout;

/// The state of a view's layout half. Written by UIViewLayout.cpp and ViewLayout alone.
struct UIViewLayoutStorage {
  unsigned autoresizingMask = UIViewAutoresizing::none;
  UIEdgeInsets layoutMargins{8, 8, 8, 8};
  UILayoutPriority hugging[2] = {UILayoutPriorityDefaultLow, UILayoutPriorityDefaultLow};
  UILayoutPriority compressionResistance[2] = {UILayoutPriorityDefaultHigh, UILayoutPriorityDefaultHigh};
  bool translatesAutoresizingMask = true;
  /// This view wants layoutSubviews().
  bool needsLayout = true;
  /// Some view below wants it: the layout pass descends only where this or needsLayout is set.
  bool descendantNeedsLayout = false;
  /// The same for updateConstraints().
  bool needsUpdateConstraints = true;
  bool descendantNeedsUpdateConstraints = false;
  /// This view or one below holds constraints, or once did.
  bool subtreeHasConstraints = false;
  /// Constraints, guides and, on the root of a tree, the solver. Made when first needed.
  std::shared_ptr<ViewLayout> state;
};

struct UIView::Storage {
  const Ref<CALayer> layer = CALayer::layer();
  WindowHost* window = nullptr;
  Weak<RootViewHost> host;  ///< whose root view this is; set by the controller
  std::unique_ptr<CALayerDelegate> drawing;
  std::optional<UIColor> tintColor;
  UIViewContentMode contentMode = UIViewContentMode::scaleToFill;
  int frontLevel = 0;

  // ---- Touches
  std::vector<Ref<UIGestureRecognizer>> gestureRecognizers;
  bool userInteractionEnabled = true;
  bool multipleTouchEnabled = false;

  // ---- Names
  std::optional<std::string> accessibilityLabel;
  std::int64_t tag = 0;

  // ---- Safe area, as last told to safeAreaInsetsDidChange
  UIEdgeInsets safeArea;

  UIViewLayoutStorage layout;
};

}  // namespace platform
