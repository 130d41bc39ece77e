// What a text field asks of a layout: carets, selections, letters and words.

#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIFont.h"

namespace platform {
namespace {

std::shared_ptr<const TextLayout> laidOut(const std::string& text, double width = CGFloatMax) {
  TextStyle style;
  style.font = UIFont::systemFont(16);
  return TextLayout::make(text, style, width);
}

TEST(TextCaret, MovesRightThroughLatinAndLeftThroughHebrew) {
  const auto latin = laidOut("tea");
  EXPECT_NEAR(latin->caretRect(0).midX(), 0, 0.01);
  EXPECT_LT(latin->caretRect(1).midX(), latin->caretRect(2).midX());
  EXPECT_NEAR(latin->caretRect(3).midX(), latin->size().width, 0.5);
  EXPECT_EQ(latin->caretRect(99), latin->caretRect(3));
  const auto hebrew = laidOut("שלום", 200);
  EXPECT_NEAR(hebrew->caretRect(0).midX(), 200, 1);
  EXPECT_GT(hebrew->caretRect(2).midX(), hebrew->caretRect(4).midX());
}

TEST(TextCaret, FindsTheGapNearestToAPoint) {
  const auto layout = laidOut("tea for two");
  for (std::size_t i = 0; i <= layout->text().size(); ++i) {
    EXPECT_EQ(layout->indexAt({layout->caretRect(i).midX(), 5}), i);
  }
  EXPECT_EQ(layout->indexAt({-50, -50}), 0u);
  EXPECT_EQ(layout->indexAt({9999, 9999}), layout->text().size());
}

TEST(TextCaret, StandsOnTheRightLineOfAWrappedText) {
  const auto layout = laidOut("one two three four five six", 60);
  ASSERT_GT(layout->lines().size(), 2u);
  const TextLine& second = layout->lines()[1];
  EXPECT_EQ(layout->caretRect(second.range.start).minY(), second.frame.minY());
  EXPECT_NEAR(layout->caretRect(second.range.start).midX(), 0, 0.01);
  const std::size_t tapped = layout->indexAt({500, 5});
  EXPECT_EQ(layout->caretRect(tapped).minY(), 0) << "a tap right of a line stays on that line";
  EXPECT_EQ(layout->indexAt({0, second.frame.midY()}), second.range.start);
}

TEST(TextCaret, StandsOnTheEmptyLineAfterALineBreak) {
  const auto layout = laidOut("tea\n");
  EXPECT_EQ(layout->lines().size(), 2u);
  EXPECT_GT(layout->caretRect(4).minY(), layout->caretRect(3).minY());
  EXPECT_EQ(layout->indexAt({0, 30}), 4u);
}

TEST(TextCaret, StepsOverWholeLettersWithTheirMarksAndWholeEmoji) {
  const std::string accent = "e\xCC\x81";                                     // e and a combining acute
  const std::string hand = "\xF0\x9F\x91\x8B\xF0\x9F\x8F\xBD";                // a hand and its skin tone
  const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";                // two regional letters
  const std::string family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";  // two people joined
  for (const std::string& letter :
       {std::string("a"), std::string("ü"), accent, hand, flag, family, std::string("\r\n")}) {
    const auto layout = laidOut("x" + letter + "y");
    EXPECT_EQ(layout->nextIndex(1), 1 + letter.size()) << letter;
    EXPECT_EQ(layout->previousIndex(1 + letter.size()), 1u) << letter;
  }
  const auto end = laidOut("ab");
  EXPECT_EQ(end->nextIndex(2), 2u);
  EXPECT_EQ(end->previousIndex(0), 0u);
}

TEST(TextCaret, NeverStopsInsideALetterOfHostileText) {
  std::string text = "a\xFF\xC3(\xE2\x82 \xF0\x9F ok \xED\xB0\x80";
  for (int i = 0; i < 50; ++i) text += "\xCC\x88";
  const auto layout = laidOut(text);
  std::size_t index = 0, steps = 0;
  while (index < text.size() && steps++ < 1000) {
    const std::size_t next = layout->nextIndex(index);
    ASSERT_GT(next, index);
    EXPECT_EQ(layout->previousIndex(next), index);
    index = next;
  }
  EXPECT_EQ(index, text.size());
}

TEST(TextSelection, CoversWhatIsSelectedLineByLine) {
  const auto layout = laidOut("one two three four five six", 60);
  const auto rects = layout->selectionRects({0, layout->text().size()});
  EXPECT_EQ(rects.size(), layout->lines().size());
  const auto one = laidOut("tea for two")->selectionRects({4, 7});
  ASSERT_EQ(one.size(), 1u);
  EXPECT_NEAR(one[0].minX(), laidOut("tea for two")->caretRect(4).midX(), 0.5);
  EXPECT_NEAR(one[0].maxX(), laidOut("tea for two")->caretRect(7).midX(), 0.5);
  EXPECT_TRUE(layout->selectionRects({3, 3}).empty());
}

TEST(TextSelection, FallsApartWhereWritingDirectionsMix) {
  const std::string text = "abc שלום def";
  const auto layout = laidOut(text);
  // From inside the Latin into the Hebrew: two stretches on the screen, with unselected letters between them.
  const auto rects = layout->selectionRects({1, 8});
  ASSERT_EQ(rects.size(), 2u);
  EXPECT_LT(rects[0].maxX(), rects[1].minX());
}

TEST(TextSelection, FindsTheWordAroundAPlace) {
  const auto layout = laidOut("brew the tea");
  EXPECT_EQ(layout->wordAt(6), (TextRange{5, 8}));
  EXPECT_EQ(layout->wordAt(0), (TextRange{0, 4}));
  EXPECT_EQ(layout->wordAt(12).start, 9u);
  EXPECT_EQ(laidOut("")->wordAt(0), (TextRange{0, 0}));
}

}  // namespace
}  // namespace platform
