#include <algorithm>
#include <set>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIFont.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"

namespace platform {
namespace {

TextStyle styled(int lines = 0, NSLineBreakMode mode = NSLineBreakMode::byWordWrapping) {
  TextStyle style;
  style.font = UIFont::systemFont(16);
  style.numberOfLines = lines;
  style.lineBreakMode = mode;
  return style;
}

std::string lineText(const TextLayout& layout, std::size_t line) {
  const TextRange range = layout.lines()[line].range;
  return layout.text().substr(range.start, range.end - range.start);
}

constexpr const char* sentence = "The kettle is on and the leaves are waiting in the pot";

TEST(TextLayout, MeasuresOneLineAndWrapsWhereWordsEnd) {
  const auto whole = TextLayout::make(sentence, styled());
  ASSERT_EQ(whole->lines().size(), 1u);
  EXPECT_NEAR(whole->size().height, styled().font.lineHeight(), 1e-9);
  EXPECT_GT(whole->size().width, 350);

  const auto wrapped = TextLayout::make(sentence, styled(), 150);
  ASSERT_GT(wrapped->lines().size(), 2u);
  EXPECT_NEAR(wrapped->size().height, styled().font.lineHeight() * static_cast<double>(wrapped->lines().size()), 1e-6);
  EXPECT_LE(wrapped->size().width, 150);
  std::string joined;
  for (std::size_t i = 0; i < wrapped->lines().size(); ++i) {
    EXPECT_LE(wrapped->lines()[i].frame.maxX(), 150.001);
    joined += lineText(*wrapped, i);
  }
  EXPECT_EQ(joined, sentence) << "the lines are the text, nothing lost, nothing twice";
  EXPECT_EQ(lineText(*wrapped, 0).back(), ' ') << "the blank at a break belongs to the line before it";
}

TEST(TextLayout, LaysOutTheSameLinesAgainAtItsOwnWidth) {
  for (const char* text : {sentence, "Yes", "two words", "AVATAR, Wafer — To.", "0123456789 0123456789 0123456789"}) {
    for (const double width : {CGFloatMax, 250.0, 97.3}) {
      const auto first = TextLayout::make(text, styled(), width);
      const auto again = TextLayout::make(text, styled(), first->size().width);
      EXPECT_EQ(first->lines().size(), again->lines().size()) << text << " at " << width;
    }
  }
}

TEST(TextLayout, BreaksAWordThatIsTooLongAnywhere) {
  const auto layout = TextLayout::make(std::string(80, 'm'), styled(), 100);
  EXPECT_GT(layout->lines().size(), 5u);
  for (const TextLine& line : layout->lines()) EXPECT_LE(line.frame.width(), 100.001);
}

TEST(TextLayout, FillsTheLinesOfAWordOfThousandsOfLettersAndWrapsTheNextOnesByWords) {
  const std::string words = "the kettle is on and the leaves are waiting in the pot ";
  for (const std::size_t letters : {3000u, 3003u, 3006u, 3009u}) {
    SCOPED_TRACE(letters);
    const std::string text = words + std::string(letters, 'a') + ' ' + words + words;
    const auto layout = TextLayout::make(text, styled(), 150);
    std::string joined;
    std::set<std::size_t> lengths;  // of the lines within the word
    for (std::size_t i = 0; i < layout->lines().size(); ++i) {
      const std::string line = lineText(*layout, i);
      joined += line;
      EXPECT_LE(layout->lines()[i].frame.maxX(), 150.001);
      if (line == std::string(line.size(), 'a')) {
        lengths.insert(line.size());
      } else if (i + 1 < layout->lines().size()) {
        EXPECT_EQ(line.back(), ' ') << line;
      }
    }
    EXPECT_EQ(joined, text);
    ASSERT_FALSE(lengths.empty());
    EXPECT_LE(lengths.size(), 2u) << "full ones, and perhaps the last";
    EXPECT_GT(static_cast<double>(*lengths.rbegin()) * styled().font.pointSize(), 150) << "as many letters as fit";
    const CGRect caret = layout->caretRect(words.size() + 2000);
    EXPECT_EQ(layout->indexAt({caret.midX(), caret.midY()}), words.size() + 2000);
  }
}

TEST(TextLayout, DrawsOfALongTextWhatShowsAsItDrawsTheWhole) {
  std::string text;
  for (int i = 0; i < 120; ++i) text += "Line " + std::to_string(i) + " g\u0301\u0301\u0301\n";
  const auto layout = TextLayout::make(text, styled(), 120);
  const auto drawn = [&](double from, double height, double shift) {
    return UIGraphicsImageRenderer({120, height}, 1).imageWithActions([&](CGContext& context) {
      context.translateBy(0, -from);
      context.clip(CGRect(0, from, 120, height));
      context.drawText(layout, {0, shift}, UIColor::black());
    });
  };
  const auto whole = drawn(0, layout->size().height, 0);
  int ink = 0;
  for (const int from : {0, 700, 1501}) {
    const auto part = drawn(from + 30, 200, 30);
    for (int y = 0; y < 200; ++y) {
      for (int x = 0; x < 120; ++x) {
        ASSERT_EQ(part->cgImage()->pixel(x, y), whole->cgImage()->pixel(x, y + from)) << x << ", " << y + from;
        ink += part->cgImage()->pixel(x, y) != 0;
      }
    }
  }
  EXPECT_GT(ink, 1000);
}

TEST(TextLayout, HonoursLineBreaksOfEveryKindAndEmptyLines) {
  const auto layout = TextLayout::make("one\ntwo\r\nthree\rfour\n\nsix\n", styled());
  ASSERT_EQ(layout->lines().size(), 7u);
  EXPECT_EQ(lineText(*layout, 1), "two");
  EXPECT_EQ(lineText(*layout, 2), "three");
  EXPECT_EQ(lineText(*layout, 4), "");
  EXPECT_EQ(lineText(*layout, 6), "");
  EXPECT_EQ(TextLayout::make("", styled())->lines().size(), 1u);
  EXPECT_EQ(TextLayout::make("", styled())->size().width, 0);
}

TEST(TextLayout, CountsTheBlanksATextEndsIn) {
  const double word = TextLayout::measure("tea", styled()).width;
  EXPECT_GT(TextLayout::measure("tea   ", styled()).width, word + 8);
  EXPECT_GT(TextLayout::measure("   ", styled()).width, 8);
}

TEST(TextLayout, ShortensTheLastLineWithAMark) {
  using Mode = NSLineBreakMode;
  for (const Mode mode : {Mode::byTruncatingTail, Mode::byTruncatingMiddle, Mode::byTruncatingHead}) {
    const auto layout = TextLayout::make(sentence, styled(1, mode), 150);
    ASSERT_EQ(layout->lines().size(), 1u);
    EXPECT_TRUE(layout->isTruncated());
    EXPECT_LE(layout->size().width, 150.001);
    EXPECT_GT(layout->size().width, 120);
  }
  const auto two = TextLayout::make(sentence, styled(2, Mode::byTruncatingTail), 150);
  ASSERT_EQ(two->lines().size(), 2u);
  EXPECT_TRUE(two->isTruncated());
  EXPECT_GT(two->lines()[1].range.end, two->lines()[1].range.start);
  EXPECT_LT(two->lines()[1].range.end, std::string(sentence).size());

  EXPECT_FALSE(TextLayout::make("short", styled(1, Mode::byTruncatingTail), 150)->isTruncated());
  EXPECT_TRUE(TextLayout::make("one\ntwo", styled(1, Mode::byTruncatingTail), 150)->isTruncated());
  EXPECT_TRUE(TextLayout::make("one\ntwo", styled(1, Mode::byTruncatingTail))->isTruncated());
  EXPECT_EQ(TextLayout::make(sentence, styled(1, Mode::byTruncatingTail), 3)->lines().size(), 1u);
}

TEST(TextLayout, LeavesTheRestOutWithoutAMarkWhenItWraps) {
  const auto layout = TextLayout::make(sentence, styled(2), 150);
  EXPECT_EQ(layout->lines().size(), 2u);
  EXPECT_TRUE(layout->isTruncated());
  const auto clipped = TextLayout::make(sentence, styled(0, NSLineBreakMode::byClipping), 150);
  EXPECT_EQ(clipped->lines().size(), 1u);
  EXPECT_GT(clipped->lines()[0].frame.width(), 350);
}

TEST(TextLayout, AlignsLinesAndFollowsTheWritingDirection) {
  const auto at = [](NSTextAlignment alignment, const char* text) {
    TextStyle style = styled();
    style.alignment = alignment;
    return TextLayout::make(text, style, 200)->lines()[0].frame;
  };
  EXPECT_EQ(at(NSTextAlignment::left, "tea").minX(), 0);
  EXPECT_NEAR(at(NSTextAlignment::right, "tea").maxX(), 200, 1e-6);
  EXPECT_NEAR(at(NSTextAlignment::center, "tea").midX(), 100, 1e-6);
  EXPECT_EQ(at(NSTextAlignment::natural, "tea").minX(), 0);
  EXPECT_NEAR(at(NSTextAlignment::natural, "שלום").maxX(), 200, 1e-6);
  EXPECT_EQ(at(NSTextAlignment::left, "שלום").minX(), 0);
}

TEST(TextLayout, KeepsEachParagraphsOwnDirection) {
  const auto layout = TextLayout::make("tea\nשלום", styled(), 200);
  EXPECT_EQ(layout->lines()[0].frame.minX(), 0);
  EXPECT_NEAR(layout->lines()[1].frame.maxX(), 200, 1e-6);
}

TEST(TextLayout, DrawsEveryLetterOfALineInBothDirectionsInsideItsFrame) {
  for (const char* text : {"שלום, Earl Grey", "tea שלום", "שלום", "שלום Earl שלום"}) {
    const auto layout = TextLayout::make(text, styled());
    const CGSize size = layout->size();
    // The same letters with room around them, and cut to their frame: nothing may be lost.
    const auto inked = [&](double margin) {
      const auto image =
          UIGraphicsImageRenderer({size.width + 2 * margin, size.height}, 1).imageWithActions([&](CGContext& context) {
            context.drawText(layout, {margin, 0}, UIColor::black());
          });
      double ink = 0;
      for (int y = 0; y < image->cgImage()->height(); ++y) {
        for (int x = 0; x < image->cgImage()->width(); ++x) ink += image->cgImage()->pixel(x, y) >> 24;
      }
      return ink;
    };
    EXPECT_GT(inked(0), 0.97 * inked(200)) << text;
  }
}

TEST(TextLayout, GivesTheSameObjectForTheSameRequest) {
  const auto first = TextLayout::make("cached", styled(), 100);
  EXPECT_EQ(TextLayout::make("cached", styled(), 100), first);
  EXPECT_NE(TextLayout::make("cached", styled(), 101), first);
  EXPECT_NE(TextLayout::make("cached", styled(2), 100), first);
  TextStyle larger = styled();
  larger.font = larger.font.fontWithSize(17);
  EXPECT_NE(TextLayout::make("cached", larger, 100), first);
}

TEST(TextLayout, AnswersForItsOwnWidthAfterOthersOfTheSameText) {
  const std::string mixed =
      std::string(sentence) + " \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x87\xA9\xF0\x9F\x87\xAA\nand more";
  const auto described = [&](const TextLayout& layout) {
    std::string words;
    const auto add = [&words](double value) { words += std::to_string(value) + " "; };
    for (std::size_t i = 0; i <= mixed.size(); ++i) {
      add(layout.caretRect(i).minX());
      add(layout.caretRect(i).minY());
    }
    for (const CGRect& rect : layout.selectionRects({3, 60})) add(rect.minX() + rect.size.width * 1000);
    for (double x = 0; x < 200; x += 17) add(static_cast<double>(layout.indexAt({x, 30})));
    return words;
  };
  const double widths[] = {CGFloatMax, 150, 97, 250};
  std::vector<std::shared_ptr<const TextLayout>> layouts;
  std::vector<std::string> before;
  for (const double width : widths) {
    for (const NSTextAlignment alignment : {NSTextAlignment::natural, NSTextAlignment::center}) {
      TextStyle style = styled();
      style.alignment = alignment;
      layouts.push_back(TextLayout::make(mixed, style, width));
      before.push_back(described(*layouts.back()));  // of letters nobody else has broken into lines yet
    }
  }
  layouts.push_back(TextLayout::make(mixed, styled(2, NSLineBreakMode::byTruncatingTail), 150));
  before.push_back(described(*layouts.back()));
  layouts.push_back(TextLayout::make(mixed, styled(0, NSLineBreakMode::byCharWrapping), 150));
  before.push_back(described(*layouts.back()));
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    for (std::size_t j = 0; j < layouts.size(); ++j) {
      EXPECT_EQ(described(*layouts[j]), before[j]);
      EXPECT_EQ(described(*layouts[i]), before[i]) << i << " after " << j;
    }
  }
}

TEST(TextLayout, SpacesLinesApartButNotBelowTheLast) {
  TextStyle style = styled();
  style.lineSpacing = 10;
  EXPECT_NEAR(TextLayout::measure("a\nb\nc", style).height, style.font.lineHeight() * 3 + 20, 1e-6);
}

TEST(TextLayout, ShowsWhatIsNoUTF8AsOneMarkAByte) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_GT(TextLayout::measure(mark, styled()).width, 3);
  for (const std::string& bad :
       {std::string("\xFF"), std::string("\xC0"), std::string("\xE2\x82"), std::string("\xED\xA0\x80"),
        std::string("\xF5\x80\x80\x80"), std::string("\xC0\xAF")}) {
    std::string marks;
    for (std::size_t i = 0; i < bad.size(); ++i) marks += mark;
    EXPECT_EQ(TextLayout::measure(bad, styled()).width, TextLayout::measure(marks, styled()).width);
  }
}

TEST(TextLayout, GivesControlCharactersNoRoom) {
  const double plain = TextLayout::measure("ab", styled()).width;
  EXPECT_NEAR(TextLayout::measure(std::string("a\0\x01\x1B\x7F\x08"
                                              "b",
                                              7),
                                  styled())
                  .width,
              plain, 1.0);
}

TEST(TextLayout, BoundsEnormousTexts) {
  std::string text;
  while (text.size() < 1'000'000) text += sentence + std::string(text.size() % 7 == 0 ? "\n" : " ");
  const auto all = TextLayout::make(text, styled(), 250);
  EXPECT_TRUE(all->isTruncated());
  EXPECT_LE(all->lines().back().range.end, TextLayout::maximumLength);
  const auto some = TextLayout::make(text, styled(3, NSLineBreakMode::byTruncatingTail), 250);
  EXPECT_EQ(some->lines().size(), 3u);
  EXPECT_EQ(TextLayout::make(std::string(1'000'000, '\n'), styled(2), 250)->lines().size(), 2u);
  TextStyle giant = styled();
  giant.font = UIFont::systemFont(1e9);
  const CGSize size = TextLayout::measure(std::string(1'000'000, 'W'), giant);
  EXPECT_GT(size.width, 0);
  EXPECT_LT(size.width, 4e7);
}

TEST(TextScripts, FindsAFontForEveryLetter) {
  constexpr const char* samples[] = {"The kettle is on — “tea”, 5 °C, €3",
                                     "Ευχαριστώ πολύ",
                                     "Спасибо, чай готов",
                                     "Շնորհակալություն",
                                     "გმადლობთ",
                                     "תודה רבה",
                                     "شكرا جزيلا، الشاي جاهز",
                                     "धन्यवाद, चाय तैयार है",
                                     "ধন্যবাদ, চা তৈরি",
                                     "நன்றி, தேநீர் தயார்",
                                     "ขอบคุณ ชาพร้อมแล้ว",
                                     "谢谢，茶泡好了",
                                     "ありがとう、お茶が入りました",
                                     "감사합니다, 차가 준비되었습니다",
                                     "አመሰግናለሁ",
                                     "😀 ❤ ❤️ 👩‍👩‍👧‍👦 👍🏽 🇯🇵 7️⃣ ☕"};
  for (const char* sample : samples) {
    const auto layout = TextLayout::make(sample, styled());
    EXPECT_EQ(layout->missingGlyphs(), 0u) << sample;
    EXPECT_GT(layout->size().width, 20) << sample;
  }
  EXPECT_EQ(TextLayout::make("\U000FFFFD", styled())->missingGlyphs(), 1u) << "for private use: nobody has it";
}

/// How many pixels of the text, drawn in black, have a colour, and how many are black.
struct Ink {
  int coloured = 0;
  int black = 0;
};
Ink inkOf(const char* text) {
  const auto layout = TextLayout::make(text, styled());
  const auto image = UIGraphicsImageRenderer(layout->size()).imageWithActions([&](CGContext& context) {
    context.drawText(layout, {}, UIColor::black());
  });
  Ink ink;
  for (int y = 0; y < image->cgImage()->height(); ++y) {
    for (int x = 0; x < image->cgImage()->width(); ++x) {
      const UIColor color = image->cgImage()->color(x, y);
      if (color.alpha() < 0.5) continue;
      const auto [least, most] = std::minmax({color.red(), color.green(), color.blue()});
      ink.coloured += most - least > 0.3;
      ink.black += most < 0.1;
    }
  }
  return ink;
}

TEST(TextScripts, GivesLettersWithMarksTheRoomTheyNeed) {
  constexpr double margin = 20;
  for (const char* text : {"कृपया दो कप चाय", "দয়া করে দুই কাপ চা", "இரண்டு கோப்பை", "ขอชาสองที่นี่ ปู่", "שָׁלוֹם", "مُحَمَّدٌ", "tea"}) {
    SCOPED_TRACE(text);
    const auto layout = TextLayout::make(text, styled());
    const CGSize size = layout->size();
    const auto image = UIGraphicsImageRenderer({size.width, size.height + 2 * margin}, 2)
                           .imageWithActions([&](CGContext& context) {
                             context.drawText(layout, {0, margin}, UIColor::black());
                           });
    const Bitmap& pixels = *image->cgImage();
    for (int y = 0; y < pixels.height(); ++y) {
      const bool isInside = y >= 2 * margin - 1 && y <= 2 * (margin + size.height) + 1;
      for (int x = 0; x < pixels.width() && !isInside; ++x) EXPECT_LT(pixels.color(x, y).alpha(), 0.2) << y;
    }
    EXPECT_EQ(layout->lines()[0].frame.height(), size.height);
  }
  EXPECT_EQ(TextLayout::make("tea 茶 ☕ é", styled())->size().height, styled().font.lineHeight());
}

TEST(TextScripts, ShowsEmojiInColourUnlessTheTextWantsLetters) {
  for (const char* emoji : {"😀", "❤", "❤️", "☀️", "👩‍🚀", "👍🏽", "🇯🇵"}) {
    SCOPED_TRACE(emoji);
    EXPECT_GT(inkOf(emoji).coloured, 100);
    EXPECT_LT(inkOf(emoji).black, 20);
  }
  for (const char* letters : {"❤︎", "→ 5 # ©", "tea"}) {
    SCOPED_TRACE(letters);
    EXPECT_EQ(inkOf(letters).coloured, 0);
    EXPECT_GT(inkOf(letters).black, 20);
  }
  const double line = TextLayout::make("tea", styled())->size().height;
  EXPECT_EQ(TextLayout::make("tea 😀", styled())->size().height, line) << "emoji do not push lines apart";
}

}  // namespace
}  // namespace platform
