#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

/// Two wheels, the second with as many rows as it is told; the delegate of a search bar as well.
class Choices : public Object<Choices, NSObject> {
 public:
  Journal journal;
  std::int64_t rows = 50;
  bool begins = true;
  std::int64_t components(const Ref<NSObject>&) { return 2; }
  std::int64_t rowCount(const Ref<NSObject>&, std::int64_t component) { return component == 0 ? 10 : rows; }
  std::string title(const Ref<NSObject>&, std::int64_t row, std::int64_t) { return "r" + std::to_string(row); }
  void selected(const Ref<NSObject>&, std::int64_t row, std::int64_t component) {
    journal.note(std::to_string(row) + "/" + std::to_string(component));
  }
  void changed() { journal.note("changed"); }
  bool shouldBegin(const Ref<NSObject>&) { return begins; }
  void didBegin(const Ref<NSObject>&) { journal.note("begun"); }
  void didEnd(const Ref<NSObject>&) { journal.note("ended"); }
  void textChanged(const Ref<NSObject>&, std::string text) { journal.note("text=" + text); }
  void search(const Ref<NSObject>&) { journal.note("search"); }
  void cancel(const Ref<NSObject>&) { journal.note("cancel"); }
  static void exportMethods(MethodTable<Choices>& table) {
    table.add<&Choices::components>("numberOfComponentsInPickerView:");
    table.add<&Choices::rowCount>("pickerView:numberOfRowsInComponent:");
    table.add<&Choices::title>("pickerView:titleForRow:forComponent:");
    table.add<&Choices::selected>("pickerView:didSelectRow:inComponent:");
    table.add<&Choices::changed>("changed");
    table.add<&Choices::shouldBegin>("searchBarShouldBeginEditing:");
    table.add<&Choices::didBegin>("searchBarTextDidBeginEditing:");
    table.add<&Choices::didEnd>("searchBarTextDidEndEditing:");
    table.add<&Choices::textChanged>("searchBar:textDidChange:");
    table.add<&Choices::search>("searchBarSearchButtonClicked:");
    table.add<&Choices::cancel>("searchBarCancelButtonClicked:");
  }
};

class PickerTest : public AppFixture {
 protected:
  PickerTest() {
    picker->setFrame({0, 200, 390, 216});
    picker->setDataSource(choices);
    picker->setDelegate(choices);
    content()->addSubview(picker);
    settle();
  }
  std::string middle(std::int64_t component) const {
    const auto label = as<UILabel>(picker->viewForRow(picker->selectedRowInComponent(component), component));
    EXPECT_NEAR(label->convertPoint(label->bounds().center(), picker.get()).y, 108, 0.6);
    return *label->text();
  }
  Ref<Choices> choices = make<Choices>();
  Ref<UIPickerView> picker = make<UIPickerView>();
};

TEST_F(PickerTest, AWheelThatIsTurnedComesToRestOnARowAndTellsIt) {
  EXPECT_EQ(middle(1), "r0");
  drag({{290, 308}, {290, 308 - 80}}, 0.4);
  advance(2);
  const std::int64_t row = picker->selectedRowInComponent(1);
  EXPECT_GE(row, 2);
  EXPECT_EQ(middle(1), "r" + std::to_string(row));
  EXPECT_EQ(choices->journal.take(), std::to_string(row) + "/1");
  EXPECT_EQ(picker->selectedRowInComponent(0), 0);
  hands().flick({290, 380}, 0, -150);
  advance(4);
  EXPECT_GT(picker->selectedRowInComponent(1), row + 3);
  middle(1);
  EXPECT_NE(choices->journal.take(), "");
}

TEST_F(PickerTest, ATapOnARowBringsItToTheMiddle) {
  tap(CGPoint{100, 308 + 34});
  advance(1);
  EXPECT_EQ(middle(0), "r1");
  EXPECT_EQ(choices->journal.take(), "1/0");
}

TEST_F(PickerTest, AProgramsChoiceIsSilentAndNonsenseIsNothing) {
  picker->selectRow(7, 0, false);
  picker->selectRow(30, 1, true);
  EXPECT_EQ(picker->selectedRowInComponent(1), 30);
  advance(1);
  EXPECT_EQ(middle(0), "r7");
  EXPECT_EQ(middle(1), "r30");
  picker->selectRow(10, 0, true);
  picker->selectRow(-1, 0, true);
  picker->selectRow(0, 2, true);
  picker->selectRow(0, -1, false);
  advance(1);
  EXPECT_EQ(picker->selectedRowInComponent(0), 7);
  EXPECT_EQ(picker->selectedRowInComponent(5), -1);
  EXPECT_EQ(picker->numberOfRowsInComponent(9), 0);
  EXPECT_EQ(choices->journal.take(), "");
}

TEST_F(PickerTest, FewerRowsKeepTheChoiceInRangeAndManyCostNothing) {
  picker->selectRow(40, 1, false);
  choices->rows = 5;
  picker->reloadAllComponents();
  settle();
  EXPECT_EQ(picker->selectedRowInComponent(1), 4);
  choices->rows = 0;
  picker->reloadAllComponents();
  settle();
  EXPECT_EQ(picker->selectedRowInComponent(1), -1);
  drag({{290, 308}, {290, 250}});
  advance(2);
  choices->rows = 1000000;
  picker->reloadAllComponents();
  picker->selectRow(999999, 1, false);
  settle();
  EXPECT_EQ(middle(1), "r999999");
  choices = nullptr;
  picker->reloadAllComponents();
  settle();
  EXPECT_EQ(picker->numberOfComponents(), 0);
}

TEST_F(PickerTest, TheWheelsOfADatePickerAreToldFromAHostsPicker) {
  const auto date = make<UIDatePicker>();
  const auto wheels = as<UIPickerView>(date->subviews().front());
  ASSERT_NE(wheels, nullptr);
  EXPECT_EQ(NSStringFromClass(wheels->classForCoder()), "_UIDatePickerView");
  EXPECT_EQ(NSStringFromClass(make<UIPickerView>()->classForCoder()), "UIPickerView");
}

TEST_F(PickerTest, ADateIsChosenOnWheels) {
  constexpr double leapDay = 1709208000;  // 29 February 2024, noon, UTC
  const auto date = make<UIDatePicker>();
  date->setFrame({0, 450, 390, 216});
  date->setDatePickerMode(UIDatePickerMode::date);
  date->setDate(Date(leapDay + 0.5));
  date->addTarget(choices, sel("changed"), UIControlEvents::valueChanged);
  content()->addSubview(date);
  settle();
  EXPECT_EQ(date->date().timeIntervalSince1970(), leapDay + 0.5);
  EXPECT_EQ(choices->journal.take(), "");
  tap(CGPoint{260, 558 + 34});  // the next year has no such day
  advance(2);
  EXPECT_EQ(date->date().iso8601(), "2025-02-28T12:00:00Z");
  EXPECT_EQ(choices->journal.take(), "changed");
  date->setMinimumDate(Date(leapDay));
  date->setDate(Date(0));
  EXPECT_EQ(date->date().timeIntervalSince1970(), leapDay);
  date->setMinimumDate(std::nullopt);
  date->setDatePickerMode(UIDatePickerMode::time);
  date->setDate(Date(-1800));  // half past eleven on the last day of 1969
  settle();
  tap(CGPoint{230, 558 + 34});
  advance(2);
  EXPECT_EQ(date->date().iso8601(), "1969-12-31T23:31:00Z");
}

// ---- Search bars

TEST_F(PickerTest, ASearchBarTellsOfTypingSearchingAndCancelling) {
  const auto bar = make<UISearchBar>();
  bar->setFrame({0, 60, 390, 52});
  bar->setAccessibilityIdentifier("bar");
  bar->setDelegate(choices);
  content()->addSubview(bar);
  bar->setShowsCancelButton(true, true);
  advance(1);
  EXPECT_EQ(bar->text(), "");
  choices->begins = false;
  tap("bar");
  EXPECT_FALSE(bar->searchTextField()->isEditing());
  choices->begins = true;
  tap("bar");
  type("te\n");
  EXPECT_EQ(choices->journal.take(), "begun text=t text=te search");
  EXPECT_TRUE(bar->searchTextField()->isEditing());
  hands().tap(bar->cancelButton());
  advance(1);
  EXPECT_EQ(choices->journal.take(), "cancel");
  bar->setText("by program");
  bar->resignFirstResponder();
  EXPECT_EQ(choices->journal.take(), "ended");
  EXPECT_EQ(bar->text(), "by program");
  const CGRect clear = bar->searchTextField()->clearButtonRect(bar->searchTextField()->bounds());
  tap(bar->searchTextField()->convertPoint(clear.center(), nullptr));
  EXPECT_EQ(choices->journal.take(), "text=");
  choices = nullptr;
  EXPECT_TRUE(bar->becomeFirstResponder());
  EXPECT_TRUE(bar->isFirstResponder());
  type("x\n");
}

// ---- Wheels that turn while something happens

TEST_F(PickerTest, AFingerThatCatchesAWheelChoosesOnlyOnceItLetsGo) {
  hands().flick({290, 380}, 0, -150);
  advance(0.3);
  window()->deliverTouch(1, UITouchPhase::began, {290, 308}, Clock::mediaTime());
  advance(1);
  EXPECT_EQ(choices->journal.take(), "");
  window()->deliverTouch(1, UITouchPhase::ended, {290, 308}, Clock::mediaTime());
  advance(1);
  const std::int64_t row = picker->selectedRowInComponent(1);
  EXPECT_GT(row, 0);
  middle(1);
  EXPECT_EQ(choices->journal.take(), std::to_string(row) + "/1");
  hands().flick({290, 380}, 0, -150);
  advance(0.3);
  window()->deliverTouch(1, UITouchPhase::began, {290, 308}, Clock::mediaTime());
  for (int i = 1; i <= 20; ++i) {  // caught, and turned on by the same finger
    window()->deliverTouch(1, UITouchPhase::moved, {290, 308.0 - 3 * i}, Clock::mediaTime());
    advance(0.016);
  }
  advance(1);
  EXPECT_EQ(choices->journal.take(), "");
  window()->deliverTouch(1, UITouchPhase::ended, {290, 248}, Clock::mediaTime());
  advance(2);
  EXPECT_EQ(choices->journal.take(), std::to_string(picker->selectedRowInComponent(1)) + "/1");

  hands().flick({290, 380}, 0, -150);
  advance(0.3);
  picker->reloadAllComponents();
  advance(3);
  EXPECT_EQ(choices->journal.take(), "") << "rows that are loaded anew are not chosen by a turn of the old ones";
}

TEST_F(PickerTest, AMousesWheelChoosesARow) {
  for (int i = 0; i < 3; ++i) UIApplication::shared().deliverScroll({290, 308}, {0, -25});
  advance(2);
  EXPECT_EQ(middle(1), "r2");
  EXPECT_EQ(choices->journal.take(), "2/1");
  UIApplication::shared().deliverScroll({290, 308}, {0, -20});
  picker->selectRow(9, 1, true);
  advance(2);
  EXPECT_EQ(middle(1), "r9");
  EXPECT_EQ(choices->journal.take(), "") << "the program chose while the wheel still turned";
}

TEST_F(PickerTest, WheelsOfADateTurnSideBySide) {
  const auto date = make<UIDatePicker>();
  date->setFrame({0, 450, 390, 216});
  date->setDatePickerMode(UIDatePickerMode::date);
  date->setDate(Date(1709208000));  // 29 February 2024
  date->addTarget(choices, sel("changed"), UIControlEvents::valueChanged);
  content()->addSubview(date);
  settle();
  hands().flick({190, 640}, 0, -60, 0.1);  // the months go far
  advance(0.2);
  tap(CGPoint{300, 558 + 34});  // the next year, meanwhile
  advance(5);
  EXPECT_EQ(choices->journal.take(), "changed changed");
  const std::string chosen = date->date().iso8601();
  EXPECT_EQ(chosen.substr(0, 4), "2025");
  EXPECT_NE(chosen.substr(5, 2), "02");

  hands().flick({190, 640}, 0, -60, 0.1);
  advance(0.2);
  date->setEnabled(false);
  advance(5);
  EXPECT_EQ(choices->journal.take(), "") << "what is switched off chooses no more";
  EXPECT_EQ(date->date().iso8601(), chosen);
}

TEST_F(PickerTest, EveryDateOfTheWheelsCanBeChosenAndNoOther) {
  const auto date = make<UIDatePicker>();
  const struct {
    double given;
    const char* held;
  } table[] = {{-1e300, "1740-01-01T00:00:00Z"},      {-7258118400, "1740-01-01T00:00:00Z"},
               {-2208988801, "1899-12-31T23:59:59Z"}, {4102444800, "2100-01-01T00:00:00Z"},
               {7258118399, "2199-12-31T23:59:59Z"},  {7258118400, "2199-12-31T23:59:59Z"},
               {1e300, "2199-12-31T23:59:59Z"}};
  for (const auto& row : table) {
    date->setDate(Date(row.given));
    EXPECT_EQ(date->date().iso8601(), row.held);
  }
  date->setDate(Date(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(date->date().iso8601(), "2199-12-31T23:59:59Z");
  const auto wheels = as<UIPickerView>(date->subviews().front());
  for (const auto& [mode, years] : {std::pair{UIDatePickerMode::dateAndTime, 0}, {UIDatePickerMode::date, 2}}) {
    date->setDatePickerMode(mode);
    date->setDate(Date(1e300));
    EXPECT_EQ(wheels->selectedRowInComponent(years), wheels->numberOfRowsInComponent(years) - 1);
    date->setDate(Date(-1e300));
    EXPECT_EQ(wheels->selectedRowInComponent(years), 0);
  }
  for (const double limit : {1e300, std::numeric_limits<double>::infinity()}) {
    date->setMinimumDate(Date(limit));
    EXPECT_LE(date->date().timeIntervalSince1970(), 7258118400);
    date->setMinimumDate(std::nullopt);
  }
}

}  // namespace
}  // namespace platform::test
