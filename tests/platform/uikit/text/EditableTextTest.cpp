#include <gtest/gtest.h>

#include "platform/uikit/text/EditableText.h"

namespace platform::test {
namespace {

const std::string family = "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";  // one emoji
const std::string germany = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
const std::string france = "\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7";
const std::string eAcute = "e\xCC\x81";  // a letter and a combining mark

EditableText with(const std::string& text) {
  EditableText edit;
  edit.setText(text);
  return edit;
}

std::vector<std::size_t> forward(const EditableText& edit) {
  std::vector<std::size_t> places{0};
  while (places.back() < edit.text().size()) places.push_back(edit.next(places.back()));
  return places;
}

TEST(EditableText, StepsOverWholeCharactersInBothDirections) {
  const std::string text = "a" + eAcute + family + germany + france + "\r\nz";
  const std::vector<std::size_t> expected{0, 1, 4, 22, 30, 38, 40, 41};
  const EditableText edit = with(text);
  EXPECT_EQ(forward(edit), expected);
  std::vector<std::size_t> backward{text.size()};
  while (backward.back() > 0) backward.push_back(edit.previous(backward.back()));
  EXPECT_EQ(backward, std::vector<std::size_t>(expected.rbegin(), expected.rend()));
}

TEST(EditableText, NeverStandsInsideACharacterWhateverIsAskedFor) {
  EditableText edit = with("x" + family + "y");
  for (std::int64_t location = -3; location < 30; ++location) {
    for (std::int64_t length = -1; length < 25; ++length) {
      edit.select({location, length});
      for (const std::size_t place : {edit.anchor(), edit.caret()}) {
        EXPECT_TRUE(place == 0 || place == 1 || place == 19 || place == 20) << place;
      }
    }
  }
  const struct {
    NSRange asked, is;
  } grown[] = {{{0, 3}, {0, 19}}, {{5, 2}, {1, 18}}, {{5, 14}, {1, 18}}, {{5, 15}, {1, 19}}, {{5, 0}, {1, 0}}};
  for (const auto& [asked, is] : grown) EXPECT_EQ(edit.whole(asked), is) << asked.location << " " << asked.length;
  edit.moveTo(7, false);
  EXPECT_EQ(edit.caret(), 1u);
  edit.moveTo(1000, true);
  EXPECT_EQ(edit.selection(), (NSRange{1, 19}));
}

TEST(EditableText, KeepsPairsOfFlagsTogetherFarInsideALongRow) {
  std::string flags;
  for (int i = 0; i < 300; ++i) flags += i % 2 ? germany : france;
  const EditableText edit = with(flags);
  for (std::size_t at = 8 * 100; at < 8 * 110; ++at) EXPECT_EQ(edit.boundaryBefore(at), at / 8 * 8);
}

TEST(EditableText, DeletesAWholeCharacterOrTheSelection) {
  EditableText edit = with("tea" + family);
  edit.replace(edit.rangeToDeleteBackward(), "");
  EXPECT_EQ(edit.text(), "tea");
  edit.moveTo(0, false);
  EXPECT_EQ(edit.rangeToDeleteBackward().length, 0);
  edit.replace(edit.rangeToDeleteForward(), "");
  EXPECT_EQ(edit.text(), "ea");
  edit.selectAll();
  EXPECT_EQ(edit.rangeToDeleteForward(), (NSRange{0, 2}));
}

TEST(EditableText, ACaretMovesOnWhenWhatWasTypedJoinsWithWhatFollows) {
  EditableText edit = with("\xCC\x81 o");  // begins with a combining mark
  edit.replace({0, 0}, "e");
  EXPECT_EQ(edit.text(), "e\xCC\x81 o");
  EXPECT_EQ(edit.caret(), 3u);
}

TEST(EditableText, KnowsWords) {
  EditableText edit = with("green  tea, please");
  EXPECT_EQ(edit.nextWord(0), 5u);
  EXPECT_EQ(edit.nextWord(5), 10u);
  EXPECT_EQ(edit.previousWord(10), 7u);
  EXPECT_EQ(edit.previousWord(7), 0u);
  EXPECT_EQ(edit.nextWord(12), 18u);
  edit.selectWordAt(8);
  EXPECT_EQ(edit.selectedText(), "tea");
}

TEST(EditableText, KeepsBytesThatAreNoText) {
  const std::string broken = "a\xFF\xC3(\xE2\x82z\xF0\x9F";
  EditableText edit = with(broken);
  const std::vector<std::size_t> places = forward(edit);
  EXPECT_EQ(places.back(), broken.size());
  edit.moveTo(broken.size(), false);
  while (!edit.text().empty()) {
    const NSRange range = edit.rangeToDeleteBackward();
    ASSERT_GT(range.length, 0);
    edit.replace(range, "");
  }
}

TEST(EditableText, AnswersQuicklyInAVeryLongText) {
  EditableText edit = with(std::string(1 << 20, 'x') + family);
  edit.replace(edit.rangeToDeleteBackward(), "");
  EXPECT_EQ(edit.text().size(), std::size_t{1} << 20);
  edit.moveTo(1 << 19, false);
  EXPECT_EQ(edit.next(edit.caret()), (std::size_t{1} << 19) + 1);
}

TEST(EditableText, PutsBreaksOnOneLine) { EXPECT_EQ(onOneLine("a\nb\tc\r\nd"), "a b c  d"); }

}  // namespace
}  // namespace platform::test
