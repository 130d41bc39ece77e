// One frame of a table that scrolls, laid out and drawn, for 100 rows and for 100,000: it should not know how long the
// list is. Beside it the same frame without scrolling.

#include <benchmark/benchmark.h>

#include "platform/animation/LayerRenderer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"

namespace {

using namespace platform;

constexpr CGSize screen{390, 844};
constexpr double scale = 2;
constexpr double stepOfFrame = 37;  // points: a quick flick

class Rows : public Object<Rows, NSObject> {
 public:
  explicit Rows(std::int64_t count) : count_(count) {}
  static void exportMethods(MethodTable<Rows>& table) {
    table.add<&Rows::count>("tableView:numberOfRowsInSection:").add<&Rows::cell>("tableView:cellForRowAtIndexPath:");
  }

 private:
  std::int64_t count(const Ref<UITableView>&, std::int64_t) { return count_; }
  Ref<UITableViewCell> cell(const Ref<UITableView>& table, const IndexPath& path) {
    auto cell = table->dequeueReusableCell("row");
    if (!cell) cell = make<UITableViewCell>(UITableViewCellStyle::subtitle, "row");
    cell->textLabel()->setText("Row " + std::to_string(path.row()));
    cell->detailTextLabel()->setText("and what there is to say of it");
    return cell;
  }
  std::int64_t count_;
};

struct List {
  explicit List(std::int64_t count, bool hasFixedHeight) : rows(make<Rows>(count)) {
    const auto controller = make<UIViewController>();
    window->setRootViewController(controller);
    table->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
    if (hasFixedHeight) table->setRowHeight(56);
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

/// Up and down around a place near the end, so that rows come and go all the time.
void scroll(benchmark::State& state, bool hasFixedHeight, bool draws) {
  const VirtualTime time;
  List list(state.range(0), hasFixedHeight);
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
  List list(state.range(0), true);
  for (auto _ : state) list.drawFrame();
}
void scrollAndDraw(benchmark::State& state) { scroll(state, true, true); }
void scrollAlone(benchmark::State& state) { scroll(state, true, false); }
void scrollMeasuredRows(benchmark::State& state) { scroll(state, false, false); }

BENCHMARK(drawFrameAtRest)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollAndDraw)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollAlone)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrollMeasuredRows)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
