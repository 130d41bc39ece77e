// What recording the screen costs: the recorder's processor time beside that of the `ffmpeg` program, which encodes the
// very same pictures with the same settings in the same run, and what of it the main thread has to do. Pictures are of
// 780 x 1688 pixels, the video of 390 x 844; only pictures that differ from the one before are counted, on both sides.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/animation/CALayer.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/RPScreenRecorder.h"
#include "platform/uikit/UIKit.h"
#include "platform/uikit/application/ScreenDisplay.h"
#include "platform/uikit/application/TouchDriver.h"

namespace {

using namespace platform;
namespace fs = std::filesystem;

constexpr int width = 390, height = 844;
constexpr int rounds = 3;  // of each side, taking turns; the least counts

double timeOn(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// ---- What a person does

struct Shop {
  Shop() {
    controller->view()->setBackgroundColor(UIColor::white());
    window->setRootViewController(controller);
    field->setBorderStyle(UITextBorderStyle::roundedRect);
    field->setBackgroundColor(UIColor::white());
    table->setRowHeight(56);
    table->setDataSource(rows);
    controller->view()->addSubview(table);
    controller->view()->addSubview(field);
    window->makeKeyAndVisible();
    RunLoop::advance(1);
  }
  ~Shop() {
    window->endEditing(true);
    RunLoop::advance(1);
    window->setHidden(true);
  }

  class Rows : public Object<Rows, NSObject> {
   public:
    static void exportMethods(MethodTable<Rows>& table) {
      table.add<&Rows::count>("tableView:numberOfRowsInSection:").add<&Rows::cell>("tableView:cellForRowAtIndexPath:");
    }

   private:
    std::int64_t count(const Ref<UITableView>&, std::int64_t) { return 1000; }
    Ref<UITableViewCell> cell(const Ref<UITableView>& table, const IndexPath& path) {
      auto cell = table->dequeueReusableCell("row");
      if (!cell) cell = make<UITableViewCell>(UITableViewCellStyle::subtitle, "row");
      cell->textLabel()->setText("Tea no. " + std::to_string(path.row()) + " of the house");
      cell->detailTextLabel()->setText("from the hills beyond the river, picked in the " +
                                       std::to_string(path.row() % 60) + "th week");
      return cell;
    }
  };

  Ref<Rows> rows = make<Rows>();
  Ref<UIWindow> window = make<UIWindow>(CGRect(0, 0, width, height));
  Ref<UIViewController> controller = make<UIViewController>();
  Ref<UITableView> table = make<UITableView>(CGRect(0, 120, width, height - 120), UITableViewStyle::plain);
  Ref<UITextField> field = make<UITextField>(CGRect(20, 60, width - 40, 40));
  TouchDriver hands;
};

/// Ten keys a second on the software keyboard, whose keys light up.
void typeIntoField(Shop& shop) {
  shop.field->becomeFirstResponder();
  RunLoop::advance(1);
  for (const char letter : std::string("two pots of green tea and a box of biscuits")) {
    shop.hands.type(std::string(1, letter));
    RunLoop::advance(0.1);
  }
}

/// Every pixel of the list changes with every frame.
void scrollList(Shop& shop) {
  double offset = 0;
  for (int frame = 0; frame < 60; ++frame) {
    shop.table->setContentOffset({0, offset += 13}, false);
    RunLoop::advance(1.0 / 60);
  }
}

/// A card of half the screen's width goes back and forth.
void moveCard(Shop& shop) {
  const auto card = make<UIView>(CGRect(10, 300, 180, 240));
  card->setBackgroundColor(UIColor(0.1, 0.4, 0.3, 1));
  card->layer()->setCornerRadius(12);
  shop.controller->view()->addSubview(card);
  for (const double x : {200.0, 10.0}) {
    UIView::animateWithDuration(0.5, [&] { card->setFrame({x, 300, 180, 240}); });
    RunLoop::advance(0.75);
  }
  card->removeFromSuperview();
}

/// Some of each, with pauses, as a demonstration is.
void demonstrate(Shop& shop) {
  typeIntoField(shop);
  shop.window->endEditing(true);
  RunLoop::advance(1.5);
  for (int frame = 0; frame < 30; ++frame) {
    shop.table->setContentOffset({0, frame * 13.0}, false);
    RunLoop::advance(1.0 / 60);
  }
  RunLoop::advance(2);
  moveCard(shop);
  RunLoop::advance(2);
}

// ---- The recorder

struct Take {
  std::vector<CMSampleBufferRef> buffers;  // those that look different
  std::vector<double> mainSeconds;         // of each frame in which something changed
  double seconds = 0;
};

Ref<AVAssetWriterInput> makeInput() {
  return make<AVAssetWriterInput>(
      AVMediaTypeVideo,
      AVOutputSettings{{AVVideoCodecKey, AVVideoCodecTypeH264}, {AVVideoWidthKey, width}, {AVVideoHeightKey, height}});
}

Ref<AVAssetWriter> open(const std::string& file, const Ref<AVAssetWriterInput>& input) {
  const auto writer = *AVAssetWriter::writerWithURL(URL::fileURL(file), AVFileTypeMPEG4);
  writer->addInput(input);
  return writer;
}

/// With a video written meanwhile, so that pictures come and go as they do; they are kept for later when `keeps`.
Take record(const std::function<void(Shop&)>& act, bool keeps, const std::string& file) {
  const VirtualTime time;
  Shop shop;
  Take take;
  const Ref<ScreenDisplay> display = ScreenDisplay::shared();
  // Comes before the recorder, which then finds the picture made: what it takes is what the main thread has to do.
  const auto observer = display->addObserver([&](const CGRect& changed) {
    const double start = timeOn(CLOCK_THREAD_CPUTIME_ID);
    benchmark::DoNotOptimize(&display->picture());
    if (!changed.isEmpty()) take.mainSeconds.push_back(timeOn(CLOCK_THREAD_CPUTIME_ID) - start);
  });
  const auto recorder = make<RPScreenRecorder>();
  const auto input = makeInput();
  const auto writer = open(file, input);
  CMTime first, last;
  recorder->startCapture(
      [&](const CMSampleBufferRef& buffer, RPSampleBufferType, const auto&) {
        last = buffer->presentationTime();
        if (!first.isValid()) {
          first = last;
          writer->startWriting();
          writer->startSessionAtSourceTime(first);
        }
        input->appendSampleBuffer(buffer);
        if (!keeps) return;
        if (take.buffers.empty() || !take.buffers.back()->image().isSameAs(buffer->image()))
          take.buffers.push_back(buffer);
      },
      nullptr);
  RunLoop::settle();
  act(shop);
  recorder->stopCapture(nullptr);
  RunLoop::settle();
  display->removeObserver(observer);
  take.seconds = last.seconds() - first.seconds();
  return take;
}

/// Processor seconds of encoding and writing.
double encode(const Take& take, const std::string& file) {
  const VirtualTime time;
  const auto input = makeInput();
  const auto writer = open(file, input);
  const double start = timeOn(CLOCK_PROCESS_CPUTIME_ID);
  writer->startWriting();
  writer->startSessionAtSourceTime(take.buffers.front()->presentationTime());
  for (const CMSampleBufferRef& buffer : take.buffers) {
    input->appendSampleBuffer(buffer);
    RunLoop::settle();
  }
  writer->finishWriting([] {});
  RunLoop::settle();
  return timeOn(CLOCK_PROCESS_CPUTIME_ID) - start;
}

// ---- The program

struct ProgramTime {
  double all = 1e9;   // processor seconds
  double user = 1e9;  // those outside the system, which leaves out reading the pictures
};

Bitmap reduced(Bitmap picture, int reduction) {
  if (reduction == 1) return picture;
  Bitmap small(picture.width() / reduction, picture.height() / reduction);
  for (int y = 0; y < small.height(); ++y) {
    for (int x = 0; x < small.width(); ++x) small.row(y)[x] = picture.row(y * reduction)[x * reduction];
  }
  return small;
}

/// `reduction`: how many pixels of a side are one before the program sees them.
ProgramTime encodeByProgram(const Take& take, int reduction, const std::string& file) {
  const TiledBitmap& first = take.buffers.front()->image();
  const std::string size = std::to_string(first.width() / reduction) + "x" + std::to_string(first.height() / reduction);
  const std::string target = "scale=" + std::to_string(width) + ":" + std::to_string(height) + ":flags=area";
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return {};
  ::fcntl(ends[1], F_SETPIPE_SZ, 1 << 20);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(ends[0], 0);
    ::execlp("ffmpeg", "ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "bgra", "-s", size.c_str(), "-r",
             "60", "-i", "pipe:0", "-vf", target.c_str(), "-pix_fmt", "yuv420p", "-c:v", "libx264", "-preset",
             "ultrafast", "-tune", "zerolatency", "-crf", "20", "-g", "600", "-threads", "1", "-movflags", "+faststart",
             file.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ::close(ends[0]);
  for (const CMSampleBufferRef& buffer : take.buffers) {
    const Bitmap picture = reduced(buffer->image().bitmap(), reduction);
    const auto* bytes = reinterpret_cast<const char*>(picture.data());
    std::size_t left = picture.bytesPerRow() * static_cast<std::size_t>(picture.height());
    while (left > 0) {
      const ssize_t written = ::write(ends[1], bytes, left);
      if (written <= 0) break;
      bytes += written;
      left -= static_cast<std::size_t>(written);
    }
  }
  ::close(ends[1]);
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return {};
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return {seconds(usage.ru_utime) + seconds(usage.ru_stime), seconds(usage.ru_utime)};
}

void compare(benchmark::State& state, const std::function<void(Shop&)>& act) {
  const std::string folder = fs::temp_directory_path() / ("media_bench-" + std::to_string(::getpid()));
  fs::create_directories(folder);
  for (auto _ : state) {
    std::vector<double> mainSeconds = record(act, false, folder + "/live.mp4").mainSeconds;
    const Take take = record(act, true, folder + "/live.mp4");
    double own = 1e9;
    ProgramTime program, programOfHalves, start;  // `start`: one picture, which is mostly loading the program
    Take one;
    one.buffers = {take.buffers.front()};
    for (int round = 0; round < rounds; ++round) {
      own = std::min(own, encode(take, folder + "/own.mp4"));
      const auto least = [&](ProgramTime& known, const Take& of, int reduction) {
        const ProgramTime time = encodeByProgram(of, reduction, folder + "/program.mp4");
        known = {std::min(known.all, time.all), std::min(known.user, time.user)};
      };
      least(start, one, 1);
      least(programOfHalves, take, 2);
      least(program, take, 1);
    }
    const double firstFrame = mainSeconds.front();  // all of the picture, into new memory
    std::sort(mainSeconds.begin(), mainSeconds.end());
    double main = 0;
    for (const double seconds : mainSeconds) main += seconds;
    const auto frames = static_cast<double>(take.buffers.size());
    state.counters["pictures"] = frames;
    state.counters["seconds"] = take.seconds;
    state.counters["main_ms_median"] = mainSeconds[mainSeconds.size() / 2] * 1e3;
    state.counters["main_ms_first"] = firstFrame * 1e3;
    state.counters["main_ms_95th"] = mainSeconds[mainSeconds.size() * 95 / 100] * 1e3;
    state.counters["main_ms_mean"] = main / static_cast<double>(mainSeconds.size()) * 1e3;
    state.counters["own_ms_a_picture"] = (own + main) / frames * 1e3;
    state.counters["own_ms_a_second"] = (own + main) / take.seconds * 1e3;
    state.counters["program_ms_a_picture"] = program.all / frames * 1e3;
    state.counters["against_program"] = (own + main) / program.all;
    state.counters["against_program_once_loaded"] = (own + main) / (program.all - start.all);
    state.counters["against_its_user_time"] = (own + main) / (program.user - start.user);
    state.counters["against_program_given_halves"] = (own + main) / (programOfHalves.all - start.all);
    state.counters["own_kb"] = static_cast<double>(fs::file_size(folder + "/own.mp4")) / 1e3;
    state.counters["program_kb"] = static_cast<double>(fs::file_size(folder + "/program.mp4")) / 1e3;
  }
  fs::remove_all(folder);
}

BENCHMARK_CAPTURE(compare, typing, typeIntoField)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(compare, scrolling, scrollList)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(compare, moving, moveCard)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(compare, demonstration, demonstrate)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
