#include "platform/uikit/text/TextEditMenu.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double height = 38;
constexpr double gap = 8;
constexpr double margin = 8;

Weak<TextEditMenu>& shown() {
  static Weak<TextEditMenu> menu;
  return menu;
}

}  // namespace

void TextEditMenu::exportMethods(MethodTable<TextEditMenu>& table) { table.add<&TextEditMenu::choose>("choose:"); }

Ref<TextEditMenu> TextEditMenu::current() { return shown().lock(); }

void TextEditMenu::dismiss() {
  if (const Ref<TextEditMenu> menu = current()) menu->removeFromSuperview();
  shown().reset();
}

void TextEditMenu::show(const Ref<UIView>& owner, CGRect rect, Commands commands) {
  dismiss();
  const Ref<UIView> window = owner->windowView();
  if (!window || !commands.any()) return;
  const Ref<TextEditMenu> menu = make<TextEditMenu>(window->bounds());
  menu->setFrontLevel(std::numeric_limits<int>::max());
  menu->build(owner, owner->convertRect(rect, window.get()), commands);
  window->addSubview(menu);
  shown() = menu;
}

void TextEditMenu::build(const Ref<UIView>& owner, CGRect rect, Commands commands) {
  owner_ = owner;
  bar_ = make<UIView>();
  bar_->setBackgroundColor(UIColor(0.98, 0.98, 0.98, 1));
  const Ref<CALayer>& layer = bar_->layer();
  layer->setCornerRadius(10);
  layer->setShadowOpacity(0.2);
  layer->setShadowRadius(12);
  layer->setShadowOffset({0, 4});
  addSubview(bar_);
  double x = 0;
  const auto add = [&](bool wanted, const char* title, const char* command) {
    if (!wanted) return;
    if (x > 0) {
      const double hairline = 1 / UIScreen::main().scale();
      const Ref<UIView> divider = make<UIView>(CGRect{x, 0, hairline, height});
      divider->setBackgroundColor(UIColor::separator());
      bar_->addSubview(divider);
    }
    const Ref<UIButton> button = make<UIButton>(UIButtonType::custom);
    button->setTitle(title, UIControlState::normal);
    button->setTitleColor(UIColor::label(), UIControlState::normal);
    button->titleLabel()->setFont(UIFont::systemFont(15));
    button->setContentEdgeInsets({0, 14, 0, 14});
    button->addTarget(self(), sel("choose:"), UIControlEvents::touchUpInside);
    button->setFrame({x, 0, button->sizeThatFits({}).width, height});
    x += button->bounds().size.width;
    bar_->addSubview(button);
    choices_.emplace_back(button, sel(command));
  };
  add(commands.cut, "Cut", "cut:");
  add(commands.copy, "Copy", "copy:");
  add(commands.paste, "Paste", "paste:");
  add(commands.undo, "Undo", "undo:");
  add(commands.redo, "Redo", "redo:");
  add(commands.selectAll, "Select All", "selectAll:");
  const CGRect room = bounds();
  const double left = std::clamp(rect.midX() - x / 2, margin, std::max(margin, room.maxX() - margin - x));
  double top = rect.minY() - gap - height;
  if (top < safeAreaInsets().top + margin) top = rect.maxY() + gap;
  bar_->setFrame({left, top, x, height});
}

bool TextEditMenu::pointInside(CGPoint point, const Ref<UIEvent>& event) const {
  if (bar_->frame().contains(point)) return true;
  // Any touch beside it takes it away and goes where it was meant to go.
  if (event) DispatchQueue::main().async([] { dismiss(); });
  return false;
}

bool TextEditMenu::performShortcut(NSObject& owner, char letter, bool shift) {
  static constexpr std::pair<char, const char*> shortcuts[] = {{'a', "selectAll:"}, {'c', "copy:"}, {'x', "cut:"},
                                                               {'v', "paste:"},     {'z', "undo:"}, {'y', "redo:"}};
  if (letter == 'z' && shift) letter = 'y';
  for (const auto& [key, command] : shortcuts) {
    if (key != letter) continue;
    owner.perform(sel(command), Ref<NSObject>());
    return true;
  }
  return false;
}

void TextEditMenu::choose(const Ref<NSObject>& button) {
  const Ref<TextEditMenu> keeper = self();
  dismiss();
  const Ref<UIView> owner = owner_.lock();
  for (const auto& [known, command] : choices_) {
    if (known == button) sendOptional(owner, command, button);
  }
}

}  // namespace platform
