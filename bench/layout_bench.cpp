// What layout by constraints costs on a screen of a conversation (14 rows of wrapped text in bubbles), measured against
// the same screen laid out by hand-written frames in the same run. The counter `ratio` is constraints / frames.

#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>

#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/ViewLayout.h"
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

}  // namespace

BENCHMARK_MAIN();
