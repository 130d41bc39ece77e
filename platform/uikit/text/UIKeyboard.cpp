#include "platform/uikit/text/UIKeyboard.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/text/KeyboardHost.h"
#include "platform/uikit/text/UIKeyboardView.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"

namespace platform {

namespace {

constexpr UIViewAnimationCurve slideCurve = UIViewAnimationCurve::easeOut;
constexpr UIColor panelColor(0.820, 0.831, 0.859, 1);

/// An input view is as high as it was made, or as high as the keys.
double heightFor(const Ref<UIView>& input) {
  const double height = input ? input->bounds().size.height : 0;
  return height > 0 ? height : KeyboardLayout::height;
}

struct CaretContext {
  std::string before;
  UITextAutocapitalizationType capitals = UITextAutocapitalizationType::none;
};

std::optional<CaretContext> contextOf(const Ref<UIResponder>& responder) {
  CaretContext context;
  context.capitals = responder->textInputTraits().autocapitalizationType;
  std::size_t caret = 0;
  if (const auto field = as<UITextField>(responder)) {
    context.before = field->text().value_or(std::string());
    caret = static_cast<std::size_t>(field->selectedRange().location);
  } else if (const auto view = as<UITextView>(responder)) {
    context.before = view->text().value_or(std::string());
    caret = static_cast<std::size_t>(view->selectedRange().location);
  } else {
    return std::nullopt;
  }
  context.before.resize(std::min(caret, context.before.size()));
  return context;
}

/// A capital belongs at the caret.
bool wantsCapital(const CaretContext& context) {
  const std::string& before = context.before;
  switch (context.capitals) {
    case UITextAutocapitalizationType::none:
      return false;
    case UITextAutocapitalizationType::allCharacters:
      return true;
    case UITextAutocapitalizationType::words:
      return before.empty() || before.back() == ' ' || before.back() == '\n';
    case UITextAutocapitalizationType::sentences:
      break;
  }
  if (before.empty() || before.back() == '\n') return true;
  const std::size_t last = before.find_last_not_of(' ');
  if (last == std::string::npos) return true;
  return last + 1 < before.size() && std::string_view(".!?").find(before[last]) != std::string_view::npos;
}

}  // namespace

struct UIKeyboard::State {
  Ref<UIView> window;
  Ref<UIView> panel;
  Ref<UIKeyboardView> keys;
  Ref<UIView> inputView;
  Weak<UIResponder> responder;
  double height = 0;
  bool visible = false;
  std::uint64_t slide = 0;
  bool updating = false;

  void build();
  void fill(const Ref<UIResponder>& responder, const Ref<UIView>& input);
  void show(double newHeight);
  void hide();
  CGRect endFrame() const;
  void slideTo(CGRect frame, const std::string& will, const std::string& did);
  void post(const std::string& name) const;
  void suggestShift() const;
  void keepSecret(UIResponder& typist) const;
};

UIKeyboard& UIKeyboard::shared() {
  static const Ref<UIKeyboard>* const keyboard = new Ref<UIKeyboard>(make<UIKeyboard>());
  return **keyboard;
}

UIKeyboard::UIKeyboard() : state_(std::make_unique<State>()) {}
UIKeyboard::~UIKeyboard() = default;

bool UIKeyboard::isVisible() const { return state_->visible; }
bool UIKeyboard::showsKeys() const { return state_->visible && !state_->inputView; }
CGRect UIKeyboard::frame() const { return state_->endFrame(); }

// ---- First responder

void UIKeyboard::update() {
  State& state = *state_;
  const Ref<UIResponder> responder = UIResponder::firstResponder();
  const Ref<UIView> input = responder ? responder->inputView() : nullptr;
  const bool wanted = responder && (input || responder->wantsKeyboard());
  if (!wanted && !state.visible) return;
  if (wanted && state.visible && state.responder.lock() == responder && state.inputView == input) {
    if (!input) {
      state.suggestShift();  // other hands may have changed the text
      state.keepSecret(*responder);
    }
    return;
  }
  if (state.updating) return;  // from a notification below; it is looked at again after the turn
  state.updating = true;
  if (wanted) {
    state.build();
    state.fill(responder, input);
    state.show(heightFor(input) + UIDevice::current().profile().safeArea.bottom);
  } else {
    state.hide();
  }
  state.updating = false;
}

void UIKeyboard::State::build() {
  if (window) return;
  const CGRect screen = UIScreen::main().bounds();
  window = KeyboardHost::shared().makeKeyboardWindow();
  panel = make<UIView>(CGRect{0, screen.size.height, screen.size.width, KeyboardLayout::height});
  panel->setBackgroundColor(panelColor);
  window->addSubview(panel);
  keys = make<UIKeyboardView>(CGRect{0, 0, screen.size.width, KeyboardLayout::height});
  keys->setOnKey([this](const UIKey& key) {
    KeyboardHost::shared().deliverKey(key);
    suggestShift();
  });
  panel->addSubview(keys);
}

void UIKeyboard::State::fill(const Ref<UIResponder>& newResponder, const Ref<UIView>& input) {
  if (inputView && inputView != input) inputView->removeFromSuperview();
  responder = newResponder;
  inputView = input;
  keys->setHidden(input != nullptr);
  if (input) {
    panel->addSubview(input);
    input->setFrame({0, 0, panel->bounds().size.width, heightFor(input)});
  } else {
    keys->show(newResponder->textInputTraits());
    keepSecret(*newResponder);
    suggestShift();
  }
}

/// Keys light up under the finger, and would tell a recording what is typed as bullets.
void UIKeyboard::State::keepSecret(UIResponder& typist) const {
  keys->setHiddenFromCapture(typist.textInputTraits().isSecureTextEntry);
}

void UIKeyboard::State::suggestShift() const {
  const Ref<UIResponder> current = UIResponder::firstResponder();
  if (!current || current != responder.lock()) return;
  if (keys->traits().keyboardType != UIKeyboardType::standard) return;
  if (const auto context = contextOf(current)) keys->suggestShift(wantsCapital(*context));
}

// ---- Sliding

CGRect UIKeyboard::State::endFrame() const {
  const CGRect screen = UIScreen::main().bounds();
  return {0, visible ? screen.size.height - height : screen.size.height, screen.size.width, height};
}

void UIKeyboard::State::show(double newHeight) {
  if (visible && newHeight == height) return;
  const bool slidesIn = !visible;
  height = newHeight;
  visible = true;
  if (slidesIn && window->isHidden()) {
    UIView::performWithoutAnimation([&] {
      const CGRect screen = UIScreen::main().bounds();
      window->setFrame(screen);
      panel->setFrame({0, screen.size.height, screen.size.width, height});
      keys->setFrame({0, 0, screen.size.width, KeyboardLayout::height});
    });
    window->setHidden(false);
    window->layoutIfNeeded();
  }
  slideTo(endFrame(), UIKeyboardWillShowNotification, UIKeyboardDidShowNotification);
}

void UIKeyboard::State::hide() {
  visible = false;
  responder.reset();
  slideTo(endFrame(), UIKeyboardWillHideNotification, UIKeyboardDidHideNotification);
}

void UIKeyboard::State::slideTo(CGRect frame, const std::string& will, const std::string& did) {
  const std::uint64_t mine = ++slide;
  post(will);
  if (mine != slide) return;  // an observer turned it round
  UIView::animateWithDuration(
      animationDuration, 0, slideCurve, [&] { panel->setFrame(frame); },
      [this, mine, did](bool) {
        if (mine != slide) return;
        if (!visible) {
          window->setHidden(true);
          if (inputView) inputView->removeFromSuperview();
          inputView = nullptr;
        }
        post(did);
      });
}

void UIKeyboard::State::post(const std::string& name) const {
  UIView::performAlongside(animationDuration, slideCurve, [&] {
    NotificationCenter::defaultCenter().post(name, nullptr,
                                             {{UIKeyboardFrameEndUserInfoKey, endFrame()},
                                              {UIKeyboardAnimationDurationUserInfoKey, animationDuration},
                                              {UIKeyboardAnimationCurveUserInfoKey, slideCurve}});
  });
}

// ---- Finding keys

std::optional<CGPoint> UIKeyboard::keyCenter(const std::string& text) const {
  const State& state = *state_;
  if (!showsKeys()) return std::nullopt;
  const KeyboardKey* key = state.keys->keys().keyNamed(text);
  if (!key) return std::nullopt;
  const CGPoint inKeys = key->frame.center();
  return CGPoint{inKeys.x, frame().origin.y + inKeys.y};
}

std::vector<std::string> UIKeyboard::keysToType(const std::string& character) const {
  if (!showsKeys()) return {};
  const UIKeyboardView& keys = *state_->keys;
  if (keys.keys().keyNamed(character)) return {character};
  const bool isUpper = character.size() == 1 && character[0] >= 'A' && character[0] <= 'Z';
  const bool isLower = character.size() == 1 && character[0] >= 'a' && character[0] <= 'z';
  std::vector<std::string> path;
  const auto has = [&](KeyboardPlane plane, bool upper) {
    return KeyboardLayout::make(keys.traits(), plane, upper, keys.bounds().size.width).keyNamed(character) != nullptr;
  };
  if (has(KeyboardPlane::letters, isUpper)) {
    if (keys.plane() != KeyboardPlane::letters) path.emplace_back("ABC");
    const bool shifted = keys.shift() != UIKeyboardView::Shift::off;
    if ((isUpper && !shifted) || (isLower && shifted)) path.emplace_back("shift");
  } else if (has(KeyboardPlane::numbers, false)) {
    path.emplace_back("123");
  } else if (has(KeyboardPlane::symbols, false)) {
    if (keys.plane() == KeyboardPlane::letters) path.emplace_back("123");
    path.emplace_back("#+=");
  } else {
    return {};
  }
  path.push_back(character);
  return path;
}

}  // namespace platform
