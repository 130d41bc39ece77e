#pragma once

#include <functional>
#include <optional>

#include "lumicor/core/TLLayout.h"
#include "platform/uikit/views/UIView.h"

namespace lumicor {

using namespace platform;

class TLFloaterView;

/// What the floating button tells while it is dragged. Points are in the button's own coordinates.
class TLFloaterViewDelegate {
 public:
  virtual ~TLFloaterViewDelegate() = default;
  virtual void floatViewBeginMove(TLFloaterView& floatView, CGPoint point) = 0;
  virtual void floatViewMoved(TLFloaterView& floatView, CGPoint point) = 0;
  virtual void floatViewCancelMove(TLFloaterView& floatView) = 0;
};

/// The round button that floats above the host's key window. Owned by TLFloaterManager. Main thread.
class TLFloaterView : public Object<TLFloaterView, UIView> {
 public:
  static void exportMethods(MethodTable<TLFloaterView>& table);
  /// Copies the layout of the shared manager; builds the image and the tap recogniser. Clear until shown.
  void initWithFrame(CGRect frame) override;

  bool show() const { return show_; }
  /// A new value fades the button in over the key window, or out and removes it; the same value does nothing.
  void setShow(bool show);
  /// Its frame, or while it is away the one it will have in a container of that size.
  CGRect frameIn(CGSize container) const;

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;
  void willMoveToSuperview(const Ref<UIView>& superview) override;
  void didMoveToWindow() override;
  void layoutSubviews() override;
  void tapGesture();

  std::weak_ptr<TLFloaterViewDelegate> delegate;
  std::function<void()> floaterDidSelect;
  std::optional<CGPoint> beginPoint;
  bool changeStatusInNextTransaction = true;
  std::optional<TLLayout> layoutData;

 private:
  void showImage();
  /// Glides from where it was let go to where it rests.
  void snap();
  /// The finger has gone without letting the button go.
  void breakOffDrag();
  CGRect restingFrame(CGSize container) const;

  bool show_ = false;
  std::optional<CGSize> left_;  // the size of the container it was taken from last
};

}  // namespace lumicor
