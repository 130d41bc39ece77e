#include "platform/declarative/UIHostingController.h"

#include "platform/declarative/Element.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

using declarative::Element;
using declarative::Environment;
using declarative::Slot;

/// The live view under a hosting controller: it makes and lays out the elements, and looks after each turn of the loop
/// whether a geometry reader was moved by something above it.
class HostingView final : public Object<HostingView, UIView> {
 public:
  ~HostingView() override { watch(false); }

  void setBody(UIHostingController::Body body) {
    body_ = std::move(body);
    setNeedsUpdate();
  }

  void setNeedsUpdate() {
    needsUpdate_ = true;
    setNeedsLayout();
  }

  void setOnScreen(bool onScreen) {
    if (onScreen_ == onScreen) return;
    onScreen_ = onScreen;
    watch(onScreen);
    if (!root_) return;
    if (onScreen) {
      root_->appear();
      setNeedsLayout();  // readers of geometry were not asked meanwhile
    } else {
      root_->disappear();
    }
  }

  void layoutSubviews() override {
    Super::layoutSubviews();
    if (needsUpdate_) {
      needsUpdate_ = false;
      Environment environment;
      environment.host = weakSelf();
      environment.setNeedsLayout = [weak = weakSelf()] {
        if (const auto view = weak.lock()) view->setNeedsLayout();
      };
      environment.isOnScreen = [weak = weakSelf()] {
        const auto view = weak.lock();
        return view && view->onScreen_;
      };
      root_.update(body_(), environment);
    }
    if (!root_) return;
    const UIEdgeInsets safe = safeAreaInsets();
    const CGRect room = bounds().insetBy(safe);
    const CGSize size = root_->sizeThatFits({room.size.width, room.size.height});
    root_->place(declarative::aligned(size, room, {}));
    std::vector<Ref<UIView>> views;
    root_->collectViews(views);
    declarative::showViews(*this, views);
    if (onScreen_) root_->appear();
  }

 private:
  static bool anyMoved(Element& element) {
    if (element.hasMoved()) return true;
    bool moved = false;
    element.forEachChild([&](Element& child) { moved = moved || anyMoved(child); });
    return moved;
  }

  void watch(bool on) {
    if (observer_) RunLoop::main().removeTurnObserver(observer_);
    observer_ = 0;
    if (!on) return;
    observer_ = RunLoop::main().addTurnObserver([this] {
      if (root_ && anyMoved(*root_)) setNeedsLayout();
    });
  }

  UIHostingController::Body body_;
  Slot root_;
  std::uint64_t observer_ = 0;
  bool needsUpdate_ = true;
  bool onScreen_ = false;
};

UIHostingController::UIHostingController(Body body) : body_(std::move(body)) {}
UIHostingController::~UIHostingController() = default;

void UIHostingController::loadView() {
  hosting_ = make<HostingView>(UIScreen::main().bounds());
  hosting_->setBackgroundColor(UIColor::systemBackground());
  hosting_->setBody(body_);
  setView(hosting_);
}

void UIHostingController::setNeedsUpdate() {
  if (hosting_) hosting_->setNeedsUpdate();
}

void UIHostingController::setRootView(Body body) {
  body_ = std::move(body);
  if (hosting_) hosting_->setBody(body_);
}

// From its first layout on it may tell where it stands, so it counts as being there before it has come to rest; one
// that does not come after all (a step back that was let go) hears viewDidDisappear like any other.
void UIHostingController::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  hosting_->setOnScreen(true);
}

void UIHostingController::viewDidDisappear(bool animated) {
  Super::viewDidDisappear(animated);
  if (hosting_) hosting_->setOnScreen(false);
}

}  // namespace platform
