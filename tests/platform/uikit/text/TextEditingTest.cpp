#include <functional>

#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/TextHistory.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/text/UndoManager.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

// What a hand does to a text is the same in a field and in a text view.

namespace platform::test {
namespace {

using Code = UIKey::Code;

const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
/// Four people joined into one picture.
const std::string family =
    "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7\xE2\x80\x8D\xF0\x9F\x91\xA6";
const std::string shalom = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D";  // four letters, two bytes each

/// Writes down what it is asked and told of edits, under the names of both.
class Witness : public Object<Witness, NSObject> {
 public:
  Journal journal;
  bool agrees = true;
  std::function<void()> asked = [] {};
  bool shouldChange(const Ref<NSObject>&, NSRange range, const std::string& text) {
    journal.note(std::to_string(range.location) + "+" + std::to_string(range.length) + "=" + text);
    asked();
    return agrees;
  }
  void changed() { journal.note("changed"); }
  void viewChanged(const Ref<NSObject>&) { changed(); }
  void selectionChanged(const Ref<NSObject>&) { journal.note("selection"); }
  static void exportMethods(MethodTable<Witness>& table) {
    table.add<&Witness::shouldChange>("textField:shouldChangeCharactersInRange:replacementString:");
    table.add<&Witness::shouldChange>("textView:shouldChangeTextInRange:replacementText:");
    table.add<&Witness::changed>("changed");
    table.add<&Witness::viewChanged>("textViewDidChange:");
    table.add<&Witness::selectionChanged>("textFieldDidChangeSelection:");
    table.add<&Witness::selectionChanged>("textViewDidChangeSelection:");
  }
};

/// Refuses every edit, under the names of both.
class Refusal : public Object<Refusal, NSObject> {
 public:
  int asked = 0;
  bool refuse(const Ref<NSObject>&, NSRange, const std::string&) { return ++asked, false; }
  static void exportMethods(MethodTable<Refusal>& table) {
    table.add<&Refusal::refuse>("textField:shouldChangeCharactersInRange:replacementString:");
    table.add<&Refusal::refuse>("textView:shouldChangeTextInRange:replacementText:");
  }
};

template <class Text>
class TextEditingTest : public AppFixture {
 protected:
  TextEditingTest() {
    text->setFrame({20, 100, 300, 36});
    content()->addSubview(text);
    settle();
  }
  static UIKey typed(const std::string& letters) { return {Code::character, letters, false, false}; }
  static UIKey command(const std::string& letter) { return {Code::character, letter, false, true}; }
  static UIKey key(Code code) { return {code, "", false, false}; }
  static UIKey shift(Code code) { return {code, "", true, false}; }
  static UIKey control(Code code) { return {code, "", false, true}; }
  static UIKey both(Code code) { return {code, "", true, true}; }
  void keys(const std::vector<UIKey>& all) {
    for (const UIKey& pressed : all) UIApplication::shared().deliverKey(pressed);
  }
  /// The text with the selection in brackets, or a bar for the caret.
  std::string shown() const {
    std::string all = text->text().value_or("(none)");
    const NSRange range = text->selectedRange();
    if (range.length == 0) return all.insert(static_cast<std::size_t>(range.location), "|");
    all.insert(static_cast<std::size_t>(range.end()), "]");
    return all.insert(static_cast<std::size_t>(range.location), "[");
  }
  /// Where a finger meets the text in front of that byte.
  CGPoint at(std::int64_t position) const {
    TextStyle style;
    style.font = text->font();
    const std::string all = text->text().value_or("");
    const double x = TextLayout::measure(all.substr(0, static_cast<std::size_t>(position)), style).width;
    const double side = std::is_same_v<Text, UITextView> ? 5 : 0;
    return {20 + side + x + 1, 118};
  }
  /// The titles of the edit menu, from left to right.
  static std::string offered() {
    Journal titles;
    forEachChoice([&](const Ref<UIButton>& choice) { titles.note(choice->currentTitle().value_or("?")); });
    return titles.take();
  }
  void choose(const std::string& title) {
    Ref<UIButton> found;
    forEachChoice([&](const Ref<UIButton>& choice) {
      if (choice->currentTitle() == title) found = choice;
    });
    ASSERT_NE(found, nullptr) << title << " is not offered";
    hands().tap(found);
    advance(0.5);
  }
  static void forEachChoice(const std::function<void(const Ref<UIButton>&)>& visit) {
    const Ref<TextEditMenu> menu = TextEditMenu::current();
    if (!menu) return;
    for (const Ref<UIView>& bar : menu->subviews()) {
      for (const Ref<UIView>& choice : bar->subviews()) {
        if (const auto button = as<UIButton>(choice)) visit(button);
      }
    }
  }

  Ref<Text> text = make<Text>();
};

using Texts = testing::Types<UITextField, UITextView>;
TYPED_TEST_SUITE(TextEditingTest, Texts);

TYPED_TEST(TextEditingTest, KeysMoveSelectAndDeleteWholeCharactersAndWords) {
  using Test = TextEditingTest<TypeParam>;
  const struct {
    const char* name;
    std::string before;
    std::vector<UIKey> keys;
    std::string after;
  } table[] = {
      {"shift and home", "green tea", {Test::shift(Code::home)}, "[green tea]"},
      {"shift and end", "tea", {Test::key(Code::home), Test::shift(Code::end)}, "[tea]"},
      {"an arrow leaves a selection at its edge", "tea", {Test::shift(Code::home), Test::key(Code::left)}, "|tea"},
      {"words to the left", "to the sea", {Test::control(Code::left), Test::control(Code::left)}, "to |the sea"},
      {"words to the right", "to the sea", {Test::control(Code::home), Test::control(Code::right)}, "to| the sea"},
      {"selected words", "to the sea", {Test::both(Code::left), Test::both(Code::left)}, "to [the sea]"},
      {"a selection gives way", "tea", {Test::both(Code::left), Test::typed("x")}, "x|"},
      {"a selection turns round",
       "tea",
       {Test::shift(Code::left), Test::shift(Code::left), Test::shift(Code::right)},
       "te[a]"},
      {"backspace takes a word", "green tea", {Test::control(Code::backspace)}, "green |"},
      {"backspace takes a selection, not a word",
       "green tea",
       {Test::shift(Code::left), Test::control(Code::backspace)},
       "green te|"},
      {"forward delete", "tea", {Test::control(Code::home), Test::key(Code::forwardDelete)}, "|ea"},
      {"forward delete takes a word",
       "to sea",
       {Test::control(Code::home), Test::control(Code::forwardDelete)},
       "| sea"},
      {"forward delete takes the selection", "tea", {Test::shift(Code::left), Test::key(Code::forwardDelete)}, "te|"},
      {"a family is one character", "a" + family, {Test::key(Code::backspace)}, "a|"},
      {"a family is one step",
       "a" + family + "b",
       {Test::key(Code::left), Test::shift(Code::left)},
       "a[" + family + "]b"},
      {"a flag deleted forwards", flag + flag, {Test::control(Code::home), Test::key(Code::forwardDelete)}, "|" + flag},
      {"a letter with its mark", "xe\xCC\x81", {Test::shift(Code::left)}, "x[e\xCC\x81]"},
      {"right to left, at its end", shalom, {Test::key(Code::right)}, shalom.substr(0, 6) + "|" + shalom.substr(6)},
      {"right to left, selected",
       shalom,
       {Test::control(Code::home), Test::shift(Code::left)},
       "[" + shalom.substr(0, 2) + "]" + shalom.substr(2)},
      {"everything", "green tea", {Test::command("a"), Test::key(Code::left)}, "|green tea"},
      {"a command that is none", "tea", {Test::command("q")}, "tea|"},
      {"nothing typed", "tea", {Test::typed("")}, "tea|"},
      {"escape", "tea", {Test::key(Code::escape)}, "tea|"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    ASSERT_TRUE(this->text->becomeFirstResponder());
    this->text->setText(row.before);
    this->keys(row.keys);
    EXPECT_EQ(this->shown(), row.after);
    this->settle();
    this->text->resignFirstResponder();
  }
}

TYPED_TEST(TextEditingTest, TheClipboardKeepsEveryByteAndARefusalStopsOnlyTheEdit) {
  const auto& text = this->text;
  const std::string mixed = "tea " + shalom + " " + family + " e\xCC\x81 \xFF";
  UIPasteboard::general().setString(std::nullopt);
  text->becomeFirstResponder();
  text->setText(mixed);
  this->keys({this->command("a"), this->command("x")});
  EXPECT_EQ(text->text(), "");
  EXPECT_FALSE(text->hasText());
  this->keys({this->command("v"), this->command("v")});
  EXPECT_EQ(text->text(), mixed + mixed);
  this->keys({this->command("c")});  // nothing is selected: the clipboard stays
  EXPECT_EQ(UIPasteboard::general().string(), mixed);

  const auto refusal = make<Refusal>();
  text->setText("tea");
  text->setDelegate(refusal);
  text->selectAll(nullptr);
  this->keys({this->command("x"), this->command("v"), this->key(Code::backspace), this->typed("z")});
  EXPECT_EQ(this->shown(), "[tea]");
  EXPECT_EQ(UIPasteboard::general().string(), "tea") << "what was to be cut was copied";
  EXPECT_EQ(refusal->asked, 4);
  this->keys({this->key(Code::right), this->key(Code::forwardDelete)});
  EXPECT_EQ(refusal->asked, 4) << "nobody is asked about nothing";
}

TYPED_TEST(TextEditingTest, TapsSelectWhatIsUnderThem) {
  this->text->setText("green, " + shalom + " " + flag + flag);
  this->tap(this->at(2));
  this->advance(1);
  EXPECT_TRUE(this->text->isFirstResponder());
  EXPECT_EQ(this->text->selectedRange(), (NSRange{2, 0}));
  this->tap(this->at(2), 2);
  EXPECT_EQ(this->text->selectedRange(), (NSRange{0, 5})) << "the word without its comma";
  this->advance(1);
  this->tap(this->at(9), 2);
  EXPECT_EQ(this->text->selectedRange(), (NSRange{7, 8}));
  this->advance(1);
  this->tap(this->at(3), 3);
  EXPECT_EQ(this->text->selectedRange(), (NSRange{0, 16 + 16}));
  this->advance(1);
  this->tap(this->at(16 + 8));
  EXPECT_EQ(this->text->selectedRange(), (NSRange{16 + 8, 0})) << "between two flags, never inside one";
}

TYPED_TEST(TextEditingTest, TheMenuOffersWhatCanBeDoneAndDoesIt) {
  const auto& text = this->text;
  UIPasteboard::general().setString(std::nullopt);
  text->setText("green tea");
  this->longPress(this->at(3));
  EXPECT_EQ(this->text->selectedRange(), (NSRange{3, 0}));
  EXPECT_EQ(this->offered(), "Select All");
  this->choose("Select All");
  EXPECT_EQ(this->shown(), "[green tea]");
  this->longPress(this->at(3));
  EXPECT_EQ(this->shown(), "[green tea]") << "a selection stays under a long press";
  EXPECT_EQ(this->offered(), "Cut Copy");
  this->choose("Copy");
  this->advance(1);
  this->tap(this->at(0));
  this->advance(1);
  this->longPress(this->at(5));
  EXPECT_EQ(this->offered(), "Paste Select All");
  this->keys({this->typed("!")});
  EXPECT_EQ(this->offered(), "") << "an edit takes it away";
  this->longPress(this->at(0));
  this->choose("Paste");
  EXPECT_EQ(this->shown(), "green tea|green! tea");
  this->longPress(this->at(0));
  text->resignFirstResponder();
  EXPECT_EQ(this->offered(), "");
}

TYPED_TEST(TextEditingTest, EveryStepIsUndoneAndRedoneWithItsSelection) {
  using Test = TextEditingTest<TypeParam>;
  using Keys = std::vector<UIKey>;
  const UIKey paste = Test::command("v"), cut = Test::command("x"), home = Test::control(Code::home);
  const struct {
    const char* name;
    std::string before;
    Keys keys;
    std::vector<std::string> steps;  // what undo shows, one after the other
  } table[] = {
      {"a run of typing is one step", "", {Test::typed("t"), Test::typed("e"), Test::typed("a")}, {"tea|", "|"}},
      {"the caret went away and came back",
       "",
       {Test::typed("a"), Test::key(Code::left), Test::key(Code::right), Test::typed("b")},
       {"ab|", "a|", "|"}},
      {"every deletion", "tea", {Test::key(Code::backspace), Test::key(Code::backspace)}, {"t|", "te|", "tea|"}},
      {"deleting ends a run",
       "",
       {Test::typed("a"), Test::typed("b"), Test::key(Code::backspace), Test::typed("c")},
       {"ac|", "a|", "ab|", "|"}},
      {"forwards, and by words",
       "to the sea",
       {home, Test::key(Code::forwardDelete), Test::control(Code::forwardDelete)},
       {"| the sea", "|o the sea", "|to the sea"}},
      {"what was typed over",
       "green tea",
       {Test::both(Code::left), Test::typed("o"), Test::typed("x")},
       {"green ox|", "green [tea]"}},
      {"cut and pasted twice", "tea", {Test::command("a"), cut, paste, paste}, {"teatea|", "tea|", "|", "[tea]"}},
      {"a paste ends a run",
       "tea",
       {Test::command("a"), Test::command("c"), Test::typed("x"), paste, Test::typed("y")},
       {"xteay|", "xtea|", "x|", "[tea]"}},
      {"a family",
       "a" + family,
       {Test::key(Code::backspace), Test::typed(family)},
       {"a" + family + "|", "a|", "a" + family + "|"}},
      {"a mark gets its letter", "\xCC\x81 o", {home, Test::typed("e")}, {"e\xCC\x81| o", "|\xCC\x81 o"}},
      {"two halves become a flag",
       flag.substr(0, 4) + "-" + flag.substr(4),
       {Test::key(Code::left), Test::key(Code::backspace)},
       {flag + "|", flag.substr(0, 4) + "-|" + flag.substr(4)}},
      {"bytes that are no text", "", {Test::typed("\xFF"), Test::key(Code::backspace)}, {"|", "\xFF|", "|"}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    ASSERT_TRUE(this->text->becomeFirstResponder());
    UIPasteboard::general().setString(std::nullopt);
    this->text->setText(row.before);
    this->keys(row.keys);
    EXPECT_EQ(this->shown(), row.steps.front());
    const auto undone = [&] { return this->keys({Test::command("z")}), this->shown(); };
    for (std::size_t i = 1; i < row.steps.size(); ++i) EXPECT_EQ(undone(), row.steps[i]);
    EXPECT_FALSE(this->text->undoManager()->canUndo());
    EXPECT_EQ(undone(), row.steps.back());
    const UIKey again = {Code::character, "z", true, true};
    for (std::size_t i = 1; i < row.steps.size(); ++i) this->keys({i % 2 ? again : Test::command("y")});
    EXPECT_EQ(this->shown(), row.steps.front()) << "all done again";
    EXPECT_FALSE(this->text->undoManager()->canRedo());
    this->text->resignFirstResponder();
  }
}

TYPED_TEST(TextEditingTest, UndoingAsksAndTellsAsTypingDoesAndANewEditEndsRedoing) {
  const auto& text = this->text;
  const auto witness = make<Witness>();
  int posted = 0;
  constexpr bool isField = std::is_same_v<TypeParam, UITextField>;
  const auto token = NotificationCenter::defaultCenter().addObserver(
      isField ? UITextFieldTextDidChangeNotification : UITextViewTextDidChangeNotification, text,
      [&](const Notification&) { ++posted; });
  if constexpr (isField) text->addTarget(witness, sel("changed"), UIControlEvents::editingChanged);
  text->becomeFirstResponder();
  this->keys({this->typed("t"), this->typed("e")});
  text->setDelegate(witness);
  const auto manager = text->undoManager();
  witness->agrees = false;
  manager->undo();
  EXPECT_EQ(this->shown(), "te|") << "refused";
  EXPECT_TRUE(manager->canUndo());
  witness->agrees = true;
  witness->journal.take();
  posted = 0;
  manager->undo();
  EXPECT_EQ(witness->journal.take(), "0+2= changed selection");
  manager->redo();
  EXPECT_EQ(witness->journal.take(), "0+0=te changed selection");
  EXPECT_EQ(posted, 2);
  EXPECT_EQ(this->shown(), "te|");
  manager->undo();
  this->keys({this->typed("x")});
  EXPECT_FALSE(manager->canRedo());
  witness->asked = [&] { text->setText("MINE"); };
  manager->undo();
  EXPECT_EQ(this->shown(), "MINE|") << "the step belonged to another text";
  witness->asked = [] {};
  EXPECT_FALSE(manager->canUndo()) << "nobody undoes what a program set";
  this->keys({this->typed("!")});
  EXPECT_TRUE(manager->canUndo());
  if constexpr (isField) {
    text->setEnabled(false);
  } else {
    text->setEditable(false);
  }
  EXPECT_FALSE(manager->canUndo());
  manager->undo();
  EXPECT_EQ(text->text(), "MINE!");
}

TYPED_TEST(TextEditingTest, WhatIsKeptToBeUndoneIsBounded) {
  const auto& text = this->text;
  text->becomeFirstResponder();
  const auto undoAll = [&] {
    int count = 0;
    for (; text->undoManager()->canUndo(); ++count) text->undoManager()->undo();
    return count;
  };
  text->setText(std::string(130, 'x'));
  for (int i = 0; i < 120; ++i) this->keys({this->key(Code::backspace)});
  EXPECT_EQ(undoAll(), text->undoManager()->levelsOfUndo());
  EXPECT_EQ(text->text()->size(), 110u) << "the first deletions are for ever";

  const std::string large(TextHistory::byteLimit / 2 - 100, 'y');
  UIPasteboard::general().setString(large);
  text->setText("");
  for (int i = 0; i < 3; ++i) this->keys({this->command("v")});
  EXPECT_EQ(undoAll(), 2);
  EXPECT_EQ(text->text()->size(), large.size());
  for (int i = 0; i < 2; ++i) this->keys({this->command("y")});
  this->keys({this->command("a"), this->key(Code::backspace)});
  EXPECT_EQ(undoAll(), 1) << "one that is larger than all others may be stays alone";
  EXPECT_EQ(text->text()->size(), 3 * large.size());
}

TYPED_TEST(TextEditingTest, TheMenuOfACaretOffersUndoAndRedo) {
  UIPasteboard::general().setString(std::nullopt);
  this->text->becomeFirstResponder();
  this->keys({this->typed("tea")});
  this->longPress(this->at(3));
  EXPECT_EQ(this->offered(), "Undo Select All");
  this->choose("Undo");
  EXPECT_EQ(this->shown(), "|");
  this->longPress(this->at(0));
  EXPECT_EQ(this->offered(), "Redo");
  this->choose("Redo");
  EXPECT_EQ(this->shown(), "tea|");
  this->keys({this->command("a")});
  this->longPress(this->at(1));
  EXPECT_EQ(this->offered(), "Cut Copy") << "a selection has commands of its own";
}

TEST(UndoManager, OutlivesItsTextWithoutDoingAnything) {
  auto field = make<UITextField>();
  const auto manager = field->undoManager();
  field->insertText("tea");
  EXPECT_EQ(manager, field->undoManager());
  EXPECT_TRUE(manager->canUndo());
  field = nullptr;
  EXPECT_FALSE(manager->canUndo());
  manager->undo();
  manager->redo();
  manager->removeAllActions();
}

TEST(UndoManager, ASecretIsNeverKept) {
  const auto field = make<UITextField>();
  field->insertText("shown ");
  field->setSecureTextEntry(true);
  EXPECT_FALSE(field->undoManager()->canUndo());
  field->insertText("secret");
  field->deleteBackward();
  field->setSecureTextEntry(false);
  EXPECT_FALSE(field->undoManager()->canUndo());
  field->insertText("!");
  field->undoManager()->undo();
  EXPECT_EQ(field->text(), "shown secre");
  field->undoManager()->redo();
  field->undoManager()->removeAllActions();
  EXPECT_FALSE(field->undoManager()->canUndo());
}

TYPED_TEST(TextEditingTest, EditingEndsWithTheWindowAndALongPressThatIsLiftedIsNone) {
  this->text->setText("green tea");
  this->text->becomeFirstResponder();
  this->text->setSelectedRange({0, 5});
  this->text->removeFromSuperview();
  this->settle();
  EXPECT_EQ(this->text->selectedRange().length, 0);
  EXPECT_FALSE(this->text->becomeFirstResponder()) << "there is no window to type in";
  this->content()->addSubview(this->text);
  this->settle();
  this->longPress(this->at(3), 0.4);
  EXPECT_EQ(this->offered(), "");
}

}  // namespace
}  // namespace platform::test
