#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "tests/platform/uikit/lists/TableFixture.h"

// Hosts that change or reload a list while it tells or asks them something.

namespace platform::test {
namespace {

/// A sheet that says when its rows come and go, and lets a test act at that moment.
class TalkativeSheet : public Object<TalkativeSheet, Sheet> {
 public:
  std::function<void(IndexPath)> onAppear;
  std::function<void(IndexPath)> onLeave;
  void willDisplay(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    if (onAppear) onAppear(path);
  }
  void didEnd(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    if (onLeave) onLeave(path);
  }
  static void exportMethods(MethodTable<TalkativeSheet>& table) {
    table.add<&TalkativeSheet::willDisplay>("tableView:willDisplayCell:forRowAtIndexPath:");
    table.add<&TalkativeSheet::didEnd>("tableView:didEndDisplayingCell:forRowAtIndexPath:");
  }
};

class ReloadedTableTest : public TableFixture {
 protected:
  ReloadedTableTest() {
    talkative->sections = Sheet::numbered(40)->sections;
    use(talkative);
  }
  std::vector<std::string>& rows() { return talkative->sections[0]; }
  void expectWhatTheDataSays() {
    settle();
    for (const IndexPath path : table->indexPathsForVisibleRows()) {
      EXPECT_EQ(textAt(path.row()), rows().at(static_cast<std::size_t>(path.row())));
    }
    EXPECT_FALSE(shown().empty());
  }
  Ref<TalkativeSheet> talkative = make<TalkativeSheet>();
};

TEST_F(ReloadedTableTest, AListThatGrowsAsItsEndComesIntoView) {
  talkative->onAppear = [&](IndexPath path) {
    if (path.row() + 1 != static_cast<std::int64_t>(rows().size()) || rows().size() > 120) return;
    rows().insert(rows().end(), 40, "more");
    table->reloadData();
  };
  for (double y = 0; y < 4000; y += 400) {
    table->setContentOffset({0, y});
    expectWhatTheDataSays();
  }
  EXPECT_GT(rows().size(), 100u);
}

TEST_F(ReloadedTableTest, RowsReloadedOrRemovedAsOthersLeave) {
  talkative->onLeave = [&](IndexPath path) {
    if (path.row() % 3 == 0) table->reloadRows({IndexPath(path.row() + 5, 0)}, UITableViewRowAnimation::none);
    if (path.row() % 3 == 1 && rows().size() > 30) {
      rows().pop_back();
      table->reloadData();
    }
  };
  for (double y = 0; y < 800; y += 170) {
    table->setContentOffset({0, y});
    expectWhatTheDataSays();
  }
}

TEST_F(ReloadedTableTest, AListThatShrinksWhileAFarRowIsLookedFor) {
  talkative->onAppear = [&](IndexPath path) {
    if (path.row() < 25) return;
    rows().resize(8);
    table->reloadData();
  };
  table->scrollToRow(IndexPath(30, 0), UITableViewScrollPosition::middle, false);
  expectWhatTheDataSays();
  EXPECT_EQ(table->numberOfRowsInSection(0), 8);
}

class Opener : public Object<Opener, UIViewController> {
 public:
  std::string opened;
  void prepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject>) override { opened += segue->identifier() + " "; }
};

TEST_F(ReloadedTableTest, TheSegueIsThatOfTheRowThatWasTapped) {
  const auto screen = make<Opener>();
  for (const char* name : {"first", "second"}) {
    screen->registerSegue(name, UIViewController::SegueKind::show, [] { return make<UIViewController>(); });
  }
  screen->view()->addSubview(table);
  show(screen);
  talkative->onAppear = [&](IndexPath path) {
    table->cellForRowAtIndexPath(path)->setSelectionSegueIdentifier(path.row() == 0 ? "first" : "second");
  };
  talkative->onSelect = [&] {
    std::reverse(rows().begin(), rows().end());
    table->reloadData();
    table->layoutIfNeeded();
  };
  table->reloadData();
  settle();
  tap(CGPoint{100, 110});
  EXPECT_EQ(screen->opened, "first ");
}

// ---- Collections

/// Sections of so many items each; an index out of range is a fault of whoever asks.
class Shelves : public Object<Shelves, NSObject> {
 public:
  std::vector<std::vector<int>> sections{{}};
  std::function<void(IndexPath)> onAppear;
  std::function<void(IndexPath)> onLeave;
  std::int64_t sectionCount(const Ref<NSObject>&) { return std::ssize(sections); }
  std::int64_t itemCount(const Ref<NSObject>&, std::int64_t section) {
    return std::ssize(sections.at(static_cast<std::size_t>(section)));
  }
  int at(IndexPath path) const {
    return sections.at(static_cast<std::size_t>(path.section())).at(static_cast<std::size_t>(path.item()));
  }
  Ref<UICollectionViewCell> cell(const Ref<UICollectionView>& view, IndexPath path) {
    const auto cell = view->dequeueReusableCell("item", path);
    cell->setTag(at(path));
    return cell;
  }
  CGSize size(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) { return {100, 40.0 + at(path) % 3}; }
  void willDisplay(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    if (onAppear) onAppear(path);
  }
  void didEnd(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    if (onLeave) onLeave(path);
  }
  static void exportMethods(MethodTable<Shelves>& table) {
    table.add<&Shelves::sectionCount>("numberOfSectionsInCollectionView:");
    table.add<&Shelves::itemCount>("collectionView:numberOfItemsInSection:");
    table.add<&Shelves::cell>("collectionView:cellForItemAtIndexPath:");
    table.add<&Shelves::size>("collectionView:layout:sizeForItemAtIndexPath:");
    table.add<&Shelves::willDisplay>("collectionView:willDisplayCell:forItemAtIndexPath:");
    table.add<&Shelves::didEnd>("collectionView:didEndDisplayingCell:forItemAtIndexPath:");
  }
};

class ReloadedCollectionTest : public AppFixture {
 protected:
  ReloadedCollectionTest() {
    view->setFrame({0, 100, 390, 500});
    content()->addSubview(view);
    for (int i = 0; i < 60; ++i) shelves->sections[0].push_back(next++);
    view->setDataSource(shelves);
    view->setDelegate(shelves);
    settle();
  }
  void expectWhatTheDataSays() {
    settle();
    const auto paths = view->indexPathsForVisibleItems();
    EXPECT_FALSE(paths.empty());
    for (const IndexPath path : paths) EXPECT_EQ(view->cellForItemAtIndexPath(path)->tag(), shelves->at(path));
  }
  int next = 0;
  Ref<UICollectionView> view = make<UICollectionView>();
  Ref<Shelves> shelves = make<Shelves>();
};

TEST_F(ReloadedCollectionTest, AListThatGrowsAsItsEndComesIntoView) {
  bool reloads = true;  // in turn the host reloads and inserts
  shelves->onAppear = [&](IndexPath path) {
    auto& items = shelves->sections[0];
    if (path.item() + 1 != std::ssize(items) || items.size() > 200) return;
    const std::int64_t count = std::ssize(items);
    items.push_back(next++);
    if (std::exchange(reloads, !reloads)) return view->reloadData();
    view->insertItems({IndexPath(count, 0)});
  };
  for (double y = 0; y < 2000; y += 250) {
    view->setContentOffset({0, y});
    expectWhatTheDataSays();
  }
  EXPECT_GT(shelves->sections[0].size(), 70u);
}

TEST_F(ReloadedCollectionTest, ItemsReloadedAsOthersLeave) {
  shelves->onLeave = [&](IndexPath) {
    if (shelves->sections[0].size() < 50) return;
    shelves->sections[0].pop_back();
    view->reloadData();
  };
  for (double y = 0; y < 500; y += 90) {
    view->setContentOffset({0, y});
    expectWhatTheDataSays();
  }
}

TEST_F(ReloadedCollectionTest, ItemsThatAreGoneAreNotAskedForAnyMore) {
  for (int i = 0; i < 20; ++i) {
    if (i % 2) view->reloadData();
    view->setFrame({0, 100, 390, 400.0 + i});  // the layout has to be prepared again
    const std::int64_t last = std::ssize(shelves->sections[0]) - 1;
    shelves->sections[0].pop_back();
    view->deleteItems({IndexPath(last, 0)});
    expectWhatTheDataSays();
  }
  EXPECT_EQ(view->numberOfItemsInSection(0), 40);
}

TEST_F(ReloadedCollectionTest, SectionsComeGoAndChangeAndItemsMove) {
  auto& sections = shelves->sections;
  sections.insert(sections.begin(), {1000, 1001});
  view->insertSections({0});
  expectWhatTheDataSays();
  EXPECT_EQ(view->numberOfSections(), 2);
  view->selectItem(IndexPath(1, 1), false, UICollectionViewScrollPosition::none);
  std::swap(sections[0][0], sections[0][1]);
  view->moveItem(IndexPath(0, 0), IndexPath(1, 0));
  expectWhatTheDataSays();
  sections[0] = {2000, 2001, 2002};
  view->reloadSections({0, 17});
  expectWhatTheDataSays();
  EXPECT_EQ(view->numberOfItemsInSection(0), 3);
  sections.erase(sections.begin());
  view->deleteSections({0});
  expectWhatTheDataSays();
  EXPECT_EQ(view->indexPathsForSelectedItems(), std::vector<IndexPath>{IndexPath(1, 0)});
}

}  // namespace
}  // namespace platform::test
