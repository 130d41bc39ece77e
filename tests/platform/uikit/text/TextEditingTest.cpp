#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/text/UndoManager.h"
#include "tests/platform/uikit/text/TextEditingFixture.h"

// What a hand does to a text is the same in a field and in a text view.

namespace platform::test {
namespace {

using Code = UIKey::Code;

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
class TextEditingTest : public TextEditingFixture<Text> {};

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

TYPED_TEST(TextEditingTest, TheDelegateHearsWhichBytesGoAndWhatComesAndMayKeepTheTextShort) {
  const auto& text = this->text;
  const auto witness = make<Witness>();
  text->becomeFirstResponder();
  text->setText("a" + family + " green tea");
  text->setDelegate(witness);
  const auto asked = [&](const std::vector<UIKey>& keys) {
    this->keys(keys);
    return witness->journal.take();
  };
  witness->agrees = false;
  const std::string size = std::to_string(family.size());
  text->setSelectedRange({1 + std::ssize(family), 0});
  witness->journal.take();
  EXPECT_EQ(asked({this->key(Code::backspace)}), "1+" + size + "=");
  EXPECT_EQ(asked({this->typed("x")}), std::to_string(1 + family.size()) + "+0=x");
  text->setSelectedRange({1, 0});
  witness->journal.take();
  EXPECT_EQ(asked({this->key(Code::forwardDelete)}), "1+" + size + "=");
  text->setSelectedRange({1, std::ssize(family) + 1});
  witness->journal.take();
  UIPasteboard::general().setString("b\nc");
  constexpr bool isField = std::is_same_v<TypeParam, UITextField>;
  const std::string selected = "1+" + std::to_string(family.size() + 1) + "=";
  EXPECT_EQ(asked({this->command("v")}), selected + (isField ? "b c" : "b\nc"));
  EXPECT_EQ(asked({this->command("x")}), selected);
  EXPECT_EQ(asked({this->typed(flag)}), selected + flag);

  // A host that allows so many bytes: what would be too long does not come at all, and what fits does.
  text->setText("12345678");
  UIPasteboard::general().setString("b\nc");
  const std::size_t most = 10;
  witness->asked = [&] {
    const std::string line = witness->journal.take();
    const std::size_t plus = line.find('+'), equals = line.find('=');
    const std::size_t goes = std::stoul(line.substr(plus + 1, equals - plus - 1));
    witness->agrees = text->text()->size() - goes + line.size() - equals - 1 <= most;
  };
  this->keys({this->command("v")});
  EXPECT_EQ(text->text(), "12345678") << "three bytes are one too many";
  this->keys({this->typed("9"), this->typed("0"), this->typed("x")});
  EXPECT_EQ(text->text(), "1234567890");
  text->setSelectedRange({2, 3});
  this->keys({this->command("v")});
  EXPECT_EQ(this->shown(), isField ? "12b c|67890" : "12b\nc|67890");
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

TYPED_TEST(TextEditingTest, AttributesStayWithATextThatIsEditedAndGoWithThePlainOneThatIsSet) {
  const auto& text = this->text;
  NSTextAttributes attributes;
  attributes.font = UIFont::systemFont(30);
  attributes.foregroundColor = UIColor(1, 0, 0, 1);
  text->insertText("before");
  text->setAttributedText(make<NSAttributedString>("green", attributes));
  EXPECT_FALSE(text->undoManager()->canUndo());
  text->insertText(" tea");
  EXPECT_EQ(text->attributedText()->string(), "green tea");
  EXPECT_EQ(text->attributedText()->attributes().foregroundColor, attributes.foregroundColor);
  EXPECT_EQ(text->attributedText()->attributes().font->pointSize(), 30);
  this->settle();
  const std::string red = UIApplication::shared().screenshot()->pngRepresentation();
  text->setText("green tea");
  this->settle();
  EXPECT_NE(UIApplication::shared().screenshot()->pngRepresentation(), red);
  EXPECT_NE(text->attributedText()->attributes().font->pointSize(), 30);
  text->setAttributedText(nullptr);
  EXPECT_EQ(text->text(), std::nullopt);
}

using FieldTest = TextEditingFixture<UITextField>;

TEST_F(FieldTest, AFingerFindsTheLettersOfAnAlignedText) {
  text->setText("tea");
  text->becomeFirstResponder();
  TextStyle style;
  style.font = text->font();
  const double width = TextLayout::measure("tea", style).width;
  const std::pair<NSTextAlignment, double> table[] = {
      {NSTextAlignment::left, 0}, {NSTextAlignment::center, (300 - width) / 2}, {NSTextAlignment::right, 300 - width}};
  for (const auto& [alignment, left] : table) {
    SCOPED_TRACE(left);
    text->setTextAlignment(alignment);
    for (const std::int64_t position : {0, 1, 2, 3}) {
      const double x =
          TextLayout::measure(std::string("tea").substr(0, static_cast<std::size_t>(position)), style).width;
      tap(CGPoint{20 + left + x + (position == 0 ? 1 : -1), 118});
      advance(1);
      EXPECT_EQ(text->selectedRange(), (NSRange{position, 0}));
    }
  }
}

TEST_F(FieldTest, OneThatEmptiesItselfAsEditingBeginsCanBeAskedForWhatWasThere) {
  text->setText("old");
  text->setClearsOnBeginEditing(true);
  text->becomeFirstResponder();
  EXPECT_EQ(shown(), "|");
  keys({command("z")});
  EXPECT_EQ(text->text(), "old");
  text->resignFirstResponder();
  const auto refusal = make<Refusal>();
  text->setDelegate(refusal);
  text->becomeFirstResponder();
  EXPECT_EQ(text->text(), "old") << "its delegate keeps it";
  EXPECT_EQ(refusal->asked, 1);
}

TEST_F(FieldTest, AccessoriesTakeTheirRoomOnlyWhileTheyAreShown) {
  const auto left = make<UIView>(CGRect{0, 0, 30, 20});
  const auto right = make<UIView>(CGRect{0, 0, 40, 20});
  text->setLeftView(left);
  text->setRightView(right);
  text->setLeftViewMode(UITextFieldViewMode::whileEditing);
  text->setRightViewMode(UITextFieldViewMode::unlessEditing);
  text->setClearButtonMode(UITextFieldViewMode::whileEditing);
  text->setText("tea");
  settle();
  EXPECT_TRUE(left->isHidden());
  EXPECT_FALSE(right->isHidden());
  EXPECT_EQ(text->textRect(text->bounds()), CGRect(0, 0, 260, 36));
  text->becomeFirstResponder();
  settle();
  EXPECT_FALSE(left->isHidden());
  EXPECT_TRUE(right->isHidden());
  EXPECT_EQ(text->editingRect(text->bounds()).minX(), 30);
  EXPECT_EQ(text->editingRect(text->bounds()).maxX(), text->clearButtonRect(text->bounds()).minX() - 2);
  keys({command("a"), key(Code::backspace)});
  EXPECT_EQ(text->editingRect(text->bounds()).maxX(), 300) << "an empty text has nothing to clear";
  text->setLeftView(nullptr);
  EXPECT_EQ(left->superview(), nullptr);
}

}  // namespace
}  // namespace platform::test
