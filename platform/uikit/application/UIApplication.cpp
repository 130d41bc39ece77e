#include "platform/uikit/application/UIApplication.h"

#include <algorithm>
#include <cstdio>

#include "platform/animation/CALayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/engine/Engine.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/ScreenHost.h"
#include "platform/uikit/application/UIKeyboardWindow.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/text/UIKeyboard.h"

namespace platform {

UIApplication& UIApplication::shared() {
  static const Ref<UIApplication>* const application = new Ref<UIApplication>(make<UIApplication>());
  return **application;
}

ApplicationHost& ApplicationHost::shared() { return UIApplication::shared(); }
KeyboardHost& KeyboardHost::shared() { return UIApplication::shared(); }

UIApplication::UIApplication() : screenLayer_(CALayer::layer()) {
  screenLayer_->setBackgroundColor(UIColor::black());
  RunLoop::main().addTurnObserver([this] { afterTurn(); });
}

UIApplication::~UIApplication() = default;

// ---- Windows

std::vector<Ref<UIWindow>> UIApplication::windows() const {
  std::vector<Ref<UIWindow>> windows;
  for (const Weak<UIWindow>& known : windows_) {
    if (Ref<UIWindow> window = known.lock()) windows.push_back(std::move(window));
  }
  return windows;
}

Ref<UIWindow> UIApplication::keyWindow() const { return keyWindow_.lock(); }

std::vector<Ref<UIWindow>> UIApplication::windowsBackToFront() const {
  std::vector<Ref<UIWindow>> all = windows();
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& a, const auto& b) { return a->windowLevel() < b->windowLevel(); });
  return all;
}

void UIApplication::addWindow(const Ref<UIWindow>& window) {
  windows_.push_back(window);
  arrangeWindows();
}

void UIApplication::removeWindow(const UIWindow& window) {
  window.layer()->removeFromSuperlayer();
  std::erase_if(windows_, [&](const Weak<UIWindow>& known) {
    const Ref<UIWindow> other = known.lock();
    return !other || other.get() == &window;
  });
  const Ref<UIWindow> key = keyWindow_.lock();
  if (key && key.get() != &window) return;
  keyWindow_.reset();
  for (const Ref<UIWindow>& other : windowsBackToFront()) {
    if (other->canBecomeKeyWindow()) keyWindow_ = other;
  }
}

void UIApplication::arrangeWindows() {
  screenLayer_->setBounds(UIScreen::main().bounds());
  screenLayer_->setPosition(UIScreen::main().bounds().center());
  std::size_t index = 0;
  for (const Ref<UIWindow>& window : windowsBackToFront()) {
    const auto& shown = screenLayer_->sublayers();
    if (index >= shown.size() || shown[index] != window->layer()) screenLayer_->insertSublayer(window->layer(), index);
    ++index;
  }
}

// ---- Actions

bool UIApplication::sendAction(SEL action, const Ref<NSObject>& target, const Ref<NSObject>& sender,
                               const Ref<UIEvent>& event) {
  if (!action) return false;
  Ref<NSObject> receiver = target;
  if (!receiver) {
    auto first = as<UIResponder>(sender);
    if (!first) first = firstResponder();
    if (!first) first = keyWindow();
    if (first) receiver = first->targetForAction(action);
  }
  if (!receiver || !receiver->respondsToSelector(action)) return false;
  const std::string& name = action.name();
  switch (std::count(name.begin(), name.end(), ':')) {
    case 0:
      receiver->perform(action);
      break;
    case 1:
      receiver->perform(action, sender);
      break;
    default:
      receiver->perform(action, sender, event);
  }
  return true;
}

// ---- Events

void UIApplication::beginIgnoringInteractionEvents() { ++ignoring_; }
void UIApplication::endIgnoringInteractionEvents() { ignoring_ = std::max(0, ignoring_ - 1); }

void UIApplication::deliverTouch(std::int64_t identifier, UITouchPhase phase, CGPoint screenPoint, double timestamp) {
  if (phase == UITouchPhase::began) {
    touchedWindows_.erase(identifier);
    const auto all = windowsBackToFront();
    for (auto window = all.rbegin(); window != all.rend(); ++window) {
      if (!(*window)->hitTest((*window)->convertPointFromScreen(screenPoint), nullptr)) continue;
      touchedWindows_[identifier] = *window;
      break;
    }
  }
  const auto touched = touchedWindows_.find(identifier);
  if (touched == touchedWindows_.end()) return;
  const Ref<UIWindow> window = touched->second.lock();
  if (phase == UITouchPhase::ended || phase == UITouchPhase::cancelled) touchedWindows_.erase(touched);
  if (window) window->deliverTouch(identifier, phase, window->convertPointFromScreen(screenPoint), timestamp);
}

void UIApplication::deliverScroll(CGPoint screenPoint, CGVector delta) {
  if (ignoring_ > 0) return;
  const auto all = windowsBackToFront();
  for (auto window = all.rbegin(); window != all.rend(); ++window) {
    const Ref<UIView> hit = (*window)->hitTest((*window)->convertPointFromScreen(screenPoint), nullptr);
    if (!hit) continue;
    for (Ref<UIView> view = hit; view; view = view->superview()) {
      const auto scrollView = as<UIScrollView>(view);
      if (scrollView && scrollView->isScrollEnabled() && scrollView->scrollByWheel(delta)) return;
    }
    return;
  }
}

void UIApplication::deliverKey(const UIKey& key) {
  Ref<UIResponder> responder = firstResponder();
  if (!responder) responder = keyWindow();
  while (responder && !responder->keyPressed(key)) responder = responder->nextResponder();
}

// ---- The keyboard

void UIApplication::firstResponderDidChange() { UIKeyboard::shared().update(); }

CGRect UIApplication::keyboardFrame() const {
  const UIKeyboard& keyboard = UIKeyboard::shared();
  return keyboard.isVisible() ? keyboard.frame() : CGRect{};
}

Ref<UIView> UIApplication::makeKeyboardWindow() { return make<UIKeyboardWindow>(UIScreen::main().bounds()); }

// ---- The screen

void UIApplication::layoutAndDisplayIfNeeded() {
  for (const Ref<UIWindow>& window : windows()) {
    window->layoutIfNeeded();
    window->layer()->displayIfNeeded();
  }
}

void UIApplication::afterTurn() {
  UIKeyboard::shared().update();  // the first responder may have died
  for (const Ref<UIWindow>& window : windows()) window->layoutIfNeeded();
}

Ref<UIImage> UIApplication::screenshot() {
  layoutAndDisplayIfNeeded();
  const UIScreen& screen = UIScreen::main();
  return captureLayer(*screenLayer_, screen.bounds().size, screen.scale());
}

Ref<UIImage> UIApplication::captureImage(const Ref<UIWindow>& window) {
  if (!window) return nullptr;
  window->layoutIfNeeded();
  return captureLayer(*window->layer(), window->bounds().size, UIScreen::main().scale());
}

void UIApplication::goWithoutDisplay() { Engine::shared().goWithoutDisplay(); }

int UIApplication::run(const std::string& title) {
  if (Engine::shared().isDisplayMissing()) {
    std::fprintf(stderr, "%s: there is no display to open a window on (DISPLAY or WAYLAND_DISPLAY names one)\n",
                 title.c_str());
    return 1;
  }
  ScreenHost host(title);
  Engine::shared().run();
  return 0;
}

void UIApplication::terminate() { Engine::shared().stop(); }

}  // namespace platform
