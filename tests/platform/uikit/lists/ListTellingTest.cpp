#include <array>

#include "platform/animation/CALayer.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "tests/platform/uikit/lists/TableFixture.h"

// What delegates and cells are told while rows come, go, light up and are chosen, in which order and of which paths.

namespace platform::test {
namespace {

using Animation = UITableViewRowAnimation;
using Position = UITableViewScrollPosition;

std::string name(IndexPath path) { return std::to_string(path.section()) + "." + std::to_string(path.row()); }

/// A row that writes down how it is lit; "~" is with animation.
class NoticedRow : public Object<NoticedRow, TextRow> {
 public:
  inline static Journal* journal = nullptr;
  void setSelected(bool selected, bool animated) override {
    const bool changes = selected != isSelected();
    Super::setSelected(selected, animated);
    if (journal && changes) journal->note((selected ? "lit" : "dark") + std::string(animated ? "~" : ""));
  }
};

/// Tells of rows that come and go, of light, and has headers and footers.
class Diary : public Object<Diary, Sheet> {
 public:
  std::set<std::int64_t> unlit;  ///< rows that do not light up
  std::string kind = "row";
  void willDisplay(const Ref<NSObject>&, const Ref<UITableViewCell>& cell, IndexPath path) { note("+", cell, path); }
  void didEnd(const Ref<NSObject>&, const Ref<UITableViewCell>& cell, IndexPath path) { note("-", cell, path); }
  bool shouldHighlight(const Ref<NSObject>&, IndexPath path) { return !unlit.contains(path.row()); }
  void didHighlight(const Ref<NSObject>&, IndexPath path) { journal.note("highlight" + std::to_string(path.row())); }
  void didUnhighlight(const Ref<NSObject>&, IndexPath path) {
    journal.note("unhighlight" + std::to_string(path.row()));
  }
  /// A section is named after its first row.
  std::string title(const Ref<NSObject>&, std::int64_t section) {
    return sections.at(static_cast<std::size_t>(section)).front();
  }
  std::string footer(const Ref<NSObject>&, std::int64_t section) { return "foot " + std::to_string(section); }
  static void exportMethods(MethodTable<Diary>& table) {
    table.add<&Diary::willDisplay>("tableView:willDisplayCell:forRowAtIndexPath:");
    table.add<&Diary::didEnd>("tableView:didEndDisplayingCell:forRowAtIndexPath:");
    table.add<&Diary::shouldHighlight>("tableView:shouldHighlightRowAtIndexPath:");
    table.add<&Diary::didHighlight>("tableView:didHighlightRowAtIndexPath:");
    table.add<&Diary::didUnhighlight>("tableView:didUnhighlightRowAtIndexPath:");
    table.add<&Diary::title>("tableView:titleForHeaderInSection:");
  }

 private:
  void note(const char* what, const Ref<UITableViewCell>& cell, IndexPath path) {
    journal.note(what + *as<TextRow>(cell)->label->text() + "@" + name(path));
  }
};

class ListTellingTest : public TableFixture {
 protected:
  ListTellingTest() {
    table->registerClass<NoticedRow>("row");
    NoticedRow::journal = nullptr;
  }
  ~ListTellingTest() override { NoticedRow::journal = nullptr; }
  std::string told() { return sheet->journal.take(); }
  double shownTop(const UITableViewCell& cell) const { return cell.layer()->presentationLayer()->frame().minY(); }
  double shownAlpha(const UITableViewCell& cell) const { return cell.layer()->presentationLayer()->opacity(); }
  static std::string titleOf(const Ref<UIView>& view) {
    const auto header = as<UITableViewHeaderFooterView>(view);
    return header ? *header->textLabel()->text() : "(none)";
  }
  Ref<UITableViewCell> cellAt(std::int64_t row, std::int64_t section = 0) const {
    return table->cellForRowAtIndexPath(IndexPath(row, section));
  }
};

TEST_F(ListTellingTest, WhatComesIsToldByItsNewPathAndWhatGoesByItsOld) {
  const auto diary = make<Diary>();
  diary->sections = {{"a0", "a1"}, {"b0"}, {"c0", "c1"}};
  use(diary);
  table->setAllowsMultipleSelection(true);
  for (const IndexPath path : {IndexPath(0, 1), IndexPath(0, 2)}) table->selectRow(path, false, Position::none);
  const auto moved = cellAt(1, 2);
  told();
  diary->sections = {{"n0", "n1", "n2"}, {"c1", "c0"}};
  table->performBatchUpdates([&] {
    table->deleteSections({0}, Animation::fade);
    table->reloadSections({1}, Animation::fade);
    table->moveRow(IndexPath(1, 2), IndexPath(0, 1));
  });
  EXPECT_EQ(told(), "+n0@0.0 +n1@0.1 +n2@0.2");
  EXPECT_EQ(cellAt(0, 1), moved);
  EXPECT_EQ(titleOf(table->headerViewForSection(0)), "n0");
  EXPECT_EQ(titleOf(table->headerViewForSection(1)), "c1");
  EXPECT_EQ(table->indexPathsForSelectedRows(), std::vector<IndexPath>{IndexPath(1, 1)});
  advance(1);
  EXPECT_EQ(told(), "-a0@0.0 -a1@0.1 -b0@1.0") << "the paths that they had";

  diary->sections = {{"x0"}, {"N0"}, {"c1", "C0", "c2"}};
  table->performBatchUpdates([&] {
    table->insertSections({0}, Animation::fade);
    table->reloadSections({0}, Animation::fade);
    table->reloadRows({IndexPath(1, 1)}, Animation::fade);
    table->insertRows({IndexPath(2, 2)}, Animation::fade);
  });
  EXPECT_EQ(told(), "+x0@0.0 +N0@1.0 +C0@2.1 +c2@2.2");
  EXPECT_EQ(cellAt(0, 2), moved);
  advance(1);
  EXPECT_EQ(told(), "-n0@0.0 -n1@0.1 -n2@0.2 -c0@1.1");
  EXPECT_EQ(shown(), (std::vector<std::string>{"x0", "N0", "c1", "C0", "c2"}));
}

TEST_F(ListTellingTest, AReloadedRowFadesInItsPlaceAndAMovedOneSlidesFromItsOld) {
  table->setSectionHeaderHeight(0);
  table->setRowHeight(50);
  const auto diary = make<Diary>();
  diary->sections = Sheet::numbered(60)->sections;
  use(diary);
  auto& rows = diary->sections[0];
  rows[2] = "new";
  table->reloadRows({IndexPath(2, 0)}, Animation::automatic);
  EXPECT_EQ(shownAlpha(*cellAt(2)), 0);
  advance(0.1);
  EXPECT_GT(shownAlpha(*cellAt(2)), 0.05);
  EXPECT_LT(shownAlpha(*cellAt(2)), 0.95);
  EXPECT_EQ(shownTop(*cellAt(2)), 100);
  advance(1);
  rows.insert(rows.begin() + 1, rows[40]);
  rows.erase(rows.begin() + 41);
  table->moveRow(IndexPath(40, 0), IndexPath(1, 0));
  EXPECT_EQ(shownTop(*cellAt(1)), 40 * 50) << "from below the edge";
  EXPECT_EQ(shownAlpha(*cellAt(1)), 1);
  advance(1);
  EXPECT_EQ(shownTop(*cellAt(1)), 50);
  EXPECT_EQ(textAt(1), "row 40");

  table->scrollToRow(IndexPath(50, 0), Position::middle, true);
  advance(0.1);
  rows.insert(rows.begin(), 5, "first");
  table->insertRows({IndexPath(0, 0), IndexPath(1, 0), IndexPath(2, 0), IndexPath(3, 0), IndexPath(4, 0)},
                    Animation::none);
  advance(2);
  EXPECT_EQ(textAt(55), "row 50");
  EXPECT_NEAR(table->rectForRowAtIndexPath(IndexPath(55, 0)).midY() - table->contentOffset().y, 250, 0.51)
      << "the row that was looked for has moved on";
}

TEST_F(ListTellingTest, LightAndChoiceAreToldInOrderAndFadeOnlyWhereThatIsWished) {
  const auto diary = make<Diary>();
  diary->sections = Sheet::numbered(8)->sections;
  use(diary);
  told();
  NoticedRow::journal = &diary->journal;
  const auto tapRow = [&](std::int64_t row) {
    hands().tap(cellAt(row));
    advance(0.5);
    return told();
  };
  EXPECT_EQ(tapRow(1), "lit select1");
  EXPECT_EQ(tapRow(3), "dark~ deselect1 lit select3");
  EXPECT_EQ(tapRow(3), "select3") << "the chosen one is not taken back first";
  table->selectRow(IndexPath(5, 0), true, Position::none);
  EXPECT_EQ(told(), "dark~ lit~");
  table->selectRow(IndexPath(6, 0), false, Position::none);
  EXPECT_EQ(told(), "dark lit");
  table->deselectRow(IndexPath(6, 0), true);
  table->selectRow(IndexPath(6, 0), false, Position::none);
  table->deselectRow(IndexPath(6, 0), false);
  EXPECT_EQ(told(), "dark~ lit dark");
  table->selectRow(IndexPath(6, 0), false, Position::none);
  NoticedRow::journal = nullptr;
  table->reloadData();
  settle();
  EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
  EXPECT_FALSE(cellAt(6)->isSelected());
  told();
  NoticedRow::journal = &diary->journal;

  const CGPoint at = cellAt(2)->convertPoint({50, 10}, nullptr);
  const auto rest = [&](UITouchPhase phase, CGPoint point) {
    window()->deliverTouch(1, phase, point, Clock::mediaTime());
    advance(0.3);
  };
  rest(UITouchPhase::began, at);
  rest(UITouchPhase::ended, at);
  EXPECT_EQ(told(), "highlight2 lit select2 unhighlight2");
  diary->unlit = {2};
  rest(UITouchPhase::began, at);
  EXPECT_FALSE(cellAt(2)->isHighlighted());
  rest(UITouchPhase::ended, at);
  EXPECT_EQ(told(), "") << "what does not light up cannot be chosen";
}

/// Counts how often each cell came and went, and lets a test act as one goes.
class Gatekeeper : public Object<Gatekeeper, Sheet> {
 public:
  std::map<NSObject*, int> inside;
  std::function<void()> onLeave;
  void willDisplay(const Ref<NSObject>&, const Ref<NSObject>& cell, IndexPath) { EXPECT_EQ(++inside[cell.get()], 1); }
  void didEnd(const Ref<NSObject>&, const Ref<NSObject>& cell, IndexPath) {
    EXPECT_EQ(--inside[cell.get()], 0) << "gone twice";
    if (onLeave) std::exchange(onLeave, nullptr)();
  }
  static void exportMethods(MethodTable<Gatekeeper>& table) {
    table.add<&Gatekeeper::willDisplay>("tableView:willDisplayCell:forRowAtIndexPath:");
    table.add<&Gatekeeper::didEnd>("tableView:didEndDisplayingCell:forRowAtIndexPath:");
  }
};

TEST_F(ListTellingTest, ACellThatCameGoesOnceAlsoWhenTheHostReloadsWhileItScrolls) {
  const auto keeper = make<Gatekeeper>();
  table->setRowHeight(50);
  keeper->sections = Sheet::numbered(300)->sections;
  use(keeper);
  for (int i = 1; i < 12; ++i) {
    keeper->onLeave = [&] { table->reloadData(); };
    table->setContentOffset({0, i * 330.0});
    settle();
    EXPECT_EQ(textAt(i * 7), "row " + std::to_string(i * 7));
  }
  table->setContentOffset({0, 0});
  table->scrollToRow(IndexPath(50, 0), Position::top, true);
  advance(0.1);
  table->setTableHeaderView(make<UIView>(CGRect{0, 0, 10, 100}));
  table->reloadData();
  advance(2);
  EXPECT_EQ(table->contentOffset().y, 2500) << "which row was meant is not known any more";
}

// ---- Cells, headers and footers of several kinds

class NoteRow : public Object<NoteRow, NoticedRow> {};

class MixedDiary : public Object<MixedDiary, Diary> {
 public:
  int headersMade = 0;
  Ref<UITableViewCell> mixed(const Ref<UITableView>& table, IndexPath path) {
    const auto cell = as<TextRow>(table->dequeueReusableCell(path.row() % 3 ? "row" : "note", path));
    cell->label->setText(name(path));
    return cell;
  }
  Ref<UIView> header(const Ref<UITableView>& table, std::int64_t section) {
    const auto view = table->dequeueReusableHeaderFooterView(section % 2 ? "odd" : "even");
    view->textLabel()->setText("head " + std::to_string(section));
    return view;
  }
  double height(const Ref<NSObject>&, std::int64_t) { return 30; }
  static void exportMethods(MethodTable<MixedDiary>& table) {
    table.add<&MixedDiary::mixed>("tableView:cellForRowAtIndexPath:");
    table.add<&MixedDiary::header>("tableView:viewForHeaderInSection:");
    table.add<&MixedDiary::height>("tableView:heightForHeaderInSection:");
    table.add<&Diary::footer>("tableView:titleForFooterInSection:");
  }
};

TEST_F(ListTellingTest, CellsHeadersAndFootersOfSeveralKindsAreNotMixedUp) {
  std::map<std::string, int> made;
  table->registerClass<NoteRow>("note");
  for (const std::string id : {"odd", "even"}) {
    table->registerHeaderFooter(
        [&made](const std::string& identifier) {
          ++made[identifier];
          return make<UITableViewHeaderFooterView>(identifier);
        },
        id);
  }
  const auto diary = make<MixedDiary>();
  diary->sections.assign(60, std::vector<std::string>(7));
  use(diary);
  for (double y = 0; y < 9000; y += 130) {
    table->setContentOffset({0, y});
    settle();
    std::set<std::int64_t> sections;
    for (const IndexPath path : table->indexPathsForVisibleRows()) {
      const auto cell = table->cellForRowAtIndexPath(path);
      EXPECT_EQ(as<NoteRow>(cell) != nullptr, path.row() % 3 == 0);
      EXPECT_EQ(cell->reuseIdentifier(), path.row() % 3 ? "row" : "note");
      EXPECT_EQ(textAt(path.row(), path.section()), name(path));
      if (path.row() == 3) sections.insert(path.section());
    }
    for (const std::int64_t section : sections) {
      EXPECT_EQ(titleOf(table->headerViewForSection(section)), "head " + std::to_string(section));
    }
    const std::int64_t first = table->indexPathsForVisibleRows().front().section();
    const std::string foot = titleOf(table->footerViewForSection(first));
    EXPECT_TRUE(foot == "foot " + std::to_string(first) || foot == "(none)") << foot;
    EXPECT_NE(foot, titleOf(table->headerViewForSection(first)));
  }
  table->scrollToRow(IndexPath(6, 59), Position::bottom, false);
  table->setContentOffset({0, 1e6});
  table->setContentOffset({0, table->contentSize().height - 500});
  settle();
  EXPECT_EQ(titleOf(table->footerViewForSection(59)), "foot 59");
  EXPECT_GE(made["odd"], 1);
  EXPECT_LE(made["odd"] + made["even"], 16) << "of sixty headers a few are used again and again";
}

/// Tiles of two kinds, headers and footers of one name and different classes.
class Shelf : public Object<Shelf, NSObject> {
 public:
  std::vector<int> counts{5, 5};
  std::string names = "abcdefghijklmnopqrstuvwxyzABCDEF";
  Journal journal;
  std::int64_t sections(const Ref<NSObject>&) { return std::ssize(counts); }
  std::int64_t count(const Ref<NSObject>&, std::int64_t section) {
    return counts.at(static_cast<std::size_t>(section));
  }
  Ref<UICollectionViewCell> cell(const Ref<UICollectionView>& view, IndexPath path) {
    return view->dequeueReusableCell(path.item() % 3 ? "tile" : "note", path);
  }
  Ref<UICollectionReusableView> edge(const Ref<UICollectionView>& view, std::string kind, IndexPath path) {
    const auto edge = view->dequeueReusableSupplementaryView(kind, "edge", path);
    edge->setTag(path.section());
    edge->setAccessibilityLabel(names.substr(static_cast<std::size_t>(path.section()), 1));
    return edge;
  }
  void didSelect(const Ref<NSObject>&, IndexPath path) { journal.note("select" + name(path)); }
  void didDeselect(const Ref<NSObject>&, IndexPath path) { journal.note("deselect" + name(path)); }
  static void exportMethods(MethodTable<Shelf>& table) {
    table.add<&Shelf::sections>("numberOfSectionsInCollectionView:");
    table.add<&Shelf::count>("collectionView:numberOfItemsInSection:");
    table.add<&Shelf::cell>("collectionView:cellForItemAtIndexPath:");
    table.add<&Shelf::edge>("collectionView:viewForSupplementaryElementOfKind:atIndexPath:");
    table.add<&Shelf::didSelect>("collectionView:didSelectItemAtIndexPath:");
    table.add<&Shelf::didDeselect>("collectionView:didDeselectItemAtIndexPath:");
  }
};

class NoteTile : public Object<NoteTile, UICollectionViewCell> {};
class Head : public Object<Head, UICollectionReusableView> {};
class Foot : public Object<Foot, UICollectionReusableView> {};

class ShelfTellingTest : public AppFixture {
 protected:
  ShelfTellingTest() {
    layout->setItemSize({100, 80});
    layout->setHeaderReferenceSize({0, 40});
    layout->setFooterReferenceSize({0, 20});
    view->setFrame({0, 100, 390, 500});
    view->setCollectionViewLayout(layout);
    view->registerClass<UICollectionViewCell>("tile");
    view->registerClass<NoteTile>("note");
    view->registerSupplementary([] { return make<Head>(); }, UICollectionView::elementKindSectionHeader, "edge");
    view->registerSupplementary([] { return make<Foot>(); }, UICollectionView::elementKindSectionFooter, "edge");
    content()->addSubview(view);
    view->setDataSource(shelf);
    view->setDelegate(shelf);
    settle();
  }
  Ref<UICollectionViewCell> cellAt(std::int64_t item, std::int64_t section = 0) const {
    return view->cellForItemAtIndexPath(IndexPath(item, section));
  }
  /// The sections whose header (footer) stands where it belongs.
  template <class Edge>
  std::vector<std::int64_t> edges() const {
    std::vector<std::int64_t> found;
    for (const Ref<UIView>& child : view->subviews()) {
      const auto edge = as<Edge>(child);
      if (!edge) continue;
      const bool isHead = std::is_same_v<Edge, Head>;
      EXPECT_EQ(edge->frame(), isHead ? layout->frameForHeader(edge->tag()) : layout->frameForFooter(edge->tag()));
      found.push_back(edge->tag());
    }
    std::sort(found.begin(), found.end());
    return found;
  }
  /// The names of the headers (footers) that are there, from top to bottom.
  template <class Edge>
  std::string named() const {
    std::map<double, std::string> found;
    for (const Ref<UIView>& child : view->subviews()) {
      if (as<Edge>(child)) found[child->frame().minY()] += child->accessibilityLabel().value_or("?");
    }
    std::string all;
    for (const auto& [top, label] : found) all += label;
    return all;
  }
  Ref<Shelf> shelf = make<Shelf>();
  Ref<UICollectionViewFlowLayout> layout = make<UICollectionViewFlowLayout>();
  Ref<UICollectionView> view = make<UICollectionView>();
};

TEST_F(ShelfTellingTest, SeveralItemsAreChosenAndTakenBackAndStayLitWhereTheyAreShownAgain) {
  view->setAllowsMultipleSelection(true);
  for (const std::int64_t item : {1, 2, 1}) {
    hands().tap(cellAt(item));
    advance(0.5);
  }
  EXPECT_EQ(shelf->journal.take(), "select0.1 select0.2 deselect0.1");
  EXPECT_FALSE(cellAt(1)->isSelected());
  EXPECT_TRUE(cellAt(2)->isSelected());
  shelf->counts = {5, 90};
  view->performBatchUpdates([&] {
    std::vector<IndexPath> come;
    for (std::int64_t item = 5; item < 90; ++item) come.emplace_back(item, 1);
    view->insertItems(come);
  });
  advance(1);
  view->setContentOffset({0, 1500});
  settle();
  for (const auto& cell : view->visibleCells()) EXPECT_FALSE(cell->isSelected());
  view->setContentOffset({0, 0});
  settle();
  EXPECT_TRUE(cellAt(2)->isSelected());
  view->setAllowsMultipleSelection(false);
  hands().tap(cellAt(4));
  advance(0.5);
  EXPECT_EQ(shelf->journal.take(), "deselect0.2 select0.4");
  EXPECT_FALSE(cellAt(2)->isSelected());
  view->reloadData();
  settle();
  EXPECT_TRUE(view->indexPathsForSelectedItems().empty());
  EXPECT_FALSE(cellAt(4)->isSelected());
}

TEST_F(ShelfTellingTest, ItemsHeadersAndFootersOfSeveralKindsAreNotMixedUp) {
  shelf->counts.assign(30, 7);
  view->reloadData();
  for (double y = 0; y < 7000; y += 170) {
    view->setContentOffset({0, y});
    settle();
    for (const IndexPath path : view->indexPathsForVisibleItems()) {
      EXPECT_EQ(as<NoteTile>(view->cellForItemAtIndexPath(path)) != nullptr, path.item() % 3 == 0);
    }
    EXPECT_FALSE(edges<Head>().empty() && edges<Foot>().empty());
  }
  shelf->counts = {1, 2, 3};
  view->setContentOffset({0, 0});
  view->reloadData();
  settle();
  EXPECT_EQ(named<Head>() + named<Foot>(), "abcabc");
  shelf->counts = {2, 1, 3};
  shelf->names = "bnc";
  view->performBatchUpdates([&] {
    view->deleteSections({0});
    view->insertSections({1});
  });
  advance(1);
  EXPECT_EQ(edges<Head>(), (std::vector<std::int64_t>{0, 1, 2}));
  EXPECT_EQ(edges<Foot>(), (std::vector<std::int64_t>{0, 1, 2}));
  EXPECT_EQ(named<Head>() + named<Foot>(), "bncbnc") << "each of its own section";
}

}  // namespace
}  // namespace platform::test
