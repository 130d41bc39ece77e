#include <gmock/gmock.h>

#include "platform/animation/CALayer.h"
#include "platform/animation/FrameClock.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/ScreenHost.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WindowTest : public AppFixture {};

class ToldController : public Object<ToldController, UIViewController> {
 public:
  void viewWillAppear(bool) override { log.push_back("will appear"); }
  void viewDidAppear(bool animated) override {
    UIViewController::viewDidAppear(animated);
    log.push_back(view()->window() ? "did appear" : "did appear without a window");
  }
  void viewWillDisappear(bool animated) override {
    UIViewController::viewWillDisappear(animated);
    log.push_back("will disappear");
  }
  void viewDidDisappear(bool) override { log.push_back("did disappear"); }
  std::vector<std::string> log;
};

}  // namespace

TEST_F(WindowTest, TellsItsRootControllerWhenItShowsAndGoes) {
  const auto first = make<ToldController>();
  const auto second = make<ToldController>();
  auto other = make<UIWindow>(CGRect{0, 0, 390, 844});
  other->setRootViewController(first);
  EXPECT_FALSE(first->isViewLoaded()) << "a hidden window loads nothing";
  other->makeKeyAndVisible();
  EXPECT_THAT(first->log, ElementsAre("will appear", "did appear"));
  EXPECT_EQ(first->view()->frame(), other->bounds());
  other->setRootViewController(second);
  EXPECT_THAT(first->log, ElementsAre("will appear", "did appear", "will disappear", "did disappear"));
  EXPECT_EQ(first->view()->superview(), nullptr);
  other->setHidden(true);
  EXPECT_THAT(second->log, ElementsAre("will appear", "did appear", "will disappear", "did disappear"));
}

TEST_F(WindowTest, KeepsItsRootViewBehindWhatWasAddedToItself) {
  const auto floating = make<UIView>(CGRect{10, 10, 50, 50});
  window()->addSubview(floating);
  const auto root = make<UIViewController>();
  show(root);
  EXPECT_THAT(window()->subviews(), ElementsAre(root->view(), floating));
  EXPECT_EQ(window()->hitTest({20, 20}, nullptr), floating);
  window()->setFrame({0, 0, 300, 500});
  settle();
  EXPECT_EQ(root->view()->frame(), (CGRect{0, 0, 300, 500}));
}

TEST_F(WindowTest, IsListedInTheOrderOfShowingAndKeyOneAtATime) {
  const auto second = make<UIWindow>(CGRect{0, 0, 390, 844});
  EXPECT_TRUE(second->isHidden());
  EXPECT_THAT(UIApplication::shared().windows(), ElementsAre(window()));
  second->makeKeyAndVisible();
  EXPECT_THAT(UIApplication::shared().windows(), ElementsAre(window(), second));
  EXPECT_FALSE(window()->isKeyWindow());
  EXPECT_TRUE(second->isKeyWindow());
  second->setHidden(true);
  EXPECT_THAT(UIApplication::shared().windows(), ElementsAre(window()));
  EXPECT_EQ(UIApplication::shared().keyWindow(), window());
}

TEST_F(WindowTest, StacksByLevelForEyesAndFingers) {
  window()->setWindowLevel(1);
  const auto low = make<UIWindow>(CGRect{0, 0, 390, 844});
  low->setBackgroundColor(UIColor(1, 0, 0, 1));
  low->setHidden(false);
  const auto pixel = [&] { return UIApplication::shared().screenshot()->cgImage()->color(100, 100); };
  EXPECT_EQ(pixel(), UIColor::white()) << "shown later, yet lower";
  low->setWindowLevel(2);
  EXPECT_EQ(pixel(), UIColor(1, 0, 0, 1));
  EXPECT_EQ(UIApplication::shared().screenLayer()->sublayers().back(), low->layer());

  const auto listed = UIApplication::shared().screenshot();
  EXPECT_EQ(listed->cgImage()->width(), 780);
  EXPECT_EQ(listed->cgImage()->height(), 1688);
  window()->setWindowLevel(0);
}

TEST_F(WindowTest, LetsTheWheelMoveTheNearestViewThatCan) {
  const auto outer = make<UIScrollView>(CGRect{0, 0, 390, 844});
  outer->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
  outer->setContentSize({390, 2000});
  const auto inner = make<UIScrollView>(CGRect{0, 100, 390, 200});
  inner->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
  inner->setContentSize({390, 250});
  content()->addSubview(outer);
  outer->addSubview(inner);
  const auto wheel = [](double dy) { UIApplication::shared().deliverScroll({50, 150}, {0, dy}); };
  wheel(-30);
  EXPECT_EQ(inner->contentOffset().y, 30);
  wheel(-100);
  EXPECT_EQ(inner->contentOffset().y, 50) << "as far as its content goes";
  EXPECT_EQ(outer->contentOffset().y, 0);
  wheel(-30);
  EXPECT_EQ(outer->contentOffset().y, 30) << "then the view around it";
  wheel(500);
  EXPECT_EQ(inner->contentOffset().y, 0);
}

namespace {

class InputView : public Object<InputView, UIView> {
 public:
  bool canBecomeFirstResponder() override { return true; }
  bool keyPressed(const UIKey& key) override {
    keys.push_back(key);
    return true;
  }
  void tapped() { ++taps; }
  static void exportMethods(MethodTable<InputView>& table) { table.add<&InputView::tapped>("tapped"); }
  std::vector<UIKey> keys;
  int taps = 0;
};

}  // namespace

TEST_F(WindowTest, ShowsFramesOnADesktopOnlyWhileSomethingChanges) {
  const auto view = make<InputView>(CGRect{100, 100, 100, 100});
  view->addGestureRecognizer(make<UITapGestureRecognizer>(view, sel("tapped")));
  content()->addSubview(view);
  ScreenHost host("test");
  advance(0.2);
  const auto frames = [] { return FrameClock::shared().frameCount(); };
  const auto before = frames();
  EXPECT_GT(before, 0u);
  advance(5);
  EXPECT_EQ(frames(), before) << "a still screen costs nothing";
  UIView::animateWithDuration(0.5, [&] { view->setAlpha(0.5); });
  advance(1);
  EXPECT_GE(frames(), before + 29);
  EXPECT_LE(frames(), before + 33);

  EngineWindowDelegate& person = host;
  person.windowTouched({0, WindowTouchPhase::began, {150, 150}, Clock::mediaTime()});
  person.windowTouched({0, WindowTouchPhase::ended, {150, 150}, Clock::mediaTime()});
  EXPECT_EQ(view->taps, 1);
  view->becomeFirstResponder();
  WindowKey key;
  key.name = WindowKey::Name::backspace;
  key.command = true;
  person.windowKeyPressed(key);
  ASSERT_EQ(view->keys.size(), 1u);
  EXPECT_EQ(view->keys[0].code, UIKey::Code::backspace);
  EXPECT_TRUE(view->keys[0].control);
}

}  // namespace platform::test
