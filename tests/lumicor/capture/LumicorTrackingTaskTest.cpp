#include <gmock/gmock.h>

#include "lumicor/capture/LumicorActionElement.h"
#include "lumicor/capture/LumicorFlowCompletion.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/ui/LumicorToast.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/device/UIDevice.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/lists/UITableViewCell.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"
#include "tests/lumicor/capture/DemonstrationTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

// ---- What is registered

using RegistrationOfActionsTest = CaptureTest;

TEST_F(RegistrationOfActionsTest, TakesTheWholeScreenAtTheMomentOfTheAction) {
  const auto label = add<UILabel>("title");
  label->setText("Tea");
  const auto scroll = add<UIScrollView>("feed");
  scroll->setContentSize({300, 500});
  scroll->setContentOffset({0, 120.7});
  const auto button = addPressed<UIButton>("pay");
  button->setTitle("Pay now", UIControlState::normal);
  tap(button);

  ASSERT_THAT(LumicorTrackingTask::taskFlow, SizeIs(1));
  const LumicorSnapshot& snapshot = LumicorTrackingTask::taskFlow[0];
  EXPECT_EQ(snapshot.viewName(), "HostPage");
  EXPECT_EQ(snapshot.viewWidth(), 390);
  EXPECT_EQ(snapshot.viewHeight(), 844);
  EXPECT_EQ(snapshot.viewOrientation(), "PORTRAIT");
  EXPECT_EQ(snapshot.viewDescription(), "Default");
  EXPECT_EQ(snapshot.screenshotKey(), "");
  EXPECT_EQ(snapshot.index(), 0);
  std::vector<std::string> elements;
  for (const LumicroElement& element : snapshot.elements()) elements.push_back(element.elementId());
  EXPECT_THAT(elements, ElementsAre("title", "feed", "pay"));
  EXPECT_EQ(snapshot.scrollDetails().at("feed").scrollOffsetY, 120);
  ASSERT_THAT(snapshot.inputs(), SizeIs(1));
  EXPECT_EQ(snapshot.inputs()[0].elementId(), "pay");
  const CGRect frame = button->frame();
  EXPECT_EQ(snapshot.actionElement(),
            LumicroElement("pay", "Default", 0, static_cast<std::int64_t>(frame.origin.y), 300, 60,
                           "Action on Optional(\"pay\")", false, "0", "Default", "Pay now", "Default",
                           LumicorType::TYPE_INPUT, LumicorInputType::TYPE_BUTTON));
  EXPECT_THAT(toasts(), ElementsAre("Action registered. Proceed..."));
  EXPECT_EQ(LumicorToast::shown()[0]->label()->font().pointSize(), 16);
  tap(button);
  EXPECT_EQ(LumicorTrackingTask::taskFlow.back().index(), 1);
}

TEST_F(RegistrationOfActionsTest, IsRefusedWithoutANameOrOutsideADemonstration) {
  const auto view = add<UIView>("");
  LumicorTrackingTask::registerUserAction("x", view);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("Accessibility Identifier not found"));
  RunLoop::advance(5);
  Lumicor::isTracking = false;
  view->setAccessibilityIdentifier("v");
  LumicorTrackingTask::registerUserAction("x", view);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(RegistrationOfActionsTest, ToleratesThatNoScreenIsCurrent) {
  const auto view = add<UIView>("v");
  Lumicor::shared().setCurrentViewController(nullptr);
  LumicorTrackingTask::registerUserAction("x", view);
  ASSERT_THAT(names(), SizeIs(1));
  EXPECT_THAT(LumicorTrackingTask::taskFlow[0].elements(), IsEmpty());
}

TEST_F(RegistrationOfActionsTest, TellsOfACellWhatAPersonReadsOnIt) {
  const auto cell = make<UITableViewCell>(UITableViewCellStyle::standard, "row");
  cell->setAccessibilityIdentifier("row");
  page()->view()->addSubview(cell);
  cell->textLabel()->setText("Green tea");
  LumicorTrackingTask::registerUserAction("tableView", cell);
  EXPECT_EQ(lastAction().value(), "Green tea");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_DEFAULT);
}

TEST(ActionElements, AreInputsWhereAPersonCanOperateThem) {
  using Type = LumicorType;
  using Input = LumicorInputType;
  std::vector<LumicroElement> elements;
  const auto add = [&](const char* name, Type type, Input input) {
    elements.emplace_back(name, 0, 0, 0, 0, "", type, input);
  };
  add("label", Type::TYPE_TEXT, Input::TYPE_DEFAULT);
  add("field", Type::TYPE_TEXT, Input::TYPE_EDIT_TEXT);
  add("button", Type::TYPE_INPUT, Input::TYPE_BUTTON);
  add("box", Type::TYPE_INPUT, Input::TYPE_CHECKBOX);
  add("segments", Type::TYPE_RADIO_GROUP, Input::TYPE_RADIO);
  add("date", Type::TYPE_INPUT, Input::TYPE_SELECT);
  add("switch", Type::TYPE_INPUT, Input::TYPE_TOGGLE);
  add("progress", Type::TYPE_INPUT, Input::TYPE_PROGRESS_BAR);
  add("item", Type::TYPE_BAR_BUTTON_ITEM, Input::TYPE_BAR_BUTTON_ITEM);
  add("slider", Type::TYPE_INPUT, Input::TYPE_DEFAULT);
  add("search", Type::TYPE_SEARCH, Input::TYPE_DEFAULT);
  add("tabs", Type::TYPE_TABBAR, Input::TYPE_DEFAULT);
  add("picker", Type::TYPE_PICKER_VIEW, Input::TYPE_DEFAULT);
  add("image", Type::TYPE_IMAGE, Input::TYPE_DEFAULT);
  add("plain", Type::TYPE_DEFAULT, Input::TYPE_DEFAULT);
  std::vector<std::string> inputs;
  for (const LumicroElement& element : LumicorActionElement::inputsAmong(elements)) {
    inputs.push_back(element.elementId());
  }
  EXPECT_THAT(inputs, ElementsAre("field", "button", "box", "segments", "date", "switch", "item", "slider", "search",
                                  "tabs", "picker"));
}

TEST(FlowCompletion, FillsInScreenshotsAndWhereActionsLed) {
  const auto snapshot = [](const char* screen, std::int64_t index) {
    const LumicroElement action("a", "Default", 0, 0, 0, 0, "act", false, "Default", "Default", "v", "Default",
                                LumicorType::TYPE_INPUT, LumicorInputType::TYPE_BUTTON);
    return LumicorSnapshot(screen, 1, 2, "PORTRAIT", {}, {}, action, {}, "Default", "", index);
  };
  const std::vector flow{snapshot("Home", 0), snapshot("Home", 1), snapshot("Cart", 2)};
  const auto completed = LumicorFlowCompletion::completed(flow, {"k0", ""});
  ASSERT_THAT(completed, SizeIs(3));
  EXPECT_EQ(completed[0].screenshotKey(), "k0");
  EXPECT_EQ(completed[1].screenshotKey(), "");
  EXPECT_EQ(completed[2].screenshotKey(), "");
  EXPECT_FALSE(completed[0].actionElement().isNavigational());
  EXPECT_EQ(completed[0].actionElement().destination(), "Default");
  EXPECT_TRUE(completed[1].actionElement().isNavigational());
  EXPECT_EQ(completed[1].actionElement().destination(), "Cart");
  EXPECT_FALSE(completed[2].actionElement().isNavigational());
  EXPECT_EQ(completed[2], flow[2]);
}

// ---- The control bar

using ControlBarTest = DemonstrationTest;

TEST_F(ControlBarTest, LooksAsItShould) {
  UIApplication::shared().layoutAndDisplayIfNeeded();
  EXPECT_EQ(bar()->accessibilityIdentifier(), "lumicorTrackerView");
  const auto outer = as<UIStackView>(bar()->subviews().at(0));
  ASSERT_TRUE(outer);
  EXPECT_EQ(outer->backgroundColor(), UIColorHex("#f5f5f5"));
  EXPECT_EQ(outer->layer()->cornerRadius(), 5);
  EXPECT_EQ(outer->spacing(), 10);
  EXPECT_EQ(outer->alignment(), UIStackViewAlignment::center);
  EXPECT_EQ(outer->layoutMargins(), (UIEdgeInsets{0, 10, 0, 10}));
  EXPECT_TRUE(outer->isLayoutMarginsRelativeArrangement());
  const auto inner = as<UIStackView>(outer->arrangedSubviews().at(0));
  ASSERT_TRUE(inner);
  EXPECT_EQ(inner->layoutMargins(), (UIEdgeInsets{10, 0, 10, 0}));
  EXPECT_THAT(inner->arrangedSubviews(), ElementsAre(bar()->textView(), bar()->clickButton()));
  EXPECT_THAT(*bar()->textView()->text(), StartsWith("Tracking: "));
  EXPECT_EQ(bar()->textView()->numberOfLines(), 0);
  EXPECT_EQ(bar()->textView()->contentHuggingPriority(UILayoutAxis::horizontal), 250);
  const auto& button = bar()->clickButton();
  EXPECT_EQ(button->currentTitle(), "Start");
  EXPECT_EQ(button->currentTitleColor(), UIColorHex("#FF5733"));
  EXPECT_EQ(button->backgroundColor(), UIColorHex("#FFC3C3"));
  EXPECT_EQ(button->contentEdgeInsets(), (UIEdgeInsets{4, 4, 4, 4}));
  EXPECT_EQ(button->layer()->cornerRadius(), 3);
  EXPECT_THAT(bar()->gestureRecognizers(), SizeIs(1));

  const CGRect frame = bar()->convertRect(bar()->bounds(), nullptr);
  const UIEdgeInsets safe = window()->safeAreaInsets();
  EXPECT_GE(frame.minY(), safe.top);
  EXPECT_LT(frame.maxY(), 200) << "no keyboard covers it";
  EXPECT_GT(frame.size.width, 80);
  EXPECT_LT(frame.size.width, 220) << "the buttons of a navigation bar stay free";
  EXPECT_GT(frame.size.height, 30);
}

TEST_F(ControlBarTest, TakesThePlaceOfAnEarlierOneAndStaysInFront) {
  const auto first = bar();
  LumicorTrackingTask::showTrackingControlView(page()->view());
  EXPECT_FALSE(first->superview());
  EXPECT_EQ(bar()->superview(), window());
  page()->presentViewController(make<UIViewController>(), false);
  RunLoop::advance(1);
  EXPECT_EQ(window()->subviews().back(), bar());
  page()->dismissViewController(false);
  RunLoop::advance(2);
}

TEST_F(ControlBarTest, IsNoActionItselfAndLetsTouchesBesideItPass) {
  useSimulator();
  begin();
  bar()->clickButton()->setAccessibilityIdentifier("named by a curious host");
  const CGRect frame = bar()->convertRect(bar()->bounds(), nullptr);
  hands().tap(CGPoint{frame.origin.x + 3, frame.origin.y + 3});
  finishHands();
  LumicorTrackingTask::registerUserAction("x", bar()->textView());
  LumicorTrackingTask::registerUserAction("x", bar());
  EXPECT_THAT(names(), IsEmpty());
  page()->view()->addGestureRecognizer(make<UITapGestureRecognizer>(page(), sel("tapped:")));
  hands().tap(CGPoint{5, frame.midY()});
  finishHands();
  EXPECT_THAT(names(), ElementsAre("UITapGestureRecognizer"));
  for (const LumicroElement& element : LumicorTrackingTask::taskFlow[0].elements()) {
    EXPECT_NE(element.elementId(), "lumicorTrackerView");
  }
  press();
  EXPECT_THAT(service_.bodies("/sdk/task/register"), SizeIs(1)) << "the button works all the same";
}

// ---- A demonstration on the simulator, without a video

TEST_F(ControlBarTest, StartsAndStopsWithoutARecordingOnTheSimulator) {
  useSimulator();
  const auto fake = useFakeRecorder();
  acceptAll();
  press();
  EXPECT_TRUE(Lumicor::isTracking);
  EXPECT_EQ(fake->starts, 0);
  EXPECT_FALSE(LumicorRecordingTask::shared().loaderView()) << "gone at once";
  EXPECT_EQ(buttonTitle(), "Stop");
  EXPECT_TRUE(bar()->clickButton()->isEnabled());
  tap(addPressed<UIButton>("pay"));
  end();
  EXPECT_EQ(fake->stops, 0);
  EXPECT_THAT(namesOf(registered()), ElementsAre("Action on Optional(\"pay\")", "Recording Stopped"));
  EXPECT_EQ(service_.bodies("/sdk/task/register").at(0).find("recordingKey")->asString()[0], "");
  EXPECT_EQ(buttonTitle(), "Start");
  EXPECT_THAT(toasts(), testing::Contains("Task Capture Successful"));
  EXPECT_THAT(names(), IsEmpty()) << "the flow is empty again";
}

TEST_F(ControlBarTest, SaysThatNothingWasRecordedAndSendsNothing) {
  useSimulator();
  begin();
  end();
  EXPECT_THAT(service_.requests(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("No actions recorded"));
  EXPECT_EQ(buttonTitle(), "Start");
  begin();
  EXPECT_TRUE(Lumicor::isTracking) << "and another one can begin";
}

TEST_F(ControlBarTest, LooksAfterTheFirstScreenAtOnce) {
  useSimulator();
  const auto search = add<UISearchBar>("find");
  Lumicor::shared().setCurrentViewController(nullptr);  // it appeared before the session began
  Lumicor::shared().setCurrentView("");
  begin();
  EXPECT_TRUE(search->delegate());
  EXPECT_EQ(Lumicor::shared().getCurrentViewController(), page());
  EXPECT_EQ(Lumicor::shared().getCurrentView(), "HostPage");
}

TEST_F(ControlBarTest, RegistersWhatWaitsAndThenTheClosingSnapshotLastOfAll) {
  useSimulator();
  acceptAll();
  page()->view()->setAccessibilityIdentifier(std::nullopt);
  const auto field = add<UITextField>("name");
  const auto button = addPressed<UIButton>("pay");
  begin();
  tap(button);
  tap(field);
  type("Ada");
  LumicorTrackingTask::click();
  LumicorTrackingTask::click();
  service_.answer("/sdk/task/register", json("{}"));
  RunLoop::settle();
  EXPECT_THAT(namesOf(registered()), ElementsAre("Action on Optional(\"pay\")", "textField", "Recording Stopped"));
  EXPECT_EQ(registered()[2].actionElement().elementId(), "");
  EXPECT_EQ(registered()[2].index(), 2);
  RunLoop::advance(5);
  EXPECT_THAT(registered(), SizeIs(3));
}

TEST_F(ControlBarTest, RegistersNothingAfterStopWhileTheHostGoesOn) {
  useSimulator();
  service_.answer("/sdk/task/register",
                  URLProtocol::Reply::json(200, json(R"({"statusCode":200,"data":{"insertedId":"t"}})")).after(5));
  const auto button = addPressed<UIButton>("pay");
  begin();
  tap(button);
  press();
  EXPECT_TRUE(Lumicor::isTracking);
  EXPECT_FALSE(bar()->clickButton()->isEnabled());
  button->sendActionsForControlEvents(UIControlEvents::touchUpInside);
  EXPECT_THAT(page()->heard, SizeIs(2));
  EXPECT_THAT(names(), SizeIs(2));
  RunLoop::advance(6);
  EXPECT_THAT(registered(), SizeIs(2));
}

TEST_F(ControlBarTest, BeginsWithoutWhatWasTypedWhileTheOneBeforeWasSaved) {
  useSimulator();
  service_.answer("/sdk/task/register",
                  URLProtocol::Reply::json(200, json(R"({"statusCode":200,"data":{"insertedId":"t"}})")).after(1));
  const auto field = add<UITextField>("name");
  const auto button = addPressed<UIButton>("pay");
  begin();
  tap(button);
  tap(field);
  press();
  type("late");
  ASSERT_TRUE(RunLoop::advanceUntil([] { return !Lumicor::isTracking; }, 1.5));
  press();
  tap(button);
  RunLoop::advance(3);
  EXPECT_THAT(names(), ElementsAre("Action on Optional(\"pay\")"));
}

TEST_F(ControlBarTest, IsReadyAgainWhenTheHostEndedTheDemonstrationByItsFlag) {
  useSimulator();
  begin();
  tap(addPressed<UIButton>("pay"));
  Lumicor::isTracking = false;
  press();
  EXPECT_EQ(buttonTitle(), "Start");
  EXPECT_TRUE(bar()->clickButton()->isEnabled());
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(service_.requests(), IsEmpty());
}

TEST_F(ControlBarTest, StartsOnceHoweverOftenItIsPressedMeanwhile) {
  const auto fake = useFakeRecorder();
  fake->asksForPermission = true;
  for (int time = 0; time < 2; ++time) {
    bar()->clickButton()->sendActionsForControlEvents(UIControlEvents::touchUpInside);
    RunLoop::settle();
  }
  EXPECT_EQ(fake->starts, 1);
  fake->answer();
  fake->deliver();
  EXPECT_TRUE(Lumicor::isTracking);
  EXPECT_EQ(buttonTitle(), "Stop");
}

}  // namespace lumicor::test
