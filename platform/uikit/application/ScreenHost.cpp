#include "platform/uikit/application/ScreenHost.h"

#include "platform/animation/FrameClock.h"
#include "platform/engine/Engine.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

UITouchPhase phaseOf(WindowTouchPhase phase) {
  switch (phase) {
    case WindowTouchPhase::began:
      return UITouchPhase::began;
    case WindowTouchPhase::moved:
      return UITouchPhase::moved;
    case WindowTouchPhase::ended:
      return UITouchPhase::ended;
    case WindowTouchPhase::cancelled:
      break;
  }
  return UITouchPhase::cancelled;
}

UIKey::Code codeOf(WindowKey::Name name) {
  switch (name) {
    case WindowKey::Name::returnKey:
      return UIKey::Code::returnKey;
    case WindowKey::Name::tab:
      return UIKey::Code::tab;
    case WindowKey::Name::backspace:
      return UIKey::Code::backspace;
    case WindowKey::Name::forwardDelete:
      return UIKey::Code::forwardDelete;
    case WindowKey::Name::escape:
      return UIKey::Code::escape;
    case WindowKey::Name::left:
      return UIKey::Code::left;
    case WindowKey::Name::right:
      return UIKey::Code::right;
    case WindowKey::Name::up:
      return UIKey::Code::up;
    case WindowKey::Name::down:
      return UIKey::Code::down;
    case WindowKey::Name::home:
      return UIKey::Code::home;
    case WindowKey::Name::end:
      return UIKey::Code::end;
    case WindowKey::Name::none:
      break;
  }
  return UIKey::Code::character;
}

}  // namespace

ScreenHost::ScreenHost(const std::string& title) {
  const UIScreen& screen = UIScreen::main();
  window_ = Engine::shared().openWindow(screen.bounds().size, screen.scale(), title, *this);
  observer_ = display_->addObserver([this](const CGRect& changed) {
    if (!changed.isEmpty() && window_) window_->present(display_->bitmap(), changed);
  });
  display_->invalidate();
}

ScreenHost::~ScreenHost() { display_->removeObserver(observer_); }

void ScreenHost::windowTouched(const WindowTouch& touch) {
  UIApplication::shared().deliverTouch(touch.identifier, phaseOf(touch.phase), touch.location, touch.timestamp);
  FrameClock::shared().setNeedsFrame();
}

void ScreenHost::windowKeyPressed(const WindowKey& key) {
  UIApplication::shared().deliverKey({codeOf(key.name), key.text, key.shift, key.command});
  FrameClock::shared().setNeedsFrame();
}

void ScreenHost::windowScrolled(const WindowScroll& scroll) {
  UIApplication::shared().deliverScroll(scroll.location, scroll.delta);
  FrameClock::shared().setNeedsFrame();
}

void ScreenHost::windowClosed() { UIApplication::shared().terminate(); }

}  // namespace platform
