// How the chat screen is put together; what it does stands in TLChatViewController.cpp.

#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "lumicor/ui/TLChatFont.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLCrossButton.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/NSAttributedString.h"

namespace lumicor {

namespace {

// What stands in for a style when no layout has come.
constexpr const char* white = "#FFFFFFFF";
constexpr const char* opaqueBlack = "#FF000000";
constexpr std::int64_t plainSendButtonSize = 16;
constexpr std::int64_t plainFontWeight = 400;

constexpr double cornerRadius = 10;
constexpr UIColor hairline(0.78, 0.78, 0.80, 1);
/// A little darker than what counts as the edge of a control on white.
constexpr UIColor fieldEdge(0.56, 0.56, 0.58, 1);

}  // namespace

void TLChatViewController::viewDidLoad() {
  Super::viewDidLoad();
  view()->setBackgroundColor(UIColor::white());
  messages_ = TLConversation(Lumicor::shared().sharedChatHistory());
  // The bar that comes back while the chat closes shows the host's title and nothing of the chat.
  navigationItem()->setHidesBackButton(true);
  buildHeader();
  buildInputBar();
  buildList();
  // In the order in which they are read aloud.
  for (const Ref<UIView>& part : std::initializer_list<Ref<UIView>>{titleLabel_, crossButton_, tableView_, headerLine_,
                                                                    inputBackdrop_, inputContainerView_}) {
    part->setTranslatesAutoresizingMaskIntoConstraints(false);
    view()->addSubview(part);
  }
  makeConstraints();
  observeKeyboard();
  view()->addGestureRecognizer(make<UITapGestureRecognizer>(self(), sel("dismissKeyboard")));
}

void TLChatViewController::buildHeader() {
  crossButton_ = make<TLCrossButton>(UIButtonType::system);
  crossButton_->addTarget(self(), sel("dismissChatView"), UIControlEvents::touchUpInside);
  crossButton_->setAccessibilityLabel("Close");
  if (layoutData) {
    LumicorImageCache::shared().fetch(layoutData->closeButton,
                                      [weak = Weak<UIButton>(crossButton_)](const Ref<UIImage>& image) {
                                        if (const auto button = weak.lock()) {
                                          button->setImage(image, UIControlState::normal);
                                          button->setNeedsDisplay();  // no cross of its own any more
                                        }
                                      });
  }
  titleLabel_ = make<UILabel>();
  titleLabel_->setText("Tessel Lumicor");
  titleLabel_->setFont(UIFont::systemFont(18, UIFontWeightBold));
  titleLabel_->setTextColor(UIColor::black());
}

void TLChatViewController::buildInputBar() {
  inputContainerView_ = make<UIView>();
  inputContainerView_->setBackgroundColor(styleColor(&TLStyles::inputBackgroundColor, opaqueBlack));
  inputContainerView_->layer()->setBorderWidth(0.5);
  inputContainerView_->layer()->setBorderColor(UIColor::lightGray());

  // What lies below the bar, down to the screen's edge or to the keyboard, belongs to it.
  inputBackdrop_ = make<UIView>();
  inputBackdrop_->setBackgroundColor(inputContainerView_->backgroundColor());
  inputBackdrop_->setUserInteractionEnabled(false);

  inputTextField_ = make<PaddedTextField>();
  inputTextField_->setTranslatesAutoresizingMaskIntoConstraints(false);
  NSTextAttributes pale;
  pale.foregroundColor = UIColor::lightGray();
  inputTextField_->setAttributedPlaceholder(make<NSAttributedString>("Enter message...", pale));
  inputTextField_->setTextColor(UIColor::black());
  inputTextField_->setBackgroundColor(UIColor::white());
  inputTextField_->layer()->setCornerRadius(cornerRadius);
  inputTextField_->layer()->setBorderWidth(1);
  inputTextField_->layer()->setBorderColor(fieldEdge);
  inputTextField_->setReturnKeyType(UIReturnKeyType::send);
  inputTextField_->setDelegate(self());
  inputTextField_->setAccessibilityLabel("Message");

  sendButton_ = make<UIButton>(UIButtonType::system);
  sendButton_->setTranslatesAutoresizingMaskIntoConstraints(false);
  sendButton_->setTitle("Send", UIControlState::normal);
  sendButton_->setAccessibilityLabel("Send");
  sendButton_->setTitleColor(styleColor(&TLStyles::sendButtonTextColor, white), UIControlState::normal);
  sendButton_->setBackgroundColor(styleColor(&TLStyles::sendButtonBackgroundColor, white));
  sendButton_->layer()->setCornerRadius(cornerRadius);
  sendButton_->addTarget(self(), sel("sendMessage"), UIControlEvents::touchUpInside);
  const std::int64_t size = layoutData ? layoutData->styles.sendButtonSize : plainSendButtonSize;
  const std::int64_t weight = layoutData ? layoutData->styles.fontWeight : plainFontWeight;
  sendButton_->titleLabel()->setFont(chatFont(static_cast<double>(size), weight));

  inputContainerView_->addSubview(inputTextField_);
  inputContainerView_->addSubview(sendButton_);
}

void TLChatViewController::buildList() {
  tableView_ = make<UITableView>();
  tableView_->setBackgroundColor(styleColor(&TLStyles::backgroundColor, white));
  tableView_->setSeparatorStyle(UITableViewCellSeparatorStyle::none);
  tableView_->setDelegate(self());
  tableView_->setDataSource(self());
  tableView_->registerClass<TLChatMessageCell>(TLChatMessageCell::reuseIdentifier);
  tableView_->setEstimatedRowHeight(44);
  tableView_->setRowHeight(UITableViewAutomaticDimension);
  // It lies between the header and the bar; a host's bar that comes back while the chat closes must not push its rows.
  tableView_->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);

  // Shows where messages slide under the title.
  headerLine_ = make<UIView>();
  headerLine_->setBackgroundColor(hairline);
  headerLine_->setUserInteractionEnabled(false);
  headerLine_->setAlpha(0);
}

void TLChatViewController::makeConstraints() {
  const auto& root = view();
  const auto safe = root->safeAreaLayoutGuide();
  const auto& bar = inputContainerView_;
  inputContainerBottomConstraint_ = bar->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor());
  tableViewBottomConstraint_ = tableView_->bottomAnchor().constraintEqualToAnchor(bar->topAnchor());
  crossTopConstraint_ = crossButton_->topAnchor().constraintEqualToAnchor(safe->topAnchor());
  NSLayoutConstraint::activateConstraints({
      inputContainerBottomConstraint_,
      tableViewBottomConstraint_,
      crossTopConstraint_,
      crossButton_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -20),
      crossButton_->widthAnchor().constraintEqualToConstant(30),
      crossButton_->heightAnchor().constraintEqualToConstant(30),
      titleLabel_->centerYAnchor().constraintEqualToAnchor(crossButton_->centerYAnchor()),
      titleLabel_->centerXAnchor().constraintEqualToAnchor(root->centerXAnchor()),
      bar->leftAnchor().constraintEqualToAnchor(root->leftAnchor()),
      bar->widthAnchor().constraintEqualToAnchor(root->widthAnchor()),
      bar->heightAnchor().constraintEqualToConstant(70),
      inputTextField_->leftAnchor().constraintEqualToAnchor(bar->leftAnchor(), 12),
      inputTextField_->centerYAnchor().constraintEqualToAnchor(bar->centerYAnchor()),
      inputTextField_->rightAnchor().constraintEqualToAnchor(sendButton_->leftAnchor(), -12),
      inputTextField_->heightAnchor().constraintEqualToConstant(50),
      sendButton_->rightAnchor().constraintEqualToAnchor(bar->rightAnchor(), -12),
      sendButton_->centerYAnchor().constraintEqualToAnchor(bar->centerYAnchor()),
      sendButton_->widthAnchor().constraintEqualToConstant(80),
      sendButton_->heightAnchor().constraintEqualToConstant(50),
      tableView_->topAnchor().constraintEqualToAnchor(crossButton_->bottomAnchor(), 10),
      tableView_->leftAnchor().constraintEqualToAnchor(root->leftAnchor()),
      tableView_->rightAnchor().constraintEqualToAnchor(root->rightAnchor()),
      headerLine_->topAnchor().constraintEqualToAnchor(tableView_->topAnchor()),
      headerLine_->leftAnchor().constraintEqualToAnchor(root->leftAnchor()),
      headerLine_->rightAnchor().constraintEqualToAnchor(root->rightAnchor()),
      headerLine_->heightAnchor().constraintEqualToConstant(0.5),
      inputBackdrop_->topAnchor().constraintEqualToAnchor(bar->bottomAnchor()),
      inputBackdrop_->leftAnchor().constraintEqualToAnchor(root->leftAnchor()),
      inputBackdrop_->rightAnchor().constraintEqualToAnchor(root->rightAnchor()),
      inputBackdrop_->bottomAnchor().constraintEqualToAnchor(root->bottomAnchor()),
  });
}

void TLChatViewController::observeKeyboard() {
  NotificationCenter& center = NotificationCenter::defaultCenter();
  center.addObserver(self(), sel("handleKeyboardWillShow:"), UIKeyboardWillShowNotification);
  center.addObserver(self(), sel("handleKeyboardWillHide:"), UIKeyboardWillHideNotification);
}

}  // namespace lumicor
