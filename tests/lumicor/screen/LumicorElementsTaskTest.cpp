#include <algorithm>
#include <gmock/gmock.h>
#include <limits>

#include "lumicor/screen/LumicorElementsTask.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

struct FeedScreen : Object<FeedScreen, UIViewController> {};

/// A screen with a few named views, read under an action's name.
class LumicorElementsTaskTest : public SessionTest {
 protected:
  LumicorElementsTaskTest() { showAsCurrent(screen_); }

  Ref<UIView> root() { return screen_->view(); }
  template <class View = UIView>
  Ref<View> add(const char* identifier, CGRect frame, Ref<UIView> parent = nullptr) {
    const auto view = make<View>(frame);
    if (identifier) view->setAccessibilityIdentifier(identifier);
    (parent ? parent : root())->addSubview(view);
    return view;
  }
  LumicorScreenElements read(const char* actionName = "tap") {
    return LumicorElementsTask::getAllElements(root(), actionName);
  }
  static std::vector<std::string> names(const LumicorScreenElements& read) {
    std::vector<std::string> names;
    for (const LumicroElement& element : read.elements) names.push_back(element.elementId());
    return names;
  }

  Ref<FeedScreen> screen_ = make<FeedScreen>();
};
using LumicorElementsTaskDeathTest = LumicorElementsTaskTest;

TEST_F(LumicorElementsTaskTest, MakesAnElementOfEveryNamedViewAndOfNoOther) {
  EXPECT_THAT(read().elements, IsEmpty());
  const auto box = add(nullptr, {10, 20, 200, 300});
  const auto button = add<UIButton>("pay", {5.5, 6.9, 120.9, 44.2}, box);
  button->setTitle("Pay", UIControlState::normal);
  EXPECT_THAT(read().elements,
              ElementsAre(LumicroElement("pay", "", 15, 26, 120, 44, "", false, "", "", "Pay", "Default",
                                         LumicorType::TYPE_INPUT, LumicorInputType::TYPE_BUTTON)));
  EXPECT_THAT(read().scrollDetails, IsEmpty());
}

TEST_F(LumicorElementsTaskTest, ListsParentsFirstAndBackToFront) {
  const auto back = add("back", {0, 0, 100, 100});
  add("inner 1", {0, 0, 1, 1}, back);
  add("", {0, 0, 1, 1}, back);
  add("front", {0, 0, 100, 100});
  EXPECT_THAT(names(read()), ElementsAre("back", "inner 1", "", "front"));
}

TEST_F(LumicorElementsTaskTest, LeavesTheTrackerOutButNotWhatLiesInIt) {
  const auto tracker = add("lumicorTrackerView", {0, 0, 100, 40});
  add("start", {0, 0, 50, 40}, tracker);
  add("lumicorTrackerView2", {0, 0, 1, 1});
  EXPECT_THAT(names(read("LumicorCollectionView-list-0-0")), ElementsAre("start", "lumicorTrackerView2"));
}

TEST_F(LumicorElementsTaskTest, TakesTheOriginInTheWindowAndTheSizeOfTheBounds) {
  const auto turned = add("turned", {-40, 100, 20, 60});
  turned->setTransform(CGAffineTransform::scale(2, 0.5));
  const auto negative = add("negative", {-3.7, -12.9, 10, 10});
  const auto all = read().elements;
  EXPECT_EQ(all[0].x(), -50);
  EXPECT_EQ(all[0].y(), 115);
  EXPECT_EQ(all[0].width(), 20);
  EXPECT_EQ(all[0].height(), 60);
  EXPECT_EQ(all[1].x(), -3);
  EXPECT_EQ(all[1].y(), -12);
}

TEST_F(LumicorElementsTaskTest, MeasuresViewsOfOtherWindowsFromTheKeyWindow) {
  add("here", {10, 10, 1, 1});
  const auto other = make<UIWindow>(CGRect{0, 100, 390, 744});
  other->makeKeyAndVisible();
  EXPECT_EQ(read().elements[0].x(), 10);
  EXPECT_EQ(read().elements[0].y(), -90);
}

TEST_F(LumicorElementsTaskTest, GivesNothingWithoutAKeyWindow) {
  add("pay", {0, 0, 10, 10});
  struct ShyWindow : Object<ShyWindow, UIWindow> {
    bool isKeyWindow() const override { return false; }
  };
  const auto shy = make<ShyWindow>(CGRect{0, 0, 100, 100});
  shy->makeKeyAndVisible();
  EXPECT_THAT(read().elements, IsEmpty());
  Lumicor::shared().addSwiftUICoordinates("region", {0, 0, 1, 1});
  EXPECT_THAT(names(read()), ElementsAre("region")) << "a region stands in no window";
}

TEST_F(LumicorElementsTaskTest, ReportsWhereScrollContainersOfTheCurrentScreenStand) {
  const auto feed = add<UIScrollView>("feed", {0, 0, 100, 100});
  feed->setContentOffset({0, 240.7});
  const auto unnamed = add<UIScrollView>(nullptr, {0, 0, 100, 100});
  add("inside", {0, 0, 1, 1}, unnamed);
  add<UIScrollView>("second", {0, 0, 100, 100})->setContentOffset({3, -0.5});
  EXPECT_THAT(read().scrollDetails,
              ElementsAre(Pair("feed", LumicorScrollView{0, 0, 240}), Pair("second", LumicorScrollView{1, 3, 0})));

  feed->setContentOffset({0, -10});
  EXPECT_THAT(read().scrollDetails, ElementsAre(Pair("second", LumicorScrollView{0, 3, 0})));
  EXPECT_EQ(names(read()).size(), 3U);

  feed->setContentOffset({-10, 0});
  EXPECT_THAT(read().scrollDetails, ElementsAre(Pair("second", LumicorScrollView{0, 3, 0})));

  Lumicor::shared().setCurrentView("AnotherScreen");
  EXPECT_THAT(read().scrollDetails, IsEmpty());
}

TEST_F(LumicorElementsTaskTest, CountsTablesCollectionsAndTextViewsAmongScrollContainers) {
  add<UITableView>("table", {0, 0, 100, 100}, nullptr)->setContentOffset({0, 1});
  add<UICollectionView>("collection", {0, 100, 100, 100})->setContentOffset({0, 2});
  add<UITextView>("text", {0, 200, 100, 100})->setContentOffset({0, 3});
  EXPECT_THAT(read().scrollDetails,
              ElementsAre(Pair("collection", LumicorScrollView{1, 0, 2}), Pair("table", LumicorScrollView{0, 0, 1}),
                          Pair("text", LumicorScrollView{2, 0, 3})));
}

TEST_F(LumicorElementsTaskTest, KeepsTheLastOfTwoContainersOfOneName) {
  add<UIScrollView>("feed", {0, 0, 100, 100})->setContentOffset({0, 1});
  add<UIScrollView>("feed", {0, 100, 100, 100})->setContentOffset({0, 2});
  EXPECT_THAT(read().scrollDetails, ElementsAre(Pair("feed", LumicorScrollView{1, 0, 2})));
}

/// A delegate whose rows are named views of its own; some are taken away while they are asked for.
struct NamedRows : Object<NamedRows, NSObject> {
  std::function<void()> onAsked;
  std::int64_t components(const Ref<NSObject>&) { return 1; }
  std::int64_t rows(const Ref<NSObject>&, std::int64_t) {
    if (onAsked) onAsked();
    return 3;
  }
  Ref<UIView> row(const Ref<NSObject>&, std::int64_t row, std::int64_t, const Ref<NSObject>&) {
    const auto view = make<UIView>();
    view->setAccessibilityIdentifier("row " + std::to_string(row));
    return view;
  }
  static void exportMethods(MethodTable<NamedRows>& table) {
    table.add<&NamedRows::components>("numberOfComponentsInPickerView:");
    table.add<&NamedRows::rows>("pickerView:numberOfRowsInComponent:");
    table.add<&NamedRows::row>("pickerView:viewForRow:forComponent:reusingView:");
  }
};

TEST_F(LumicorElementsTaskTest, FollowsATreeThatChangesWhileItIsRead) {
  const auto rows = make<NamedRows>();
  add("before", {0, 0, 1, 1});
  auto picker = add<UIPickerView>("picker", {0, 0, 300, 200});
  picker->setDataSource(rows);
  picker->setDelegate(rows);
  add("after", {0, 0, 1, 1});
  window()->layoutIfNeeded();
  EXPECT_THAT(names(read()), ElementsAre("before", "picker", "row 0", "row 1", "row 2", "after"));
  picker->reloadAllComponents();  // the rows go when the picker is next asked for something: while it is classified
  EXPECT_THAT(names(read()), ElementsAre("before", "picker", "after"));
  const auto second = add<UIPickerView>("second", {0, 300, 300, 200});
  second->setDataSource(rows);
  for (const auto& both : {picker, second}) both->reloadAllComponents();
  EXPECT_THAT(names(read()), ElementsAre("before", "picker", "after", "second"));
  rows->onAsked = [weak = Weak<UIPickerView>(picker)] {
    if (const auto alive = weak.lock()) alive->removeFromSuperview();
  };
  picker->reloadAllComponents();
  picker = nullptr;  // only the screen holds it
  EXPECT_THAT(names(read()), ElementsAre("before", "picker", "after", "second")) << "it was read before it was gone";
  EXPECT_THAT(names(read()), ElementsAre("before", "after", "second"));
}

TEST_F(LumicorElementsTaskTest, ReadsAViewThatCameInThePlaceOfOneThatWasRead) {
  add("old", {0, 0, 1, 1});
  const auto rows = make<NamedRows>();
  rows->onAsked = [&] {
    root()->subviews().front()->removeFromSuperview();  // the next view may be made where this one was
    add("new", {0, 0, 1, 1});
    rows->onAsked = nullptr;
  };
  add<UIPickerView>("picker", {0, 0, 1, 1})->setDataSource(rows);
  EXPECT_THAT(names(read()), ElementsAre("old", "picker", "new"));
}

TEST_F(LumicorElementsTaskTest, FinishesWhatIsInHandOfATreeThatGrowsWheneverItIsRead) {
  const auto rows = make<NamedRows>();
  rows->onAsked = [&] {
    const auto more = make<UIPickerView>(CGRect{0, 0, 1, 1});
    more->setAccessibilityIdentifier("more");
    more->setDataSource(rows);
    root()->insertSubview(more, root()->subviews().size() - 1);
  };
  add<UIPickerView>("picker", {0, 0, 1, 1})->setDataSource(rows);
  add("last", {0, 0, 1, 1});
  beginLog();
  const auto all = names(read());
  EXPECT_GT(all.size(), 1000u);
  EXPECT_EQ(all.back(), "last");
  EXPECT_EQ(std::ranges::count(all, "last"), 1);
  EXPECT_THAT(log(),
              ElementsAre("The screen kept changing while it was read: what comes to it from here on is left out",
                          "SwiftUI elements added: 0"));
}

/// A view that sends whoever asks for its next responder to one screen and then to another.
struct Turnstile : Object<Turnstile, UIView> {
  std::vector<Ref<UIResponder>> ways;
  Ref<UIResponder> nextResponder() override {
    std::rotate(ways.begin(), ways.begin() + 1, ways.end());
    return ways.back();
  }
};

TEST_F(LumicorElementsTaskTest, FindsTheScreenOfContainersWithinContainers) {
  auto around = root();
  for (const char* const name : {"a", "b", "c"}) around = add<UIScrollView>(name, {0, 0, 100, 100}, around);
  EXPECT_EQ(read().scrollDetails.size(), 3U);
  const auto turnstile = make<Turnstile>();
  const auto elsewhere = make<UIViewController>();
  turnstile->ways = {screen_, elsewhere};
  around->addSubview(turnstile);
  const auto between = add(nullptr, {0, 300, 100, 100}, turnstile);
  for (const char* const name : {"here", "there", "here again"}) add<UIScrollView>(name, {0, 0, 1, 1}, between);
  std::vector<std::string> found;
  for (const auto& [name, position] : read().scrollDetails) found.push_back(name);
  EXPECT_THAT(found, ElementsAre("a", "b", "c", "here", "here again"));
  turnstile->ways.clear();  // the screen holds it, and it the screen
}

TEST_F(LumicorElementsTaskTest, PassesNavigationControllersOverOnTheWayToTheOwningScreen) {
  const auto navigation = make<UINavigationController>(make<UIViewController>());
  screen_->addChildViewController(navigation);
  root()->addSubview(navigation->view());
  add<UIScrollView>("feed", {0, 300, 100, 100}, navigation->view());
  EXPECT_EQ(read().scrollDetails.size(), 1U);
  Lumicor::shared().setCurrentView("UINavigationController");
  EXPECT_THAT(read().scrollDetails, IsEmpty());
}

TEST_F(LumicorElementsTaskTest, KeepsWhatEarlierTreesPutIntoTheRegistryUntilAWholeScreenIsRead) {
  add<UIScrollView>("feed", {0, 0, 100, 100});
  read();
  const auto other = make<FeedScreen>();
  window()->addSubview(other->view());
  const auto more = make<UIScrollView>(CGRect{0, 300, 1, 1});
  more->setAccessibilityIdentifier("more");
  other->view()->addSubview(more);
  EXPECT_THAT(LumicorElementsTask::traverseStoryboardView(other->view(), "").scrollDetails,
              ElementsAre(Pair("feed", LumicorScrollView{0, 0, 0}), Pair("more", LumicorScrollView{1, 0, 0})));
  EXPECT_EQ(read().scrollDetails.size(), 1U);
}

TEST_F(LumicorElementsTaskTest, RewritesTheCollectionEntryForEveryNamedView) {
  add("a", {0, 0, 1, 1});
  const char* const action = "LumicorCollectionView-list-0-5";
  EXPECT_THAT(read(action).scrollDetails, ElementsAre(Pair(action, LumicorScrollView{0, 0, 0})));
  add<UIScrollView>("feed", {0, 0, 100, 100})->setContentOffset({0, 9});
  EXPECT_THAT(read(action).scrollDetails,
              ElementsAre(Pair(action, LumicorScrollView{2, 0, 0}), Pair("feed", LumicorScrollView{1, 0, 9})));
  EXPECT_THAT(read("lumicorcollectionview").scrollDetails, ElementsAre(Pair("feed", LumicorScrollView{0, 0, 9})));
}

TEST_F(LumicorElementsTaskTest, AddsVisibleRegionsAfterTheTreeWithTheRootsKind) {
  const auto scroll = make<UIScrollView>(CGRect{0, 0, 390, 844});
  screen_->setView(scroll);
  showAsCurrent(screen_);
  scroll->setContentOffset({0, 30});
  add("in tree", {0, 0, 1, 1});
  Lumicor::shared().addSwiftUICoordinates("total", {10.9, -20.9, 30.5, 40.5});
  Lumicor::shared().addSwiftUICoordinates("gone", {0, 0, 1, 1});
  Lumicor::shared().onSwiftUIViewDisappear("gone");

  beginLog();
  const auto all = read();
  EXPECT_THAT(log(), ElementsAre("SwiftUI elements added: 1"));
  EXPECT_THAT(names(all), ElementsAre("in tree", "total"));
  EXPECT_EQ(all.elements[1], LumicroElement("total", "", 10, -20, 30, 40, "", false, "", "", "0.0 30.0", "Default",
                                            LumicorType::TYPE_DEFAULT, LumicorInputType::TYPE_DEFAULT));
  EXPECT_THAT(all.scrollDetails, ElementsAre(Pair("total", LumicorScrollView{0, 0, 30})));

  Lumicor::shared().onSwiftUIViewAppear("gone");
  EXPECT_EQ(names(read()).size(), 3U);
  EXPECT_THAT(read().scrollDetails,
              ElementsAre(Pair("gone", LumicorScrollView{0, 0, 30}), Pair("total", LumicorScrollView{0, 0, 30})))
      << "regions are not counted in the registry";
  EXPECT_THAT(LumicorElementsTask::traverseStoryboardView(root(), "tap").scrollDetails, IsEmpty()) << "nor kept in it";
}

/// A view that stands for something of another toolkit: it answers for what it stands for.
struct StandIn : Object<StandIn, UIView> {
  std::vector<Ref<UIView>> parts;
  const std::vector<Ref<UIView>>& subviews() const override { return parts; }
  CGRect bounds() const override { return {0, 0, 30, 40}; }
  CGRect convertRect(CGRect rect, const UIView*) const override { return rect.offsetBy(7, 8); }
  std::optional<std::string> accessibilityIdentifier() const override {
    return parts.empty() ? std::optional<std::string>("bottom") : std::nullopt;
  }
};

TEST_F(LumicorElementsTaskTest, ReadsTreesOfAnyDepthAndViewsOfAnyMaking) {
  std::vector<Ref<StandIn>> chain = {make<StandIn>()};
  for (int i = 0; i < 20000; ++i) {
    chain.push_back(make<StandIn>());
    chain[chain.size() - 2]->parts.push_back(chain.back());
  }
  root()->addSubview(chain.front());
  const auto all = LumicorElementsTask::getAllElements(chain.front(), "tap").elements;
  EXPECT_THAT(all, ElementsAre(LumicroElement("bottom", "", 7, 8, 30, 40, "", false, "", "", "", "Default",
                                              LumicorType::TYPE_DEFAULT, LumicorInputType::TYPE_DEFAULT)));
  for (const auto& view : chain) view->parts.clear();  // or the chain would be let go from within
}

TEST_F(LumicorElementsTaskTest, ReadsAndFreesAScreenNestedTwentyThousandDeep) {
  Ref<UIView> tree = make<UIView>(CGRect{0, 0, 30, 40});
  tree->setAccessibilityIdentifier("bottom");
  const Weak<UIView> bottom = tree;
  for (int i = 0; i < 20000; ++i) {
    auto outer = make<UIView>(CGRect{0, 0, 30, 40});
    outer->addSubview(tree);
    tree = std::move(outer);
  }
  root()->addSubview(tree);
  const auto all = LumicorElementsTask::getAllElements(root(), "tap").elements;
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all.front().elementId(), "bottom");
  tree->removeFromSuperview();
  tree = nullptr;
  EXPECT_TRUE(bottom.expired());
}

TEST_F(LumicorElementsTaskDeathTest, StopsAtGeometryThatIsNoNumber) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Lumicor::shared().addSwiftUICoordinates("bad", {std::numeric_limits<double>::quiet_NaN(), 0, 1, 1});
  EXPECT_DEATH(read(), "fatal error: a number cannot be made a 64-bit integer");
  Lumicor::shared().addSwiftUICoordinates("bad", {0, 0, 1e300, 1});
  EXPECT_DEATH(read(), "fatal error: a number cannot be made a 64-bit integer");
  Lumicor::shared().onSwiftUIViewDisappear("bad");
  add<UIScrollView>("feed", {0, 0, 1, 1})->setContentOffset({0, 1e300});
  EXPECT_DEATH(read(), "fatal error: a number cannot be made a 64-bit integer");
}

}  // namespace lumicor::test
