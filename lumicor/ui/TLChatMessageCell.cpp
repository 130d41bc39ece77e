#include "lumicor/ui/TLChatMessageCell.h"

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/ui/TLChatFont.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"

namespace lumicor {

namespace {

constexpr double outerMargin = 16;    // from the label to the row's top and bottom
constexpr double bubblePadding = 10;  // from the text to the bubble's edge
constexpr double sideMargin = 32;     // from the text to the row's side
constexpr double maximumTextWidth = 250;
constexpr double typingBubbleWidth = TLTypingChatMessageCell::width + 2 * 16;

/// The colours of a cell that was given no layout. The second one has eight digits and so leads with its alpha: clear.
constexpr const char* plainReceiveBubble = "#d3d3d3";
constexpr const char* plainSendBubble = "#0000ffb3";
constexpr const char* plainReceiveText = "#000000";
constexpr const char* plainSendText = "#ffffff";

}  // namespace

void TLChatMessageCell::initWithStyle(UITableViewCellStyle style, const std::string& reuse) {
  Super::initWithStyle(style, reuse);
  messageLabel_ = make<UILabel>();
  bubbleBackgroundView_ = make<UIView>();
  typingIndicatorView_ = make<TLTypingChatMessageCell>();
  for (const Ref<UIView>& view :
       std::initializer_list<Ref<UIView>>{messageLabel_, bubbleBackgroundView_, typingIndicatorView_}) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
  }
  contentView()->setBackgroundColor(UIColor::white());
  contentView()->addSubview(bubbleBackgroundView_);
  contentView()->addSubview(typingIndicatorView_);
  bubbleBackgroundView_->addSubview(messageLabel_);
  setSelectionStyle(UITableViewCellSelectionStyle::none);
  bubbleBackgroundView_->layer()->setCornerRadius(16);
  bubbleBackgroundView_->layer()->setCornerCurve(CALayerCornerCurve::continuous);
  messageLabel_->setNumberOfLines(0);
  // Of a text that wraps the bubble is as wide as the longest line, not as the room for it.
  messageLabel_->setPreferredMaxLayoutWidth(maximumTextWidth);
  typingIndicatorView_->setHidden(true);
  typingIndicatorView_->setAccessibilityLabel("Typing");
  makeConstraints();
}

void TLChatMessageCell::makeConstraints() {
  const auto& content = contentView();
  auto widthLimit = messageLabel_->widthAnchor().constraintLessThanOrEqualToConstant(maximumTextWidth);
  widthLimit->setPriority(UILayoutPriorityDefaultHigh);
  leadingConstraint_ = messageLabel_->leadingAnchor().constraintEqualToAnchor(content->leadingAnchor(), sideMargin);
  trailingConstraint_ = messageLabel_->trailingAnchor().constraintEqualToAnchor(content->trailingAnchor(), -sideMargin);
  bubbleWidthConstraint_ = bubbleBackgroundView_->widthAnchor().constraintEqualToConstant(typingBubbleWidth);
  NSLayoutConstraint::activateConstraints({
      messageLabel_->topAnchor().constraintEqualToAnchor(content->topAnchor(), outerMargin),
      messageLabel_->bottomAnchor().constraintEqualToAnchor(content->bottomAnchor(), -outerMargin),
      bubbleBackgroundView_->topAnchor().constraintEqualToAnchor(messageLabel_->topAnchor(), -bubblePadding),
      bubbleBackgroundView_->leadingAnchor().constraintEqualToAnchor(messageLabel_->leadingAnchor(), -bubblePadding),
      bubbleBackgroundView_->bottomAnchor().constraintEqualToAnchor(messageLabel_->bottomAnchor(), bubblePadding),
      bubbleBackgroundView_->trailingAnchor().constraintEqualToAnchor(messageLabel_->trailingAnchor(), bubblePadding),
      typingIndicatorView_->centerXAnchor().constraintEqualToAnchor(bubbleBackgroundView_->centerXAnchor()),
      typingIndicatorView_->centerYAnchor().constraintEqualToAnchor(bubbleBackgroundView_->centerYAnchor()),
      typingIndicatorView_->widthAnchor().constraintEqualToConstant(TLTypingChatMessageCell::width),
      typingIndicatorView_->heightAnchor().constraintEqualToConstant(TLTypingChatMessageCell::dotSize),
      widthLimit,
      trailingConstraint_,
  });
}

void TLChatMessageCell::configure() {
  const TLStyles* const styles = layoutData ? &layoutData->styles : nullptr;
  const auto colour = [&](std::string TLStyles::*field, const char* plain) {
    return UIColorHex(styles ? styles->*field : plain);
  };
  bubbleBackgroundView_->setBackgroundColor(isRemote ? colour(&TLStyles::receiveBubbleColor, plainReceiveBubble)
                                                     : colour(&TLStyles::sendBubbleColor, plainSendBubble));
  messageLabel_->setTextColor(isRemote ? colour(&TLStyles::receiveFontColor, plainReceiveText)
                                       : colour(&TLStyles::sendFontColor, plainSendText));
  // The one that goes must go first: both at once would contradict each other.
  (isRemote ? trailingConstraint_ : leadingConstraint_)->setActive(false);
  (isRemote ? leadingConstraint_ : trailingConstraint_)->setActive(true);

  const bool isTyping = messageLabel_->text() == TLChatMessage::typingMarker;
  messageLabel_->setHidden(isTyping);
  typingIndicatorView_->setHidden(!isTyping);
  // The hidden marker still gives the bubble its height, that of one line.
  messageLabel_->setNumberOfLines(isTyping ? 1 : 0);
  bubbleWidthConstraint_->setActive(isTyping);
  applyFont();
}

void TLChatMessageCell::applyFont() {
  const TLStyles styles = layoutData ? layoutData->styles : TLStyles();
  messageLabel_->setFont(chatFont(static_cast<double>(styles.fontSize), styles.fontWeight));
}

}  // namespace lumicor
