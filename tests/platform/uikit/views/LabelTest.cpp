#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

const std::string longText =
    "A message of many words that goes on and on until it needs more than one line, and then more than two, because "
    "nobody who writes to a shop of tea has ever been known to be brief.";

class LabelTest : public AppFixture {
 protected:
  Ref<UILabel> label(const std::string& text) {
    const auto made = make<UILabel>();
    made->setText(text);
    content()->addSubview(made);
    return made;
  }
};

TEST_F(LabelTest, ItsTextMayBeAbsentEmptyOrAttributed) {
  const auto made = make<UILabel>();
  EXPECT_EQ(made->text(), std::nullopt);
  EXPECT_EQ(made->attributedText(), nullptr);
  made->setText("");
  EXPECT_EQ(made->text(), "");
  EXPECT_EQ(made->intrinsicContentSize(), CGSize{});
  made->setAttributedText(
      make<NSAttributedString>("Oolong", NSTextAttributes{UIFont::boldSystemFont(30), {}, false, 0}));
  EXPECT_EQ(made->text(), "Oolong");
  EXPECT_GT(made->intrinsicContentSize().height, 30);
  made->setText("Assam");
  EXPECT_EQ(made->attributedText()->string(), "Assam");
  made->setAttributedText(nullptr);
  EXPECT_EQ(made->text(), std::nullopt);
}

TEST_F(LabelTest, ANewTextMovesWhatIsLaidOutByIt) {
  const auto first = label("Tea");
  const auto second = label("for two");
  for (const auto& view : {first, second}) view->setTranslatesAutoresizingMaskIntoConstraints(false);
  NSLayoutConstraint::activateConstraints(
      {first->leadingAnchor().constraintEqualToAnchor(content()->leadingAnchor(), 10),
       first->topAnchor().constraintEqualToAnchor(content()->topAnchor(), 100),
       second->leadingAnchor().constraintEqualToAnchor(first->trailingAnchor(), 5),
       second->topAnchor().constraintEqualToAnchor(first->topAnchor())});
  settle();
  EXPECT_EQ(second->frame().minX(), 10 + first->intrinsicContentSize().width + 5);
  first->setText("A whole pot of tea");
  settle();
  EXPECT_EQ(first->frame().width(), first->intrinsicContentSize().width);
  EXPECT_EQ(second->frame().minX(), 10 + first->intrinsicContentSize().width + 5);
  first->setFont(UIFont::systemFont(30));
  settle();
  EXPECT_EQ(second->frame().minX(), 10 + first->intrinsicContentSize().width + 5);
}

TEST_F(LabelTest, ABubbleWrapsAtItsGreatestWidthAndTakesTheHeightOfItsLines) {
  const auto bubble = label(longText);
  bubble->setNumberOfLines(0);
  bubble->setTranslatesAutoresizingMaskIntoConstraints(false);
  const auto most = bubble->widthAnchor().constraintLessThanOrEqualToConstant(250);
  most->setPriority(750);
  NSLayoutConstraint::activateConstraints(
      {most, bubble->topAnchor().constraintEqualToAnchor(content()->topAnchor(), 100),
       bubble->trailingAnchor().constraintEqualToAnchor(content()->trailingAnchor(), -32)});
  settle();
  EXPECT_LE(bubble->frame().width(), 250);
  EXPECT_GT(bubble->frame().width(), 200);
  EXPECT_EQ(bubble->frame().height(), bubble->sizeThatFits({bubble->frame().width(), 0}).height);
  EXPECT_EQ(bubble->frame().maxX(), 390 - 32);
  bubble->setText("Yes.");
  settle();
  EXPECT_LT(bubble->frame().width(), 60);
  EXPECT_LT(bubble->frame().height(), 30);
}

TEST_F(LabelTest, LinesAreCountedAndCut) {
  const auto made = label(longText);
  const double line = made->sizeThatFits({200, 0}).height;
  EXPECT_LT(line, 30);
  made->setNumberOfLines(2);
  EXPECT_NEAR(made->sizeThatFits({200, 0}).height, 2 * line, 2);
  made->setNumberOfLines(0);
  EXPECT_GT(made->sizeThatFits({200, 0}).height, 5 * line);
  made->setText("two\nlines");
  EXPECT_NEAR(made->intrinsicContentSize().height, 2 * line, 2);
}

TEST_F(LabelTest, HostileTextsAreMeasuredAndDrawn) {
  for (const std::string& text :
       {std::string(1 << 20, 'x'), std::string("\xFF\xFE\xC3(\xE2\x82"), std::string("a\0b", 3),
        std::string(5000, '\n'), std::string("\xD7\xA9\xD7\x9C \xE2\x80\xAE reversed \xE2\x80\xAC")}) {
    const auto made = label(text);
    made->setNumberOfLines(0);
    made->setFrame({10, 100, 200, 200});
    settle();
    EXPECT_EQ(made->text(), text);
    made->removeFromSuperview();
  }
}

// ---- Pictures

Ref<UIImage> filled(CGSize size, const UIColor& color) {
  return UIGraphicsImageRenderer(size).imageWithActions([&](CGContext& context) {
    context.setFillColor(color);
    context.fill(CGRect{{}, size});
  });
}

TEST_F(LabelTest, AnImageViewIsAsLargeAsItsImage) {
  const auto view = make<UIImageView>(filled({20, 30}, UIColor::systemRed()));
  EXPECT_EQ(view->bounds().size, (CGSize{20, 30}));
  EXPECT_EQ(view->intrinsicContentSize(), (CGSize{20, 30}));
  view->setImage(nullptr);
  EXPECT_EQ(view->intrinsicContentSize(), (CGSize{UIViewNoIntrinsicMetric, UIViewNoIntrinsicMetric}));
}

TEST_F(LabelTest, AMovingImagePlaysWhileItIsInAWindowAndARunEndsAfterItsRounds) {
  const Ref<UIImage> a = filled({4, 4}, UIColor::systemRed());
  const Ref<UIImage> b = filled({4, 4}, UIColor::systemBlue());
  const auto view = make<UIImageView>(UIImage::animatedImage({a, b}, 1));
  EXPECT_FALSE(view->isAnimating());
  content()->addSubview(view);
  EXPECT_TRUE(view->isAnimating());
  EXPECT_EQ(view->displayedImage(), a);
  advance(0.6);
  EXPECT_EQ(view->displayedImage(), b);
  advance(0.5);
  EXPECT_EQ(view->displayedImage(), a);

  const auto run = make<UIImageView>(a);
  content()->addSubview(run);
  run->setAnimationImages({a, b});
  run->setAnimationDuration(0.2);
  run->setAnimationRepeatCount(2);
  run->startAnimating();
  advance(0.15);
  EXPECT_EQ(run->displayedImage(), b);
  advance(0.3);
  EXPECT_FALSE(run->isAnimating());
  EXPECT_EQ(run->displayedImage(), a);
}

}  // namespace
}  // namespace platform::test
