#include "platform/foundation/URL.h"
#include "platform/uikit/controls/NSProgress.h"
#include "platform/uikit/controls/UIActivityIndicatorView.h"
#include "platform/uikit/controls/UIPageControl.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/controls/UISegmentedControl.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/views/WKWebView.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Counter : public Object<Counter, NSObject> {
 public:
  int changes = 0;
  void changed() { ++changes; }
  static void exportMethods(MethodTable<Counter>& table) { table.add<&Counter::changed>("changed"); }
};

class ValueControlTest : public AppFixture {
 protected:
  template <class T>
  Ref<T> put(const Ref<T>& control, CGRect frame) {
    control->setFrame(frame);
    if constexpr (std::is_base_of_v<UIControl, T>) {
      control->addTarget(counter, sel("changed"), UIControlEvents::valueChanged);
    }
    content()->addSubview(control);
    settle();
    return control;
  }
  int changes() { return std::exchange(counter->changes, 0); }
  Ref<Counter> counter = make<Counter>();
};

TEST_F(ValueControlTest, ASwitchFollowsTapsAndDragsAndIsSilentWhenAProgramSetsIt) {
  const auto control = put(make<UISwitch>(), {100, 200, 500, 500});
  EXPECT_EQ(control->frame().size, (CGSize{51, 31}));
  hands().tap(control);
  advance(1);
  EXPECT_TRUE(control->isOn());
  EXPECT_EQ(changes(), 1);
  drag({{140, 215}, {105, 215}});
  EXPECT_FALSE(control->isOn());
  EXPECT_EQ(changes(), 1);
  drag({{110, 215}, {145, 215}, {106, 215}});
  EXPECT_FALSE(control->isOn());
  EXPECT_EQ(changes(), 2);
  control->setOn(true, true);
  EXPECT_EQ(changes(), 0);
  control->setEnabled(false);
  hands().tap(control);
  advance(1);
  EXPECT_TRUE(control->isOn());
  EXPECT_EQ(control->title(), std::nullopt);
}

TEST_F(ValueControlTest, ASliderFollowsTheFingerFromItsKnobOn) {
  const auto slider = put(make<UISlider>(), {20, 200, 228, 34});
  slider->setMaximumValue(100);
  const auto knob = [&] {
    return slider->convertPoint(slider->thumbRect(slider->bounds(), slider->value()).center(), nullptr);
  };
  drag({knob(), {knob().x + 100, knob().y + 30}});
  EXPECT_NEAR(slider->value(), 50, 1);
  EXPECT_GT(changes(), 5);
  drag({{40, 217}, {200, 217}});  // not on the knob
  EXPECT_NEAR(slider->value(), 50, 1);
  slider->setContinuous(false);
  changes();
  drag({knob(), {400, 217}});
  EXPECT_EQ(slider->value(), 100);
  EXPECT_EQ(changes(), 1);
  slider->setValue(-5);
  EXPECT_EQ(slider->value(), 0);
  slider->setValue(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(slider->value(), 0);
  slider->setMinimumValue(30);
  EXPECT_EQ(slider->value(), 30);
  slider->setMaximumValue(10);  // turned round: nothing moves, nothing breaks
  drag({knob(), {100, 217}});
  EXPECT_EQ(changes(), 0);
}

TEST_F(ValueControlTest, ASegmentIsChosenByWhereTheFingerLifts) {
  const auto segments = put(make<UISegmentedControl>(std::vector<std::string>{"a", "b", "c"}), {0, 200, 300, 32});
  EXPECT_EQ(segments->selectedSegmentIndex(), -1);
  EXPECT_EQ(segments->numberOfSegments(), 3);
  tap(CGPoint{150, 216});
  EXPECT_EQ(segments->selectedSegmentIndex(), 1);
  EXPECT_EQ(changes(), 1);
  tap(CGPoint{150, 216});
  EXPECT_EQ(changes(), 0);
  drag({{50, 216}, {250, 216}});
  EXPECT_EQ(segments->selectedSegmentIndex(), 2);
  EXPECT_EQ(changes(), 1);
  segments->setEnabled(false, 0);
  tap(CGPoint{50, 216});
  EXPECT_EQ(segments->selectedSegmentIndex(), 2);
  segments->insertSegment("first", 0);
  EXPECT_EQ(segments->selectedSegmentIndex(), 3);
  segments->removeSegment(3);
  EXPECT_EQ(segments->selectedSegmentIndex(), -1);
  segments->setSelectedSegmentIndex(99);
  EXPECT_EQ(segments->selectedSegmentIndex(), -1);
  EXPECT_EQ(segments->titleForSegment(0), "first");
  EXPECT_EQ(segments->titleForSegment(7), std::nullopt);
  segments->removeAllSegments();
  segments->removeSegment(0);
  tap(CGPoint{50, 216});
  EXPECT_EQ(changes(), 0);
}

TEST_F(ValueControlTest, PagesTurnAtTheSidesAndStayInRange) {
  const auto pages = put(make<UIPageControl>(), {0, 200, 200, 26});
  pages->setNumberOfPages(3);
  tap(CGPoint{190, 213});
  tap(CGPoint{190, 213});
  tap(CGPoint{190, 213});
  EXPECT_EQ(pages->currentPage(), 2);
  EXPECT_EQ(changes(), 2);
  tap(CGPoint{10, 213});
  EXPECT_EQ(pages->currentPage(), 1);
  pages->setNumberOfPages(1);
  EXPECT_EQ(pages->currentPage(), 0);
  pages->setHidesForSinglePage(true);
  EXPECT_TRUE(pages->isHidden());
}

TEST_F(ValueControlTest, AProgressViewFollowsTheProgressItObserves) {
  auto view = put(make<UIProgressView>(), {0, 200, 200, 4});
  const auto progress = make<NSProgress>(4);
  view->setObservedProgress(progress);
  progress->setCompletedUnitCount(3);
  EXPECT_EQ(view->progress(), 0.75f);
  progress->setTotalUnitCount(0);
  EXPECT_EQ(view->progress(), 0);
  progress->setTotalUnitCount(-2);
  progress->setCompletedUnitCount(9);
  EXPECT_EQ(progress->fractionCompleted(), 0);
  view->setObservedProgress(nullptr);
  progress->setTotalUnitCount(9);
  EXPECT_EQ(view->progress(), 0);
  view->setProgress(7);
  EXPECT_EQ(view->progress(), 1);
  view->setObservedProgress(progress);
  view->removeFromSuperview();
  view = nullptr;
  progress->setCompletedUnitCount(1);  // nobody listens any more
}

TEST_F(ValueControlTest, AnIndicatorTurnsWhileItIsSeen) {
  const auto wheel = put(make<UIActivityIndicatorView>(), {10, 200, 20, 20});
  EXPECT_TRUE(wheel->isHidden());
  wheel->startAnimating();
  EXPECT_FALSE(wheel->isHidden());
  wheel->removeFromSuperview();
  advance(1);
  content()->addSubview(wheel);
  EXPECT_TRUE(wheel->isAnimating());
  wheel->stopAnimating();
  EXPECT_TRUE(wheel->isHidden());
}

TEST_F(ValueControlTest, AWebViewHoldsItsAddress) {
  const auto web = put(make<WKWebView>(), {0, 200, 300, 200});
  EXPECT_FALSE(web->URL().has_value());
  web->loadURL(URL::parse("https://tea.example/a?b=c"));
  settle();
  EXPECT_EQ(web->URL()->absoluteString(), "https://tea.example/a?b=c");
}

}  // namespace
}  // namespace platform::test
