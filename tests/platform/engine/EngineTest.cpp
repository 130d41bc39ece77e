#include <clocale>
#include <thread>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/Engine.h"
#include "platform/engine/Painter.h"

namespace platform {
namespace {

class NoDelegate : public EngineWindowDelegate {
  void windowTouched(const WindowTouch&) override {}
  void windowKeyPressed(const WindowKey&) override {}
  void windowScrolled(const WindowScroll&) override {}
  void windowClosed() override {}
};

TEST(Engine, TurnsTheMainQueueInOrderAndOnTimeUntilStopped) {
  std::vector<std::string> log;
  const double start = Clock::mediaTime();
  double later = 0;
  std::thread other;
  DispatchQueue::main().async([&] { log.push_back("now"); });
  DispatchQueue::main().asyncAfter(0.01, [&] {
    other = std::thread([&] {
      DispatchQueue::main().async([&] {
        log.push_back("from another thread");
        // However late the machine lets this happen, the end comes behind it.
        DispatchQueue::main().asyncAfter(0.01, [&] {
          later = Clock::mediaTime();
          log.push_back("later");
          Engine::shared().stop();
        });
      });
    });
  });
  Engine::shared().run();
  other.join();
  EXPECT_THAT(log, testing::ElementsAre("now", "from another thread", "later"));
  EXPECT_GE(later - start, 0.02);
}

TEST(Engine, CanBeRunAgainAndStoppedFromAnotherThread) {
  std::thread other;
  DispatchQueue::main().async([&] { other = std::thread([] { Engine::shared().stop(); }); });
  Engine::shared().run();
  other.join();
}

TEST(Engine, ShowsBitmapsInWindowsWithoutADisplay) {
  ASSERT_FALSE(Engine::shared().isDisplayAvailable()) << "tests run without one";
  NoDelegate delegate;
  const auto window = Engine::shared().openWindow({390, 844}, 2, "Tea", delegate);
  EXPECT_EQ(window->sizeInPoints(), (CGSize{390, 844}));
  Bitmap bitmap(780, 1688);
  window->present(bitmap, CGRect(0, 0, 780, 1688));
  window->present(bitmap, CGRect(-50, 1600, 5000, 5000));
  window->present(bitmap, CGRectZero);
  window->present(Bitmap(), CGRect(0, 0, 1, 1));
  window->setTitle("Tea, still");
  DispatchQueue::main().asyncAfter(0.02, [] { Engine::shared().stop(); });
  Engine::shared().run();
}

TEST(Engine, KeepsTextOnTheClipboard) {
  Engine::shared().setClipboardText("Grüner Tee 🍵");
  EXPECT_EQ(Engine::shared().clipboardText(), "Grüner Tee 🍵");
}

TEST(Engine, LeavesTheDecimalPointOfTheProcessAlone) {
  (void)Engine::shared().isDisplayAvailable();
  EXPECT_STREQ(std::localeconv()->decimal_point, ".");
}

TEST(Canvas, CompositesBitmapsPixelByPixelOverOrAsAMask) {
  Bitmap ground(4, 1), stamp(2, 1);
  stamp.row(0)[0] = 0xFF00FF00;
  stamp.row(0)[1] = 0x80008000;
  {
    const auto canvas = Engine::shared().makeCanvas(ground);
    canvas->fill(CGRect(0, 0, 4, 1), UIColor(0, 0, 1, 1));
    canvas->setTransform(CGAffineTransform::scale(3, 3));
    canvas->composite(stamp, 0, 0, 1, Canvas::Composite::over);
    canvas->composite(stamp, 2, 0, 1, Canvas::Composite::mask);
  }
  EXPECT_EQ(ground.pixel(0, 0), 0xFF00FF00u);
  EXPECT_EQ(ground.pixel(2, 0), 0xFF0000FFu);
  EXPECT_EQ(ground.pixel(3, 0) >> 24, 0x80u);
}

}  // namespace
}  // namespace platform
