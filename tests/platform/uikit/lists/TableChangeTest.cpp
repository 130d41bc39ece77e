#include <random>

#include "platform/animation/CALayer.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/platform/uikit/lists/TableFixture.h"

namespace platform::test {
namespace {

using Animation = UITableViewRowAnimation;

class TableChangeTest : public TableFixture {
 protected:
  std::vector<std::string>& rows() { return sheet->sections[0]; }
  double shownTop(const Ref<UITableViewCell>& cell) const { return cell->layer()->presentationLayer()->frame().minY(); }
};

TEST_F(TableChangeTest, AnInsertedRowFadesInWhileTheOthersMakeRoom) {
  use(Sheet::of({"a", "b", "c"}));
  const auto b = table->cellForRowAtIndexPath(IndexPath(1, 0));
  const double before = b->frame().minY();
  rows().insert(rows().begin() + 1, manyWords);
  table->insertRows({IndexPath(1, 0)}, Animation::automatic);
  const auto inserted = table->cellForRowAtIndexPath(IndexPath(1, 0));
  ASSERT_NE(inserted, nullptr);
  EXPECT_EQ(table->cellForRowAtIndexPath(IndexPath(2, 0)), b);
  EXPECT_EQ(b->frame().minY(), before + inserted->frame().height());
  advance(0.15);
  EXPECT_GT(shownTop(b), before);
  EXPECT_LT(shownTop(b), b->frame().minY());
  EXPECT_GT(inserted->layer()->presentationLayer()->opacity(), 0.05);
  EXPECT_LT(inserted->layer()->presentationLayer()->opacity(), 0.95);
  advance(0.3);
  EXPECT_EQ(shownTop(b), b->frame().minY());
  EXPECT_EQ(shown(), (std::vector<std::string>{"a", manyWords, "b", "c"}));
  EXPECT_EQ(cellsInTree(), 4u);
}

TEST_F(TableChangeTest, ADeletedRowFadesAndItsCellIsUsedAgain) {
  use(Sheet::of({"a", "b", "c"}));
  const auto b = table->cellForRowAtIndexPath(IndexPath(1, 0));
  const auto c = table->cellForRowAtIndexPath(IndexPath(2, 0));
  const double gap = b->frame().height();
  const double before = c->frame().minY();
  rows().erase(rows().begin() + 1);
  table->deleteRows({IndexPath(1, 0)}, Animation::automatic);
  EXPECT_EQ(table->indexPathForCell(b), std::nullopt);
  EXPECT_EQ(c->frame().minY(), before - gap);
  EXPECT_EQ(b->superview(), table);
  advance(0.5);
  EXPECT_EQ(b->superview(), nullptr);
  rows().push_back("d");
  table->insertRows({IndexPath(2, 0)}, Animation::none);
  EXPECT_EQ(table->cellForRowAtIndexPath(IndexPath(2, 0)), b);
  EXPECT_EQ(b->alpha(), 1);
  EXPECT_EQ(shown(), (std::vector<std::string>{"a", "c", "d"}));
}

TEST_F(TableChangeTest, AConversationGrowsAtItsEnd) {
  use(Sheet::of({}));
  for (int i = 0; i < 40; ++i) {
    rows().push_back(i % 3 ? "answer " + std::to_string(i) : manyWords);
    table->insertRows({IndexPath(i, 0)}, Animation::automatic);
    if (i % 4 == 3) {  // a row that comes and goes while the answer is awaited
      rows().push_back("...");
      table->insertRows({IndexPath(i + 1, 0)}, Animation::automatic);
      table->scrollToRow(IndexPath(i + 1, 0), UITableViewScrollPosition::bottom, true);
      advance(0.2);
      rows().pop_back();
      table->deleteRows({IndexPath(i + 1, 0)}, Animation::automatic);
    }
    table->scrollToRow(IndexPath(i, 0), UITableViewScrollPosition::bottom, true);
    advance(i % 2 ? 0.1 : 0.7);
  }
  advance(1);
  EXPECT_EQ(textAt(39), manyWords);
  const CGRect last = table->rectForRowAtIndexPath(IndexPath(39, 0));
  EXPECT_NEAR(last.maxY() - table->contentOffset().y, 500, 0.51);
  EXPECT_EQ(cellsInTree(), table->visibleCells().size());
  shown();
}

TEST_F(TableChangeTest, AReloadedRowGetsANewCellAndItsNewHeight) {
  use(Sheet::of({"a", "b", "c"}));
  const auto b = table->cellForRowAtIndexPath(IndexPath(1, 0));
  table->selectRow(IndexPath(2, 0), false, UITableViewScrollPosition::none);
  rows()[1] = manyWords;
  table->reloadRows({IndexPath(1, 0)}, Animation::fade);
  EXPECT_NE(table->cellForRowAtIndexPath(IndexPath(1, 0)), b);
  advance(1);
  EXPECT_GT(table->rectForRowAtIndexPath(IndexPath(1, 0)).height(), 60);
  EXPECT_EQ(table->indexPathForSelectedRow(), IndexPath(2, 0));
  EXPECT_EQ(shown(), (std::vector<std::string>{"a", manyWords, "c"}));
  EXPECT_EQ(cellsInTree(), 3u);
}

TEST_F(TableChangeTest, AnUpdateWithoutChangesMeasuresTheVisibleRowsAgain) {
  use(Sheet::of({"a", "b"}));
  as<TextRow>(table->cellForRowAtIndexPath(IndexPath(0, 0)))->label->setText(manyWords);
  table->beginUpdates();
  table->endUpdates();
  advance(1);
  EXPECT_GT(table->rectForRowAtIndexPath(IndexPath(0, 0)).height(), 60);
  EXPECT_EQ(table->rectForRowAtIndexPath(IndexPath(1, 0)).minY(),
            table->cellForRowAtIndexPath(IndexPath(0, 0))->frame().maxY());
}

TEST_F(TableChangeTest, ABatchOfChangesIsOneStepAndTheSelectionFollows) {
  use(Sheet::of({"a", "b", "c", "d", "e"}));
  table->selectRow(IndexPath(3, 0), false, UITableViewScrollPosition::none);
  rows() = {"new", "a", "d", "c", "e"};  // b goes, something comes first, d moves before c
  bool finished = false;
  table->performBatchUpdates(
      [&] {
        table->deleteRows({IndexPath(1, 0)}, Animation::left);
        table->insertRows({IndexPath(0, 0)}, Animation::right);
        table->moveRow(IndexPath(3, 0), IndexPath(2, 0));
      },
      [&](bool) { finished = true; });
  EXPECT_EQ(table->indexPathForSelectedRow(), IndexPath(2, 0));
  EXPECT_FALSE(finished);
  advance(1);
  EXPECT_TRUE(finished);
  EXPECT_EQ(shown(), rows());
}

TEST_F(TableChangeTest, SectionsComeAndGo) {
  use(Sheet::of({"a"}));
  sheet->sections = {{"first"}, {"a"}, {"x", "y"}};
  table->insertSections({0, 2}, Animation::fade);
  advance(1);
  EXPECT_EQ(shown(), (std::vector<std::string>{"first", "a", "x", "y"}));
  sheet->sections = {{"a"}, {"x", "y", "z"}};
  table->beginUpdates();
  table->deleteSections({0}, Animation::fade);
  table->reloadSections({2}, Animation::fade);
  table->endUpdates();
  advance(1);
  EXPECT_EQ(shown(), (std::vector<std::string>{"a", "x", "y", "z"}));
}

TEST_F(TableChangeTest, AnnouncementsThatAreNotTrueReloadTheTable) {
  use(Sheet::of({"a", "b"}));
  table->insertRows({IndexPath(2, 0)}, Animation::automatic);  // nothing was added
  advance(1);
  EXPECT_EQ(shown(), (std::vector<std::string>{"a", "b"}));
  rows() = {"only"};
  table->deleteRows({IndexPath(7, 0)}, Animation::automatic);
  advance(1);
  EXPECT_EQ(shown(), std::vector<std::string>{"only"});
  sheet->sections.clear();
  table->insertRows({IndexPath(0, 0)}, Animation::automatic);
  advance(1);
  EXPECT_TRUE(shown().empty());
  table->endUpdates();  // one too many
}

TEST_F(TableChangeTest, ChangesOnTopOfChangesUnderWayEndWhereTheDataIs) {
  std::mt19937 random(3);
  use(Sheet::numbered(30));
  int name = 1000;
  for (int i = 0; i < 150; ++i) {
    const auto size = static_cast<std::int64_t>(rows().size());
    if (random() % 2 && size > 5) {
      const auto at = static_cast<std::int64_t>(random() % static_cast<unsigned>(size));
      rows().erase(rows().begin() + at);
      table->deleteRows({IndexPath(at, 0)}, static_cast<Animation>(random() % 8));
    } else {
      const auto at = static_cast<std::int64_t>(random() % static_cast<unsigned>(size + 1));
      rows().insert(rows().begin() + at, random() % 4 ? std::to_string(name++) : manyWords);
      table->insertRows({IndexPath(at, 0)}, static_cast<Animation>(random() % 8));
    }
    if (random() % 5 == 0) table->setContentOffset({0, static_cast<double>(random() % 900)}, random() % 2);
    if (random() % 9 == 0) table->reloadData();
    advance(static_cast<double>(random() % 5) * 0.08);
    for (const IndexPath path : table->indexPathsForVisibleRows()) {
      EXPECT_EQ(textAt(path.row()), rows()[static_cast<std::size_t>(path.row())]);
    }
  }
  advance(1);
  shown();
  EXPECT_EQ(cellsInTree(), table->visibleCells().size());
  for (const auto& cell : table->visibleCells()) EXPECT_EQ(cell->alpha(), 1);
}

TEST_F(TableChangeTest, ARowWithTheKeyboardIsNotTakenAwayByScrolling) {
  use(Sheet::numbered(200));
  const auto cell = table->cellForRowAtIndexPath(IndexPath(1, 0));
  const auto field = make<UITextField>();
  field->setFrame({10, 5, 200, 30});
  cell->contentView()->addSubview(field);
  ASSERT_TRUE(field->becomeFirstResponder());
  table->setContentOffset({0, 3000});
  advance(1);
  EXPECT_TRUE(field->isFirstResponder());
  field->resignFirstResponder();
  table->setContentOffset({0, 3100});
  advance(1);
  EXPECT_EQ(cell->window(), nullptr);
}

}  // namespace
}  // namespace platform::test
