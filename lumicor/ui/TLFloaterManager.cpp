#include "lumicor/ui/TLFloaterManager.h"

#include <algorithm>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/LumicorFrontLevel.h"
#include "lumicor/ui/TLBottomCloseView.h"
#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLFloaterPlacement.h"
#include "lumicor/ui/TLTransition.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

constexpr const char* animationControllerSelector =
    "navigationController:animationControllerForOperation:fromViewController:toViewController:";

constexpr const char* didShowSelector = "navigationController:didShowViewController:animated:";

constexpr double closeTargetSlideIn = 0.2;
constexpr double closeTargetSlideOut = 0.35;

/// Over the close target the button lets the target's ring shine through.
constexpr double alphaOverTarget = 0.55;
constexpr double targetFade = 0.15;

CGSize screenSize() {
  static const CGSize size = UIScreen::main().bounds().size;
  return size;
}

bool isOnTop(const Ref<TLChatViewController>& chat, const Ref<UINavigationController>& navigation) {
  return chat && navigation && navigation->topViewController() == chat;
}

/// The key window of the first use; another one only once that is gone.
Ref<UIWindow> keyWindow() {
  static Weak<UIWindow> first;
  if (first.expired()) first = UIApplication::shared().keyWindow();
  return first.lock();
}

CGRect closeTargetFrame(bool isShown) {
  constexpr double side = floaterPlacement::closeTargetSize;
  const CGSize screen = screenSize();
  const double shift = isShown ? side : 0;
  return {screen.width - shift, screen.height - shift, side, side};
}

}  // namespace

UIEdgeInsets TLFloaterManager::screenInsets() {
  const auto window = keyWindow();
  return window ? window->safeAreaInsets() : UIEdgeInsets{};
}

TLFloaterManager& TLFloaterManager::shared() {
  static const Ref<TLFloaterManager> manager = make<TLFloaterManager>();
  return *manager;
}

TLFloaterManager::TLFloaterManager() = default;
TLFloaterManager::~TLFloaterManager() = default;

void TLFloaterManager::exportMethods(MethodTable<TLFloaterManager>& table) {
  table.add<&TLFloaterManager::animationControllerFor>(animationControllerSelector);
  table.add<&TLFloaterManager::didShow>(didShowSelector);
}

void TLFloaterManager::init() {
  bottomCloseView_ = make<TLBottomCloseView>(closeTargetFrame(false));
  bottomCloseView_->setFrontLevel(LumicorFrontLevel::closeTarget);
  overrideNavigationDelegate();
}

void TLFloaterManager::show() {
  // The chat of an earlier start, perhaps of another person: requests are no longer answered in it.
  if (chatViewController_) {
    chatViewController_->closeWithoutAnimation();
    leaveStack();
  }
  wasDismissed_ = standsIn_ = false;
  if (floaterView_) floaterView_->removeFromSuperview();
  floaterView_ =
      make<TLFloaterView>(floaterPlacement::initialFrame(screenSize(), floaterPlacement::side(layoutData_.size)));
  floaterView_->delegate = std::static_pointer_cast<TLFloaterManager>(shared_from_this());
  bottomCloseView_->setFrame(closeTargetFrame(false));
  if (const auto window = keyWindow()) window->addSubview(bottomCloseView_);
  floaterMoveEvents();
  setChatViewController(make<TLChatViewController>());
  chatViewController_->layoutData = layoutData_;
  overrideNavigationDelegate();
}

void TLFloaterManager::setChatViewController(Ref<TLChatViewController> chat) {
  chatViewController_ = std::move(chat);
  TLChatScreen::setCurrent(chatViewController_);
}

void TLFloaterManager::floaterMoveEvents() {
  if (!floaterView_) return;
  floaterView_->floaterDidSelect = [weak = weakSelf()] {
    if (const auto manager = weak.lock()) manager->openChat();
  };
}

void TLFloaterManager::openChat() {
  if (!chatViewController_) return;
  UIApplication::shared().beginIgnoringInteractionEvents();
  overrideNavigationDelegate();
  const auto navigation = LumicorUtils::getNavigationControllerFromRoot();
  const bool isOpen = isOnTop(chatViewController_, navigation);
  if (navigation && !isOpen) pushChat(navigation);
  if (!isOpen) LumicorNetworkTask::logEvent(LumicorLogEvent::CHAT_VIEW_OPEN, "");
  UIApplication::shared().endIgnoringInteractionEvents();
}

void TLFloaterManager::pushChat(const Ref<UINavigationController>& navigation) {
  standsIn_ = false;
  leaveStack();
  prepareCover();
  navigation->pushViewController(chatViewController_, true);
}

/// A chat that the host has covered, or left in another tab, is taken out from under what covers it.
void TLFloaterManager::leaveStack() {
  const auto holder = as<UINavigationController>(chatViewController_->parentViewController());
  if (!holder) return;
  auto others = holder->viewControllers();
  std::erase(others, chatViewController_);
  if (!others.empty()) holder->setViewControllers(std::move(others), false);
}

void TLFloaterManager::overrideNavigationDelegate() {
  const auto navigation = LumicorUtils::getNavigationControllerFromRoot();
  if (!navigation || navigation->delegate() == self()) return;
  giveDelegateBack();
  overridden_ = navigation;
  hostDelegate_ = navigation->delegate();
  navigation->setDelegate(self());
}

void TLFloaterManager::giveDelegateBack() {
  const auto navigation = overridden_.lock();
  if (navigation && navigation->delegate() == self()) navigation->setDelegate(hostDelegate_.lock());
  overridden_.reset();
  hostDelegate_.reset();
  chatWasShown_ = false;
}

void TLFloaterManager::didShow(const Ref<UINavigationController>& navigation, const Ref<UIViewController>& screen,
                               bool animated) {
  static const SEL selector = sel(didShowSelector);
  const auto host = hostDelegate_.lock();
  sendOptional(host, selector, navigation, screen, animated);
  if (screen == chatViewController_) {
    chatWasShown_ = true;
  } else if (host && chatWasShown_ && !std::ranges::count(navigation->viewControllers(), chatViewController_)) {
    giveDelegateBack();
  }
}

bool TLFloaterManager::respondsToSelector(SEL selector) const {
  const auto host = hostDelegate_.lock();
  return Super::respondsToSelector(selector) || (host && host->respondsToSelector(selector));
}

Ref<NSObject> TLFloaterManager::forwardingTargetForSelector(SEL selector) const {
  const auto host = hostDelegate_.lock();
  return host && host->respondsToSelector(selector) ? host : Super::forwardingTargetForSelector(selector);
}

Ref<NSObject> TLFloaterManager::animationControllerFor(const Ref<UINavigationController>& navigation,
                                                       UINavigationControllerOperation operation,
                                                       const Ref<UIViewController>& from,
                                                       const Ref<UIViewController>& to) {
  using Operation = UINavigationControllerOperation;
  if (chatViewController_ && operation == Operation::push && to == chatViewController_) return make<TLTransitionPush>();
  if (chatViewController_ && operation == Operation::pop && from == chatViewController_) return make<TLTransitionPop>();
  static const SEL selector = sel(animationControllerSelector);
  const auto host = hostDelegate_.lock();
  if (!host || !host->respondsToSelector(selector)) return nullptr;
  return host->perform<Ref<NSObject>>(selector, navigation, operation, from, to);
}

void TLFloaterManager::floatViewBeginMove(TLFloaterView&, CGPoint) {
  UIView::animateWithDuration(closeTargetSlideIn, [this] { bottomCloseView_->setFrame(closeTargetFrame(true)); });
}

void TLFloaterManager::floatViewMoved(TLFloaterView& floatView, CGPoint) {
  const auto window = keyWindow();
  const CGPoint center = bottomCloseView_->convertPointFrom(floatView.center(), window.get());
  const bool isInside = floaterPlacement::isInsideCloseTarget(center);
  if (isInside == bottomCloseView_->insideBottomSelected) return;
  bottomCloseView_->insideBottomSelected = isInside;
  bottomCloseView_->setNeedsDisplay();
  UIView::animateWithDuration(targetFade, [&] { floatView.setAlpha(isInside ? alphaOverTarget : 1); });
}

void TLFloaterManager::floatViewCancelMove(TLFloaterView&) {
  if (floaterView_ && bottomCloseView_->insideBottomSelected) {
    wasDismissed_ = true;
    floaterView_->setShow(false);
    LumicorNetworkTask::logEvent(LumicorLogEvent::CHAT_FLOATER_DISMISSED, "");
  }
  parkCloseTarget();
}

void TLFloaterManager::parkCloseTarget() {
  UIView::animateWithDuration(closeTargetSlideOut, [this] { bottomCloseView_->setFrame(closeTargetFrame(false)); });
}

void TLFloaterManager::prepareCover() {
  const auto window = UIApplication::shared().keyWindow();
  const auto root = window ? window->rootViewController() : nullptr;
  cover_ = root ? root->view()->snapshotViewAfterScreenUpdates(false) : nullptr;
}

void TLFloaterManager::bringButtonBack() {
  if (!floaterView_ || wasDismissed_) return;
  if (!isOnTop(chatViewController_, LumicorUtils::getNavigationControllerFromRoot())) floaterView_->setShow(true);
}

void TLFloaterManager::chatDidDisappear() {
  const auto holder = chatViewController_->navigationController();
  const bool isHeld = holder && std::ranges::count(holder->viewControllers(), chatViewController_);
  // What covers it goes again, as a rule.
  if (isHeld && holder == LumicorUtils::getNavigationControllerFromRoot()) return;
  // A transition that is to leave the button alone says so until it has ended.
  if (!floaterView_ || floaterView_->show() || !floaterView_->changeStatusInNextTransaction) return;
  standsIn_ = isHeld;
  bringButtonBack();
}

void TLFloaterManager::chatDidAppear() {
  if (std::exchange(standsIn_, false) && floaterView_) floaterView_->setShow(false);
}

}  // namespace lumicor
