#include "platform/uikit/application/ScreenDisplay.h"

#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/animation/FrameClock.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

Ref<ScreenDisplay> ScreenDisplay::shared() {
  static auto* const known = new Weak<ScreenDisplay>;
  Ref<ScreenDisplay> display = known->lock();
  if (!display) *known = display = std::make_shared<ScreenDisplay>();
  return display;
}

ScreenDisplay::ScreenDisplay() {
  followScreen();
  frameObserver_ = FrameClock::shared().addObserver(FrameClock::Phase::display, [this](double) { showFrame(); });
}

ScreenDisplay::~ScreenDisplay() { FrameClock::shared().removeObserver(frameObserver_); }

void ScreenDisplay::followScreen() {
  const UIScreen& screen = UIScreen::main();
  const CGSize points = screen.bounds().size;
  if (display_ && display_->scale() == screen.scale() && display_->sizeInPoints() == points) return;
  const Ref<CALayer>& layer = UIApplication::shared().screenLayer();
  layer->setBounds(screen.bounds());
  layer->setPosition(screen.bounds().center());
  display_.reset();  // a tree has one display at a time
  display_ = std::make_unique<LayerDisplay>(layer, points, screen.scale());
}

void ScreenDisplay::showFrame() {
  followScreen();
  UIApplication::shared().layoutAndDisplayIfNeeded();
  const CGRect changed = display_->update();
  notInPicture_ = notInPicture_.unionWith(changed);
  hidden_ = display_->areasHiddenFromCapture();       // as drawn: views may have moved on when somebody asks
  const std::vector<Watcher> observers = observers_;  // they may come and go meanwhile
  for (const Watcher& observer : observers) (*observer.call)(changed);
}

const TiledBitmap& ScreenDisplay::picture() {
  const CGRect changed = std::exchange(notInPicture_, {});
  const bool isNew = picture_.width() != bitmap().width() || picture_.height() != bitmap().height();
  if (isNew || !changed.isEmpty()) {
    picture_ = picture_.updated(bitmap(), changed, hidden_);
  }
  return picture_;
}

std::uint64_t ScreenDisplay::addObserver(Observer observer) {
  observers_.push_back({++lastNumber_, std::make_shared<Observer>(std::move(observer))});
  return lastNumber_;
}

void ScreenDisplay::removeObserver(std::uint64_t observer) {
  std::erase_if(observers_, [observer](const Watcher& known) { return known.number == observer; });
}

}  // namespace platform
