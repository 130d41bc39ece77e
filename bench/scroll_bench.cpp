// What a table costs, for 100 rows and for 100,000: it should not know how long the list is. A frame that scrolls,
// beside the same frame at rest; rows that nobody has measured before, beside shaping their texts and nothing else;
// opening and appending, where the list of 100 is the reference.

#include <benchmark/benchmark.h>
#include <string>

#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"

namespace {

using namespace platform;

constexpr CGSize screen{390, 844};
constexpr double scale = 2;
constexpr double stepOfFrame = 37;  // points: a quick flick

/// Three or four lines that no other row has, so that no cache knows them.
std::string newText() {
  static std::int64_t made = 0;
  const std::string number = std::to_string(++made);
  return "Parcel " + number +
         ", which left the harbour with the morning tide, was weighed and sealed again at counter " + number +
         " and waits for somebody to fetch it before the shop closes.";
}

/// A row whose text decides its height by constraints, as hosts write them.
class TextRow : public Object<TextRow, UITableViewCell> {
 public:
  void initWithStyle(UITableViewCellStyle style, const std::string& identifier) override {
    Super::initWithStyle(style, identifier);
    label->setNumberOfLines(0);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    const Ref<UIView>& content = contentView();
    content->addSubview(label);
    NSLayoutConstraint::activateConstraints(
        {label->topAnchor().constraintEqualToAnchor(content->topAnchor(), 10),
         label->leadingAnchor().constraintEqualToAnchor(content->leadingAnchor(), 16),
         label->trailingAnchor().constraintEqualToAnchor(content->trailingAnchor(), -16),
         content->bottomAnchor().constraintEqualToAnchor(label->bottomAnchor(), 10)});
  }
  const Ref<UILabel> label = make<UILabel>();
};

class Rows : public Object<Rows, NSObject> {
 public:
  Rows(std::int64_t rows, bool wraps) : count(rows), wraps_(wraps) {}
  static void exportMethods(MethodTable<Rows>& table) {
    table.add<&Rows::numberOfRows>("tableView:numberOfRowsInSection:")
        .add<&Rows::cell>("tableView:cellForRowAtIndexPath:");
  }
  std::int64_t count;
  std::int64_t asked = 0;

 private:
  std::int64_t numberOfRows(const Ref<UITableView>&, std::int64_t) { return count; }
  Ref<UITableViewCell> cell(const Ref<UITableView>& table, const IndexPath& path) {
    ++asked;
    if (wraps_) {
      const auto cell = as<TextRow>(table->dequeueReusableCell("text", path));
      cell->label->setText(newText());
      return cell;
    }
    auto cell = table->dequeueReusableCell("row");
    if (!cell) cell = make<UITableViewCell>(UITableViewCellStyle::subtitle, "row");
    cell->textLabel()->setText("Row " + std::to_string(path.row()));
    cell->detailTextLabel()->setText("and what there is to say of it");
    return cell;
  }
  bool wraps_;
};

enum class Height { fixed, measured };

struct List {
  explicit List(std::int64_t count, Height height) : rows(make<Rows>(count, height == Height::measured)) {
    const auto controller = make<UIViewController>();
    window->setRootViewController(controller);
    table->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
    if (height == Height::fixed) table->setRowHeight(56);
    table->registerClass<TextRow>("text");
    table->setDataSource(rows);
    controller->view()->addSubview(table);
    window->makeKeyAndVisible();
    RunLoop::advance(1);
  }
  void drawFrame() {
    window->layoutIfNeeded();
    benchmark::DoNotOptimize(renderLayer(*window->layer(), screen, scale));
  }

  Ref<Rows> rows;
  Ref<UIWindow> window = make<UIWindow>(CGRect{{0, 0}, screen});
  Ref<UITableView> table = make<UITableView>(CGRect{{0, 0}, screen}, UITableViewStyle::plain);
};

// ---- Scrolling

/// Up and down around a place near the end, so that rows come and go all the time.
void scroll(benchmark::State& state, bool draws) {
  const VirtualTime time;
  List list(state.range(0), Height::fixed);
  const double middle = list.table->contentSize().height * 0.75;
  double offset = 0;
  double step = stepOfFrame;
  for (auto _ : state) {
    if (offset > 1000 || offset < -1000) step = -step;
    offset += step;
    list.table->setContentOffset({0, middle + offset}, false);
    if (draws) {
      list.drawFrame();
    } else {
      list.window->layoutIfNeeded();
    }
  }
}

void drawFrameAtRest(benchmark::State& state) {
  const VirtualTime time;
  List list(state.range(0), Height::fixed);
  for (auto _ : state) list.drawFrame();
}
void scrollAndDraw(benchmark::State& state) { scroll(state, true); }
void scrollAlone(benchmark::State& state) { scroll(state, false); }

BENCHMARK(drawFrameAtRest)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollAndDraw)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollAlone)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

// ---- Measuring: every step brings so many rows, of texts that were never seen.

constexpr std::int64_t rowsAStep = 8;

void scrollMeasuredRows(benchmark::State& state) {
  const VirtualTime time;
  List list(state.range(0), Height::measured);
  std::int64_t last = list.rows->count;
  const std::int64_t before = list.rows->asked;
  std::int64_t around = 0;  // rows that a beginning asks for, outside of the time
  for (auto _ : state) {
    if (last + rowsAStep >= list.rows->count) {  // behind the end of the list everything is new again
      state.PauseTiming();
      around -= list.rows->asked;
      list.table->reloadData();
      list.table->setContentOffset({0, 0}, false);
      list.window->layoutIfNeeded();
      last = list.table->indexPathsForVisibleRows().back().row();
      around += list.rows->asked;
      state.ResumeTiming();
    }
    last += rowsAStep;
    list.table->scrollToRow(IndexPath(last, 0), UITableViewScrollPosition::bottom, false);
    list.window->layoutIfNeeded();
  }
  state.counters["rows"] =
      static_cast<double>(list.rows->asked - before - around) / static_cast<double>(state.iterations());
}

/// The reference: as many new texts shaped and broken into lines once each.
void shapeTexts(benchmark::State& state) {
  TextStyle style;
  style.font = UIFont::systemFont(17);
  for (auto _ : state) {
    for (std::int64_t i = 0; i < rowsAStep; ++i) {
      benchmark::DoNotOptimize(TextLayout::measure(newText(), style, screen.width - 32));
    }
  }
}

BENCHMARK(shapeTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollMeasuredRows)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

// ---- Opening and appending

void openFirstTime(benchmark::State& state) {
  const VirtualTime time;
  for (auto _ : state) {
    List list(state.range(0), Height::measured);
    list.drawFrame();
    state.PauseTiming();
    list = List(0, Height::fixed);
    state.ResumeTiming();
  }
}

/// The same table once more: its cells are there.
void openAgain(benchmark::State& state) {
  const VirtualTime time;
  List list(state.range(0), Height::measured);
  for (auto _ : state) {
    list.table->reloadData();
    list.window->layoutIfNeeded();
  }
}

void append(benchmark::State& state, bool follows) {
  const VirtualTime time;
  List list(state.range(0), Height::measured);
  if (follows) list.table->scrollToRow(IndexPath(list.rows->count - 1, 0), UITableViewScrollPosition::bottom, false);
  list.window->layoutIfNeeded();
  for (auto _ : state) {
    const IndexPath path(list.rows->count++, 0);
    list.table->insertRows({path}, UITableViewRowAnimation::automatic);
    if (follows) list.table->scrollToRow(path, UITableViewScrollPosition::bottom, true);
    list.window->layoutIfNeeded();
    state.PauseTiming();
    RunLoop::advance(1);
    --list.rows->count;
    list.table->deleteRows({path}, UITableViewRowAnimation::none);
    list.window->layoutIfNeeded();
    state.ResumeTiming();
  }
}
/// One row at the end of the list, out of sight; the change runs as an animation.
void appendRow(benchmark::State& state) { append(state, false); }
/// The same at the end of the list, which goes on its way to the new row: a conversation.
void appendRowAndFollow(benchmark::State& state) { append(state, true); }

BENCHMARK(openFirstTime)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(openAgain)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendRow)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendRowAndFollow)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
