#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPixmap>
#include <QPointingDevice>
#include <QRasterWindow>
#include <QScreen>
#include <QTest>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWindow>
#include <cstdlib>
#include <gmock/gmock.h>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/Engine.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"

// The window system's own events, sent to a window that nobody sees: what a person's hand really does arrives so.

namespace platform {
namespace {

using testing::ElementsAre;

/// Writes down what it is told.
class Told final : public EngineWindowDelegate {
 public:
  void windowTouched(const WindowTouch& touch) override {
    static constexpr const char* names[] = {"began", "moved", "ended", "cancelled"};
    add(std::to_string(touch.identifier) + " " + names[static_cast<int>(touch.phase)] + at(touch.location));
  }
  void windowKeyPressed(const WindowKey& key) override {
    std::string line = "key " + std::to_string(static_cast<int>(key.name)) + " '" + key.text + "'";
    if (key.shift) line += " shift";
    if (key.command) line += " command";
    if (key.option) line += " option";
    add(line);
  }
  void windowScrolled(const WindowScroll& scroll) override {
    add("scroll" + at(scroll.location) + " by" + at({scroll.delta.dx, scroll.delta.dy}));
  }
  void windowClosed() override { add("closed"); }
  std::vector<std::string> taken() { return std::exchange(log_, {}); }

 private:
  static std::string at(CGPoint point) {
    return " " + std::to_string(std::lround(point.x)) + "," + std::to_string(std::lround(point.y));
  }
  void add(std::string line) { log_.push_back(std::move(line)); }
  std::vector<std::string> log_;
};

/// What a person sees in a place of the window.
QColor colourAt(QWindow* window, CGPoint point) {
  const QImage seen = window->screen()->grabWindow(window->winId()).toImage();
  if (seen.isNull()) return {};  // the window is not there yet
  const double pixels = seen.width() / static_cast<double>(window->width());
  return seen.pixelColor(static_cast<int>(point.x * pixels), static_cast<int>(point.y * pixels));
}

QWindow* newestWindow() { return QGuiApplication::allWindows().back(); }

void sendMouse(QWindow* window, QEvent::Type type, QPointF point, Qt::MouseButton button,
               Qt::MouseButtons buttons = Qt::LeftButton) {
  QMouseEvent event(type, point, window->mapToGlobal(point), button, buttons, Qt::NoModifier);
  QCoreApplication::sendEvent(window, &event);
}

bool sendKey(QWindow* window, int key, const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
  QCoreApplication::sendEvent(window, &event);
  return event.isAccepted();
}

/// A window of 200 x 300 points, small enough to be shown at full size on any screen.
class QtWindowTest : public testing::Test {
 protected:
  QtWindowTest() : engineWindow_(Engine::shared().openWindow({200, 300}, 2, "Tea", told_)), window_(newestWindow()) {}
  std::vector<std::string> told() { return told_.taken(); }
  Told told_;
  std::unique_ptr<EngineWindow> engineWindow_;
  QWindow* window_;
};

/// The paint event that the window system would send for a part of a window.
void sendPaint(QWindow* window, const QRegion& region) {
  struct Painted : QRasterWindow {
    using QRasterWindow::paintEvent;
  };
  QPaintEvent event(region);
  (static_cast<QRasterWindow*>(window)->*&Painted::paintEvent)(&event);
}

TEST_F(QtWindowTest, PaintsInsideTheRegionThatIsToBePaintedAndNowhereElse) {
  const auto show = [this](std::uint32_t color) {
    Bitmap bitmap(400, 600);
    std::fill_n(bitmap.data(), 400 * 600, color);
    engineWindow_->present(bitmap, {0, 0, 400, 600});
  };
  constexpr QRgb red = 0xFFFF0000, blue = 0xFF0000FF;
  show(red);
  QCoreApplication::processEvents();
  show(blue);
  const QRegion region = QRegion(20, 30, 40, 50) + QRegion(100, 200, 10, 10);
  sendPaint(window_, region);

  const QImage shown = window_->screen()->grabWindow(window_->winId()).toImage();
  ASSERT_EQ(shown.size(), QSize(200, 300));
  int wrong = 0;
  for (int y = 0; y < shown.height(); ++y) {
    for (int x = 0; x < shown.width(); ++x) wrong += shown.pixel(x, y) != (region.contains(QPoint(x, y)) ? blue : red);
  }
  EXPECT_EQ(wrong, 0);
}

TEST_F(QtWindowTest, TakesTheLeftMouseButtonForAFinger) {
  sendMouse(window_, QEvent::MouseMove, {5, 5}, Qt::NoButton, Qt::NoButton);
  sendMouse(window_, QEvent::MouseButtonPress, {5, 5}, Qt::RightButton, Qt::RightButton);
  sendMouse(window_, QEvent::MouseButtonRelease, {5, 5}, Qt::LeftButton, Qt::NoButton);
  EXPECT_THAT(told(), ElementsAre()) << "moving, other buttons and stray releases touch nothing";
  sendMouse(window_, QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton);
  sendMouse(window_, QEvent::MouseButtonPress, {11, 20}, Qt::LeftButton);
  sendMouse(window_, QEvent::MouseMove, {30, 40}, Qt::NoButton);
  sendMouse(window_, QEvent::MouseButtonRelease, {30, 40}, Qt::RightButton);
  sendMouse(window_, QEvent::MouseButtonRelease, {31, 41}, Qt::LeftButton, Qt::NoButton);
  EXPECT_THAT(told(), ElementsAre("0 began 10,20", "0 moved 30,40", "0 ended 31,41"));
}

TEST_F(QtWindowTest, CancelsATouchWhoseReleaseIsLost) {
  sendMouse(window_, QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton);
  sendMouse(window_, QEvent::MouseMove, {30, 40}, Qt::NoButton);
  window_->hide();  // minimised, or on another desktop: the window system lets go of the pointer
  QCoreApplication::processEvents();
  window_->show();
  QCoreApplication::processEvents();
  EXPECT_THAT(told(), ElementsAre("0 began 10,20", "0 moved 30,40", "0 cancelled 30,40"));
  sendMouse(window_, QEvent::MouseButtonPress, {11, 20}, Qt::LeftButton);
  sendMouse(window_, QEvent::MouseMove, {50, 60}, Qt::NoButton, Qt::NoButton);
  sendMouse(window_, QEvent::MouseMove, {70, 80}, Qt::NoButton, Qt::NoButton);
  sendMouse(window_, QEvent::MouseButtonRelease, {70, 80}, Qt::LeftButton, Qt::NoButton);
  EXPECT_THAT(told(), ElementsAre("0 began 11,20", "0 cancelled 11,20")) << "it moves with no button down";
}

TEST_F(QtWindowTest, DrawsAndTakesTouchesInTheMiddleOfARoomOfAnotherShape) {
  window_->setMinimumSize({1, 1});
  window_->setMaximumSize({2000, 2000});
  const auto touchedAt = [this](QSize size, QPointF point) {
    window_->resize(size);
    QCoreApplication::processEvents();
    sendMouse(window_, QEvent::MouseButtonPress, point, Qt::LeftButton);
    sendMouse(window_, QEvent::MouseButtonRelease, point, Qt::LeftButton, Qt::NoButton);
    return told().front();
  };
  EXPECT_EQ(touchedAt({600, 300}, {200, 0}), "0 began 0,0") << "200 points are empty at either side";
  EXPECT_EQ(touchedAt({600, 300}, {400, 300}), "0 began 200,300");
  EXPECT_EQ(touchedAt({400, 1000}, {400, 800}), "0 began 200,300")
      << "twice as large, 200 points empty above and below";
  EXPECT_EQ(touchedAt({100, 150}, {50, 75}), "0 began 100,150");
  EXPECT_THAT(touchedAt({1, 1}, {0.5, 0.5}), testing::HasSubstr(",150")) << "no room is no trouble";
}

TEST_F(QtWindowTest, TellsFingersApartAndCancelsThem) {
  static QPointingDevice* const hand = QTest::createTouchDevice();
  QTest::touchEvent(window_, hand).press(0, QPoint(10, 20));
  QTest::touchEvent(window_, hand).stationary(0).press(1, QPoint(50, 60));
  QTest::touchEvent(window_, hand).move(0, QPoint(12, 20)).release(1, QPoint(50, 60));
  const std::vector<std::string> log = told();
  ASSERT_THAT(log, testing::SizeIs(4)) << "a resting finger says nothing";
  const auto rest = [](const std::string& line) { return line.substr(line.find(' ')); };
  EXPECT_THAT((std::vector{rest(log[0]), rest(log[1]), rest(log[2]), rest(log[3])}),
              ElementsAre(" began 10,20", " began 50,60", " moved 12,20", " ended 50,60"));
  EXPECT_EQ(log[0].front(), log[2].front());
  EXPECT_EQ(log[1].front(), log[3].front());
  EXPECT_NE(log[0].front(), log[1].front());
  EXPECT_NE(log[0].front(), '0') << "the mouse's";

  QTouchEvent cancel(QEvent::TouchCancel, hand, Qt::NoModifier, {{0, QEventPoint::Stationary, {12, 20}, {12, 20}}});
  QCoreApplication::sendEvent(window_, &cancel);
  EXPECT_TRUE(cancel.isAccepted()) << "else the same touch comes again as a mouse";
  EXPECT_THAT(told(), ElementsAre(testing::HasSubstr(" cancelled ")));
}

TEST_F(QtWindowTest, ScrollsByNotchesOfAWheelAndByPointsOfATouchPad) {
  const auto send = [this](QPoint pixels, QPoint angle) {
    QWheelEvent event({10, 20}, {10, 20}, pixels, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window_, &event);
  };
  send({}, {0, -120});
  send({3, -7}, {24, -56});
  EXPECT_THAT(told(), ElementsAre("scroll 10,20 by 0,-40", "scroll 10,20 by 3,-7"));
}

TEST_F(QtWindowTest, NamesKeysAndTellsWhatTheyType) {
  const struct {
    int key;
    WindowKey::Name name;
  } named[] = {{Qt::Key_Return, WindowKey::Name::returnKey},
               {Qt::Key_Enter, WindowKey::Name::returnKey},
               {Qt::Key_Tab, WindowKey::Name::tab},
               {Qt::Key_Backspace, WindowKey::Name::backspace},
               {Qt::Key_Delete, WindowKey::Name::forwardDelete},
               {Qt::Key_Escape, WindowKey::Name::escape},
               {Qt::Key_Left, WindowKey::Name::left},
               {Qt::Key_Right, WindowKey::Name::right},
               {Qt::Key_Up, WindowKey::Name::up},
               {Qt::Key_Down, WindowKey::Name::down},
               {Qt::Key_Home, WindowKey::Name::home},
               {Qt::Key_End, WindowKey::Name::end}};
  for (const auto& [key, name] : named) {
    sendKey(window_, key, "\x1b");  // what they type is a control character
    EXPECT_THAT(told(), ElementsAre("key " + std::to_string(static_cast<int>(name)) + " ''")) << key;
  }
  sendKey(window_, Qt::Key_Backtab, "\t", Qt::ShiftModifier);
  EXPECT_THAT(told(), ElementsAre("key 2 '' shift"));
  sendKey(window_, Qt::Key_A, "ä");
  sendKey(window_, Qt::Key_C, "\x03", Qt::ControlModifier);
  sendKey(window_, Qt::Key_E, "€", Qt::AltModifier);
  EXPECT_THAT(told(), ElementsAre("key 0 'ä'", "key 0 'c' command", "key 0 '€' option"));
  sendKey(window_, Qt::Key_F5, "");
  sendKey(window_, Qt::Key_Shift, "", Qt::ShiftModifier);
  EXPECT_THAT(told(), ElementsAre()) << "keys without a name that type nothing";
}

TEST_F(QtWindowTest, TakesWhatAnInputMethodHasComposed) {
  QInputMethodQueryEvent query(Qt::ImEnabled);
  QCoreApplication::sendEvent(window_, &query);
  EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
  QInputMethodEvent composing("に", {});
  QCoreApplication::sendEvent(window_, &composing);
  EXPECT_THAT(told(), ElementsAre()) << "not committed yet";
  QInputMethodEvent composed;
  composed.setCommitString("日本\n");
  QCoreApplication::sendEvent(window_, &composed);
  EXPECT_THAT(told(), ElementsAre("key 0 '日本'"));
}

TEST_F(QtWindowTest, ShowsWhatIsPresentedAndOfTheNextPictureOnlyWhatChanged) {
  const auto picture = [](int width, int height, std::uint32_t colour) {
    Bitmap bitmap(width, height);
    for (int y = 0; y < height; ++y) std::fill_n(bitmap.row(y), width, colour);
    return bitmap;
  };
  const auto shown = [this](CGPoint point) {
    QCoreApplication::processEvents();
    QEvent update(QEvent::UpdateRequest);  // what was asked to be painted is painted now, not at the screen's next beat
    QCoreApplication::sendEvent(window_, &update);
    return colourAt(window_, point).name().toStdString();
  };
  engineWindow_->setTitle("Coffee");
  EXPECT_EQ(window_->title(), "Coffee");
  EXPECT_EQ(engineWindow_->sizeInPoints(), (CGSize{200, 300}));
  EXPECT_EQ(shown({100, 150}), "#ffffff") << "nothing was presented yet";
  engineWindow_->present(Bitmap(), {});
  engineWindow_->present(picture(400, 600, 0xFFFF0000), {0, 0, 10, 10});
  EXPECT_EQ(shown({190, 290}), "#ff0000") << "the first picture is new everywhere, whatever is said to have changed";
  const Bitmap blue = picture(400, 600, 0xFF0000FF);
  engineWindow_->present(blue, {});
  EXPECT_EQ(shown({50, 50}), "#ff0000");
  engineWindow_->present(blue, {100.4, 200, 99, 1000});
  EXPECT_EQ(shown({75, 200}), "#0000ff");
  EXPECT_EQ(shown({75, 290}), "#0000ff");
  EXPECT_EQ(shown({20, 200}), "#ff0000") << "left of what changed";
  EXPECT_EQ(shown({110, 200}), "#ff0000") << "right of it";
  EXPECT_EQ(shown({75, 90}), "#ff0000") << "above it";
  engineWindow_->present(picture(200, 300, 0xFF00FF00), {0, 0, 1, 1});
  EXPECT_EQ(shown({190, 290}), "#00ff00") << "one of another size fills the window too";
}

TEST_F(QtWindowTest, AsksToBeClosedAndStays) {
  QEvent close(QEvent::Close);
  QCoreApplication::sendEvent(window_, &close);
  EXPECT_THAT(told(), ElementsAre("closed"));
  EXPECT_FALSE(close.isAccepted());
  EXPECT_TRUE(window_->isVisible());
}

class Counter : public Object<Counter, NSObject> {
 public:
  void press() { ++presses; }
  static void exportMethods(MethodTable<Counter>& table) { table.add<&Counter::press>("press"); }
  int presses = 0;
};

TEST(DesktopDeathTest, SaysSoWhenThereIsNoDisplay) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto runWithoutDisplay = [] {
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) qunsetenv(name);
    DispatchQueue::main().async([] { UIApplication::shared().terminate(); });
    std::_Exit(UIApplication::shared().run("Tea"));
  };
  EXPECT_EXIT(runWithoutDisplay(), testing::ExitedWithCode(1), "Tea: there is no display");
}

/// The way all of it takes through a running application.
class DesktopTest : public testing::Test {
 protected:
  /// Runs the application; the script runs once its window is there, then the application ends by the window's close.
  void run(std::function<void(QWindow*)> script) {
    DispatchQueue::main().async([script = std::move(script)] {
      QWindow* const window = newestWindow();
      script(window);
      QEvent close(QEvent::Close);
      QCoreApplication::sendEvent(window, &close);
    });
    EXPECT_EQ(UIApplication::shared().run("Desktop"), 0);
  }
  /// The same in steps: each runs again after a little while until it holds, then the next begins.
  void runUntil(std::vector<std::function<bool(QWindow*)>> steps) {
    QWindow* window = nullptr;
    std::size_t step = 0;
    int tries = 0;
    std::function<void()> turn = [&] {
      if (!window) window = newestWindow();
      while (step < steps.size() && steps[step](window)) ++step;
      if (step < steps.size() && ++tries < 1000) return void(DispatchQueue::main().asyncAfter(0.005, turn));
      QEvent close(QEvent::Close);
      QCoreApplication::sendEvent(window, &close);
    };
    DispatchQueue::main().async(turn);
    EXPECT_EQ(UIApplication::shared().run("Desktop"), 0);
    EXPECT_EQ(step, steps.size()) << "this step never held";
  }
};

TEST_F(DesktopTest, BringsMouseKeysWheelAndCloseToTheApplication) {
  const auto window = make<UIWindow>(UIScreen::main().bounds());
  const auto root = make<UIViewController>();
  const auto button = make<UIButton>(CGRect{20, 100, 100, 44});
  const auto field = make<UITextField>(CGRect{20, 160, 200, 44});
  const auto scroll = make<UIScrollView>(CGRect{0, 300, 390, 400});
  scroll->setContentSize({390, 2000});
  for (const Ref<UIView>& view : std::vector<Ref<UIView>>{button, field, scroll}) root->view()->addSubview(view);
  window->setRootViewController(root);
  window->makeKeyAndVisible();
  const auto counter = make<Counter>();
  button->addTarget(counter, sel("press"), UIControlEvents::touchUpInside);

  run([&](QWindow* desktop) {
    // The window may be smaller than the device: places in it shrink alike.
    const double zoom = desktop->width() / UIScreen::main().bounds().width();
    const auto click = [&](CGPoint point) {
      const QPointF at(point.x * zoom, point.y * zoom);
      sendMouse(desktop, QEvent::MouseButtonPress, at, Qt::LeftButton);
      sendMouse(desktop, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    };
    click({40, 120});
    EXPECT_EQ(counter->presses, 1);
    field->becomeFirstResponder();
    sendKey(desktop, Qt::Key_T, "t");
    sendKey(desktop, Qt::Key_E, "é");
    sendKey(desktop, Qt::Key_X, "x");
    sendKey(desktop, Qt::Key_Backspace, "\b");
    EXPECT_EQ(field->text(), "té");
    QWheelEvent wheel({50 * zoom, 400 * zoom}, {}, {}, {0, -240}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(desktop, &wheel);
    EXPECT_GT(scroll->contentOffset().y, 0);
    field->resignFirstResponder();
  });
  window->setHidden(true);
}

TEST_F(DesktopTest, ShowsFramesAsTheApplicationChanges) {
  const auto window = make<UIWindow>(UIScreen::main().bounds());
  const auto root = make<UIViewController>();
  root->view()->setBackgroundColor(UIColor(1, 0, 0, 1));
  const auto corner = make<UIView>(CGRect{0, 0, 100, 100});
  corner->setBackgroundColor(UIColor(0, 1, 0, 1));
  root->view()->addSubview(corner);
  window->setRootViewController(root);
  window->makeKeyAndVisible();
  const auto seen = [](QWindow* desktop, CGPoint point) {
    const double zoom = desktop->width() / UIScreen::main().bounds().width();
    return colourAt(desktop, {point.x * zoom, point.y * zoom}).name();
  };
  runUntil({[&](QWindow* desktop) {
              return seen(desktop, {50, 50}) == "#00ff00";
            },
            [&](QWindow* desktop) {
              EXPECT_EQ(desktop->title(), "Desktop");
              EXPECT_EQ(seen(desktop, {300, 300}), "#ff0000");
              corner->setFrame({250, 250, 100, 100});
              return true;
            },
            [&](QWindow* desktop) {
              return seen(desktop, {300, 300}) == "#00ff00";
            },
            [&](QWindow* desktop) {
              EXPECT_EQ(seen(desktop, {50, 50}), "#ff0000");
              return true;
            }});
  window->setHidden(true);
}

TEST_F(DesktopTest, KeysEditATextAndAFingerThatIsCancelledPressesNothing) {
  const auto window = make<UIWindow>(UIScreen::main().bounds());
  const auto root = make<UIViewController>();
  // A cancelled touch is told at the window's corner: the button lies there too, so that an ended one would press it.
  const auto button = make<UIButton>(CGRect{0, 0, 120, 150});
  const auto text = make<UITextView>(CGRect{20, 160, 300, 100});
  root->view()->addSubview(button);
  root->view()->addSubview(text);
  window->setRootViewController(root);
  window->makeKeyAndVisible();
  const auto counter = make<Counter>();
  button->addTarget(counter, sel("press"), UIControlEvents::touchUpInside);
  const struct {
    int key;
    const char* types;
    Qt::KeyboardModifiers modifiers;
    const char* text;
    int caret;
  } table[] = {
      {Qt::Key_A, "a", Qt::NoModifier, "a", 1},
      {Qt::Key_B, "b", Qt::NoModifier, "ab", 2},
      {Qt::Key_Return, "\r", Qt::NoModifier, "ab\n", 3},
      {Qt::Key_C, "c", Qt::NoModifier, "ab\nc", 4},
      {Qt::Key_Home, "", Qt::NoModifier, "ab\nc", 3},
      {Qt::Key_Up, "", Qt::NoModifier, "ab\nc", 0},
      {Qt::Key_Right, "", Qt::NoModifier, "ab\nc", 1},
      {Qt::Key_Delete, "\x7f", Qt::NoModifier, "a\nc", 1},
      {Qt::Key_Z, "\x1a", Qt::ControlModifier, "ab\nc", 1},
      {Qt::Key_Z, "\x1a", Qt::ControlModifier | Qt::ShiftModifier, "a\nc", 1},
      {Qt::Key_Down, "", Qt::NoModifier, "a\nc", 3},
      {Qt::Key_Left, "", Qt::NoModifier, "a\nc", 2},
      {Qt::Key_End, "", Qt::NoModifier, "a\nc", 3},
      {Qt::Key_Tab, "\t", Qt::NoModifier, "a\nc\t", 4},
      {Qt::Key_Backspace, "\b", Qt::NoModifier, "a\nc", 3},
      {Qt::Key_Escape, "\x1b", Qt::NoModifier, "a\nc", 3},
      {Qt::Key_Home, "", Qt::ControlModifier, "a\nc", 0},
      {Qt::Key_A, "\x01", Qt::ControlModifier, "a\nc", 0},
      {Qt::Key_X, "x", Qt::NoModifier, "x", 1},
  };
  run([&](QWindow* desktop) {
    text->becomeFirstResponder();
    for (const auto& row : table) {
      sendKey(desktop, row.key, row.types, row.modifiers);
      EXPECT_EQ(text->text(), row.text) << row.key;
      EXPECT_EQ(text->selectedRange().location, row.caret) << row.key << " in " << row.text;
    }
    text->resignFirstResponder();

    static QPointingDevice* const hand = QTest::createTouchDevice();
    const double zoom = desktop->width() / UIScreen::main().bounds().width();
    const QPoint at(static_cast<int>(60 * zoom), static_cast<int>(120 * zoom));
    QTest::touchEvent(desktop, hand).press(0, at);
    QTest::touchEvent(desktop, hand).move(0, at + QPoint(2, 0));
    EXPECT_TRUE(button->isHighlighted());
    QTouchEvent cancel(QEvent::TouchCancel, hand, Qt::NoModifier, {{0, QEventPoint::Stationary, at, at}});
    QCoreApplication::sendEvent(desktop, &cancel);
    EXPECT_FALSE(button->isHighlighted());
    EXPECT_EQ(counter->presses, 0);
    QTest::touchEvent(desktop, hand).press(0, at);
    QTest::touchEvent(desktop, hand).release(0, at);
    EXPECT_EQ(counter->presses, 1);
  });
  window->setHidden(true);
}

}  // namespace
}  // namespace platform
