#include "platform/uikit/controllers/UIAlertController.h"

#include <algorithm>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double panelWidth = 270;
constexpr double margin = 16;
constexpr double buttonHeight = 44;

}  // namespace

UIAlertAction::UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler)
    : title_(std::move(title)), style_(style), handler_(std::move(handler)) {}

UIAlertController::UIAlertController() = default;
UIAlertController::~UIAlertController() = default;

void UIAlertController::exportMethods(MethodTable<UIAlertController>& table) {
  table.add<&UIAlertController::buttonTapped>("buttonTapped:");
}

void UIAlertController::init(const std::string& title, const std::optional<std::string>& message) {
  setTitle(title);
  message_ = message;
  setModalPresentationStyle(UIModalPresentationStyle::overFullScreen);
  setModalTransitionStyle(UIModalTransitionStyle::crossDissolve);
}

void UIAlertController::addAction(const Ref<UIAlertAction>& action) {
  const bool lastCancels = !actions_.empty() && actions_.back()->style() == UIAlertActionStyle::cancel;
  actions_.insert(lastCancels ? actions_.end() - 1 : actions_.end(), action);
}

void UIAlertController::viewDidLoad() {
  // Of two the cancelling one stands first, at the left.
  if (actions_.size() == 2 && actions_.back()->style() == UIAlertActionStyle::cancel) {
    std::swap(actions_.front(), actions_.back());
  }
  view()->setBackgroundColor(UIColor::black().colorWithAlphaComponent(0.25));
  panel_ = make<UIView>();
  panel_->setBackgroundColor(UIColor(0.97, 0.97, 0.975, 1));
  panel_->layer()->setCornerRadius(14);
  panel_->setClipsToBounds(true);
  view()->addSubview(panel_);

  const auto label = [this](const std::string& text, const UIFont& font) {
    auto made = make<UILabel>();
    made->setText(text);
    made->setFont(font);
    made->setTextAlignment(NSTextAlignment::center);
    made->setNumberOfLines(0);
    panel_->addSubview(made);
    return made;
  };
  titleLabel_ = label(title(), UIFont::systemFont(17, UIFontWeightSemibold));
  if (message_) messageLabel_ = label(*message_, UIFont::systemFont(13));
  for (const Ref<UIAlertAction>& action : actions_) {
    auto line = make<UIView>();
    line->setBackgroundColor(UIColor::separator());
    panel_->addSubview(line);
    lines_.push_back(line);
    auto button = make<UIButton>(UIButtonType::system);
    button->setTitle(action->title(), UIControlState::normal);
    button->setAccessibilityLabel(action->title());
    const bool strong = action->style() == UIAlertActionStyle::cancel;
    button->titleLabel()->setFont(UIFont::systemFont(17, strong ? UIFontWeightSemibold : UIFontWeightRegular));
    if (action->style() == UIAlertActionStyle::destructive) {
      button->setTitleColor(UIColor::systemRed(), UIControlState::normal);
    }
    button->addTarget(self(), sel("buttonTapped:"), UIControlEvents::touchUpInside);
    panel_->addSubview(button);
    buttons_.push_back(button);
  }
}

void UIAlertController::viewDidLayoutSubviews() {
  const double width = panelWidth - 2 * margin;
  double y = 20;
  for (const Ref<UIView>& text : {titleLabel_, messageLabel_}) {
    if (!text) continue;
    const double height = text->sizeThatFits({width, CGFloatMax}).height;
    text->setFrame({margin, y, width, height});
    y += height + 4;
  }
  y += 16;
  const double hair = 1 / UIScreen::main().scale();
  const bool sideBySide = buttons_.size() == 2;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const double share = sideBySide ? panelWidth / 2 : panelWidth;
    const double x = sideBySide ? share * static_cast<double>(i) : 0;
    buttons_[i]->setFrame({x, y, share, buttonHeight});
    const bool upright = sideBySide && i == 1;
    lines_[i]->setFrame(upright ? CGRect{x, y, hair, buttonHeight} : CGRect{0, y, panelWidth, hair});
    if (!sideBySide || i == 1) y += buttonHeight;
  }
  const CGSize all = view()->bounds().size;
  panel_->setFrame({(all.width - panelWidth) / 2, (all.height - y) / 2, panelWidth, y});
}

void UIAlertController::buttonTapped(Ref<NSObject> sender) {
  const auto place = std::find(buttons_.begin(), buttons_.end(), as<UIView>(sender));
  if (place == buttons_.end()) return;
  const Ref<UIAlertAction> action = actions_[static_cast<std::size_t>(place - buttons_.begin())];
  dismissViewController(true, [action] {
    if (action->handler()) action->handler()();
  });
}

}  // namespace platform
