#include <gmock/gmock.h>
#include <set>

#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/text/KeyboardLayout.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Takes text the simplest way.
class TypedView : public Object<TypedView, UIView> {
 public:
  bool canBecomeFirstResponder() override { return true; }
  bool wantsKeyboard() override { return true; }
  Ref<UIView> inputView() override { return input; }
  UITextInputTraits textInputTraits() override { return traits; }
  bool keyPressed(const UIKey& key) override {
    if (key.code == UIKey::Code::backspace) {
      if (!text.empty()) text.pop_back();
    } else {
      text += key.text;
    }
    return true;
  }
  std::string text;
  Ref<UIView> input;
  UITextInputTraits traits;
};

class KeyboardTest : public AppFixture {
 protected:
  KeyboardTest() {
    view = make<TypedView>();
    content()->addSubview(view);
    for (const std::string& name : {UIKeyboardWillShowNotification, UIKeyboardDidShowNotification,
                                    UIKeyboardWillHideNotification, UIKeyboardDidHideNotification}) {
      tokens.push_back(NotificationCenter::defaultCenter().addObserver(name, nullptr, [this](const Notification& told) {
        log.push_back(told.name().substr(10, told.name().size() - 22));
        frame = *told.value<CGRect>(UIKeyboardFrameEndUserInfoKey);
        EXPECT_EQ(*told.value<double>(UIKeyboardAnimationDurationUserInfoKey), 0.25);
      }));
    }
  }
  void tapKey(const std::string& name) {
    const auto center = UIKeyboard::shared().keyCenter(name);
    ASSERT_TRUE(center) << name;
    tap(*center);
  }

  Ref<TypedView> view;
  std::vector<std::string> log;
  CGRect frame;
  std::vector<Ref<NotificationCenter::Token>> tokens;
};

constexpr CGRect shownFrame{0, 844 - 250, 390, 250};

}  // namespace

TEST(KeyboardLayout, CoversThePanelWithoutOverlaps) {
  for (const UIKeyboardType type : {UIKeyboardType::standard, UIKeyboardType::emailAddress, UIKeyboardType::URL,
                                    UIKeyboardType::numberPad, UIKeyboardType::decimalPad, UIKeyboardType::phonePad}) {
    for (const KeyboardPlane plane : {KeyboardPlane::letters, KeyboardPlane::numbers, KeyboardPlane::symbols}) {
      for (const double width : {320.0, 390.0, 844.0}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(type) << " " << static_cast<int>(plane) << " " << width);
        const KeyboardLayout layout = KeyboardLayout::make({type}, plane, false, width);
        std::set<std::string> names;
        for (const KeyboardKey& key : layout.keys) {
          EXPECT_TRUE((CGRect{0, 0, width, KeyboardLayout::height}).contains(key.frame)) << key.name;
          EXPECT_TRUE(names.insert(key.name).second) << "twice: " << key.name;
          EXPECT_EQ(layout.keyAt(key.frame.center()), &key);
          for (const KeyboardKey& other : layout.keys) {
            EXPECT_TRUE(&key == &other || !key.frame.intersects(other.frame)) << key.name << " and " << other.name;
          }
        }
        EXPECT_TRUE(layout.keyNamed("\b"));
      }
    }
  }
}

TEST_F(KeyboardTest, SlidesInAndOutAndTellsSo) {
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
  view->becomeFirstResponder();
  EXPECT_THAT(log, ElementsAre("WillShow"));
  EXPECT_EQ(frame, shownFrame);
  EXPECT_EQ(UIKeyboard::shared().frame(), shownFrame);
  advance(0.2);
  EXPECT_THAT(log, ElementsAre("WillShow"));
  advance(0.1);
  EXPECT_THAT(log, ElementsAre("WillShow", "DidShow"));
  EXPECT_EQ(UIApplication::shared().keyWindow(), window());
  EXPECT_EQ(UIApplication::shared().windows().size(), 2u);

  log.clear();
  view->resignFirstResponder();
  EXPECT_THAT(log, ElementsAre("WillHide"));
  EXPECT_EQ(frame.origin.y, 844);
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
  advance(0.3);
  EXPECT_THAT(log, ElementsAre("WillHide", "DidHide"));
  EXPECT_EQ(UIApplication::shared().windows().size(), 1u);
}

TEST_F(KeyboardTest, StaysWhileOneResponderFollowsAnother) {
  const auto other = make<TypedView>();
  content()->addSubview(other);
  view->becomeFirstResponder();
  advance(0.3);
  log.clear();
  other->becomeFirstResponder();
  advance(0.3);
  EXPECT_THAT(log, IsEmpty());

  const auto picker = make<UIView>(CGRect{0, 0, 100, 300});
  view->input = picker;
  view->becomeFirstResponder();
  EXPECT_THAT(log, ElementsAre("WillShow")) << "it grows";
  EXPECT_EQ(frame, (CGRect{0, 844 - 334, 390, 334}));
  EXPECT_FALSE(UIKeyboard::shared().showsKeys());
  EXPECT_EQ(picker->convertRect(picker->bounds(), nullptr), (CGRect{0, 844 - 334, 390, 300}));
  advance(0.3);
  other->becomeFirstResponder();
  EXPECT_EQ(picker->superview(), nullptr);
  EXPECT_TRUE(UIKeyboard::shared().showsKeys());
}

TEST_F(KeyboardTest, TurnsRoundHalfway) {
  view->becomeFirstResponder();
  advance(0.1);
  view->resignFirstResponder();
  advance(0.1);
  view->becomeFirstResponder();
  advance(1);
  EXPECT_THAT(log, ElementsAre("WillShow", "WillHide", "WillShow", "DidShow"));
  EXPECT_EQ(UIApplication::shared().windows().size(), 2u);
}

TEST_F(KeyboardTest, GoesWithAResponderThatDies) {
  view->becomeFirstResponder();
  advance(0.3);
  log.clear();
  view->removeFromSuperview();
  view.reset();
  advance(0.3);
  EXPECT_THAT(log, ElementsAre("WillHide", "DidHide"));
}

TEST_F(KeyboardTest, TypesWhatIsTapped) {
  view->becomeFirstResponder();
  advance(0.3);
  for (const char* key : {"h", "i", " ", "shift"}) tapKey(key);
  tapKey("Y");
  tapKey("o");
  tapKey("\b");
  tapKey("123");
  tapKey("5");
  tapKey("#+=");
  tapKey("€");
  tapKey("123");
  tapKey("!");
  tapKey(" ");
  tapKey("a");
  tapKey("\n");
  EXPECT_EQ(view->text, "hi Y5€! a\n") << "a blank leads back to the letters";
}

TEST_F(KeyboardTest, LocksCapitalsAtADoubleTapAndRepeatsBackspace) {
  view->becomeFirstResponder();
  advance(0.3);
  tapKey("shift");
  tapKey("shift");
  tapKey("A");
  tapKey("B");
  tapKey("shift");
  tapKey("c");
  EXPECT_EQ(view->text, "ABc");
  view->text = "0123456789";
  longPress(*UIKeyboard::shared().keyCenter("\b"), 0.85);
  EXPECT_EQ(view->text, "01234") << "one at once, then after half a second ten a second";
  const CGPoint q = *UIKeyboard::shared().keyCenter("q");
  const CGPoint e = *UIKeyboard::shared().keyCenter("e");
  view->text.clear();
  drag({q, e}, 0.2);
  EXPECT_EQ(view->text, "e") << "a finger may slide to the key it meant";
}

TEST_F(KeyboardTest, IsTypedOnByTheTouchDriverWhereItCan) {
  const std::string text = "Tea, 2 cups (hot) — für 5€!\nOK";
  type(text);
  EXPECT_EQ(view->text, "") << "nobody is first responder";
  view->becomeFirstResponder();
  advance(0.3);
  type(text);
  EXPECT_EQ(view->text, text);
  view->text.clear();
  type("aBcD");
  EXPECT_EQ(view->text, "aBcD") << "two shifts with a letter between them lock nothing";
  view->text = text;
  type("\b\b");
  EXPECT_EQ(view->text, text.substr(0, text.size() - 2));

  view->resignFirstResponder();
  view->traits.keyboardType = UIKeyboardType::decimalPad;
  view->text.clear();
  view->becomeFirstResponder();
  advance(0.3);
  EXPECT_THAT(UIKeyboard::shared().keysToType("7"), ElementsAre("7"));
  EXPECT_THAT(UIKeyboard::shared().keysToType("a"), IsEmpty());
  type("3.5a");
  EXPECT_EQ(view->text, "3.5a");
}

TEST_F(KeyboardTest, SuggestsCapitalsWhereASentenceBegins) {
  const auto field = make<UITextField>(CGRect{20, 100, 300, 40});
  content()->addSubview(field);
  field->becomeFirstResponder();
  advance(0.3);
  const auto isUpper = [] { return UIKeyboard::shared().keyCenter("Q").has_value(); };
  EXPECT_TRUE(isUpper());
  tapKey("Q");
  EXPECT_FALSE(isUpper());
  type(". ");
  EXPECT_TRUE(isUpper());
  tapKey("shift");
  EXPECT_FALSE(isUpper()) << "a person knows better";
  settle();
  EXPECT_FALSE(isUpper());
  tapKey("q");
  EXPECT_EQ(field->text(), "Q. q");
  field->setText("");
  settle();
  EXPECT_TRUE(isUpper()) << "the program emptied the field";
  field->setAutocapitalizationType(UITextAutocapitalizationType::none);
  settle();
  EXPECT_FALSE(isUpper());
}

TEST_F(KeyboardTest, LooksTheSameAsItDid) {
  content()->setBackgroundColor(UIColor(0.95, 0.95, 0.97, 1));
  view->traits.returnKeyType = UIReturnKeyType::send;
  view->becomeFirstResponder();
  advance(0.3);
  tapKey("shift");
  picture("keyboard-capitals");
  tapKey("A");
  const CGPoint g = *UIKeyboard::shared().keyCenter("g");
  UIApplication::shared().deliverTouch(5, UITouchPhase::began, g, Clock::mediaTime());
  picture("keyboard-held");
  UIApplication::shared().deliverTouch(5, UITouchPhase::cancelled, g, Clock::mediaTime());
  EXPECT_EQ(view->text, "A") << "a cancelled touch types nothing";
  tapKey("123");
  picture("keyboard-numbers");
  view->resignFirstResponder();
  view->traits.keyboardType = UIKeyboardType::decimalPad;
  view->becomeFirstResponder();
  advance(0.3);
  picture("keyboard-pad");
}

}  // namespace platform::test
