#include "platform/uikit/touch/UITouch.h"

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

CGPoint UITouch::locationInView(const TouchSurface* view) const {
  return view ? view->pointFromWindow(location_, window_.lock().get()) : location_;
}

CGPoint UITouch::previousLocationInView(const TouchSurface* view) const {
  return view ? view->pointFromWindow(previousLocation_, window_.lock().get()) : previousLocation_;
}

std::vector<Ref<UIGestureRecognizer>> UITouch::gestureRecognizers() const {
  std::vector<Ref<UIGestureRecognizer>> recognizers;
  for (const Weak<UIGestureRecognizer>& watching : recognizers_) {
    if (Ref<UIGestureRecognizer> recognizer = watching.lock()) recognizers.push_back(std::move(recognizer));
  }
  return recognizers;
}

}  // namespace platform
