#include <algorithm>
#include <random>
#include <set>

#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/support/AppFixture.h"

// Lists that live for hours: thousands of changes, and then they are what a new list of the same data would be.

namespace platform::test {
namespace {

using Names = std::vector<std::vector<std::string>>;

const std::string& nameAt(const Names& names, IndexPath path) {
  return names.at(static_cast<std::size_t>(path.section())).at(static_cast<std::size_t>(path.row()));
}

/// What a name's row or item measures: a few different lengths, zero among them.
double lengthOf(const std::string& name) { return static_cast<double>(std::hash<std::string>{}(name) % 5) * 13.5; }

/// Data source and delegate of both kinds of list.
class NamedRows : public Object<NamedRows, NSObject> {
 public:
  explicit NamedRows(Names& all) : names(all) {}
  Names& names;

  std::int64_t sections(const Ref<NSObject>&) { return static_cast<std::int64_t>(names.size()); }
  std::int64_t count(const Ref<NSObject>&, std::int64_t section) {
    return static_cast<std::int64_t>(names.at(static_cast<std::size_t>(section)).size());
  }
  Ref<UITableViewCell> row(const Ref<UITableView>& table, IndexPath path) {
    const auto cell = table->dequeueReusableCell("row", path);
    cell->setAccessibilityLabel(nameAt(names, path));
    return cell;
  }
  double height(const Ref<NSObject>&, IndexPath path) { return lengthOf(nameAt(names, path)); }
  Ref<UICollectionViewCell> item(const Ref<UICollectionView>& view, IndexPath path) {
    const auto cell = view->dequeueReusableCell("item", path);
    cell->setAccessibilityLabel(nameAt(names, path));
    return cell;
  }
  CGSize size(const Ref<NSObject>&, const Ref<NSObject>&, IndexPath path) {
    return {20 + lengthOf(nameAt(names, path)), 30};
  }
  static void exportMethods(MethodTable<NamedRows>& table) {
    table.add<&NamedRows::sections>("numberOfSectionsInTableView:");
    table.add<&NamedRows::count>("tableView:numberOfRowsInSection:");
    table.add<&NamedRows::row>("tableView:cellForRowAtIndexPath:");
    table.add<&NamedRows::height>("tableView:heightForRowAtIndexPath:");
    table.add<&NamedRows::sections>("numberOfSectionsInCollectionView:");
    table.add<&NamedRows::count>("collectionView:numberOfItemsInSection:");
    table.add<&NamedRows::item>("collectionView:cellForItemAtIndexPath:");
    table.add<&NamedRows::size>("collectionView:layout:sizeForItemAtIndexPath:");
  }
};

/// A table as the history speaks to it.
struct Table {
  using View = UITableView;
  static Ref<View> make(const Ref<NSObject>& source) {
    const auto table = platform::make<UITableView>();
    table->registerClass<UITableViewCell>("row");
    table->setDataSource(source);
    table->setDelegate(source);
    return table;
  }
  static constexpr auto animation = UITableViewRowAnimation::automatic;
  static void insert(View& view, const std::vector<IndexPath>& paths) { view.insertRows(paths, animation); }
  static void erase(View& view, const std::vector<IndexPath>& paths) { view.deleteRows(paths, animation); }
  static void reload(View& view, const std::vector<IndexPath>& paths) { view.reloadRows(paths, animation); }
  static void move(View& view, IndexPath from, IndexPath to) { view.moveRow(from, to); }
  static void insertSection(View& view, std::int64_t section) { view.insertSections({section}, animation); }
  static void eraseSection(View& view, std::int64_t section) { view.deleteSections({section}, animation); }
  static void reloadSection(View& view, std::int64_t section) { view.reloadSections({section}, animation); }
  static void select(View& view, IndexPath path) { view.selectRow(path, false, UITableViewScrollPosition::none); }
  static void deselect(View& view, IndexPath path) { view.deselectRow(path, false); }
  static std::vector<IndexPath> selected(const View& view) { return view.indexPathsForSelectedRows(); }
  static std::vector<IndexPath> visible(const View& view) { return view.indexPathsForVisibleRows(); }
  static Ref<UIView> cell(const View& view, IndexPath path) { return view.cellForRowAtIndexPath(path); }
  static CGRect rect(const View& view, IndexPath path) { return view.rectForRowAtIndexPath(path); }
};

/// A collection as the history speaks to it.
struct Collection {
  using View = UICollectionView;
  static Ref<View> make(const Ref<NSObject>& source) {
    const auto view = platform::make<UICollectionView>();
    view->registerClass<UICollectionViewCell>("item");
    view->setDataSource(source);
    view->setDelegate(source);
    return view;
  }
  static void insert(View& view, const std::vector<IndexPath>& paths) { view.insertItems(paths); }
  static void erase(View& view, const std::vector<IndexPath>& paths) { view.deleteItems(paths); }
  static void reload(View& view, const std::vector<IndexPath>& paths) { view.reloadItems(paths); }
  static void move(View& view, IndexPath from, IndexPath to) { view.moveItem(from, to); }
  static void insertSection(View& view, std::int64_t section) { view.insertSections({section}); }
  static void eraseSection(View& view, std::int64_t section) { view.deleteSections({section}); }
  static void reloadSection(View& view, std::int64_t section) { view.reloadSections({section}); }
  static void select(View& view, IndexPath path) { view.selectItem(path, false, UICollectionViewScrollPosition::none); }
  static void deselect(View& view, IndexPath path) { view.deselectItem(path, false); }
  static std::vector<IndexPath> selected(const View& view) { return view.indexPathsForSelectedItems(); }
  static std::vector<IndexPath> visible(const View& view) { return view.indexPathsForVisibleItems(); }
  static Ref<UIView> cell(const View& view, IndexPath path) { return view.cellForItemAtIndexPath(path); }
  static CGRect rect(const View& view, IndexPath path) {
    return view.collectionViewLayout()->frameForItem(path).value_or(CGRect());
  }
};

template <class List>
class ListHistoryTest : public AppFixture {
 protected:
  ListHistoryTest() {
    for (int section = 0; section < 3; ++section) {
      names.emplace_back();
      for (int i = 0; i < 150; ++i) names.back().push_back(newName());
    }
    view = List::make(source);
    view->setFrame({0, 100, 390, 500});
    view->setAllowsMultipleSelection(true);
    content()->addSubview(view);
    settle();
  }
  std::size_t any(std::size_t count) { return random() % count; }
  std::string newName() { return "name " + std::to_string(++made); }
  static IndexPath path(std::size_t row, std::size_t section) {
    return {static_cast<std::int64_t>(row), static_cast<std::int64_t>(section)};
  }
  void forget(const std::vector<std::string>& gone) {
    for (const std::string& name : gone) chosen.erase(name);
  }

  /// Some rows of a section go, then some come, as one change.
  void exchangeRows(std::size_t section) {
    std::vector<std::string>& rows = names[section];
    std::set<std::size_t> gone;
    for (std::size_t i = any(4); i > 0 && rows.size() > gone.size(); --i) gone.insert(any(rows.size()));
    std::vector<IndexPath> deleted;
    for (auto row = gone.rbegin(); row != gone.rend(); ++row) {
      deleted.push_back(path(*row, section));
      forget({rows[*row]});
      rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*row));
    }
    const std::size_t first = any(rows.size() + 1);
    std::vector<IndexPath> inserted;
    for (std::size_t i = any(rows.size() < 400 ? 5 : 1); i > 0; --i) {
      inserted.push_back(path(first + inserted.size(), section));
      rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(first), newName());
    }
    view->performBatchUpdates([&] {
      List::erase(*view, deleted);
      List::insert(*view, inserted);
    });
  }
  void moveRow() {
    const std::size_t from = any(names.size());
    const std::size_t to = any(names.size());
    if (names[from].empty()) return;
    const std::size_t row = any(names[from].size());
    const std::string name = names[from][row];
    names[from].erase(names[from].begin() + static_cast<std::ptrdiff_t>(row));
    const std::size_t place = any(names[to].size() + 1);
    names[to].insert(names[to].begin() + static_cast<std::ptrdiff_t>(place), name);
    List::move(*view, path(row, from), path(place, to));
  }
  void changeSections() {
    const std::size_t at = any(names.size());
    const auto section = static_cast<std::int64_t>(at);
    switch (any(3)) {
      case 0:
        if (names.size() < 2) return;
        forget(names[at]);
        names.erase(names.begin() + section);
        return List::eraseSection(*view, section);
      case 1:
        if (names.size() > 5) return;
        names.insert(names.begin() + section, std::vector<std::string>{newName(), newName()});
        return List::insertSection(*view, section);
      default:
        forget(names[at]);
        names[at].resize(std::min<std::size_t>(names[at].size(), 60));
        names[at].push_back(newName());
        return List::reloadSection(*view, section);
    }
  }
  void step() {
    const std::size_t section = any(names.size());
    const std::size_t kind = any(20);
    if (kind < 8) return exchangeRows(section);
    if (kind < 11) return moveRow();
    if (kind == 11) return changeSections();
    if (kind == 12) return view->setContentOffset({0, static_cast<double>(any(3000))}, any(2) == 0);
    if (kind == 13) return advance(static_cast<double>(any(4)) * 0.1);
    if (names[section].empty()) return;
    const IndexPath at = path(any(names[section].size()), section);
    std::string& name = names[section][static_cast<std::size_t>(at.row())];
    if (kind == 14) {
      name = newName();
      chosen.erase(name);
      const bool wasChosen = isChosen(at);
      List::reload(*view, {at});
      if (wasChosen) List::deselect(*view, at);
      rebuildChosen();
    } else if (kind == 15 || kind == 16) {
      chosen.insert(name);
      List::select(*view, at);
    } else if (kind == 17) {
      chosen.erase(name);
      List::deselect(*view, at);
    }
  }
  bool isChosen(IndexPath at) const {
    const std::vector<IndexPath> all = List::selected(*view);
    return std::find(all.begin(), all.end(), at) != all.end();
  }
  /// After a row took another name, the old one is nobody's.
  void rebuildChosen() {
    std::set<std::string> there;
    for (const auto& section : names) there.insert(section.begin(), section.end());
    std::erase_if(chosen, [&](const std::string& name) { return !there.contains(name); });
  }

  void expectWhatANewListWouldBe() {
    advance(1);
    const Ref<typename List::View> fresh = List::make(source);
    fresh->setFrame(view->frame());
    content()->insertSubview(fresh, 0);
    settle();
    fresh->setContentOffset(view->contentOffset(), false);
    settle();
    EXPECT_NEAR(view->contentSize().height, fresh->contentSize().height, 1e-6);
    for (std::size_t section = 0; section < names.size(); ++section) {
      for (std::size_t row = 0; row < names[section].size(); ++row) {
        const CGRect is = List::rect(*view, path(row, section));
        const CGRect should = List::rect(*fresh, path(row, section));
        ASSERT_NEAR(is.minY(), should.minY(), 1e-6) << names[section][row];
        ASSERT_EQ(is.size, should.size);
        ASSERT_EQ(is.minX(), should.minX());
      }
    }
    const std::vector<IndexPath> visible = List::visible(*view);
    EXPECT_EQ(visible, List::visible(*fresh));
    for (const IndexPath at : visible) {
      const Ref<UIView> cell = List::cell(*view, at);
      ASSERT_NE(cell, nullptr);
      EXPECT_EQ(cell->accessibilityLabel(), nameAt(names, at));
      EXPECT_EQ(cell->superview(), view);
      EXPECT_EQ(cell->alpha(), 1);
      EXPECT_NEAR(cell->frame().minY(), List::rect(*view, at).minY(), 1e-6);
    }
    std::set<std::string> selected;
    for (const IndexPath at : List::selected(*view)) selected.insert(nameAt(names, at));
    EXPECT_EQ(selected, chosen);
    fresh->removeFromSuperview();
  }

  std::mt19937 random{42};
  int made = 0;
  Names names;
  std::set<std::string> chosen;
  Ref<NamedRows> source = make<NamedRows>(names);
  Ref<typename List::View> view;
};

using Lists = testing::Types<Table, Collection>;
TYPED_TEST_SUITE(ListHistoryTest, Lists);

TYPED_TEST(ListHistoryTest, IsAfterThousandsOfChangesWhatANewListOfItsDataWouldBe) {
  for (int step = 0; step < 3000; ++step) {
    this->step();
    if (step % 150 != 149) continue;
    SCOPED_TRACE(step);
    this->expectWhatANewListWouldBe();
    if (this->HasFailure()) return;
  }
}

}  // namespace
}  // namespace platform::test
