#pragma once

#include <memory>

#include "platform/dispatch/DispatchWorkItem.h"
#include "platform/uikit/lists/ScrollIndicators.h"
#include "platform/uikit/lists/ScrollMotion.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UIPanGestureRecognizer.h"
#include "platform/uikit/views/FrameTicker.h"

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
  bool held = false;    ///< a finger stopped the gliding content and is still down
  bool ending = false;  ///< a drag has ended and the delegate is being told
  CGPoint endedAt;      ///< the offset then; it goes along with content that is shifted
  CGPoint dragStart;    ///< the offset that the finger took hold of, rubber bands undone

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
    friend bool operator==(const Range&, const Range&) = default;
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
  /// False for a view that stands for another's content: its offset is not kept here, and layout leaves it alone.
  bool ownsOffset();
  /// Whose own contentOffset is waited for, not one that overrides it. Not kept by each view: reading a screen asks for
  /// every offset, and has no need of its state besides.
  inline static const UIScrollView* questioned = nullptr;
  void settleIntoRange();
  /// Plans where content that is let go with a speed (points a second) comes to rest; false when it rests already.
  bool planRest(CGPoint speed);
  /// Goes on from between two places to one of them; nothing while something else moves the content.
  void comeToRest(CGPoint speed);
  bool isOnItsOwn() const { return !dragging && !held && moving == Moving::no; }
  /// The gliding content goes on as it was, within the range that there is now.
  void goOnGliding();

  // ---- The wheel of a mouse
  Ref<DispatchWorkItem> wheelRest;
  CGPoint wheelSpeed;  ///< which way it turned last
  void forgetWheel();

  /// Sends a message of one argument, the scroll view, when the delegate answers it.
  void tell(SEL selector) const;
};

}  // namespace platform
