#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumicor/actions/TLChatScreen.h"
#include "lumicor/core/TLChatMessage.h"
#include "lumicor/core/TLLayout.h"
#include "lumicor/ui/PaddedTextField.h"
#include "lumicor/ui/TLConversation.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

using namespace platform;

/// The full-screen chat: the conversation, a field to type into, and while the assistant works a typing row. Made once
/// per floating button, pushed onto the host's navigation controller on every visit; while it is there the host's bars
/// hide. Thread: main; addMessage: any.
class TLChatViewController : public Object<TLChatViewController, UIViewController>, public TLChatScreen {
 public:
  TLChatViewController();
  ~TLChatViewController() override;
  static void exportMethods(MethodTable<TLChatViewController>& table);

  /// Adds a bubble of the assistant, in place of a trailing typing row, and lets the person type again.
  void addMessage(const std::string& text) override;
  /// Leaves the screen at once: popped without animation, the host's navigation bar as it was.
  void closeWithoutAnimation() override;
  void reopen(const Ref<UINavigationController>& navigation) override;

  void sendMessage();
  void dismissChatView();
  void dismissKeyboard();
  void scrollToBottom(bool animated);
  void setInputEnabled(bool enabled);

  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewDidLayoutSubviews() override;
  void viewDidAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  void viewDidDisappear(bool animated) override;
  void willMoveToParent(Ref<UIViewController> parent) override;

  std::optional<TLLayout> layoutData;

  const TLConversation& messages() const { return messages_; }
  const Ref<UITableView>& tableView() const { return tableView_; }
  const Ref<UIView>& inputContainerView() const { return inputContainerView_; }
  const Ref<PaddedTextField>& inputTextField() const { return inputTextField_; }
  const Ref<UIButton>& sendButton() const { return sendButton_; }
  const Ref<UIButton>& crossButton() const { return crossButton_; }
  const Ref<UILabel>& titleLabel() const { return titleLabel_; }

 private:
  void buildHeader();
  void buildInputBar();
  void buildList();
  void makeConstraints();
  void observeKeyboard();

  std::int64_t numberOfRows(const Ref<UITableView>& table, std::int64_t section);
  Ref<UITableViewCell> cellForRow(const Ref<UITableView>& table, const IndexPath& path);
  void didScroll(const Ref<UIScrollView>& list);
  bool fieldShouldReturn(const Ref<UITextField>& field);
  void handleKeyboardWillShow(const Notification& notification);
  void handleKeyboardWillHide(const Notification& notification);
  void keyboardChanged(const Notification& notification, bool isShowing);

  /// Appends a row and tells the list.
  void append(TLChatMessage message);
  void removeTypingRow();
  void setBottomBarHidden(bool hidden);
  /// While the screen leaves, the host's bars come back without moving what it shows.
  void holdInsets();
  void releaseInsets();
  /// The one that the manager opens, not that of an earlier start.
  bool isCurrent() const;
  UIColor styleColor(std::string TLStyles::*field, const char* plain) const;

  Ref<UITableView> tableView_;
  Ref<UIView> inputContainerView_;
  Ref<PaddedTextField> inputTextField_;
  Ref<UIButton> sendButton_;
  Ref<UIButton> crossButton_;
  Ref<UILabel> titleLabel_;
  Ref<UIView> headerLine_;
  Ref<UIView> inputBackdrop_;
  bool isArriving_ = false;  // from the moment it is about to appear until it has
  bool wasNavigationBarHidden_ = false;
  bool wasBottomNavBarHidden_ = false;
  TLConversation messages_;
  Ref<NSLayoutConstraint> tableViewBottomConstraint_;
  Ref<NSLayoutConstraint> inputContainerBottomConstraint_;
  Ref<NSLayoutConstraint> crossTopConstraint_;
  std::vector<Ref<NSLayoutConstraint>> heldInsets_;  // in place of the two that follow the safe area
};

}  // namespace lumicor
