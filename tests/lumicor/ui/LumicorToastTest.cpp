#include "lumicor/ui/LumicorToast.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/lumicor/ui/ChatFixture.h"

namespace lumicor {
namespace {

class Toasts : public test::ChatFixture {
 protected:
  static CGRect frameOf(std::size_t index) { return LumicorToast::shown().at(index)->frame(); }
};

TEST_F(Toasts, ShowAMessageForAWhile) {
  LumicorToast::show("Task Capture Successful");
  ASSERT_EQ(LumicorToast::shown().size(), 1u);
  const Ref<LumicorToast> toast = LumicorToast::shown().front();
  EXPECT_EQ(toast->label()->font(), UIFont::systemFont(16));
  EXPECT_EQ(toast->superview(), window());
  EXPECT_NEAR(toast->center().x, 195, 0.5);
  pass(LumicorToast::duration);
  EXPECT_EQ(LumicorToast::shown().size(), 1u);
  pass(1);
  EXPECT_TRUE(LumicorToast::shown().empty());
  EXPECT_EQ(toast->superview(), nullptr);

  LumicorToast::show("");
  EXPECT_TRUE(LumicorToast::shown().empty());
}

TEST_F(Toasts, StandAboveOneAnotherAndPushTheOldestOut) {
  LumicorToast::show("one");
  LumicorToast::show("A message that is too long for one line of the screen and so takes two of them");
  LumicorToast::show("three");
  pass(0.5);
  ASSERT_EQ(LumicorToast::shown().size(), 3u);
  EXPECT_EQ(frameOf(0).maxY() + 8, frameOf(1).minY());
  EXPECT_EQ(frameOf(1).maxY() + 8, frameOf(2).minY());
  EXPECT_LE(frameOf(1).size.width, 350) << "20 points from either side";
  LumicorToast::show("four");
  pass(0.5);
  ASSERT_EQ(LumicorToast::shown().size(), LumicorToast::maximumCount);
  EXPECT_EQ(LumicorToast::shown().back()->label()->text(), "four");
  EXPECT_EQ(frameOf(1).maxY() + 8, frameOf(2).minY());
}

TEST_F(Toasts, LetTouchesThroughAndKeepClearOfTheKeyboard) {
  LumicorToast::show("Action registered. Proceed...");
  pass(0.5);
  const Ref<UIView> below = window()->hitTest(frameOf(0).center(), nullptr);
  EXPECT_FALSE(below->isDescendantOfView(LumicorToast::shown().front().get()));

  const auto field = make<UITextField>(CGRect{20, 100, 200, 40});
  navigation_->topViewController()->view()->addSubview(field);
  field->becomeFirstResponder();
  pass(1);
  EXPECT_EQ(frameOf(0).maxY() + 12, UIKeyboard::shared().frame().minY()) << "it was there before the keyboard";
  LumicorToast::show("Permission denied");
  pass(0.5);
  EXPECT_EQ(frameOf(1).maxY() + 12, UIKeyboard::shared().frame().minY());
  EXPECT_LE(frameOf(0).maxY(), frameOf(1).minY()) << "the earlier one moved too";
  field->resignFirstResponder();
  pass(0.4);
  EXPECT_EQ(frameOf(LumicorToast::shown().size() - 1).maxY() + 96 + window()->safeAreaInsets().bottom, 844)
      << "and stays when that has gone";
}

}  // namespace
}  // namespace lumicor
