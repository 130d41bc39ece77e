#include <gmock/gmock.h>
#include <limits>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorDecimalText.h"
#include "lumicor/screen/LumicorElementKind.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/NSProgress.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/controls/UISegmentedControl.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"
#include "platform/uikit/views/UISystemSymbol.h"
#include "platform/uikit/views/WKWebView.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using Type = LumicorType;
using Input = LumicorInputType;

class LumicorElementKindTest : public SessionTest {
 protected:
  void expect(const Ref<UIView>& view, Type type, Input input, const std::string& value) {
    const LumicorElementKind kind = LumicorUtils::getLumicorElementType(view);
    EXPECT_EQ(rawValue(kind.type), rawValue(type));
    EXPECT_EQ(rawValue(kind.inputType), rawValue(input));
    EXPECT_EQ(kind.value, value);
  }
  /// Something that only its description tells apart.
  void expectDescription(const Ref<UIView>& view, const std::string& className) {
    EXPECT_THAT(LumicorUtils::getLumicorElementType(view).value, testing::StartsWith("<" + className + ": "));
  }
};
using LumicorElementKindDeathTest = LumicorElementKindTest;

TEST_F(LumicorElementKindTest, ReadsLabelsByTextThenAttributedTextThenDescription) {
  const auto label = make<UILabel>();
  expectDescription(label, "UILabel");
  label->setAttributedText(make<NSAttributedString>("Bold"));
  expect(label, Type::TYPE_TEXT, Input::TYPE_DEFAULT, "Bold");
  label->setText("");
  expect(label, Type::TYPE_TEXT, Input::TYPE_DEFAULT, "");
  struct TwoTexts : Object<TwoTexts, UILabel> {
    std::optional<std::string> text() const override { return ""; }
    Ref<NSAttributedString> attributedText() const override { return make<NSAttributedString>("other"); }
  };
  expect(make<TwoTexts>(), Type::TYPE_TEXT, Input::TYPE_DEFAULT, "");
  label->setText("Total");
  label->setUserInteractionEnabled(true);
  expect(label, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "Total");
}

TEST_F(LumicorElementKindTest, ReadsTextViewsAndFieldsByWhatCanBeTyped) {
  const auto view = make<UITextView>();
  view->setText("two\nlines");
  expect(view, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "two\nlines");
  view->setUserInteractionEnabled(false);
  expect(view, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "two\nlines");
  view->setUserInteractionEnabled(true);
  view->setEditable(false);
  view->setUserInteractionEnabled(true);
  expect(view, Type::TYPE_TEXT, Input::TYPE_DEFAULT, "two\nlines");
  const auto field = make<UITextField>();
  field->setText("ada");
  expect(field, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "ada");
  field->setEnabled(false);
  expect(field, Type::TYPE_TEXT, Input::TYPE_DEFAULT, "ada");
}

TEST_F(LumicorElementKindTest, ReadsWhatWasOnceASecretAsBullets) {
  const auto field = make<UITextField>();
  field->setText("hunter2");
  field->setSecureTextEntry(true);
  expect(field, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "•••••••");
  field->setSecureTextEntry(false);
  expect(field, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "•••••••");
  field->setText("");
  expect(field, Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT, "");
  const auto bar = make<UISearchBar>();
  bar->searchTextField()->setSecureTextEntry(true);
  bar->setText("tea");
  expect(bar, Type::TYPE_SEARCH, Input::TYPE_DEFAULT, "•••");
}

TEST_F(LumicorElementKindTest, ReadsSearchBarsImagesAndWebPages) {
  const auto bar = make<UISearchBar>();
  expect(bar, Type::TYPE_SEARCH, Input::TYPE_DEFAULT, "");
  bar->setText("tea");
  expect(bar, Type::TYPE_SEARCH, Input::TYPE_DEFAULT, "tea");
  const auto picture = make<UIImageView>(CGRect{});
  expect(picture, Type::TYPE_IMAGE, Input::TYPE_DEFAULT, "");
  const auto image = UIImage::imageWithBitmap(Bitmap(1, 1));
  picture->setImage(image);
  expect(picture, Type::TYPE_IMAGE, Input::TYPE_DEFAULT, image->description());
  const auto web = make<WKWebView>();
  expect(web, Type::TYPE_WEBVIEW, Input::TYPE_DEFAULT, "");
  web->loadURL(URL::parse("https://tea.example/a?b=c"));
  expect(web, Type::TYPE_WEBVIEW, Input::TYPE_DEFAULT, "https://tea.example/a?b=c");
}

TEST_F(LumicorElementKindTest, CallsASelectedOrHeldButtonAToggle) {
  const auto button = make<UIButton>(UIButtonType::system);
  button->setTitle("Pay", UIControlState::normal);
  expect(button, Type::TYPE_INPUT, Input::TYPE_BUTTON, "Pay");
  button->setHighlighted(true);
  expect(button, Type::TYPE_INPUT, Input::TYPE_TOGGLE, "Pay");
  button->setHighlighted(false);
  button->setSelected(true);
  expect(button, Type::TYPE_INPUT, Input::TYPE_TOGGLE, "Pay");
}

TEST_F(LumicorElementKindTest, MakesNoTitleForAButtonThatHasNone) {
  const auto button = make<UIButton>();
  button->setImage(UISystemSymbol::image("plus"), UIControlState::normal);
  const std::size_t parts = button->subviews().size();
  expect(button, Type::TYPE_INPUT, Input::TYPE_BUTTON, "");
  EXPECT_EQ(button->subviews().size(), parts);
  button->titleLabel()->setText(std::nullopt);
  expectDescription(button, "UILabel");
  struct Borrowed : Object<Borrowed, UIButton> {
    Ref<UILabel> label = make<UILabel>();
    Ref<UILabel> titleLabelIfMade() const override { return label; }
  };
  const auto borrowed = make<Borrowed>();
  borrowed->label->setText("Pay");
  expect(borrowed, Type::TYPE_INPUT, Input::TYPE_BUTTON, "Pay");
}

TEST_F(LumicorElementKindTest, AppendsTheTitleOfASwitchSinceVersionFourteen) {
  const auto toggle = make<UISwitch>();
  const auto onVersion = [&](const char* version, const std::string& value) {
    DeviceProfile profile;
    profile.systemVersion = version;
    UIDevice::setProfile(profile);
    expect(toggle, Type::TYPE_INPUT, Input::TYPE_TOGGLE, value);
  };
  toggle->setOn(true);
  onVersion("14.0", "true ");
  onVersion("16.4", "true ");
  onVersion("13.7", "true");
  onVersion("9", "true");
  toggle->setTitle("Dark mode");
  toggle->setOn(false);
  onVersion("13.7", "false");
  onVersion("16.4", "false Dark mode");
}

TEST_F(LumicorElementKindTest, DividesProgressAsWholeNumbers) {
  const auto bar = make<UIProgressView>();
  expect(bar, Type::TYPE_INPUT, Input::TYPE_PROGRESS_BAR, "");
  const auto progress = make<NSProgress>(4);
  bar->setObservedProgress(progress);
  progress->setCompletedUnitCount(3);
  expect(bar, Type::TYPE_INPUT, Input::TYPE_PROGRESS_BAR, "0");
  progress->setCompletedUnitCount(4);
  expect(bar, Type::TYPE_INPUT, Input::TYPE_PROGRESS_BAR, "1");
}

TEST_F(LumicorElementKindDeathTest, StopsAtAProgressThatCannotBeDivided) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto bar = make<UIProgressView>();
  const auto progress = make<NSProgress>(0);
  bar->setObservedProgress(progress);
  EXPECT_DEATH(LumicorUtils::getLumicorElementType(bar), "fatal error: a progress view observes");
  progress->setTotalUnitCount(-1);
  progress->setCompletedUnitCount(std::numeric_limits<std::int64_t>::min());
  EXPECT_DEATH(LumicorUtils::getLumicorElementType(bar), "fatal error: a progress view observes");
}

TEST_F(LumicorElementKindTest, ReadsSlidersPickersAndSegments) {
  const auto slider = make<UISlider>();
  slider->setValue(0.1F);
  expect(slider, Type::TYPE_INPUT, Input::TYPE_DEFAULT, "0.1");
  expect(make<UIPickerView>(), Type::TYPE_PICKER_VIEW, Input::TYPE_DEFAULT, "-1");
  struct TwoWheels : Object<TwoWheels, UIPickerView> {
    std::int64_t selectedRowInComponent(std::int64_t component) const override { return 10 + component; }
  };
  expect(make<TwoWheels>(), Type::TYPE_PICKER_VIEW, Input::TYPE_DEFAULT, "10");
  const auto date = make<UIDatePicker>();
  date->setDate(Date(1714564800.25));
  expect(date, Type::TYPE_INPUT, Input::TYPE_SELECT, "1714564800.25");
  const auto segments = make<UISegmentedControl>(std::vector<std::string>{"S", "M", "L"});
  expect(segments, Type::TYPE_RADIO_GROUP, Input::TYPE_RADIO, "-1 3");
  segments->setSelectedSegmentIndex(2);
  expect(segments, Type::TYPE_RADIO_GROUP, Input::TYPE_RADIO, "2 3");
}

TEST_F(LumicorElementKindTest, MirrorsTheOffsetOfScrollViewsButNotOfTables) {
  const auto table = make<UITableView>(CGRect{0, 0, 100, 100}, UITableViewStyle::plain);
  table->setContentSize({100, 1000});
  table->setContentOffset({0, 50});
  expect(table, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "");
  const auto scroll = make<UIScrollView>(CGRect{0, 0, 100, 100});
  scroll->setContentSize({100, 1000});
  scroll->setContentOffset({0, 120.5});
  expect(scroll, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "0.0 120.5");
  const auto collection = make<UICollectionView>(CGRect{0, 0, 100, 100}, make<UICollectionViewFlowLayout>());
  collection->setContentOffset({-3, 7});
  expect(collection, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "-3.0 7.0");
  expect(make<UIStackView>(CGRect{}), Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "");
}

TEST_F(LumicorElementKindTest, TakesTheFirstTextOfANavigationBarEvenAnEmptyOne) {
  const auto bar = make<UINavigationBar>();
  const auto first = make<UITextView>();
  first->setText("");
  const auto second = make<UILabel>();
  second->setText("Title");
  const auto nested = make<UIView>();
  nested->addSubview(make<UILabel>());
  for (const Ref<UIView>& own : std::vector(bar->subviews())) own->removeFromSuperview();
  bar->addSubview(nested);
  expect(bar, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "");
  bar->addSubview(second);
  expect(bar, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "Title");
  bar->insertSubview(first, 0);
  expect(bar, Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "");
}

TEST_F(LumicorElementKindTest, AsksTheTabBarsControllerForTheSelection) {
  expect(make<UITabBar>(), Type::TYPE_TABBAR, Input::TYPE_DEFAULT, "");
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<UIViewController>(), make<UIViewController>()});
  tabs->setSelectedIndex(1);
  show(tabs);
  expect(tabs->tabBar(), Type::TYPE_TABBAR, Input::TYPE_DEFAULT, "1");
}

TEST_F(LumicorElementKindTest, CallsAnyOtherControlAButtonAndAnythingElseNothing) {
  struct HostControl : Object<HostControl, UIControl> {};
  struct HostLabel : Object<HostLabel, UILabel> {};
  expect(make<HostControl>(), Type::TYPE_INPUT, Input::TYPE_BUTTON, "");
  expect(make<UIView>(), Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, "");
  const auto label = make<HostLabel>();
  label->setText("own class");
  expect(label, Type::TYPE_TEXT, Input::TYPE_DEFAULT, "own class");
}

TEST(DecimalText, IsTheShortestThatReadsBackAndNeverLooksWhole) {
  EXPECT_EQ(decimalText(0.0), "0.0");
  EXPECT_EQ(decimalText(-0.0), "-0.0");
  EXPECT_EQ(decimalText(120.0), "120.0");
  EXPECT_EQ(decimalText(100000.0), "100000.0");
  EXPECT_EQ(decimalText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(decimalText(0.0001), "0.0001");
  EXPECT_EQ(decimalText(0.00001), "1e-05");
  EXPECT_EQ(decimalText(9007199254740992.0), "9007199254740992.0");
  EXPECT_EQ(decimalText(1e16), "1e+16");
  EXPECT_EQ(decimalText(-2.5e-7), "-2.5e-07");
  EXPECT_EQ(decimalText(0.5F), "0.5");
  EXPECT_EQ(decimalText(0.0001F), "0.0001");
  EXPECT_EQ(decimalText(16777216.0F), "16777216.0");
  EXPECT_EQ(decimalText(33554432.0F), "3.3554432e+07");
  EXPECT_EQ(decimalText(std::numeric_limits<double>::infinity()), "inf");
}

}  // namespace lumicor::test
