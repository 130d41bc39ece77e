#pragma once

#include <memory>

#include "platform/uikit/views/UIView.h"

namespace platform {

class UIPanGestureRecognizer;
struct ScrollState;

enum class UIScrollViewKeyboardDismissMode { none, onDrag, interactive };
enum class UIScrollViewContentInsetAdjustmentBehavior { automatic, never, always };

/// A window onto content larger than itself. The origin of its bounds is the content offset; a finger drags it, it
/// glides on, and it springs back from beyond its edges (negative offsets, then). The delegate is held weakly and told
/// by selector: scrollViewDidScroll:, scrollViewWillBeginDragging:, scrollViewDidEndDragging:willDecelerate:,
/// scrollViewWillBeginDecelerating:, scrollViewDidEndDecelerating:, scrollViewDidEndScrollingAnimation:.
/// Main thread.
class UIScrollView : public Object<UIScrollView, UIView> {
 public:
  UIScrollView();
  ~UIScrollView() override;
  void initWithFrame(CGRect frame) override;
  static void exportMethods(MethodTable<UIScrollView>& table);

  virtual CGPoint contentOffset() const;
  /// At once. The delegate hears of every change, whoever made it. Ends gliding and scrolling animations.
  void setContentOffset(CGPoint offset) { setContentOffset(offset, false); }
  virtual void setContentOffset(CGPoint offset, bool animated);
  virtual CGSize contentSize() const;
  virtual void setContentSize(CGSize size);
  UIEdgeInsets contentInset() const;
  void setContentInset(UIEdgeInsets insets);
  /// contentInset and what the safe area adds to it.
  virtual UIEdgeInsets adjustedContentInset() const;
  UIScrollViewContentInsetAdjustmentBehavior contentInsetAdjustmentBehavior() const;
  void setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior);
  /// The least scrolling that shows the rectangle (in content coordinates); none when it is visible.
  virtual void scrollRectToVisible(CGRect rect, bool animated);

  virtual Ref<NSObject> delegate() const;
  virtual void setDelegate(const Ref<NSObject>& delegate);

  virtual bool isScrollEnabled() const;
  virtual void setScrollEnabled(bool enabled);
  bool isPagingEnabled() const;
  void setPagingEnabled(bool enabled);
  bool bounces() const;
  void setBounces(bool bounces);
  bool alwaysBounceVertical() const;
  void setAlwaysBounceVertical(bool bounces);
  bool alwaysBounceHorizontal() const;
  void setAlwaysBounceHorizontal(bool bounces);
  /// What is left of the speed after a millisecond; 0.998 normally.
  double decelerationRate() const;
  void setDecelerationRate(double rate);
  bool showsVerticalScrollIndicator() const;
  void setShowsVerticalScrollIndicator(bool shows);
  bool showsHorizontalScrollIndicator() const;
  void setShowsHorizontalScrollIndicator(bool shows);
  void flashScrollIndicators();
  UIScrollViewKeyboardDismissMode keyboardDismissMode() const;
  void setKeyboardDismissMode(UIScrollViewKeyboardDismissMode mode);
  /// False keeps a control that is already held from losing its touch when the finger starts to scroll.
  bool canCancelContentTouches() const;
  void setCanCancelContentTouches(bool can);
  virtual bool touchesShouldCancelInContentView(const Ref<UIView>& view);

  /// A finger is down on it; it follows a finger; it moves on by itself.
  virtual bool isTracking() const;
  virtual bool isDragging() const;
  virtual bool isDecelerating() const;
  const Ref<UIPanGestureRecognizer>& panGestureRecognizer() const;

  void setBounds(CGRect bounds) override;
  void setFrame(CGRect frame) override;
  void layoutSubviews() override;
  bool sizesContentByConstraints() const override { return true; }
  void setContentSizeFromConstraints(CGSize size) override {
    if (size != contentSize()) setContentSize(size);
  }
  /// Moves by a turn of a mouse's wheel, in points; false when the content stands at its end already. Once the wheel
  /// stands still, content that rests only at certain places goes on to one of them.
  virtual bool scrollByWheel(CGVector delta);
  void safeAreaInsetsDidChange() override;
  void didMoveToWindow() override;
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;
  Ref<UIView> hitTest(CGPoint point, const Ref<UIEvent>& event) override;
  bool gestureRecognizerShouldBegin(const Ref<UIGestureRecognizer>& recognizer) override;

 protected:
  /// After every change of the offset, before the delegate hears of it.
  virtual void contentOffsetDidChange() {}
  /// Content and offset moved together, so that what shows stays where it is: a drag or a glide goes on from there.
  void shiftContentOffset(CGPoint by);
  /// Where a drag that was let go comes to rest; a subclass that wants another place gets the content sent there.
  virtual CGPoint restingOffset(CGPoint proposed) { return proposed; }
  /// A scrolling animation is under way; it can be sent on to another place.
  bool isScrollingAnimated() const;
  void retargetScrolling(CGPoint offset);
  /// A finger stopped the gliding content and is still down.
  bool isHeld() const;
  /// A finger that held it, or the wheel of a mouse, let go of it where it may not rest.
  virtual void settle();

 private:
  friend struct ScrollState;
  void onPan(const Ref<NSObject>& sender);
  std::unique_ptr<ScrollState> scroll_;
};

}  // namespace platform
