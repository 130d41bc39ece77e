#include <random>

#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

using Position = UICollectionViewScrollPosition;

class Tile : public Object<Tile, UICollectionViewCell> {
 public:
  Ref<UILabel> label;
  inline static int made = 0;
  void initWithFrame(CGRect frame) override {
    Super::initWithFrame(frame);
    ++made;
    label = make<UILabel>();
    contentView()->addSubview(label);
  }
};

class Shelf : public Object<Shelf, NSObject> {
 public:
  std::vector<std::vector<std::string>> sections{{}};
  Journal journal;
  bool allows = true;
  std::int64_t sectionCount(const Ref<NSObject>&) { return static_cast<std::int64_t>(sections.size()); }
  std::int64_t itemCount(const Ref<NSObject>&, std::int64_t section) {
    return static_cast<std::int64_t>(sections.at(static_cast<std::size_t>(section)).size());
  }
  Ref<UICollectionViewCell> cell(const Ref<UICollectionView>& view, IndexPath path) {
    const auto tile = as<Tile>(view->dequeueReusableCell("tile", path));
    tile->label->setText(
        sections.at(static_cast<std::size_t>(path.section())).at(static_cast<std::size_t>(path.item())));
    return tile;
  }
  Ref<UICollectionReusableView> header(const Ref<UICollectionView>& view, std::string kind, IndexPath path) {
    return view->dequeueReusableSupplementaryView(kind, "header", path);
  }
  bool shouldSelect(const Ref<NSObject>&, IndexPath) { return allows; }
  void didSelect(const Ref<NSObject>&, IndexPath path) { journal.note("select" + std::to_string(path.item())); }
  void didDeselect(const Ref<NSObject>&, IndexPath path) { journal.note("deselect" + std::to_string(path.item())); }
  static void exportMethods(MethodTable<Shelf>& table) {
    table.add<&Shelf::sectionCount>("numberOfSectionsInCollectionView:");
    table.add<&Shelf::itemCount>("collectionView:numberOfItemsInSection:");
    table.add<&Shelf::cell>("collectionView:cellForItemAtIndexPath:");
    table.add<&Shelf::header>("collectionView:viewForSupplementaryElementOfKind:atIndexPath:");
    table.add<&Shelf::shouldSelect>("collectionView:shouldSelectItemAtIndexPath:");
    table.add<&Shelf::didSelect>("collectionView:didSelectItemAtIndexPath:");
    table.add<&Shelf::didDeselect>("collectionView:didDeselectItemAtIndexPath:");
  }
};

/// A shelf whose items have sizes of their own.
class UnevenShelf : public Object<UnevenShelf, Shelf> {
 public:
  CGSize size(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    return {40.0 + static_cast<double>(path.item() % 5) * 20, 30.0 + static_cast<double>(path.item() % 3) * 10};
  }
  static void exportMethods(MethodTable<UnevenShelf>& table) {
    table.add<&UnevenShelf::size>("collectionView:layout:sizeForItemAtIndexPath:");
  }
};

class CollectionViewTest : public AppFixture {
 protected:
  CollectionViewTest() {
    layout->setItemSize({100, 80});
    layout->setMinimumLineSpacing(12);
    layout->setMinimumInteritemSpacing(10);
    layout->setSectionInset({5, 10, 5, 10});
    view->setFrame({0, 100, 390, 500});
    view->setCollectionViewLayout(layout);
    view->registerClass<Tile>("tile");
    content()->addSubview(view);
  }
  void fill(const Ref<Shelf>& data, int items) {
    shelf = data;
    for (int i = 0; i < items; ++i) shelf->sections[0].push_back(std::to_string(i));
    view->setDataSource(shelf);
    view->setDelegate(shelf);
    settle();
  }
  CGRect frame(std::int64_t item, std::int64_t section = 0) const {
    const auto found = layout->frameForItem(IndexPath(item, section));
    return found.value_or(CGRect());
  }
  std::size_t cellsInTree() const {
    std::size_t count = 0;
    for (const Ref<UIView>& child : view->subviews()) count += as<UICollectionViewCell>(child) ? 1 : 0;
    return count;
  }
  void expectWhatTheDataSays() const {
    for (const IndexPath path : view->indexPathsForVisibleItems()) {
      const auto tile = as<Tile>(view->cellForItemAtIndexPath(path));
      EXPECT_EQ(*tile->label->text(),
                shelf->sections[static_cast<std::size_t>(path.section())][static_cast<std::size_t>(path.item())]);
      EXPECT_EQ(tile->frame(), frame(path.item(), path.section()));
    }
  }
  Ref<UICollectionViewFlowLayout> layout = make<UICollectionViewFlowLayout>();
  Ref<UICollectionView> view = make<UICollectionView>();
  Ref<Shelf> shelf;
};

TEST_F(CollectionViewTest, ItemsFlowInLinesFromEdgeToEdge) {
  fill(make<Shelf>(), 7);
  EXPECT_EQ(frame(0), CGRect(10, 5, 100, 80));
  EXPECT_EQ(frame(2), CGRect(280, 5, 100, 80));
  EXPECT_EQ(frame(3), CGRect(10, 97, 100, 80));
  EXPECT_EQ(frame(6), CGRect(10, 189, 100, 80));
  EXPECT_EQ(view->contentSize(), (CGSize{390, 5 + 3 * 80 + 2 * 12 + 5}));
  layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
  settle();
  EXPECT_EQ(frame(1).minX(), 10);  // down first, then to the right
  EXPECT_GT(frame(1).minY(), 80);
  EXPECT_EQ(frame(5).minX(), 10 + 100 + 12);
  EXPECT_EQ(frame(99), CGRect());
}

TEST_F(CollectionViewTest, AnItemAloneOnItsLineStandsInTheMiddle) {
  layout->setItemSize({200, 80});
  fill(make<Shelf>(), 3);
  // Between insets of ten points at both sides.
  for (std::int64_t item = 0; item < 3; ++item) EXPECT_EQ(frame(item).minX(), 95) << item;
  EXPECT_EQ(frame(1).minY(), 5 + 80 + 12);
  layout->setSectionInset({0, 10, 0, 90});
  settle();
  EXPECT_EQ(frame(0).minX(), 55) << "in the middle of what the insets leave";
  layout->setItemSize({500, 80});
  settle();
  EXPECT_EQ(frame(0).minX(), 10) << "one that is too wide begins where the line does";
  layout->setItemSize({140, 80});
  settle();
  EXPECT_EQ(frame(0).minX(), 10) << "the last of full lines stays in its column";
  EXPECT_EQ(frame(1).minX(), 160);
  EXPECT_EQ(frame(2).minX(), 10);
}

TEST_F(CollectionViewTest, OnlyVisibleItemsHaveCellsAmongAHundredThousand) {
  Tile::made = 0;
  fill(make<Shelf>(), 100000);
  for (int i = 0; i < 50; ++i) {
    view->setContentOffset({0, i * 61000.0});
    settle();
    EXPECT_LE(cellsInTree(), 21u);
    expectWhatTheDataSays();
  }
  EXPECT_LE(Tile::made, 60);
  view->scrollToItem(IndexPath(99999, 0), Position::bottom, true);
  advance(1);
  EXPECT_NE(view->cellForItemAtIndexPath(IndexPath(99999, 0)), nullptr);
}

TEST_F(CollectionViewTest, ItemsOfTheirOwnSizesNeverOverlapAndAreFoundWhereTheyAre) {
  fill(make<UnevenShelf>(), 200);
  std::vector<CGRect> frames;
  for (std::int64_t item = 0; item < 200; ++item) frames.push_back(frame(item));
  for (std::size_t i = 0; i < frames.size(); ++i) {
    EXPECT_GE(frames[i].minX(), 10 - 1e-6);
    EXPECT_LE(frames[i].maxX(), 380 + 1e-6);
    for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(frames[i].insetBy(0.01, 0.01).intersects(frames[j]));
  }
  for (double y = 0; y < view->contentSize().height; y += 37) {
    const CGRect rect{0, y, 390, 60};
    std::vector<IndexPath> expected;
    for (std::size_t i = 0; i < frames.size(); ++i) {
      if (frames[i].intersects(rect)) expected.emplace_back(static_cast<std::int64_t>(i), 0);
    }
    EXPECT_EQ(layout->itemsInRect(rect), expected);
  }
}

TEST_F(CollectionViewTest, ScrollsItemsToWhereTheyAreWished) {
  layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
  view->setFrame({0, 100, 390, 100});
  fill(make<Shelf>(), 50);
  view->scrollToItem(IndexPath(20, 0), Position::centeredHorizontally, false);
  settle();
  EXPECT_NEAR(frame(20).midX() - view->contentOffset().x, 195, 0.5);
  view->scrollToItem(IndexPath(0, 0), Position::centeredHorizontally, false);
  EXPECT_EQ(view->contentOffset().x, 0);
  view->setContentOffset({0, 40});
  layout->setScrollDirection(UICollectionViewScrollDirection::vertical);
  view->scrollToItem(IndexPath(49, 0), Position::centeredHorizontally, false);
  settle();
  EXPECT_NE(view->cellForItemAtIndexPath(IndexPath(49, 0)), nullptr) << "it comes into view the other way too";
  view->scrollToItem(IndexPath(0, 0), Position::centeredHorizontally, false);
  EXPECT_EQ(view->contentOffset().y, frame(0).minY());
  for (const IndexPath path : {IndexPath(50, 0), IndexPath(-1, 0), IndexPath(0, 3), IndexPath(INT64_MAX, -1)}) {
    view->scrollToItem(path, Position::left, false);
    view->selectItem(path, false, Position::none);
    view->deselectItem(path, false);
    EXPECT_EQ(view->cellForItemAtIndexPath(path), nullptr);
  }
  EXPECT_EQ(view->contentOffset().x, 0);
  EXPECT_TRUE(view->indexPathsForSelectedItems().empty());
}

TEST_F(CollectionViewTest, ATapChoosesAnItem) {
  fill(make<Shelf>(), 9);
  hands().tap(view->cellForItemAtIndexPath(IndexPath(4, 0)));
  advance(0.5);
  hands().tap(view->cellForItemAtIndexPath(IndexPath(5, 0)));
  advance(0.5);
  EXPECT_EQ(shelf->journal.take(), "select4 deselect4 select5");
  EXPECT_TRUE(view->cellForItemAtIndexPath(IndexPath(5, 0))->isSelected());
  shelf->allows = false;
  hands().tap(view->cellForItemAtIndexPath(IndexPath(1, 0)));
  advance(0.5);
  EXPECT_EQ(shelf->journal.take(), "");
  view->selectItem(IndexPath(2, 0), false, Position::none);
  EXPECT_EQ(view->indexPathsForSelectedItems(), std::vector<IndexPath>{IndexPath(2, 0)});
  EXPECT_EQ(shelf->journal.take(), "");
  const auto cell = view->cellForItemAtIndexPath(IndexPath(2, 0));
  EXPECT_EQ(view->indexPathForCell(cell), IndexPath(2, 0));
}

TEST_F(CollectionViewTest, HeadersStandAboveTheirSections) {
  layout->setHeaderReferenceSize({0, 40});
  const auto data = make<Shelf>();
  data->sections.push_back({"x"});
  fill(data, 4);
  EXPECT_EQ(layout->frameForHeader(1), CGRect(0, 40 + 5 + 80 + 12 + 80 + 5, 390, 40));
  EXPECT_EQ(frame(0).minY(), 45);
  EXPECT_EQ(frame(0, 1).minY(), layout->frameForHeader(1)->maxY() + 5);
  std::size_t headers = 0;
  for (const Ref<UIView>& child : view->subviews()) {
    if (as<UICollectionReusableView>(child) && !as<UICollectionViewCell>(child)) ++headers;
  }
  EXPECT_EQ(headers, 2u);
}

TEST_F(CollectionViewTest, ChangesEndWhereTheDataIsAndLiesReload) {
  fill(make<Shelf>(), 30);
  auto& items = shelf->sections[0];
  std::mt19937 random(5);
  for (int i = 0; i < 80; ++i) {
    const auto size = static_cast<std::int64_t>(items.size());
    const auto at = static_cast<std::int64_t>(random() % static_cast<unsigned>(size + 1));
    if (random() % 2 && at < size && size > 3) {
      items.erase(items.begin() + at);
      view->deleteItems({IndexPath(at, 0)});
    } else {
      items.insert(items.begin() + at, "new" + std::to_string(i));
      view->insertItems({IndexPath(at, 0)});
    }
    if (random() % 6 == 0) view->setContentOffset({0, static_cast<double>(random() % 600)});
    advance(static_cast<double>(random() % 4) * 0.1);
    expectWhatTheDataSays();
  }
  items.resize(2);
  view->insertItems({IndexPath(0, 0)});
  advance(1);
  EXPECT_EQ(view->numberOfItemsInSection(0), 2);
  items = {"changed", "without", "a", "word"};
  view->setContentOffset({0, 1});
  view->setContentOffset({0, 0});
  view->reloadItems({IndexPath(0, 0), IndexPath(77, 0)});
  advance(1);
  expectWhatTheDataSays();
  EXPECT_EQ(cellsInTree(), 4u);
  shelf = nullptr;
  view->reloadData();
  settle();
  EXPECT_EQ(cellsInTree(), 0u);
}

}  // namespace
}  // namespace platform::test
