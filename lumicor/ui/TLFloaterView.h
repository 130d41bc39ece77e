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

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;
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

  bool show_ = false;
};

}  // namespace lumicor
