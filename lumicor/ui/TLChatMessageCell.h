#pragma once

#include <optional>

#include "lumicor/core/TLLayout.h"
#include "lumicor/ui/TLTypingChatMessageCell.h"
#include "platform/uikit/lists/UITableViewCell.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

using namespace platform;

/// One bubble of the chat: the assistant's at the left, the person's at the right, or the typing dots. The chat screen
/// sets `isRemote`, `layoutData` and the label's text, then calls configure(). Main thread.
class TLChatMessageCell final : public Object<TLChatMessageCell, UITableViewCell> {
 public:
  static constexpr const char* reuseIdentifier = "TLChatMessageCell";
  void initWithStyle(UITableViewCellStyle style, const std::string& reuse) override;

  bool isRemote = false;
  std::optional<TLLayout> layoutData;

  const Ref<UILabel>& messageLabel() const { return messageLabel_; }
  const Ref<UIView>& bubbleBackgroundView() const { return bubbleBackgroundView_; }
  const Ref<TLTypingChatMessageCell>& typingIndicatorView() const { return typingIndicatorView_; }

  /// Colours, side and typing state, from `isRemote` and the label's text.
  void configure();
  /// The label's font from the styles, or the chat font of the same size once it is registered.
  void applyFont();

 private:
  void makeConstraints();

  Ref<UILabel> messageLabel_;
  Ref<UIView> bubbleBackgroundView_;
  Ref<TLTypingChatMessageCell> typingIndicatorView_;
  Ref<NSLayoutConstraint> leadingConstraint_;
  Ref<NSLayoutConstraint> trailingConstraint_;
  Ref<NSLayoutConstraint> bubbleWidthConstraint_;
};

}  // namespace lumicor
