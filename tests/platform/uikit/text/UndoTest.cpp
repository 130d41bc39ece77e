#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/text/TextHistory.h"
#include "platform/uikit/text/UndoManager.h"
#include "tests/platform/uikit/text/TextEditingFixture.h"

// What was done to a text by hand is undone and redone, in a field and in a text view alike.

namespace platform::test {
namespace {

using Code = UIKey::Code;

template <class Text>
class UndoTest : public TextEditingFixture<Text> {};

TYPED_TEST_SUITE(UndoTest, Texts);

TYPED_TEST(UndoTest, EveryStepIsUndoneAndRedoneWithItsSelection) {
  using Test = UndoTest<TypeParam>;
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
      {"a paste over what is chosen",
       "to the sea",
       {Test::both(Code::left), Test::command("x"), Test::control(Code::home), Test::both(Code::right), paste},
       {"sea| the ", "[to] the ", "to the [sea]"}},
      {"a paste ends a run",
       "tea",
       {Test::command("a"), Test::command("c"), Test::typed("x"), paste, Test::typed("y")},
       {"xteay|", "xtea|", "x|", "[tea]"}},
      {"a family",
       "a" + family,
       {Test::key(Code::backspace), Test::typed(family)},
       {"a" + family + "|", "a|", "a" + family + "|"}},
      {"what is typed after a mark that joined is another run",
       "\xCC\x81 o",
       {home, Test::typed("e"), Test::typed("x")},
       {"e\xCC\x81x| o", "e\xCC\x81| o", "|\xCC\x81 o"}},
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

TYPED_TEST(UndoTest, UndoingAsksAndTellsAsTypingDoesAndANewEditEndsRedoing) {
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

TYPED_TEST(UndoTest, WhatIsKeptToBeUndoneIsBounded) {
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

TYPED_TEST(UndoTest, TheMenuOfACaretOffersUndoAndRedo) {
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

TYPED_TEST(UndoTest, ARunEndsWithTheLineAndWithEditing) {
  const auto& text = this->text;
  text->becomeFirstResponder();
  this->keys({this->typed("a")});
  text->resignFirstResponder();
  text->becomeFirstResponder();
  this->keys({this->typed("b")});
  this->keys({this->command("z")});
  EXPECT_EQ(this->shown(), "a|");
  if constexpr (std::is_same_v<TypeParam, UITextView>) {
    this->keys({this->typed("c"), this->key(Code::returnKey), this->typed("d"), this->command("z")});
    EXPECT_EQ(this->shown(), "ac\n|");
    this->keys({this->command("z")});
    EXPECT_EQ(this->shown(), "a|");
  }
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
  field->setSecureTextEntry(false);
  EXPECT_FALSE(field->undoManager()->canUndo()) << "it may have been a secret already";
  field->setSecureTextEntry(true);
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

}  // namespace
}  // namespace platform::test
