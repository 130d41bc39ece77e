#include "tests/platform/uikit/lists/TableFixture.h"

namespace platform::test {
namespace {

using Position = UITableViewScrollPosition;

class TableViewTest : public TableFixture {};

TEST_F(TableViewTest, OnlyVisibleRowsHaveCellsAmongAHundredThousand) {
  TextRow::made = 0;
  use(Sheet::numbered(100000));
  const auto most = static_cast<std::size_t>(500 / 40 + 3);
  EXPECT_LE(table->visibleCells().size(), most);
  EXPECT_EQ(cellsInTree(), table->visibleCells().size());
  table->scrollToRow(IndexPath(99999, 0), Position::bottom, false);
  settle();
  EXPECT_EQ(textAt(99999), "row 99999");
  EXPECT_EQ(textAt(0), "(none)");
  for (int i = 0; i < 60; ++i) {
    table->setContentOffset({0, i * 53000.0});
    settle();
    EXPECT_LE(cellsInTree(), most);
    shown();
  }
  EXPECT_LE(TextRow::made, static_cast<int>(3 * most));  // all others were used again
  EXPECT_LT(sheet->cellsAsked, 2000);
}

TEST_F(TableViewTest, CellsAreUsedAgainAndToldSo) {
  TextRow::made = 0;
  use(Sheet::numbered(500));
  const auto first = table->cellForRowAtIndexPath(IndexPath(0, 0));
  for (double y = 0; y < 5000; y += 100) {
    table->setContentOffset({0, y});
    settle();
  }
  EXPECT_LE(TextRow::made, 20);
  EXPECT_GT(as<TextRow>(first)->uses, 2);
  EXPECT_EQ(table->dequeueReusableCell("unknown"), nullptr);
  EXPECT_NE(table->dequeueReusableCell("unknown", IndexPath()), nullptr);
}

TEST_F(TableViewTest, RowsTakeTheHeightsOfTheirTexts) {
  use(Sheet::of({"short", manyWords, "two\nlines", manyWords + manyWords, "last"}));
  const auto heightOf = [&](std::int64_t row) { return table->rectForRowAtIndexPath(IndexPath(row, 0)).height(); };
  const auto label = as<TextRow>(table->cellForRowAtIndexPath(IndexPath(1, 0)))->label;
  EXPECT_EQ(heightOf(1), label->sizeThatFits({370, 0}).height + 20);
  EXPECT_LT(heightOf(0), heightOf(2));
  EXPECT_LT(heightOf(2), heightOf(1));
  EXPECT_LT(heightOf(1), heightOf(3));
  double sum = 0;
  for (std::int64_t row = 0; row < 5; ++row) {
    EXPECT_EQ(table->rectForRowAtIndexPath(IndexPath(row, 0)).minY(), sum);
    EXPECT_EQ(table->cellForRowAtIndexPath(IndexPath(row, 0))->frame().height(), heightOf(row));
    sum += heightOf(row);
  }
  EXPECT_EQ(table->contentSize().height, sum);
  const double wide = heightOf(3);
  table->setFrame({0, 100, 200, 500});
  settle();
  EXPECT_GT(heightOf(3), wide * 1.5);
}

TEST_F(TableViewTest, WhatIsOnTheScreenStaysWhereItIsWhileRowsAboveAreMeasured) {
  std::vector<std::string> texts;
  for (int i = 0; i < 400; ++i) texts.push_back(i % 3 ? "short" : manyWords + manyWords);
  use(Sheet::of(texts));
  table->scrollToRow(IndexPath(300, 0), Position::top, false);
  settle();
  const auto screenTop = [&](std::int64_t row) {
    return table->rectForRowAtIndexPath(IndexPath(row, 0)).minY() - table->contentOffset().y;
  };
  for (int i = 0; i < 200; ++i) {
    const std::int64_t first = table->indexPathsForVisibleRows().front().row();
    const std::int64_t watched = first + 1;
    const double before = screenTop(watched);
    table->setContentOffset({0, table->contentOffset().y - 30});
    settle();
    EXPECT_NEAR(screenTop(watched), before + 30, 0.01) << "row " << watched;
  }
}

TEST_F(TableViewTest, AListSentToItsBeginningIsThereWhateverItsFirstRowsTurnOutToBe) {
  std::vector<std::string> texts;
  for (int i = 0; i < 20; ++i) texts.push_back(i % 3 ? "short" : manyWords);
  use(Sheet::of(texts));
  const double inset = 20;
  table->setContentInset({inset, 0, 0, 0});
  for (int row = 8; row < 20; ++row) {
    table->scrollToRow(IndexPath(row, 0), Position::bottom, false);
    table->reloadData();
    settle();
    table->setContentOffset({0, -inset});
    settle();
    EXPECT_EQ(table->contentOffset().y, -inset) << "from row " << row;
  }
}

TEST_F(TableViewTest, ScrollsToARowExactlyWhateverItsNeighboursHeightsAre) {
  std::vector<std::string> texts;
  for (int i = 0; i < 300; ++i) texts.push_back(i % 2 ? "short" : manyWords);
  use(Sheet::of(texts));
  const auto rect = [&](std::int64_t row) {
    return table->rectForRowAtIndexPath(IndexPath(row, 0)).offsetBy(0, -table->contentOffset().y);
  };
  for (const bool animated : {false, true}) {
    table->scrollToRow(IndexPath(299, 0), Position::bottom, animated);
    advance(1);
    EXPECT_NEAR(rect(299).maxY(), 500, 0.51);
    EXPECT_EQ(textAt(299), "short");
    table->scrollToRow(IndexPath(150, 0), Position::top, animated);
    advance(1);
    EXPECT_NEAR(rect(150).minY(), 0, 0.51);
    table->scrollToRow(IndexPath(200, 0), Position::middle, animated);
    advance(1);
    EXPECT_NEAR(rect(200).midY(), 250, 0.51);
    const double stays = table->contentOffset().y;
    table->scrollToRow(IndexPath(200, 0), Position::none, animated);
    advance(1);
    EXPECT_EQ(table->contentOffset().y, stays);
    table->scrollToRow(IndexPath(0, 0), Position::bottom, animated);
    advance(1);
    EXPECT_EQ(table->contentOffset().y, 0);
  }
}

TEST_F(TableViewTest, PathsOutOfRangeFindSelectAndScrollToNothing) {
  use(Sheet::numbered(5));
  for (const IndexPath path : {IndexPath(5, 0), IndexPath(-1, 0), IndexPath(0, 1), IndexPath(0, -1),
                               IndexPath(INT64_MAX, INT64_MAX), IndexPath(INT64_MIN, INT64_MIN)}) {
    table->selectRow(path, true, Position::middle);
    table->scrollToRow(path, Position::top, true);
    table->deselectRow(path, true);
    EXPECT_EQ(table->cellForRowAtIndexPath(path), nullptr);
    EXPECT_EQ(table->rectForRowAtIndexPath(path), CGRect());
    EXPECT_EQ(table->headerViewForSection(path.section()), nullptr);
    table->reloadRows({path}, UITableViewRowAnimation::fade);
    table->reloadSections({path.section() == 0 ? 9 : path.section()}, UITableViewRowAnimation::fade);
  }
  advance(1);
  EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
  EXPECT_EQ(table->numberOfRowsInSection(7), 0);
  EXPECT_EQ(table->indexPathForCell(nullptr), std::nullopt);
  EXPECT_EQ(table->indexPathForCell(make<TextRow>()), std::nullopt);
  EXPECT_EQ(shown().size(), 5u);
}

// ---- Choosing rows

TEST_F(TableViewTest, ATapChoosesARowAndTheNextTapAnother) {
  use(Sheet::numbered(8));
  const auto cellAt = [&](std::int64_t row) { return table->cellForRowAtIndexPath(IndexPath(row, 0)); };
  hands().tap(cellAt(1));
  advance(0.5);
  EXPECT_EQ(sheet->journal.take(), "select1");
  EXPECT_TRUE(cellAt(1)->isSelected());
  hands().tap(cellAt(3));
  advance(0.5);
  EXPECT_EQ(sheet->journal.take(), "deselect1 select3");
  EXPECT_FALSE(cellAt(1)->isSelected());
  EXPECT_EQ(table->indexPathForSelectedRow(), IndexPath(3, 0));
  sheet->refused = {4};
  hands().tap(cellAt(4));
  advance(0.5);
  EXPECT_EQ(sheet->journal.take(), "");
  table->setAllowsSelection(false);
  hands().tap(cellAt(5));
  advance(0.5);
  EXPECT_EQ(sheet->journal.take(), "");
}

TEST_F(TableViewTest, SeveralRowsCanBeChosenWhereThatIsAllowed) {
  use(Sheet::numbered(8));
  table->setAllowsMultipleSelection(true);
  for (const std::int64_t row : {2, 5, 2}) {
    hands().tap(table->cellForRowAtIndexPath(IndexPath(row, 0)));
    advance(0.5);
  }
  EXPECT_EQ(sheet->journal.take(), "select2 select5 deselect2");
  EXPECT_EQ(table->indexPathsForSelectedRows(), std::vector<IndexPath>{IndexPath(5, 0)});
}

TEST_F(TableViewTest, ChoosingByProgramTellsNobodyAndSurvivesReuse) {
  use(Sheet::numbered(200));
  table->selectRow(IndexPath(2, 0), false, Position::none);
  EXPECT_EQ(table->contentOffset().y, 0);
  EXPECT_TRUE(table->cellForRowAtIndexPath(IndexPath(2, 0))->isSelected());
  table->setContentOffset({0, 4000});
  settle();
  for (const auto& cell : table->visibleCells()) EXPECT_FALSE(cell->isSelected());
  table->setContentOffset({0, 0});
  settle();
  EXPECT_TRUE(table->cellForRowAtIndexPath(IndexPath(2, 0))->isSelected());
  table->selectRow(IndexPath(150, 0), false, Position::middle);
  settle();
  EXPECT_TRUE(table->cellForRowAtIndexPath(IndexPath(150, 0))->isSelected());
  table->selectRow(std::nullopt, false, Position::none);
  EXPECT_TRUE(table->indexPathsForSelectedRows().empty());
  EXPECT_EQ(sheet->journal.take(), "");
}

TEST_F(TableViewTest, ARowLightsUpUnderAFingerThatRestsAndNotUnderOneThatScrolls) {
  use(Sheet::numbered(100));
  const auto cell = table->cellForRowAtIndexPath(IndexPath(3, 0));
  const CGPoint at = cell->convertPoint({50, 10}, nullptr);
  const auto touch = [&](UITouchPhase phase, CGPoint point, double wait) {
    window()->deliverTouch(1, phase, point, Clock::mediaTime());
    advance(wait);
  };
  touch(UITouchPhase::began, at, 0.05);
  EXPECT_FALSE(cell->isHighlighted());
  advance(0.1);
  EXPECT_TRUE(cell->isHighlighted());
  for (int i = 1; i < 12; ++i) touch(UITouchPhase::moved, {at.x, at.y - i * 4.0}, 0.016);
  EXPECT_FALSE(cell->isHighlighted());
  touch(UITouchPhase::ended, {at.x, at.y - 50}, 2);
  EXPECT_EQ(sheet->journal.take(), "");
  EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
}

TEST_F(TableViewTest, ARowThatGoesAwayUnderTheFingerIsNotChosen) {
  use(Sheet::numbered(20));
  const CGPoint at = table->cellForRowAtIndexPath(IndexPath(0, 0))->convertPoint({50, 10}, nullptr);
  window()->deliverTouch(1, UITouchPhase::began, at, Clock::mediaTime());
  advance(0.2);
  sheet->sections[0].erase(sheet->sections[0].begin());
  table->deleteRows({IndexPath(0, 0)}, UITableViewRowAnimation::automatic);
  advance(0.05);
  window()->deliverTouch(1, UITouchPhase::ended, at, Clock::mediaTime());
  advance(1);
  EXPECT_EQ(sheet->journal.take(), "");
  window()->deliverTouch(1, UITouchPhase::began, at, Clock::mediaTime());
  advance(0.2);
  table->reloadData();
  window()->deliverTouch(1, UITouchPhase::ended, at, Clock::mediaTime());
  advance(1);
  EXPECT_EQ(sheet->journal.take(), "");
  sheet->onSelect = [&] { table->removeFromSuperview(); };
  hands().tap(table->cellForRowAtIndexPath(IndexPath(2, 0)));
  advance(1);
  EXPECT_EQ(sheet->journal.take(), "select2");
}

// ---- Data sources that are not to be trusted

TEST_F(TableViewTest, ADataSourceThatChangesWithoutAWordIsReadAgain) {
  use(Sheet::numbered(1000));
  sheet->sections[0].resize(15);
  table->setContentOffset({0, 800});  // beyond what is left
  settle();
  EXPECT_EQ(table->numberOfRowsInSection(0), 15);
  shown();
  sheet->sections.clear();
  table->setContentOffset({0, 0});
  settle();
  table->reloadData();
  settle();
  EXPECT_EQ(table->numberOfSections(), 0);
  EXPECT_EQ(cellsInTree(), 0u);
}

class Liar : public Object<Liar, NSObject> {
 public:
  std::int64_t rows = 3;
  Ref<UITableViewCell> same = make<UITableViewCell>(UITableViewCellStyle::standard, "same");
  bool none = false;
  std::int64_t rowCount(const Ref<NSObject>&, std::int64_t) { return rows; }
  Ref<UITableViewCell> cell(const Ref<NSObject>&, IndexPath) { return none ? nullptr : same; }
  static void exportMethods(MethodTable<Liar>& table) {
    table.add<&Liar::rowCount>("tableView:numberOfRowsInSection:");
    table.add<&Liar::cell>("tableView:cellForRowAtIndexPath:");
  }
};

TEST_F(TableViewTest, NoDataSourceBringsItDown) {
  auto liar = make<Liar>();
  table->setDataSource(liar);
  settle();  // one cell for three rows
  liar->none = true;
  table->reloadData();
  settle();
  EXPECT_EQ(table->visibleCells().size(), 3u);
  liar->rows = -7;
  table->reloadData();
  settle();
  EXPECT_EQ(table->visibleCells().size(), 0u);
  liar->rows = 5;
  table->reloadData();
  liar = nullptr;
  settle();
  table->insertRows({IndexPath(0, 0)}, UITableViewRowAnimation::automatic);
  table->setContentOffset({0, 10});
  advance(1);
  EXPECT_EQ(table->visibleCells().size(), 0u);
}

// ---- Sections

class Chapters : public Object<Chapters, Sheet> {
 public:
  std::string header(const Ref<NSObject>&, std::int64_t section) { return "chapter " + std::to_string(section); }
  double height(const Ref<NSObject>&, IndexPath path) { return path.row() == 0 ? 100 : 50; }
  static void exportMethods(MethodTable<Chapters>& table) {
    table.add<&Chapters::header>("tableView:titleForHeaderInSection:");
    table.add<&Chapters::height>("tableView:heightForRowAtIndexPath:");
  }
};

TEST_F(TableViewTest, AHeaderStaysWhileItsSectionPassesAndIsPushedAwayByTheNext) {
  const auto chapters = make<Chapters>();
  chapters->sections = {std::vector<std::string>(10, "a"), {}, std::vector<std::string>(10, "c")};
  use(chapters);
  const double header = table->rectForHeaderInSection(0).height();
  EXPECT_GT(header, 20);
  EXPECT_EQ(table->rectForRowAtIndexPath(IndexPath(1, 0)), CGRect(0, header + 100, 390, 50));
  EXPECT_EQ(table->rectForSection(2).minY(), 3 * header - header + 550);
  table->setContentOffset({0, 200});
  settle();
  EXPECT_EQ(table->headerViewForSection(0)->frame().minY(), 200);
  tap(CGPoint{100, 100 + header / 2});  // the header stands over a row, which is not meant
  EXPECT_EQ(chapters->journal.take(), "");
  tap(CGPoint{100, 100 + header + 20});
  EXPECT_EQ(chapters->journal.take(), "select3");
  table->setContentOffset({0, header + 550 - 10});
  settle();
  EXPECT_NEAR(table->headerViewForSection(0)->frame().maxY(), header + 550, 1e-6);
  EXPECT_EQ(table->headerViewForSection(1)->frame().minY(), header + 550);
  const auto view = as<UITableViewHeaderFooterView>(table->headerViewForSection(1));
  EXPECT_EQ(view->textLabel()->text(), "chapter 1");
  EXPECT_EQ(table->indexPathForRowAtPoint({10, header + 545}), IndexPath(9, 0));
}

/// Tells one height for all, and counts how often it is asked whether it does.
class Tall : public Object<Tall, Sheet> {
 public:
  double height = 70;
  mutable int wondered = 0;
  double heightOfRow(const Ref<NSObject>&, IndexPath) { return height; }
  bool respondsToSelector(SEL selector) const override {
    if (selector == sel("tableView:heightForRowAtIndexPath:")) ++wondered;
    return Super::respondsToSelector(selector);
  }
  static void exportMethods(MethodTable<Tall>& table) {
    table.add<&Tall::heightOfRow>("tableView:heightForRowAtIndexPath:");
  }
};

TEST_F(TableViewTest, ADelegateIsAskedOnceWhatItAnswersAndTheNextDelegateAnew) {
  const auto first = make<Tall>();
  first->sections[0].assign(5000, "row");
  use(first);
  EXPECT_EQ(table->contentSize().height, 5000 * 70);
  EXPECT_LT(first->wondered, 100) << "once a list, and for what is shown, but not for each of 5,000 rows";
  const auto second = make<Tall>();
  second->height = 20;
  table->setDelegate(second);
  settle();
  EXPECT_EQ(table->contentSize().height, 5000 * 20);
  table->setRowHeight(30);
  table->setDelegate(nullptr);
  settle();
  EXPECT_EQ(table->contentSize().height, 5000 * 30);
  table->setDelegate(first);
  settle();
  EXPECT_EQ(table->contentSize().height, 5000 * 70);
}

TEST_F(TableViewTest, FixedHeightsTableHeadersAndFooters) {
  table->setRowHeight(30);
  const auto head = make<UIView>(CGRect{0, 0, 10, 80});
  const auto foot = make<UIView>(CGRect{0, 0, 10, 40});
  table->setTableHeaderView(head);
  table->setTableFooterView(foot);
  use(Sheet::numbered(10));
  EXPECT_EQ(table->contentSize(), (CGSize{390, 80 + 300 + 40}));
  EXPECT_EQ(head->frame(), CGRect(0, 0, 390, 80));
  EXPECT_EQ(foot->frame(), CGRect(0, 380, 390, 40));
  EXPECT_EQ(table->rectForRowAtIndexPath(IndexPath(2, 0)), CGRect(0, 140, 390, 30));
  table->setTableHeaderView(nullptr);
  settle();
  EXPECT_EQ(table->rectForRowAtIndexPath(IndexPath(2, 0)), CGRect(0, 60, 390, 30));
}

}  // namespace
}  // namespace platform::test
