#include "platform/foundation/NotificationCenter.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

using Code = UIKey::Code;

/// A delegate that answers as it is told to and writes down what it is asked; a target as well.
class FieldDelegate : public Object<FieldDelegate, NSObject> {
 public:
  Journal journal;
  bool begins = true, ends = true, changes = true, clears = true, returns = true;
  std::function<void()> onChange;

  bool shouldBegin(const Ref<NSObject>&) { return journal.note("begin?"), begins; }
  void didBegin(const Ref<NSObject>&) { journal.note("begun"); }
  bool shouldEnd(const Ref<NSObject>&) { return journal.note("end?"), ends; }
  void didEnd(const Ref<NSObject>&) { journal.note("ended"); }
  bool shouldChange(const Ref<NSObject>&, NSRange range, std::string text) {
    journal.note("change?" + std::to_string(range.location) + "+" + std::to_string(range.length) + "=" + text);
    if (onChange) onChange();
    return changes;
  }
  bool shouldClear(const Ref<NSObject>&) { return journal.note("clear?"), clears; }
  bool shouldReturn(const Ref<NSObject>&) { return journal.note("return?"), returns; }
  void changed() { journal.note("changed"); }
  void editing() { journal.note("editing"); }
  void finished() { journal.note("finished"); }
  void exited() { journal.note("exited"); }

  static void exportMethods(MethodTable<FieldDelegate>& table) {
    table.add<&FieldDelegate::shouldBegin>("textFieldShouldBeginEditing:");
    table.add<&FieldDelegate::didBegin>("textFieldDidBeginEditing:");
    table.add<&FieldDelegate::shouldEnd>("textFieldShouldEndEditing:");
    table.add<&FieldDelegate::didEnd>("textFieldDidEndEditing:");
    table.add<&FieldDelegate::shouldChange>("textField:shouldChangeCharactersInRange:replacementString:");
    table.add<&FieldDelegate::shouldClear>("textFieldShouldClear:");
    table.add<&FieldDelegate::shouldReturn>("textFieldShouldReturn:");
    table.add<&FieldDelegate::changed>("changed");
    table.add<&FieldDelegate::editing>("editing");
    table.add<&FieldDelegate::finished>("finished");
    table.add<&FieldDelegate::exited>("exited");
  }
};

class TextFieldTest : public AppFixture {
 protected:
  TextFieldTest() {
    field->setBorderStyle(UITextBorderStyle::roundedRect);
    field->setFrame({20, 100, 300, 36});
    field->setAccessibilityIdentifier("field");
    content()->addSubview(field);
    settle();
  }
  void listen() {
    field->setDelegate(delegate);
    field->addTarget(delegate, sel("changed"), UIControlEvents::editingChanged);
    field->addTarget(delegate, sel("editing"), UIControlEvents::editingDidBegin);
    field->addTarget(delegate, sel("finished"), UIControlEvents::editingDidEnd);
  }
  static UIKey typed(const std::string& text) { return {Code::character, text, false, false}; }
  static UIKey command(const std::string& letter) { return {Code::character, letter, false, true}; }
  static UIKey pressed(Code code, bool shift = false, bool control = false) { return {code, "", shift, control}; }
  void keys(const std::vector<UIKey>& all) {
    for (const UIKey& key : all) UIApplication::shared().deliverKey(key);
  }
  /// The text with the selection in brackets, or a bar for the caret.
  std::string shown() const {
    std::string text = field->text().value_or("(none)");
    const NSRange range = field->selectedRange();
    if (range.length == 0) return text.insert(static_cast<std::size_t>(range.location), "|");
    text.insert(static_cast<std::size_t>(range.end()), "]");
    return text.insert(static_cast<std::size_t>(range.location), "[");
  }

  Ref<UITextField> field = make<UITextField>();
  Ref<FieldDelegate> delegate = make<FieldDelegate>();
};

TEST_F(TextFieldTest, KeysEditTheText) {
  const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
  const struct {
    const char* name;
    std::string before;
    std::vector<UIKey> keys;
    std::string after;
  } table[] = {
      {"typing", "", {typed("t"), typed("e"), typed("a")}, "tea|"},
      {"backspace", "tea", {pressed(Code::backspace)}, "te|"},
      {"backspace at the start", "tea", {pressed(Code::home), pressed(Code::backspace)}, "|tea"},
      {"forward delete", "tea", {pressed(Code::home), pressed(Code::forwardDelete)}, "|ea"},
      {"forward delete at the end", "tea", {pressed(Code::forwardDelete)}, "tea|"},
      {"arrows", "tea", {pressed(Code::left), pressed(Code::left), typed("x"), pressed(Code::right)}, "txe|a"},
      {"arrows stop at the ends", "a", {pressed(Code::right), pressed(Code::left), pressed(Code::left)}, "|a"},
      {"up and down are the ends", "tea", {pressed(Code::up), typed("1"), pressed(Code::down), typed("2")}, "1tea2|"},
      {"shift selects", "tea", {pressed(Code::left, true), pressed(Code::left, true)}, "t[ea]"},
      {"typing replaces the selection", "tea", {pressed(Code::left, true), typed("n")}, "ten|"},
      {"an arrow leaves the selection", "tea", {pressed(Code::home, true), pressed(Code::right)}, "tea|"},
      {"an arrow leaves it at its start", "tea", {pressed(Code::home, true), pressed(Code::left)}, "|tea"},
      {"shift turns round", "tea", {pressed(Code::left, true), pressed(Code::right, true)}, "tea|"},
      {"words", "green tea", {pressed(Code::left, false, true), typed("x")}, "green x|tea"},
      {"selecting words", "green tea", {pressed(Code::left, true, true)}, "green [tea]"},
      {"deleting words", "green tea", {pressed(Code::backspace, false, true)}, "green |"},
      {"select all and type", "green tea", {command("a"), typed("x")}, "x|"},
      {"cut and paste", "tea", {command("a"), command("x"), command("v"), command("v")}, "teatea|"},
      {"copy", "tea", {pressed(Code::left, true), command("c"), pressed(Code::end), command("v")}, "teaa|"},
      {"a flag is one character", "a" + flag, {pressed(Code::backspace)}, "a|"},
      {"a flag is one step", "a" + flag, {pressed(Code::left), typed("b")}, "ab|" + flag},
      {"a letter with its mark", "e\xCC\x81x", {pressed(Code::left), pressed(Code::backspace)}, "|x"},
      {"breaks become blanks", "", {typed("a\nb\tc")}, "a b c|"},
      {"bytes that are no text", "a\xFF", {pressed(Code::backspace), typed("\xC3")}, "a\xC3|"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    UIPasteboard::general().setString(std::nullopt);
    field->setText("");
    ASSERT_TRUE(field->becomeFirstResponder());
    field->setText(row.before);
    keys(row.keys);
    EXPECT_EQ(shown(), row.after);
    settle();
    field->resignFirstResponder();
  }
}

TEST_F(TextFieldTest, ArrowsFollowTheScreenInRightToLeftText) {
  field->setText("\xD7\xA9\xD7\x9C\xD7\x95");  // three letters, two bytes each
  field->becomeFirstResponder();
  keys({pressed(Code::home), pressed(Code::left)});
  EXPECT_EQ(field->selectedRange(), (NSRange{2, 0}));
  keys({pressed(Code::right)});
  EXPECT_EQ(field->selectedRange(), (NSRange{0, 0}));
}

TEST_F(TextFieldTest, EveryoneHearsOfEditingInOrder) {
  listen();
  std::vector<std::string> posted;
  std::vector<Ref<NotificationCenter::Token>> tokens;
  for (const std::string& name : {UITextFieldTextDidBeginEditingNotification, UITextFieldTextDidChangeNotification,
                                  UITextFieldTextDidEndEditingNotification}) {
    tokens.push_back(NotificationCenter::defaultCenter().addObserver(name, field, [&](const Notification& note) {
      posted.push_back(note.name());
      EXPECT_EQ(note.object(), field);
    }));
  }
  tap("field");
  EXPECT_TRUE(field->isEditing());
  EXPECT_EQ(delegate->journal.take(), "begin? editing begun");
  type("ab");
  EXPECT_EQ(delegate->journal.take(), "change?0+0=a changed change?1+0=b changed");
  field->resignFirstResponder();
  EXPECT_EQ(delegate->journal.take(), "end? finished ended");
  EXPECT_EQ(posted,
            (std::vector<std::string>{UITextFieldTextDidBeginEditingNotification, UITextFieldTextDidChangeNotification,
                                      UITextFieldTextDidChangeNotification, UITextFieldTextDidEndEditingNotification}));
}

TEST_F(TextFieldTest, ATextSetByProgramIsNoEdit) {
  listen();
  int changes = 0;
  const auto token = NotificationCenter::defaultCenter().addObserver(UITextFieldTextDidChangeNotification, nullptr,
                                                                     [&](const Notification&) { ++changes; });
  field->setText("Assam");
  EXPECT_EQ(delegate->journal.take(), "");
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(field->text(), "Assam");
  field->setText(std::nullopt);
  EXPECT_EQ(field->text(), std::nullopt);
  EXPECT_EQ(field->attributedText(), nullptr);
  field->becomeFirstResponder();
  keys({typed("x")});
  EXPECT_EQ(field->text(), "x");
}

TEST_F(TextFieldTest, TheDelegateMayRefuseEverything) {
  listen();
  delegate->begins = false;
  EXPECT_FALSE(field->becomeFirstResponder());
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
  delegate->begins = true;
  delegate->changes = false;
  delegate->ends = false;
  ASSERT_TRUE(field->becomeFirstResponder());
  keys({typed("x"), pressed(Code::backspace)});
  EXPECT_EQ(field->text(), "");
  EXPECT_FALSE(field->resignFirstResponder());
  EXPECT_TRUE(field->isFirstResponder());
  const auto other = make<UITextField>();
  content()->addSubview(other);
  EXPECT_FALSE(other->becomeFirstResponder());
  delegate->ends = true;
  EXPECT_TRUE(other->becomeFirstResponder());
}

TEST_F(TextFieldTest, TheDelegateIsAskedOnceWhenAnotherFieldTakesOver) {
  listen();
  field->becomeFirstResponder();
  delegate->journal.take();
  const auto other = make<UITextField>();
  content()->addSubview(other);
  other->becomeFirstResponder();
  EXPECT_EQ(delegate->journal.take(), "end? finished ended");
}

TEST_F(TextFieldTest, ADelegateThatSetsItsOwnTextIsNotOverwritten) {
  listen();
  field->becomeFirstResponder();
  delegate->changes = false;
  delegate->onChange = [&] { field->setText("MINE"); };
  keys({typed("x")});
  EXPECT_EQ(shown(), "MINE|");
  delegate->changes = true;
  delegate->onChange = [&] { field->setText(""); };
  field->setText("a long text");
  keys({pressed(Code::backspace)});
  EXPECT_EQ(field->text(), "");
}

TEST_F(TextFieldTest, ADelegateThatDiedRefusesNothing) {
  listen();
  delegate = nullptr;
  tap("field");
  type("ok\n");
  EXPECT_EQ(field->text(), "ok");
}

TEST_F(TextFieldTest, ReturnAsksTheDelegateAndEndsEditingWhereSomebodyWaitsForThat) {
  listen();
  field->becomeFirstResponder();
  delegate->journal.take();
  delegate->returns = false;
  type("\n");
  EXPECT_EQ(delegate->journal.take(), "return?");
  delegate->returns = true;
  type("\n");
  EXPECT_TRUE(field->isFirstResponder());
  field->addTarget(delegate, sel("exited"), UIControlEvents::editingDidEndOnExit);
  delegate->journal.take();
  type("\n");
  EXPECT_EQ(delegate->journal.take(), "return? exited end? finished ended");
  EXPECT_FALSE(field->isFirstResponder());
}

TEST_F(TextFieldTest, TheClearButtonEmptiesIt) {
  listen();
  field->setText("Assam");
  field->setClearButtonMode(UITextFieldViewMode::always);
  settle();
  const CGRect button = field->clearButtonRect(field->bounds());
  const CGPoint at = field->convertPoint(button.center(), nullptr);
  delegate->clears = false;
  tap(at);
  EXPECT_EQ(field->text(), "Assam");
  delegate->clears = true;
  tap(at);
  EXPECT_EQ(field->text(), "");
  EXPECT_EQ(delegate->journal.take(), "clear? clear? changed");
  field->undo(nullptr);
  EXPECT_EQ(field->text(), "Assam");
  field->redo(nullptr);
  EXPECT_TRUE(field->textRect(field->bounds()).maxX() > button.minX());  // the room of the button is free again
}

TEST_F(TextFieldTest, WhatWasOnceASecretStaysOneForReaders) {
  field->setText("open");
  EXPECT_FALSE(field->wasSecure());
  EXPECT_EQ(field->accessibilityValue(), "open");
  field->setSecureTextEntry(true);
  field->becomeFirstResponder();
  field->setText("");
  keys({typed("p"), typed("ä"), typed("🇩🇪")});
  EXPECT_EQ(field->accessibilityValue(), "•••") << "one for each character, also the last one typed";
  const auto picture = [&] {
    settle();
    return UIApplication::shared().screenshot()->pngRepresentation();
  };
  const std::string hidden = picture();
  field->setSecureTextEntry(false);  // the button beside it that shows the password
  EXPECT_NE(picture(), hidden) << "shown to the person who asked";
  EXPECT_TRUE(field->wasSecure());
  EXPECT_EQ(field->accessibilityValue(), "•••");
  EXPECT_EQ(field->text(), "pä🇩🇪") << "the host's own business";
  EXPECT_EQ(field->description().find("pä"), std::string::npos);
  field->setText(std::nullopt);
  EXPECT_EQ(field->accessibilityValue(), std::nullopt);
  EXPECT_TRUE(field->wasSecure());
}

TEST_F(TextFieldTest, ASecretIsToldToNoObserverAndKeptNowhere) {
  field->setSecureTextEntry(true);
  field->becomeFirstResponder();
  std::vector<std::string> told;
  const auto token = NotificationCenter::defaultCenter().addObserver(
      UITextFieldTextDidChangeNotification, field,
      [&](const Notification& note) { told.push_back(note.name() + note.object()->description()); });
  UIPasteboard::general().setString("before");
  for (const char letter : std::string("canary")) keys({typed(std::string(1, letter))});
  keys({command("a"), command("c"), command("x"), command("z"), command("y")});
  field->copy(nullptr);
  field->cut(nullptr);
  EXPECT_EQ(UIPasteboard::general().string(), "before");
  EXPECT_EQ(field->text(), "canary");
  field->setSecureTextEntry(false);
  field->undo(nullptr);
  field->redo(nullptr);
  EXPECT_EQ(field->text(), "canary") << "what was typed in secret is in no history";
  EXPECT_EQ(told.size(), 6u);
  for (const std::string& line : told) EXPECT_EQ(line.find("canary"), std::string::npos) << line;
}

TEST_F(TextFieldTest, AFieldThatSaysByItselfThatItIsSecureStaysSo) {
  struct Mirror : Object<Mirror, UITextField> {
    bool isSecureTextEntry() const override { return secure; }
    bool secure = true;
  };
  const auto mirror = make<Mirror>();
  mirror->setText("canary");
  EXPECT_EQ(mirror->accessibilityValue(), "••••••");
  mirror->secure = false;
  EXPECT_EQ(mirror->accessibilityValue(), "••••••");
}

TEST_F(TextFieldTest, ASecureTextIsNeverInThePicture) {
  field->setSecureTextEntry(true);
  field->becomeFirstResponder();
  const auto pictureOf = [&](const std::string& text) {
    field->setText("");
    for (const char letter : text) keys({typed(std::string(1, letter))});
    settle();
    return UIApplication::shared().screenshot()->pngRepresentation();
  };
  const std::string one = pictureOf("secret");
  EXPECT_EQ(pictureOf("hidden"), one);
  const auto pictureBeforeTheLast = [&](const std::string& text) {
    field->setText(text);
    keys({pressed(Code::left)});
    settle();
    return UIApplication::shared().screenshot()->pngRepresentation();
  };
  const std::string withFlag = pictureBeforeTheLast("hid\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA!n");
  EXPECT_EQ(withFlag, pictureBeforeTheLast("hidden")) << "a flag is one dot, and one step";
  EXPECT_NE(pictureOf("hidde"), one);
  EXPECT_EQ(field->text(), "hidde");
  EXPECT_TRUE(field->textInputTraits().isSecureTextEntry);
  UIPasteboard::general().setString("before");
  keys({command("a"), command("c"), command("x")});
  EXPECT_EQ(UIPasteboard::general().string(), "before");
  EXPECT_EQ(field->text(), "hidde");
  keys({pressed(Code::right), pressed(Code::left), pressed(Code::backspace)});
  EXPECT_EQ(field->text(), "hide");
}

TEST_F(TextFieldTest, TouchesPlaceTheCaretAndSelect) {
  field->setText("green tea");
  tap(CGPoint{22, 118});
  EXPECT_EQ(shown(), "|green tea");
  tap(CGPoint{315, 118});
  EXPECT_EQ(shown(), "green tea|");
  advance(1);
  tap(CGPoint{40, 118}, 2);
  EXPECT_EQ(shown(), "[green] tea");
  advance(1);
  tap(CGPoint{60, 118}, 3);
  EXPECT_EQ(shown(), "[green tea]");
  advance(1);
  drag({{29, 118}, {45, 118}, {200, 118}});
  EXPECT_EQ(shown(), "[green tea]");
}

TEST_F(TextFieldTest, ALongPressOffersTheEditCommands) {
  const auto choose = [&](const std::string& title) {
    const auto menu = TextEditMenu::current();
    ASSERT_NE(menu, nullptr);
    std::vector<Ref<UIView>> open{menu};
    while (!open.empty()) {
      const Ref<UIView> view = open.back();
      open.pop_back();
      open.insert(open.end(), view->subviews().begin(), view->subviews().end());
      const auto button = as<UIButton>(view);
      if (!button || button->currentTitle() != title) continue;
      hands().tap(button);
      advance(0.5);
      EXPECT_EQ(TextEditMenu::current(), nullptr);
      return;
    }
    ADD_FAILURE() << title << " is not offered";
  };
  UIPasteboard::general().setString(std::nullopt);
  field->setText("green tea");
  longPress({60, 118});
  EXPECT_TRUE(field->isEditing());
  choose("Select All");
  EXPECT_EQ(shown(), "[green tea]");
  longPress({60, 118});
  choose("Cut");
  EXPECT_EQ(shown(), "|");
  longPress({60, 118});
  choose("Paste");
  EXPECT_EQ(shown(), "green tea|");
  longPress({60, 118});
  ASSERT_NE(TextEditMenu::current(), nullptr);
  tap(CGPoint{200, 400});  // anywhere else
  EXPECT_EQ(TextEditMenu::current(), nullptr);
  field->setSecureTextEntry(true);
  field->selectAll(nullptr);
  UIPasteboard::general().setString(std::nullopt);
  longPress({60, 118});
  EXPECT_EQ(TextEditMenu::current(), nullptr);  // everything is selected, and nothing may be copied
}

TEST_F(TextFieldTest, TheCaretBlinksOnlyWhileEditing) {
  const auto picture = [&] { return UIApplication::shared().screenshot()->pngRepresentation(); };
  tap("field");
  advance(1);
  field->setSelectedRange({0, 0});
  settle();
  const std::string on = picture();
  advance(0.6);
  const std::string off = picture();
  EXPECT_NE(on, off);
  advance(0.5);
  EXPECT_EQ(picture(), on);
  type("x\b");
  EXPECT_EQ(picture(), on);  // every key shows it afresh
}

TEST_F(TextFieldTest, ALongTextScrollsSoThatTheCaretStaysInView) {
  field->becomeFirstResponder();
  for (int i = 0; i < 80; ++i) keys({typed("w")});
  settle();
  const auto picture = [&] { return UIApplication::shared().screenshot()->pngRepresentation(); };
  const std::string atEnd = picture();
  keys({pressed(Code::home)});
  settle();
  EXPECT_NE(picture(), atEnd);
  tap(CGPoint{30, 118});
  EXPECT_LT(field->selectedRange().location, 3);
}

TEST_F(TextFieldTest, AnInputViewTakesTheKeyboardsPlace) {
  const auto picker = make<UIPickerView>();
  field->setInputView(picker);
  tap("field");
  EXPECT_TRUE(UIKeyboard::shared().isVisible());
  EXPECT_FALSE(UIKeyboard::shared().showsKeys());
  EXPECT_EQ(field->inputView(), picker) << "readable, whoever looks for what the field is filled with";
  ASSERT_NE(picker->window(), nullptr);
  EXPECT_NE(picker->window(), field->window()) << "it hangs in the keyboard's window, not on the screen";
  field->resignFirstResponder();
  advance(1);
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
}

TEST_F(TextFieldTest, DisablingOrRemovingItEndsEditing) {
  listen();
  field->becomeFirstResponder();
  delegate->journal.take();
  field->setEnabled(false);
  EXPECT_EQ(delegate->journal.take(), "end? finished ended");
  EXPECT_FALSE(field->becomeFirstResponder());
  tap("field");
  EXPECT_FALSE(field->isEditing());
  field->setEnabled(true);
  field->becomeFirstResponder();
  delegate->ends = false;  // nobody is asked who takes a field off the screen
  delegate->journal.take();
  field->removeFromSuperview();
  EXPECT_FALSE(field->isEditing());
  EXPECT_EQ(UIResponder::firstResponder(), nullptr);
  EXPECT_NE(delegate->journal.take().find("ended"), std::string::npos);
}

/// What a host does that wants room around the text.
class PaddedField : public Object<PaddedField, UITextField> {
 public:
  CGRect textRect(CGRect bounds) const override { return bounds.insetBy(UIEdgeInsets{0, 12, 0, 12}); }
  CGRect placeholderRect(CGRect bounds) const override { return bounds.insetBy(UIEdgeInsets{0, 40, 0, 12}); }
  CGRect editingRect(CGRect bounds) const override { return bounds.insetBy(UIEdgeInsets{0, 80, 0, 12}); }
};

TEST_F(TextFieldTest, ASubclassMovesTheThreeRectangles) {
  const auto padded = make<PaddedField>();
  padded->setText("iii");
  padded->setFrame({0, 200, 200, 50});
  content()->addSubview(padded);
  settle();
  EXPECT_EQ(padded->intrinsicContentSize().width - 24, std::ceil(padded->intrinsicContentSize().width - 24));
  tap(CGPoint{100, 225});
  ASSERT_TRUE(padded->isEditing());
  advance(1);
  tap(CGPoint{70, 225});  // left of where the text begins while it is edited
  EXPECT_EQ(padded->selectedRange(), (NSRange{0, 0}));
  advance(1);
  tap(CGPoint{150, 225});
  EXPECT_EQ(padded->selectedRange(), (NSRange{3, 0}));
}

TEST_F(TextFieldTest, HostileTextsAreTypedAndShown) {
  field->becomeFirstResponder();
  for (const std::string& text : {std::string(1 << 20, 'x'), std::string("\xFF\xFE\x80"), std::string(3000, '\n'),
                                  std::string("a\0b", 3), std::string("\xE2\x80\xAE\xD7\xA9 abc")}) {
    field->setText(text);
    settle();
    keys({typed("y"), pressed(Code::left), pressed(Code::backspace), pressed(Code::home, true), command("c")});
    settle();
  }
}

TEST_F(TextFieldTest, TheTabKeyLeadsFromFieldToFieldInReadingOrder) {
  const auto place = [&](CGRect frame) {
    const auto other = make<UITextField>();
    other->setFrame(frame);
    content()->addSubview(other);
    return other;
  };
  const auto last = place({20, 300, 300, 36});
  const auto right = place({180, 200, 140, 36});
  const auto left = place({20, 200, 140, 36});
  place({20, 150, 300, 36})->setHidden(true);
  place({20, 160, 300, 36})->setEnabled(false);
  const auto notes = make<UITextView>();
  notes->setFrame({20, 400, 300, 80});
  content()->addSubview(notes);
  field->becomeFirstResponder();
  for (const Ref<UIView>& next : std::vector<Ref<UIView>>{left, right, last, notes}) {
    keys({pressed(Code::tab)});
    EXPECT_TRUE(next->isFirstResponder());
  }
  keys({pressed(Code::tab)});
  EXPECT_EQ(notes->text(), "\t");
  for (const Ref<UIView>& next : std::vector<Ref<UIView>>{last, right, left, field, notes}) {
    keys({pressed(Code::tab, true)});
    EXPECT_TRUE(next->isFirstResponder());
  }
}

}  // namespace
}  // namespace platform::test
