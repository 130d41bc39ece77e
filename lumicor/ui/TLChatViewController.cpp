#include "lumicor/ui/TLChatViewController.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "lumicor/actions/TLChatMessagesTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "lumicor/ui/TLKeyboardOffset.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/text/UIKeyboard.h"

namespace lumicor {

namespace {

constexpr const char* white = "#FFFFFFFF";
constexpr double defaultKeyboardDuration = 0.3;
constexpr double hairlineFade = 0.15;
/// Behind the grey title of a button that cannot be pressed.
constexpr UIColor disabledButton(0.92, 0.92, 0.93, 1);

std::int64_t lastRow(const TLConversation& messages) { return static_cast<std::int64_t>(messages.size()) - 1; }

}  // namespace

TLChatViewController::TLChatViewController() = default;
TLChatViewController::~TLChatViewController() = default;

void TLChatViewController::exportMethods(MethodTable<TLChatViewController>& table) {
  table.add<&TLChatViewController::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&TLChatViewController::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&TLChatViewController::didScroll>("scrollViewDidScroll:")
      .add<&TLChatViewController::fieldShouldReturn>("textFieldShouldReturn:")
      .add<&TLChatViewController::sendMessage>("sendMessage")
      .add<&TLChatViewController::dismissChatView>("dismissChatView")
      .add<&TLChatViewController::dismissKeyboard>("dismissKeyboard")
      .add<&TLChatViewController::handleKeyboardWillShow>("handleKeyboardWillShow:")
      .add<&TLChatViewController::handleKeyboardWillHide>("handleKeyboardWillHide:");
}

UIColor TLChatViewController::styleColor(std::string TLStyles::*field, const char* plain) const {
  return UIColorHex(layoutData ? layoutData->styles.*field : plain);
}

// ---- The list

std::int64_t TLChatViewController::numberOfRows(const Ref<UITableView>&, std::int64_t) {
  return static_cast<std::int64_t>(messages_.size());
}

Ref<UITableViewCell> TLChatViewController::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = as<TLChatMessageCell>(table->dequeueReusableCell(TLChatMessageCell::reuseIdentifier, path));
  const TLChatMessage& message = messages_[static_cast<std::size_t>(path.row())];
  cell->layoutData = layoutData;
  cell->isRemote = message.isRemote;
  cell->messageLabel()->setText(message.message);
  cell->configure();
  cell->setBackgroundColor(styleColor(&TLStyles::backgroundColor, white));
  return cell;
}

void TLChatViewController::append(TLChatMessage message) {
  messages_.append(std::move(message));
  if (tableView_) tableView_->insertRows({IndexPath(lastRow(messages_), 0)}, UITableViewRowAnimation::automatic);
}

void TLChatViewController::removeTypingRow() {
  if (messages_.empty() || !messages_.back().isRemote) return;  // what the person wrote stays, even these letters
  if (messages_.back().message != TLChatMessage::typingMarker) return;
  const IndexPath path(lastRow(messages_), 0);
  messages_.removeLast();
  if (tableView_) tableView_->deleteRows({path}, UITableViewRowAnimation::automatic);
}

void TLChatViewController::scrollToBottom(bool animated) {
  const std::int64_t rows = tableView_->numberOfRowsInSection(0);
  if (rows > 0) tableView_->scrollToRow(IndexPath(rows - 1, 0), UITableViewScrollPosition::bottom, animated);
}

void TLChatViewController::didScroll(const Ref<UIScrollView>& list) {
  const double alpha = list->contentOffset().y > -list->adjustedContentInset().top + 0.5 ? 1 : 0;
  if (headerLine_->alpha() == alpha) return;
  UIView::animateWithDuration(hairlineFade, [this, alpha] { headerLine_->setAlpha(alpha); });
}

// ---- Talking

bool TLChatViewController::fieldShouldReturn(const Ref<UITextField>&) {
  sendMessage();
  return false;
}

void TLChatViewController::sendMessage() {
  const std::string text = inputTextField_->text().value_or("");
  if (text.empty() || !sendButton_->isEnabled()) return;
  const TLChatMessage message{text, false, LumicorUtils::millisecondsSinceEpoch()};
  append(message);
  inputTextField_->setText("");
  TLChatMessagesTask::saveMessage(message);
  setInputEnabled(false);
  const TLChatMessage typing{TLChatMessage::typingMarker, true, LumicorUtils::millisecondsSinceEpoch()};
  append(typing);
  TLChatMessagesTask::saveMessage(typing);
  LumicorNetworkTask::logEvent(LumicorLogEvent::MESSAGE_SENT, "");
  TLChatMessagesTask::sendRequest(text);
  scrollToBottom(true);
}

void TLChatViewController::addMessage(const std::string& text) {
  DispatchQueue::main().async([chat = self(), text] {
    chat->loadViewIfNeeded();
    chat->removeTypingRow();
    const TLChatMessage message{text, true, LumicorUtils::millisecondsSinceEpoch()};
    chat->append(message);
    TLChatMessagesTask::saveMessage(message);
    chat->scrollToBottom(true);
    chat->setInputEnabled(true);
  });
}

void TLChatViewController::setInputEnabled(bool enabled) {
  sendButton_->setEnabled(enabled);
  sendButton_->setBackgroundColor(enabled ? styleColor(&TLStyles::sendButtonBackgroundColor, white) : disabledButton);
  if (enabled) {
    sendButton_->setTitleColor(styleColor(&TLStyles::sendButtonTextColor, white), UIControlState::normal);
    inputTextField_->becomeFirstResponder();
  } else {
    sendButton_->setTitleColor(UIColor::gray(), UIControlState::disabled);
    view()->endEditing(true);
  }
}

void TLChatViewController::dismissKeyboard() { view()->endEditing(true); }

// ---- The keyboard

void TLChatViewController::handleKeyboardWillShow(const Notification& notification) {
  keyboardChanged(notification, true);
}

void TLChatViewController::handleKeyboardWillHide(const Notification& notification) {
  keyboardChanged(notification, false);
}

void TLChatViewController::keyboardChanged(const Notification& notification, bool isShowing) {
  const CGRect* const endFrame = notification.value<CGRect>(UIKeyboardFrameEndUserInfoKey);
  if (!endFrame || !std::isfinite(endFrame->size.height)) return;
  const double* const told = notification.value<double>(UIKeyboardAnimationDurationUserInfoKey);
  const double duration = told ? *told : defaultKeyboardDuration;
  if (!isShowing) {
    inputContainerBottomConstraint_->setConstant(0);
  } else if (const auto offset = keyboardOffset({.viewHeight = view()->bounds().size.height,
                                                 .bottomInset = view()->safeAreaInsets().bottom,
                                                 .barFrame = inputContainerView_->frame(),
                                                 .keyboardHeight = endFrame->size.height})) {
    inputContainerBottomConstraint_->setConstant(*offset);
  }
  UIView::animateWithDuration(duration, [this, isShowing] {
    view()->layoutIfNeeded();
    if (isShowing) scrollToBottom(true);
  });
}

// ---- Coming and going

void TLChatViewController::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  releaseInsets();
  const auto navigation = navigationController();
  const auto tabs = tabBarController();
  wasNavigationBarHidden_ = navigation ? navigation->isNavigationBarHidden() : true;
  wasBottomNavBarHidden_ = tabs ? tabs->tabBar()->isHidden() : true;
  UIView::performWithoutAnimation([this] { setBottomBarHidden(true); });
  if (navigation) navigation->setNavigationBarHidden(true, false);
  scrollToBottom(false);
  isArriving_ = true;
}

void TLChatViewController::viewDidLayoutSubviews() {
  Super::viewDidLayoutSubviews();
  // How high the last rows are is only known once they are laid out.
  if (isArriving_) scrollToBottom(false);
}

void TLChatViewController::viewDidAppear(bool animated) {
  Super::viewDidAppear(animated);
  isArriving_ = false;
  if (isCurrent()) TLFloaterManager::shared().chatDidAppear();
}

void TLChatViewController::viewWillDisappear(bool animated) {
  Super::viewWillDisappear(animated);
  view()->endEditing(true);
  UIView::performWithoutAnimation([this] { setBottomBarHidden(wasBottomNavBarHidden_); });
  if (const auto navigation = navigationController()) {
    navigation->setNavigationBarHidden(wasNavigationBarHidden_, false);
  }
}

void TLChatViewController::viewDidDisappear(bool animated) {
  Super::viewDidDisappear(animated);
  if (isCurrent()) TLFloaterManager::shared().chatDidDisappear();
}

bool TLChatViewController::isCurrent() const { return TLFloaterManager::shared().chatViewController().get() == this; }

void TLChatViewController::willMoveToParent(Ref<UIViewController> parent) {
  Super::willMoveToParent(parent);
  if (parent) return;
  holdInsets();
  if (const auto navigation = navigationController()) navigation->setNavigationBarHidden(wasNavigationBarHidden_, true);
  UIView::performWithoutAnimation([this] { setBottomBarHidden(wasBottomNavBarHidden_); });
}

void TLChatViewController::dismissChatView() {
  const auto navigation = navigationController();
  // Pressed again while it closes, the host's own screen would go.
  if (!navigation || navigation->topViewController().get() != this) return;
  view()->endEditing(true);
  holdInsets();
  navigation->setNavigationBarHidden(wasNavigationBarHidden_, true);
  UIView::performWithoutAnimation([this] { setBottomBarHidden(false); });
  navigation->popViewControllerAnimated(true);
}

void TLChatViewController::holdInsets() {
  if (!isViewLoaded() || !heldInsets_.empty()) return;
  const UIEdgeInsets insets = view()->safeAreaInsets();
  const double lift = inputContainerBottomConstraint_->constant();
  heldInsets_ = {
      crossButton_->topAnchor().constraintEqualToAnchor(view()->topAnchor(), insets.top),
      inputContainerView_->bottomAnchor().constraintEqualToAnchor(view()->bottomAnchor(), lift - insets.bottom)};
  NSLayoutConstraint::deactivateConstraints({crossTopConstraint_, inputContainerBottomConstraint_});
  NSLayoutConstraint::activateConstraints(heldInsets_);
}

void TLChatViewController::releaseInsets() {
  if (heldInsets_.empty()) return;
  NSLayoutConstraint::deactivateConstraints(std::exchange(heldInsets_, {}));
  NSLayoutConstraint::activateConstraints({crossTopConstraint_, inputContainerBottomConstraint_});
}

void TLChatViewController::closeWithoutAnimation() {
  const auto navigation = navigationController();
  if (!navigation) return;
  UIView::performWithoutAnimation([this, &navigation] {
    navigation->setNavigationBarHidden(wasNavigationBarHidden_, false);
    if (navigation->topViewController().get() == this) navigation->popViewControllerAnimated(false);
  });
  // No transition runs that would bring the button back.
  TLFloaterManager::shared().bringButtonBack();
}

void TLChatViewController::reopen(const Ref<UINavigationController>& navigation) {
  if (!isCurrent() || navigation->topViewController().get() == this) return;  // or opened by hand meanwhile
  TLFloaterManager::shared().overrideNavigationDelegate();
  UIApplication::shared().beginIgnoringInteractionEvents();
  TLFloaterManager::shared().pushChat(navigation);
  UIApplication::shared().endIgnoringInteractionEvents();
}

/// The real tab bar, and with it the host's own bars that stand in for one: named views of the tab bar controller that
/// are of the host's classes. What holds this screen is none of them.
void TLChatViewController::setBottomBarHidden(bool hidden) {
  const auto tabs = tabBarController();
  if (!tabs) return;
  tabs->tabBar()->setHidden(hidden);
  for (const Ref<UIView>& bar : tabs->view()->subviews()) {
    const bool isHostsBar = bar->accessibilityIdentifier() && LumicorUtils::shouldTrack(bar->isa().name());
    if (isHostsBar && !view()->isDescendantOfView(bar.get())) bar->setHidden(hidden);
  }
}

}  // namespace lumicor
