#pragma once

#include <memory>

#include "platform/uikit/FrameTicker.h"
#include "platform/uikit/ScrollIndicators.h"
#include "platform/uikit/ScrollMotion.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UIScrollView.h"

namespace platform {

/// What a UIScrollView holds. Shared by UIScrollView.cpp and UIScrollViewDragging.cpp alone.
struct ScrollState {
  explicit ScrollState(UIScrollView& owner) : view(owner) {}

  UIScrollView& view;
  Weak<NSObject> delegate;
  CGSize contentSize;
  UIEdgeInsets contentInset;
  UIScrollViewContentInsetAdjustmentBehavior adjustment = UIScrollViewContentInsetAdjustmentBehavior::automatic;
  UIEdgeInsets lastAdjustedInset;
  CGSize lastSize;
  bool settingFrame = false;

  bool scrollEnabled = true;
  bool paging = false;
  bool bounces = true;
  bool alwaysBounceVertical = false;
  bool alwaysBounceHorizontal = false;
  bool canCancelContentTouches = true;
  double decelerationRate = 0.998;
  UIScrollViewKeyboardDismissMode keyboardDismissMode = UIScrollViewKeyboardDismissMode::none;
  ScrollIndicators indicators;

  // ---- Dragging
  Ref<UIPanGestureRecognizer> pan;
  bool dragging = false;
  bool held = false;  ///< a finger stopped the gliding content and is still down
  CGPoint dragStart;  ///< the offset that the finger took hold of, rubber bands undone

  // ---- Moving by itself
  enum class Moving { no, gliding, scrolling };
  Moving moving = Moving::no;
  ScrollMotion motionX{0};
  ScrollMotion motionY{0};
  FrameTicker ticker;
  double movedSeconds = 0;

  struct Range {
    double least;
    double most;
  };
  Range rangeX() const;
  Range rangeY() const;
  bool scrollsX() const;
  bool scrollsY() const;
  CGPoint clamped(CGPoint offset) const;
  bool isOutside() const;

  void startMoving(Moving kind);
  void tick(double seconds);
  /// Ends any motion where it stands and tells the delegate that it ended.
  void stopMoving();

  void dragBegan();
  void dragMoved();
  void dragEnded(bool cancelled);
  void settleIntoRange();

  /// Sends a message of one argument, the scroll view, when the delegate answers it.
  void tell(SEL selector) const;
};

}  // namespace platform
