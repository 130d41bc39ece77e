#include "platform/uikit/application/UIWindow.h"

#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/touch/TouchDispatcher.h"
#include "platform/uikit/views/UIViewStorage.h"

namespace platform {

UIWindow::UIWindow() { storage_->window = this; }

UIWindow::~UIWindow() {
  UIApplication::shared().removeWindow(*this);
  TouchDispatcher::shared().windowClosed(*this);
  const auto children = subviews_;
  for (const Ref<UIView>& child : children) child->enterWindow(nullptr);
}

void UIWindow::initWithFrame(CGRect frame) {
  UIView::initWithFrame(frame);
  layer()->setHidden(true);
}

Ref<UIWindow> UITouch::window() const { return std::static_pointer_cast<UIWindow>(window_.lock()); }

Ref<UIWindow> UIWindow::window() const {
  return std::static_pointer_cast<UIWindow>(std::const_pointer_cast<NSObject>(weak_from_this().lock()));
}

Ref<UIResponder> UIWindow::nextResponder() { return UIApplication::shared().self(); }

// ---- Showing

void UIWindow::makeKeyAndVisible() {
  UIApplication::shared().keyWindow_ = self();
  setHidden(false);
}

bool UIWindow::isKeyWindow() const { return UIApplication::shared().keyWindow().get() == this; }

void UIWindow::setHidden(bool hidden) {
  if (hidden == isHidden()) return;
  const Ref<UIWindow> keeper = self();
  UIView::setHidden(hidden);
  if (hidden) {
    close();
  } else {
    UIApplication::shared().addWindow(keeper);
    updateSafeAreaInsets();
    showRootView();
  }
}

void UIWindow::close() {
  endEditing(true);
  TouchDispatcher::shared().windowClosed(*this);
  UIApplication::shared().removeWindow(*this);
  if (!rootViewController_) return;
  const Ref<UIViewController> controller = rootViewController_;
  controller->beginAppearanceTransition(false, false);
  controller->endAppearanceTransition();
}

double UIWindow::windowLevel() const { return windowLevel_; }

void UIWindow::setWindowLevel(double level) {
  if (windowLevel_ == level) return;
  windowLevel_ = level;
  if (!isHidden()) UIApplication::shared().arrangeWindows();
}

// ---- Root controller

Ref<UIViewController> UIWindow::rootViewController() const { return rootViewController_; }

void UIWindow::setRootViewController(const Ref<UIViewController>& controller) {
  if (rootViewController_ == controller) return;
  const Ref<UIViewController> old = std::exchange(rootViewController_, controller);
  if (old) {
    const Ref<UIView> view = old->viewIfLoaded();
    if (!isHidden()) old->beginAppearanceTransition(false, false);
    if (view && view->superview().get() == this) view->removeFromSuperview();
    if (!isHidden()) old->endAppearanceTransition();
  }
  if (!isHidden()) showRootView();
}

void UIWindow::showRootView() {
  const Ref<UIViewController> controller = rootViewController_;
  if (!controller) return;
  controller->beginAppearanceTransition(true, false);
  const Ref<UIView> view = controller->view();
  if (view && !view->superview()) insertSubview(view, 0);
  placeRootView();
  layoutIfNeeded();
  controller->endAppearanceTransition();
}

void UIWindow::placeRootView() {
  const Ref<UIView> view = rootViewController_ ? rootViewController_->viewIfLoaded() : nullptr;
  if (!view || view->superview().get() != this || !view->translatesAutoresizingMaskIntoConstraints()) return;
  // Bounds and center, not the frame: a transition may have the view scaled or moved by its transform.
  view->setBounds({view->bounds().origin, bounds().size});
  view->setCenter(bounds().center());
}

void UIWindow::layoutSubviews() {
  UIView::layoutSubviews();
  placeRootView();
}

// ---- Touches

void UIWindow::deliverTouch(std::int64_t identifier, UITouchPhase phase, CGPoint location, double timestamp) {
  TouchDispatcher::shared().deliver(self(), identifier, phase, location, timestamp);
}

CGPoint UIWindow::convertPointToScreen(CGPoint point) const { return layer()->transformToSuperlayer().apply(point); }

CGPoint UIWindow::convertPointFromScreen(CGPoint point) const {
  return layer()->transformToSuperlayer().inverted().apply(point);
}

}  // namespace platform
