// What layout by constraints costs on a screen of a conversation (14 rows of wrapped text in bubbles), on long columns
// of rows, on many cells that have nothing to do with one another and on a column of labels, measured against the same
// views laid out by hand-written frames in the same run. The counter `ratio` is constraints / frames.

#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <random>

#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"
#include "platform/uikit/views/UIView.h"

namespace {

using namespace platform;
using Seconds = std::chrono::duration<double>;

constexpr std::size_t rowCount = 14;
constexpr std::array<std::size_t, 7> lengths{12, 70, 4, 33, 120, 25, 8};

/// Letters of fixed width that wrap: the cost of real text is left out of both sides.
class Letters : public Object<Letters, UIView> {
 public:
  void setCount(std::size_t count) {
    count_ = count;
    invalidateIntrinsicContentSize();
  }
  CGSize intrinsicContentSize() const override { return {10.0 * static_cast<double>(count_), 20}; }
  std::optional<double> intrinsicHeightForWidth(double width) const override {
    const double perLine = std::max(1.0, std::floor(width / 10));
    return 20 * std::max(1.0, std::ceil(static_cast<double>(count_) / perLine));
  }

 private:
  std::size_t count_ = 0;
};

struct Row {
  Ref<UIView> view, bubble, dots;
  Ref<Letters> text;
  bool isRemote;
};

struct Screen {
  Ref<UIView> root = make<UIView>(CGRect{0, 0, 390, 2000});
  std::vector<Row> rows;

  explicit Screen(bool byConstraints) {
    for (std::size_t i = 0; i < rowCount; ++i) {
      Row row{make<UIView>(), make<UIView>(), make<UIView>(), make<Letters>(), i % 3 == 0};
      root->addSubview(row.view);
      row.view->addSubview(row.bubble);
      row.view->addSubview(row.dots);
      row.bubble->addSubview(row.text);
      row.text->setCount(lengths[i % lengths.size()]);
      if (byConstraints) {
        for (const Ref<UIView>& view : {row.view, row.bubble, row.dots, Ref<UIView>(row.text)}) {
          view->setTranslatesAutoresizingMaskIntoConstraints(false);
        }
      }
      rows.push_back(row);
    }
  }

  void constrain() {
    Ref<UIView> above;
    for (const Row& row : rows) {
      const auto limit = row.text->widthAnchor().constraintLessThanOrEqualToConstant(250);
      limit->setPriority(750);
      NSLayoutConstraint::activateConstraints(
          {row.view->leadingAnchor().constraintEqualToAnchor(root->leadingAnchor()),
           row.view->trailingAnchor().constraintEqualToAnchor(root->trailingAnchor()),
           above ? row.view->topAnchor().constraintEqualToAnchor(above->bottomAnchor())
                 : row.view->topAnchor().constraintEqualToAnchor(root->topAnchor()),
           row.text->topAnchor().constraintEqualToAnchor(row.view->topAnchor(), 16),
           row.text->bottomAnchor().constraintEqualToAnchor(row.view->bottomAnchor(), -16),
           row.bubble->topAnchor().constraintEqualToAnchor(row.text->topAnchor(), -10),
           row.bubble->leadingAnchor().constraintEqualToAnchor(row.text->leadingAnchor(), -10),
           row.bubble->bottomAnchor().constraintEqualToAnchor(row.text->bottomAnchor(), 10),
           row.bubble->trailingAnchor().constraintEqualToAnchor(row.text->trailingAnchor(), 10),
           row.dots->centerXAnchor().constraintEqualToAnchor(row.bubble->centerXAnchor()),
           row.dots->centerYAnchor().constraintEqualToAnchor(row.bubble->centerYAnchor()),
           row.dots->widthAnchor().constraintEqualToConstant(52),
           row.dots->heightAnchor().constraintEqualToConstant(12), limit,
           row.isRemote ? row.text->leadingAnchor().constraintEqualToAnchor(row.view->leadingAnchor(), 32)
                        : row.text->trailingAnchor().constraintEqualToAnchor(row.view->trailingAnchor(), -32)});
      above = row.view;
    }
  }

  void placeByHand() {
    const double width = root->bounds().width();
    double y = 0;
    for (const Row& row : rows) {
      const double textWidth = std::min(row.text->intrinsicContentSize().width, 250.0);
      const double textHeight = *row.text->intrinsicHeightForWidth(textWidth);
      const double left = row.isRemote ? 32 : width - 32 - textWidth;
      row.view->setFrame({0, y, width, textHeight + 32});
      row.bubble->setFrame({left - 10, 6, textWidth + 20, textHeight + 20});
      row.text->setFrame({10, 10, textWidth, textHeight});
      row.dots->setFrame({left + textWidth / 2 - 26, 16 + textHeight / 2 - 6, 52, 12});
      y += textHeight + 32;
    }
    root->layoutIfNeeded();
  }

  double checksum() const {
    double sum = 0;
    for (const Row& row : rows) {
      sum += row.view->frame().minY() + row.bubble->frame().minX() * 3 + row.text->frame().height() * 5 +
             row.dots->frame().minX() * 7 + row.dots->frame().minY();
    }
    return sum;
  }
};

template <class Work>
double timed(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return Seconds(std::chrono::steady_clock::now() - start).count();
}

/// Runs the same change on both screens and reports what constraints cost, absolutely and as a ratio.
template <class Constrained, class ByHand>
void compare(benchmark::State& state, Screen& constrained, Screen& byHand, const Constrained& a, const ByHand& b) {
  double constraints = 0;
  double frames = 0;
  for (auto _ : state) {
    frames += timed(b);
    const double cost = timed(a);
    constraints += cost;
    state.SetIterationTime(cost);
  }
  if (constrained.checksum() != byHand.checksum()) state.SkipWithError("the two layouts differ");
  state.counters["ratio"] = constraints / frames;
}

void firstLayout(benchmark::State& state) {
  double constraints = 0;
  double frames = 0;
  std::size_t count = 0;
  for (auto _ : state) {
    Screen byHand(false);
    frames += timed([&] { byHand.placeByHand(); });
    Screen screen(true);
    const double cost = timed([&] {
      screen.constrain();
      screen.root->layoutIfNeeded();
    });
    constraints += cost;
    state.SetIterationTime(cost);
    count = ViewLayout::engineOf(*screen.root)->solver().constraintCount();
    if (screen.checksum() != byHand.checksum()) state.SkipWithError("the two layouts differ");
  }
  state.counters["ratio"] = constraints / frames;
  state.counters["constraints"] = static_cast<double>(count);
}
BENCHMARK(firstLayout)->UseManualTime()->Unit(benchmark::kMicrosecond);

void rotation(benchmark::State& state) {
  Screen constrained(true);
  Screen byHand(false);
  constrained.constrain();
  constrained.root->layoutIfNeeded();
  byHand.placeByHand();
  int turn = 0;
  const auto next = [&] { return turn % 2 == 0 ? 844.0 : 390.0; };
  compare(
      state, constrained, byHand,
      [&] {
        constrained.root->setFrame({0, 0, next(), 2000});
        constrained.root->layoutIfNeeded();
        ++turn;
      },
      [&] {
        byHand.root->setFrame({0, 0, next(), 2000});
        byHand.placeByHand();
      });
}
BENCHMARK(rotation)->UseManualTime()->Unit(benchmark::kMicrosecond);

void oneTextGrows(benchmark::State& state) {
  Screen constrained(true);
  Screen byHand(false);
  constrained.constrain();
  constrained.root->layoutIfNeeded();
  byHand.placeByHand();
  std::size_t turn = 0;
  compare(
      state, constrained, byHand,
      [&] {
        constrained.rows[4].text->setCount(20 + (turn++ % 5) * 20);
        constrained.root->layoutIfNeeded();
      },
      [&] {
        byHand.rows[4].text->setCount(20 + (turn % 5) * 20);
        byHand.placeByHand();
      });
}
BENCHMARK(oneTextGrows)->UseManualTime()->Unit(benchmark::kMicrosecond);

void rowHeight(benchmark::State& state) {
  const Ref<UIView> cell = make<UIView>(CGRect{0, 0, 390, 44});
  const auto text = make<Letters>();
  text->setCount(70);
  text->setTranslatesAutoresizingMaskIntoConstraints(false);
  cell->addSubview(text);
  const auto limit = text->widthAnchor().constraintLessThanOrEqualToConstant(250);
  limit->setPriority(750);
  NSLayoutConstraint::activateConstraints({text->topAnchor().constraintEqualToAnchor(cell->topAnchor(), 16),
                                           text->bottomAnchor().constraintEqualToAnchor(cell->bottomAnchor(), -16),
                                           text->leadingAnchor().constraintEqualToAnchor(cell->leadingAnchor(), 32),
                                           limit});
  for (auto _ : state) benchmark::DoNotOptimize(cell->systemLayoutSizeFitting({390, 0}, 1000, 50));
}
BENCHMARK(rowHeight)->Unit(benchmark::kMicrosecond);

// ---- Columns

/// Rows one below the other. Without constraints the same views are placed by hand.
struct Column {
  Ref<UIView> root = make<UIView>(CGRect{0, 0, 390, 844});
  std::vector<Ref<UIView>> rows;
  std::vector<Ref<NSLayoutConstraint>> tops;

  Column(std::size_t count, bool byConstraints) {
    for (std::size_t i = 0; i < count; ++i) {
      const auto row = make<UIView>();
      if (byConstraints) row->setTranslatesAutoresizingMaskIntoConstraints(false);
      root->addSubview(row);
      rows.push_back(row);
    }
  }
  static double heightOf(std::size_t index) { return 40 + static_cast<double>(index % 5); }

  void constrain() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      tops.push_back(i == 0 ? rows[i]->topAnchor().constraintEqualToAnchor(root->topAnchor())
                            : rows[i]->topAnchor().constraintEqualToAnchor(rows[i - 1]->bottomAnchor(), 8));
      NSLayoutConstraint::activateConstraints(
          {tops.back(), rows[i]->leadingAnchor().constraintEqualToAnchor(root->leadingAnchor()),
           rows[i]->trailingAnchor().constraintEqualToAnchor(root->trailingAnchor()),
           rows[i]->heightAnchor().constraintEqualToConstant(heightOf(i))});
    }
  }
  void place(std::size_t from = 0) {
    double y = from == 0 ? 0 : rows[from - 1]->frame().maxY() + 8;
    for (std::size_t i = from; i < rows.size(); ++i) {
      const double height = from == 0 ? heightOf(i) : rows[i]->frame().height();
      rows[i]->setFrame({0, y, root->bounds().width(), height});
      y += height + 8;
    }
    root->layoutIfNeeded();
  }
  double checksum() const {
    double sum = 0;
    for (const Ref<UIView>& row : rows) sum += row->frame().minY() + row->frame().width();
    return sum;
  }
};

void columnFirstLayout(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double constraints = 0;
  double frames = 0;
  for (auto _ : state) {
    Column byHand(count, false);
    frames += timed([&] { byHand.place(); });
    Column column(count, true);
    const double cost = timed([&] {
      column.constrain();
      column.root->layoutIfNeeded();
    });
    constraints += cost;
    state.SetIterationTime(cost);
    if (column.checksum() != byHand.checksum()) state.SkipWithError("the two layouts differ");
  }
  state.counters["ratio"] = constraints / frames;
  state.counters["nanoseconds a row"] =
      1e9 * constraints / static_cast<double>(state.iterations()) / static_cast<double>(count);
}
BENCHMARK(columnFirstLayout)->Arg(100)->Arg(1000)->Arg(4000)->UseManualTime()->Unit(benchmark::kMicrosecond);

void columnMiddleRowRemoved(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double constraints = 0;
  double frames = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Column byHand(count, false);
    byHand.place();
    Column column(count, true);
    column.constrain();
    column.root->layoutIfNeeded();
    state.ResumeTiming();
    const auto middle = static_cast<std::ptrdiff_t>(count / 2);
    const auto take = [&](Column& from) {
      from.rows[count / 2]->removeFromSuperview();
      from.rows.erase(from.rows.begin() + middle);
    };
    frames += timed([&] {
      take(byHand);
      byHand.place(count / 2);
    });
    const double cost = timed([&] {
      take(column);
      column.rows[count / 2]
          ->topAnchor()
          .constraintEqualToAnchor(column.rows[count / 2 - 1]->bottomAnchor(), 8)
          ->setActive(true);
      column.root->layoutIfNeeded();
    });
    constraints += cost;
    state.SetIterationTime(cost);
    if (column.checksum() != byHand.checksum()) state.SkipWithError("the two layouts differ");
  }
  state.counters["ratio"] = constraints / frames;
}
BENCHMARK(columnMiddleRowRemoved)->Arg(1000)->Arg(4000)->UseManualTime()->Unit(benchmark::kMicrosecond);

void independentCells(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double constraints = 0;
  double frames = 0;
  for (auto _ : state) {
    Column byHand(count, false);
    frames += timed([&] {
      for (std::size_t i = 0; i < count; ++i) {
        byHand.rows[i]->setFrame({static_cast<double>(i % 10), static_cast<double>(i), 44, 60});
      }
      byHand.root->layoutIfNeeded();
    });
    Column cells(count, true);
    const double cost = timed([&] {
      for (std::size_t i = 0; i < count; ++i) {
        const Ref<UIView>& cell = cells.rows[i];
        const Ref<UIView>& root = cells.root;
        const auto wish = cell->widthAnchor().constraintEqualToConstant(20);
        wish->setPriority(750);
        NSLayoutConstraint::activateConstraints(
            {cell->leadingAnchor().constraintEqualToAnchor(root->leadingAnchor(), static_cast<double>(i % 10)),
             cell->topAnchor().constraintEqualToAnchor(root->topAnchor(), static_cast<double>(i)),
             cell->widthAnchor().constraintGreaterThanOrEqualToConstant(44), wish,
             cell->heightAnchor().constraintEqualToConstant(60),
             cell->trailingAnchor().constraintLessThanOrEqualToAnchor(root->trailingAnchor())});
      }
      cells.root->layoutIfNeeded();
    });
    constraints += cost;
    state.SetIterationTime(cost);
    if (cells.checksum() != byHand.checksum()) state.SkipWithError("the two layouts differ");
  }
  state.counters["ratio"] = constraints / frames;
}
BENCHMARK(independentCells)->Arg(1000)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// Labels below one another. The reference asks each for its size and places it. With `isTall` the column's height is
/// given too, so that all heights compete.
void stackOfLabels(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const auto makeLabels = [count] {
    std::vector<Ref<UIView>> labels;
    for (std::size_t i = 0; i < count; ++i) {
      const auto label = make<UILabel>();
      label->setText("Row " + std::to_string(i));
      labels.push_back(label);
    }
    return labels;
  };
  double constraints = 0;
  double frames = 0;
  for (auto _ : state) {
    const auto root = make<UIView>(CGRect{0, 0, 390, 844});
    const auto placed = makeLabels();
    for (const auto& label : placed) root->addSubview(label);
    frames += timed([&] {
      double y = 0;
      for (const auto& label : placed) {
        const double height = label->sizeThatFits({390, 0}).height;
        label->setFrame({0, y, 390, height});
        y += height + 4;
      }
      root->layoutIfNeeded();
    });
    const auto other = make<UIView>(CGRect{0, 0, 390, 844});
    const auto labels = makeLabels();
    const double cost = timed([&] {
      const auto stack = make<UIStackView>(labels);
      stack->setAxis(UILayoutAxis::vertical);
      stack->setSpacing(4);
      stack->setTranslatesAutoresizingMaskIntoConstraints(false);
      other->addSubview(stack);
      NSLayoutConstraint::activateConstraints({stack->topAnchor().constraintEqualToAnchor(other->topAnchor()),
                                               stack->leadingAnchor().constraintEqualToAnchor(other->leadingAnchor()),
                                               stack->widthAnchor().constraintEqualToConstant(390)});
      other->layoutIfNeeded();
    });
    constraints += cost;
    state.SetIterationTime(cost);
    if (labels.back()->frame() != placed.back()->frame()) state.SkipWithError("the two layouts differ");
  }
  state.counters["ratio"] = constraints / frames;
}
BENCHMARK(stackOfLabels)->Arg(30)->Arg(300)->UseManualTime()->Unit(benchmark::kMicrosecond);

// ---- Hours

/// Constraints that come, move and go on 40 views, with nothing beside it: the time of one change and its solving.
void longHistory(benchmark::State& state) {
  std::mt19937 random(7);
  const auto pick = [&](std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random); };
  LayoutSolver solver;
  std::vector<LayoutVariable> unknowns;
  for (int i = 0; i < 80; ++i) unknowns.push_back(solver.addVariable());
  std::vector<LayoutConstraintId> active;
  std::uint64_t rank = 0;
  for (auto _ : state) {
    if (active.size() < 90 && (active.size() < 60 || pick(2) == 0)) {
      LinearExpression difference(unknowns[pick(80)]);
      difference.add(LinearExpression(unknowns[pick(80)]), pick(3) == 0 ? -0.5 : -1);
      difference.constant = static_cast<double>(pick(100)) - 50;
      active.push_back(solver.addConstraint(
          {difference, static_cast<NSLayoutRelation>(static_cast<int>(pick(3)) - 1), pick(2) == 0 ? 1000.0 : 750.0},
          ++rank));
    } else if (const std::size_t at = pick(active.size()); pick(2) == 0) {
      solver.setConstant(active[at], static_cast<double>(pick(100)) - 50);
    } else {
      solver.removeConstraint(active[at]);
      active.erase(active.begin() + static_cast<std::ptrdiff_t>(at));
    }
    solver.solve();
  }
}
BENCHMARK(longHistory)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
