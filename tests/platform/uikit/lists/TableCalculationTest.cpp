#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "platform/uikit/lists/RowHeights.h"
#include "platform/uikit/lists/TableChanges.h"
#include "platform/uikit/lists/TableGeometry.h"

namespace platform::test {
namespace {

TEST(RowHeights, AgreeWithAPlainSumAfterManyChanges) {
  std::mt19937 random(7);
  for (const std::size_t count : {0u, 1u, 2u, 7u, 64u, 100u}) {
    std::vector<double> plain(count);
    for (double& height : plain) height = static_cast<double>(random() % 80) / 2;
    RowHeights rows(plain);
    for (int change = 0; change < 50 && count > 0; ++change) {
      const std::size_t row = random() % count;
      plain[row] = static_cast<double>(random() % 80) / 2;
      rows.setHeight(row, plain[row]);
    }
    double sum = 0;
    for (std::size_t row = 0; row < count; ++row) {
      EXPECT_EQ(rows.offset(row), sum);
      if (plain[row] > 0) {
        EXPECT_EQ(rows.rowAt(sum), row);
        EXPECT_EQ(rows.rowAt(sum + plain[row] - 0.25), row);
      }
      sum += plain[row];
    }
    EXPECT_EQ(rows.total(), sum);
    EXPECT_EQ(rows.rowAt(sum + 1), count);
    if (count > 0 && plain[0] > 0) {
      EXPECT_EQ(rows.rowAt(-5), 0u);
    }
  }
}

TEST(RowHeights, AgreeWithAPlainListThroughRowsThatComeAndGoAndCopiesKeepWhatTheyWere) {
  std::mt19937 random(3);
  std::vector<double> plain(300, 44);
  RowHeights rows(plain.size(), 44);
  std::vector<std::pair<RowHeights, std::vector<double>>> copies;
  for (int change = 0; change < 4000; ++change) {
    const double height = static_cast<double>(random() % 80) / 2;
    const bool isGrowing = change / 1000 % 2 == 0;
    const unsigned kind = random() % 4;
    if (plain.empty() || (isGrowing ? kind < 2 : kind < 1)) {
      const std::size_t row = random() % 3 == 0 ? plain.size() : random() % (plain.size() + 1);
      plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(row), height);
      rows.insert(row, height);
    } else if (kind < 3) {
      const std::size_t row = random() % plain.size();
      plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(row));
      rows.erase(row);
    } else {
      const std::size_t row = random() % plain.size();
      plain[row] = height;
      rows.setHeight(row, height);
    }
    if (change % 400 == 0) copies.emplace_back(rows, plain);
  }
  copies.emplace_back(rows, plain);
  for (const auto& [copy, expected] : copies) {
    ASSERT_EQ(copy.count(), expected.size());
    double sum = 0;
    for (std::size_t row = 0; row < expected.size(); ++row) {
      ASSERT_EQ(copy.height(row), expected[row]);
      ASSERT_EQ(copy.offset(row), sum);
      if (expected[row] > 0) {
        ASSERT_EQ(copy.rowAt(sum), row);
      }
      sum += expected[row];
    }
    EXPECT_EQ(copy.total(), sum);
    EXPECT_EQ(copy.rowAt(sum), expected.size());
  }
}

TEST(RowHeights, AgreeWithThemselvesWhereSumsAreRounded) {
  RowHeights rows(1000, 0.1);
  for (std::size_t row = 0; row < 1000; row += 7) rows.setHeight(row, 1.0 / 3);
  for (std::size_t row = 0; row < 1000; ++row) EXPECT_EQ(rows.rowAt(rows.offset(row)), row);
}

TableSection section(std::size_t rows, double height, double header = 0, double footer = 0) {
  TableSection made;
  made.rows = RowHeights(rows, height);
  made.measured.assign(rows, false);
  made.headerHeight = header;
  made.footerHeight = footer;
  return made;
}

TEST(TableGeometry, PlacesSectionsHeadersRowsAndFooters) {
  TableGeometry table;
  table.leading = 10;
  table.trailing = 7;
  table.setSections({section(2, 40, 20, 5), section(0, 40), section(3, 10, 30)});
  EXPECT_EQ(table.contentHeight(), 10 + 105 + 0 + 60 + 7);
  EXPECT_EQ(table.header(0).top, 10);
  EXPECT_EQ(table.row(IndexPath(1, 0)).top, 70);
  EXPECT_EQ(table.footer(0).top, 110);
  EXPECT_EQ(table.row(IndexPath(0, 2)).top, 145);
  EXPECT_EQ(table.rowAt(75), IndexPath(1, 0));
  EXPECT_EQ(table.rowAt(112), std::nullopt);
  EXPECT_EQ(table.rowAt(120), std::nullopt);
  EXPECT_EQ(table.firstRowBelow(112), IndexPath(0, 2));
  EXPECT_EQ(table.firstRowBelow(-100), IndexPath(0, 0));
  EXPECT_EQ(table.firstRowBelow(1000), std::nullopt);
  EXPECT_EQ(table.rowAfter(IndexPath(1, 0)), IndexPath(0, 2));
  EXPECT_EQ(table.rowAfter(IndexPath(2, 2)), std::nullopt);
  EXPECT_FALSE(table.contains(IndexPath(0, 1)));
  EXPECT_FALSE(table.contains(IndexPath(-1, 0)));
  EXPECT_FALSE(table.contains(IndexPath(0, 3)));
  EXPECT_TRUE(table.setMeasuredHeight(IndexPath(0, 0), 55));
  EXPECT_EQ(table.row(IndexPath(0, 2)).top, 160);
  EXPECT_TRUE(table.isMeasured(IndexPath(0, 0)));
  EXPECT_FALSE(table.setMeasuredHeight(IndexPath(0, 0), 55));
}

/// A table as people see it: rows with names that nothing else has.
using Sheet = std::vector<std::vector<int>>;

std::vector<std::int64_t> countsOf(const Sheet& sheet) {
  std::vector<std::int64_t> counts;
  for (const auto& rows : sheet) counts.push_back(static_cast<std::int64_t>(rows.size()));
  return counts;
}

TEST(TableChanges, CarryEveryRowWhereTheChangedDataHasIt) {
  std::mt19937 random(11);
  for (int round = 0; round < 300; ++round) {
    Sheet before;
    int name = 0;
    for (unsigned sections = 1 + random() % 3; sections > 0; --sections) {
      before.emplace_back();
      for (unsigned rows = random() % 6; rows > 0; --rows) before.back().push_back(name++);
    }
    TableChanges changes;
    Sheet after;
    for (std::size_t s = 0; s < before.size(); ++s) {
      if (random() % 6 == 0) {
        changes.deletedSections.insert(static_cast<std::int64_t>(s));
        continue;
      }
      after.emplace_back();
      for (std::size_t r = 0; r < before[s].size(); ++r) {
        if (random() % 4 == 0) {
          changes.deleted.insert(IndexPath(static_cast<std::int64_t>(r), static_cast<std::int64_t>(s)));
        } else {
          after.back().push_back(before[s][r]);
        }
      }
    }
    if (random() % 4 == 0) {
      const std::size_t at = random() % (after.size() + 1);
      after.insert(after.begin() + static_cast<std::ptrdiff_t>(at), std::vector<int>{name++, name++});
      changes.insertedSections.insert(static_cast<std::int64_t>(at));
    }
    for (std::size_t s = 0; s < after.size(); ++s) {
      if (changes.insertedSections.contains(static_cast<std::int64_t>(s))) continue;
      for (unsigned inserts = random() % 3; inserts > 0; --inserts) {
        after[s].insert(after[s].begin() + static_cast<std::ptrdiff_t>(random() % (after[s].size() + 1)), name++);
      }
    }
    const int firstNew = [&] {
      int count = 0;
      for (const auto& rows : before) count += static_cast<int>(rows.size());
      return count;
    }();
    for (std::size_t s = 0; s < after.size(); ++s) {
      if (changes.insertedSections.contains(static_cast<std::int64_t>(s))) continue;
      for (std::size_t r = 0; r < after[s].size(); ++r) {
        if (after[s][r] >= firstNew) {
          changes.inserted.insert(IndexPath(static_cast<std::int64_t>(r), static_cast<std::int64_t>(s)));
        }
      }
    }
    ASSERT_TRUE(changes.fit(countsOf(before), countsOf(after)));
    for (std::size_t s = 0; s < before.size(); ++s) {
      for (std::size_t r = 0; r < before[s].size(); ++r) {
        const IndexPath old(static_cast<std::int64_t>(r), static_cast<std::int64_t>(s));
        std::optional<IndexPath> expected;
        for (std::size_t t = 0; t < after.size(); ++t) {
          const auto found = std::find(after[t].begin(), after[t].end(), before[s][r]);
          if (found != after[t].end()) expected = IndexPath(found - after[t].begin(), static_cast<std::int64_t>(t));
        }
        EXPECT_EQ(changes.newPath(old), expected);
        if (expected) {
          EXPECT_EQ(changes.oldPath(*expected), old);
        }
      }
    }
    for (const IndexPath path : changes.inserted) EXPECT_EQ(changes.oldPath(path), std::nullopt);
  }
}

TEST(TableChanges, RefuseCountsThatDoNotFit) {
  const auto fits = [](auto&& announce, std::vector<std::int64_t> before, std::vector<std::int64_t> after) {
    TableChanges changes;
    announce(changes);
    return changes.fit(before, after);
  };
  const auto insertLast = [](TableChanges& changes) { changes.inserted.insert(IndexPath(2, 0)); };
  EXPECT_TRUE(fits(insertLast, {2}, {3}));
  EXPECT_FALSE(fits(insertLast, {2}, {2}));
  EXPECT_FALSE(fits(insertLast, {2}, {4}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.inserted.insert(IndexPath(9, 0)); }, {2}, {3}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.deleted.insert(IndexPath(2, 0)); }, {2}, {1}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.deleted.insert(IndexPath(-1, 0)); }, {2}, {1}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.deletedSections.insert(1); }, {2}, {}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.inserted.insert(IndexPath(0, 5)); }, {2}, {2}));
  EXPECT_FALSE(fits([](TableChanges&) {}, {2}, {2, 1}));
  EXPECT_TRUE(fits([](TableChanges& c) { c.reloadedSections.insert(0); }, {2}, {9}));
  EXPECT_FALSE(fits([](TableChanges& c) { c.reloaded.insert(IndexPath(2, 0)); }, {2}, {2}));
}

TEST(TableChanges, ARowOfAReloadedSectionComesFromNowhereAndGoesNowhere) {
  TableChanges changes;
  changes.reloadedSections.insert(1);
  changes.insertedSections.insert(0);
  ASSERT_TRUE(changes.fit({2, 2, 2}, {5, 2, 7, 2}));
  EXPECT_EQ(changes.oldSection(2), 1) << "the section itself goes on";
  for (const std::int64_t row : {0, 1, 6}) EXPECT_EQ(changes.oldPath(IndexPath(row, 2)), std::nullopt);
  EXPECT_EQ(changes.newPath(IndexPath(0, 1)), std::nullopt);
  EXPECT_EQ(changes.oldPath(IndexPath(1, 1)), IndexPath(1, 0)) << "its neighbours keep their rows";
  EXPECT_EQ(changes.oldPath(IndexPath(1, 3)), IndexPath(1, 2));
  EXPECT_EQ(changes.newPath(IndexPath(1, 2)), IndexPath(1, 3));
}

TEST(TableChanges, CarryAMovedRowToItsPlace) {
  TableChanges changes;
  changes.moved[IndexPath(0, 0)] = IndexPath(2, 0);
  ASSERT_TRUE(changes.fit({3}, {3}));
  EXPECT_EQ(changes.newPath(IndexPath(0, 0)), IndexPath(2, 0));
  EXPECT_EQ(changes.newPath(IndexPath(1, 0)), IndexPath(0, 0));
  EXPECT_EQ(changes.oldPath(IndexPath(2, 0)), IndexPath(0, 0));
}

}  // namespace
}  // namespace platform::test
