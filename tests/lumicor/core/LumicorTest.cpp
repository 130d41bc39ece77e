#include <gmock/gmock.h>

#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/lists/UITableView.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using LumicorTest = SessionTest;

constexpr std::int64_t startMilliseconds = 1714564800000;

TEST_F(LumicorTest, HoldsItsInitialValuesWhenItIsNew) {
  const auto fresh = make<Lumicor>();
  EXPECT_FALSE(fresh->getSecretKey());
  EXPECT_FALSE(fresh->getInitialized());
  EXPECT_FALSE(fresh->getShouldEnableDebug());
  EXPECT_EQ(fresh->getCurrentView(), "");
  EXPECT_EQ(fresh->getFramework(), "NATIVE");
  EXPECT_FALSE(fresh->getHomeNavigationRunnable());
  EXPECT_FALSE(fresh->getCurrentViewController());
  EXPECT_THAT(fresh->getChatHistory(), IsEmpty());
  EXPECT_EQ(fresh->getAttributes()->getUserId(), "");
  EXPECT_EQ(fresh->getAttributes()->getSDKVersion(), "0.0.4");
  EXPECT_EQ(fresh->getAttributes()->getPlatform(), "iOS");
  EXPECT_FALSE(fresh->getEndpoint().ends_with('/'));
}

TEST_F(LumicorTest, KeepsLabelledRegionsWithTimeAndVisibility) {
  const auto fresh = make<Lumicor>();
  fresh->onSwiftUIViewAppear("never added");
  EXPECT_THAT(fresh->getSwiftUICoordinates(), IsEmpty());

  fresh->addSwiftUICoordinates("total", {1, 2, 30, 40});
  RunLoop::advance(1.5);
  fresh->onSwiftUIViewDisappear("total");
  SwiftUICoordinates region = fresh->getSwiftUICoordinates().at("total");
  EXPECT_EQ(region.rect, CGRect(1, 2, 30, 40));
  EXPECT_EQ(region.time, startMilliseconds + 1500);
  EXPECT_FALSE(region.isVisible);

  RunLoop::advance(0.5);
  fresh->addSwiftUICoordinates("total", {5, 6, 7, 8});
  region = fresh->getSwiftUICoordinates().at("total");
  EXPECT_EQ(region.rect, CGRect(5, 6, 7, 8));
  EXPECT_EQ(region.time, startMilliseconds + 2000);
  EXPECT_TRUE(region.isVisible);
}

TEST_F(LumicorTest, TellsTheListenerEveryCurrentViewAlsoTheSameOneAgain) {
  std::vector<std::string> heard;
  Lumicor::shared().setCurrentViewListener([&](const std::string& name) { heard.push_back(name); });
  Lumicor::shared().setCurrentView("Cart");
  Lumicor::shared().setCurrentView("Cart");
  EXPECT_THAT(heard, ElementsAre("Cart", "Cart"));
  EXPECT_EQ(Lumicor::shared().getCurrentView(), "Cart");
}

TEST_F(LumicorTest, LogsOneLineWithTheTimeOnlyWhenDebuggingIsEnabled) {
  testing::internal::CaptureStdout();
  LumicorDebugHelper::log("silent");
  Lumicor::shared().setShouldEnableDebug(true);
  LumicorDebugHelper::log("two\nlines");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1714564800000, two lines\n");
}

/// Rows and items of a host, and what became of a selection.
class SelectionTest : public SessionTest {
 protected:
  struct Source : Object<Source, NSObject> {
    std::int64_t rows(Ref<UITableView>, std::int64_t) { return 100; }
    Ref<UITableViewCell> row(Ref<UITableView>, IndexPath path) {
      const auto cell = make<UITableViewCell>(UITableViewCellStyle::standard, "row");
      cell->setAccessibilityIdentifier("row " + std::to_string(path.row()));
      return cell;
    }
    std::int64_t sectionCount(Ref<UICollectionView>) { return 1; }
    std::int64_t items(Ref<UICollectionView>, std::int64_t) { return 4; }
    Ref<UICollectionViewCell> item(Ref<UICollectionView> view, IndexPath path) {
      const auto cell = view->dequeueReusableCell("item", path);
      cell->setAccessibilityIdentifier("item " + std::to_string(path.item()));
      return cell;
    }
    static void exportMethods(MethodTable<Source>& table) {
      table.add<&Source::rows>("tableView:numberOfRowsInSection:");
      table.add<&Source::row>("tableView:cellForRowAtIndexPath:");
      table.add<&Source::sectionCount>("numberOfSectionsInCollectionView:");
      table.add<&Source::items>("collectionView:numberOfItemsInSection:");
      table.add<&Source::item>("collectionView:cellForItemAtIndexPath:");
    }
  };

  SelectionTest() {
    LumicorTrackingTask::taskFlow.clear();
    Lumicor::shared().setInitialized(true);
    Lumicor::isTracking = true;
    table_->setDataSource(source_);
    window()->addSubview(table_);
    collection_ = make<UICollectionView>(CGRect{0, 300, 390, 300}, make<UICollectionViewFlowLayout>());
    collection_->registerClass<UICollectionViewCell>("item");
    collection_->setDataSource(source_);
    window()->addSubview(collection_);
    table_->layoutIfNeeded();
    collection_->layoutIfNeeded();
  }
  ~SelectionTest() override { LumicorTrackingTask::taskFlow.clear(); }

  /// What was registered: the action's name and the cell's.
  static std::vector<std::pair<std::string, std::string>> actions() {
    std::vector<std::pair<std::string, std::string>> actions;
    for (const LumicorSnapshot& snapshot : LumicorTrackingTask::taskFlow) {
      actions.emplace_back(snapshot.actionElement().actionName(), snapshot.actionElement().elementId());
    }
    return actions;
  }

  Ref<Source> source_ = make<Source>();
  Ref<UITableView> table_ = make<UITableView>(CGRect{0, 0, 390, 300}, UITableViewStyle::plain);
  Ref<UICollectionView> collection_;
};

TEST_F(SelectionTest, RegistersASelectedRowOnlyWhenItsCellIsOnScreen) {
  Lumicor::shared().didSelectRow(table_, IndexPath(1, 0));
  Lumicor::shared().didSelectRow(table_, IndexPath(90, 0));
  Lumicor::shared().didSelectRow(table_, IndexPath(-1, 7));
  EXPECT_THAT(actions(), ElementsAre(Pair("tableView", "row 1")));
}

TEST_F(SelectionTest, NamesASelectedItemAfterItsCollectionAndPlace) {
  Lumicor::shared().didSelectItem(collection_, IndexPath(2, 0));
  EXPECT_THAT(actions(), IsEmpty()) << "a collection without a name registers nothing";
  collection_->setAccessibilityIdentifier("list");
  Lumicor::shared().didSelectItem(collection_, IndexPath(2, 0));
  Lumicor::shared().didSelectItem(collection_, IndexPath(40, 0));
  EXPECT_THAT(actions(), ElementsAre(Pair("LumicorCollectionView-list-0-2", "item 2")));
}

TEST_F(SelectionTest, FallsBackToAPlainNameForACollectionWithoutSections) {
  EXPECT_EQ(collectionActionName("list", 0, IndexPath(2, 0)), "collectionView");
  EXPECT_EQ(collectionActionName("my-list", 3, IndexPath(12, 1)), "LumicorCollectionView-my-list-1-12");
}

TEST_F(SelectionTest, StaysInertUntilInitialisedAndTracking) {
  collection_->setAccessibilityIdentifier("list");
  for (const auto& [isTracking, isInitialised] :
       {std::pair(false, true), std::pair(true, false), std::pair(false, false)}) {
    Lumicor::isTracking = isTracking;
    Lumicor::shared().setInitialized(isInitialised);
    Lumicor::shared().didSelectRow(table_, IndexPath(1, 0));
    Lumicor::shared().didSelectItem(collection_, IndexPath(0, 0));
    EXPECT_THAT(actions(), IsEmpty()) << isTracking << isInitialised;
  }
}

}  // namespace lumicor::test
