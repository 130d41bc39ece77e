#include "platform/animation/CALayer.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Searching : public Object<Searching, NSObject> {
 public:
  Journal journal;
  bool ends = true;
  bool shouldEnd(const Ref<NSObject>&) { return ends; }
  bool shouldChange(const Ref<NSObject>&, NSRange range, const std::string& text) {
    journal.note(std::to_string(range.location) + "+" + std::to_string(range.length) + "=" + text);
    return text != "x";
  }
  static void exportMethods(MethodTable<Searching>& table) {
    table.add<&Searching::shouldEnd>("searchBarShouldEndEditing:");
    table.add<&Searching::shouldChange>("searchBar:shouldChangeTextInRange:replacementText:");
  }
};

class SearchBarTest : public AppFixture {
 protected:
  SearchBarTest() {
    bar->setFrame({0, 60, 390, 52});
    content()->addSubview(bar);
    settle();
  }
  double shownWidth() const { return bar->searchTextField()->layer()->presentationLayer()->bounds().size.width; }
  double shownAlpha() const { return bar->cancelButton()->layer()->presentationLayer()->opacity(); }

  Ref<UISearchBar> bar = make<UISearchBar>();
};

TEST_F(SearchBarTest, TheCancelButtonSlidesInAndOutWhenThatIsWishedAndElseIsThereAtOnce) {
  const Ref<UIButton> cancel = bar->cancelButton();
  const double wide = shownWidth();
  EXPECT_TRUE(cancel->isHidden());

  bar->setShowsCancelButton(true, false);
  const double narrow = shownWidth();
  EXPECT_LT(narrow, wide - 40) << "without animation the field makes room at once";
  EXPECT_EQ(shownAlpha(), 1);
  EXPECT_FALSE(cancel->isHidden());
  EXPECT_LE(cancel->frame().maxX(), 390 - 12);
  bar->setShowsCancelButton(false);
  EXPECT_EQ(shownWidth(), wide);
  EXPECT_TRUE(cancel->isHidden());

  bar->setShowsCancelButton(true, true);
  EXPECT_EQ(shownWidth(), wide) << "with animation it starts where it was";
  EXPECT_EQ(shownAlpha(), 0);
  advance(0.125);
  EXPECT_LT(shownWidth(), wide - 10);
  EXPECT_GT(shownWidth(), narrow + 10);
  EXPECT_GT(shownAlpha(), 0.1);
  EXPECT_LT(shownAlpha(), 0.9);
  advance(0.2);
  EXPECT_EQ(shownWidth(), narrow);
  EXPECT_EQ(shownAlpha(), 1);

  bar->setShowsCancelButton(false, true);
  EXPECT_EQ(shownWidth(), narrow);
  EXPECT_FALSE(cancel->isHidden()) << "it fades before it goes";
  advance(0.3);
  EXPECT_EQ(shownWidth(), wide);
  EXPECT_TRUE(cancel->isHidden());

  bar->setShowsCancelButton(false, true);
  bar->setShowsCancelButton(true, true);
  advance(0.1);
  bar->setShowsCancelButton(false, true);  // turned round halfway
  bar->setShowsCancelButton(true, true);
  advance(1);
  EXPECT_FALSE(cancel->isHidden());
  EXPECT_EQ(shownWidth(), narrow);
}

TEST_F(SearchBarTest, NothingSlidesWhereNobodySeesIt) {
  bar->removeFromSuperview();
  bar->setShowsCancelButton(true, true);
  EXPECT_EQ(shownAlpha(), 1);
  bar->setShowsCancelButton(false, true);
  EXPECT_TRUE(bar->cancelButton()->isHidden());
}

TEST_F(SearchBarTest, ItsDelegateMayRefuseAnEditAndTheEnd) {
  const auto delegate = make<Searching>();
  bar->setDelegate(delegate);
  ASSERT_TRUE(bar->becomeFirstResponder());
  type("ax");
  EXPECT_EQ(delegate->journal.take(), "0+0=a 1+0=x");
  EXPECT_EQ(bar->text(), "a");
  delegate->ends = false;
  EXPECT_FALSE(bar->resignFirstResponder());
  EXPECT_TRUE(bar->isFirstResponder());
  delegate->ends = true;
  EXPECT_TRUE(bar->resignFirstResponder());
  bar->setEnabled(false);
  EXPECT_FALSE(bar->isEnabled());
  EXPECT_FALSE(bar->becomeFirstResponder());
  EXPECT_FALSE(bar->cancelButton()->isEnabled());
}

}  // namespace
}  // namespace platform::test
