#pragma once

// What a UIView holds. Included by the sources of UIView (UIView*.cpp), by UIWindow.cpp and by ViewLayout alone.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/animation/CALayer.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// The state of a view's layout half. Written by UIViewLayout.cpp and ViewLayout.
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
  bool needsUpdateConstraints = false;
  std::vector<Ref<NSLayoutConstraint>> constraints;
  std::vector<Ref<UILayoutGuide>> guides;
  Ref<UILayoutGuide> safeAreaGuide;
  Ref<UILayoutGuide> marginsGuide;
  /// Whatever ViewLayout keeps for the view (its solver, on the view that hosts one).
  std::shared_ptr<void> engine;
};

struct UIView::Storage {
  // ---- Tree. The parent owns its children and clears these pointers when it lets a child go or dies itself.
  UIView* superview = nullptr;
  UIWindow* window = nullptr;
  std::vector<Ref<UIView>> subviews;
  UIViewController* viewController = nullptr;  ///< whose root view this is; the controller clears it when it dies

  // ---- Geometry and look live in the layer (bounds, position, transform, opacity, hidden, background, clipping).
  Ref<CALayer> layer;
  std::optional<UIColor> tintColor;
  UIViewContentMode contentMode = UIViewContentMode::scaleToFill;

  // ---- Touches
  std::vector<Ref<UIGestureRecognizer>> gestureRecognizers;
  bool userInteractionEnabled = true;
  bool multipleTouchEnabled = false;

  // ---- Names
  std::optional<std::string> accessibilityIdentifier;
  std::optional<std::string> accessibilityLabel;
  std::int64_t tag = 0;

  // ---- Safe area, as last told to safeAreaInsetsDidChange
  UIEdgeInsets safeArea;

  UIViewLayoutStorage layout;
};

}  // namespace platform
