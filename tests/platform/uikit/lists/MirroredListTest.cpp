#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UITableView.h"
#include "tests/support/AppFixture.h"

// Lists that stand for those of another toolkit answer for themselves, through the same members as any list.

namespace platform::test {
namespace {

class MirroredScroll : public Object<MirroredScroll, UIScrollView> {
 public:
  CGPoint offset;
  int set = 0;
  CGPoint contentOffset() const override { return offset; }
  using UIScrollView::setContentOffset;
  void setContentOffset(CGPoint to, bool) override {
    offset = to;
    ++set;
  }
  CGSize contentSize() const override { return {390, 5000}; }
};

class MirroredTable : public Object<MirroredTable, UITableView> {
 public:
  std::optional<IndexPath> chosen;
  std::optional<IndexPath> indexPathForCell(const Ref<UITableViewCell>& cell) const override {
    return IndexPath(cell->tag(), 7);
  }
  void selectRow(std::optional<IndexPath> path, bool, UITableViewScrollPosition) override { chosen = path; }
  Ref<UITableViewCell> cellForRowAtIndexPath(IndexPath) const override { return nullptr; }
};

class MirroredCollection : public Object<MirroredCollection, UICollectionView> {
 public:
  std::optional<IndexPath> chosen;
  std::optional<IndexPath> indexPathForCell(const Ref<UICollectionViewCell>& cell) const override {
    return IndexPath(cell->tag(), 7);
  }
  void selectItem(std::optional<IndexPath> path, bool, UICollectionViewScrollPosition) override { chosen = path; }
};

class MirroredListTest : public AppFixture {};

TEST_F(MirroredListTest, LayoutLeavesAnOffsetAloneThatIsKeptElsewhere) {
  const auto view = make<MirroredScroll>();
  view->setFrame({0, 0, 390, 700});
  content()->addSubview(view);
  settle();
  view->offset = {0, 4800};  // beyond the end for a moment, as another toolkit's content may be
  view->setContentSize({390, 100});
  view->setFrame({0, 0, 390, 500});
  view->setContentInset({60, 0, 0, 0});
  settle();
  EXPECT_EQ(view->offset, (CGPoint{0, 4800}));
  EXPECT_EQ(view->set, 0);
  EXPECT_EQ(view->bounds().origin, CGPoint());
}

TEST_F(MirroredListTest, WhoeverHoldsAListReachesTheMirror) {
  const auto table = make<MirroredTable>();
  const Ref<UITableView> plain = table;
  const auto cell = make<UITableViewCell>();
  cell->setTag(3);
  EXPECT_EQ(plain->indexPathForCell(cell), IndexPath(3, 7));
  plain->selectRow(IndexPath(3, 7), false, UITableViewScrollPosition::none);
  EXPECT_EQ(table->chosen, IndexPath(3, 7));
  const auto collection = make<MirroredCollection>();
  const Ref<UICollectionView> grid = collection;
  const auto item = make<UICollectionViewCell>(CGRect());
  item->setTag(4);
  EXPECT_EQ(grid->indexPathForCell(item), IndexPath(4, 7));
  grid->selectItem(IndexPath(4, 7), false, UICollectionViewScrollPosition::none);
  EXPECT_EQ(collection->chosen, IndexPath(4, 7));
}

}  // namespace
}  // namespace platform::test
