#include "platform/animation/CALayer.h"
#include "platform/uikit/controllers/UIAlertController.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIControl.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

using Style = UIModalPresentationStyle;

class ModalPresentationTest : public AppFixture {
 protected:
  ModalPresentationTest() {
    a = screen("A");
    b = screen("B");
    c = screen("C");
    show(a);
    journal.take();
  }
  Ref<JournalScreen> screen(const std::string& name) { return make<JournalScreen>(name, journal); }
  std::function<void()> note(const std::string& word) {
    return [journal = journal, word]() mutable { journal.write(word); };
  }
  /// How far below its place the view shows.
  static double drop(const Ref<UIViewController>& screen) {
    return screen->view()->superview()->layer()->presentationLayer()->transform().ty;
  }
  std::size_t layersInWindow() const { return window()->subviews().size(); }
  Journal journal;
  Ref<JournalScreen> a, b, c;
};

TEST_F(ModalPresentationTest, AFullScreenTakesThePlaceOfTheScreenBelow) {
  a->presentViewController(b, true, note("(done)"));
  EXPECT_EQ(journal.take(), "B.load A.willDisappear~ B.willAppear~");
  EXPECT_TRUE(b->isBeingPresented());
  EXPECT_EQ(a->presentedViewController(), b);
  EXPECT_EQ(b->presentingViewController(), a);
  settle();
  EXPECT_NEAR(drop(b), 844, 1);
  advance(0.175);
  EXPECT_NEAR(drop(b), 422, 10);
  EXPECT_EQ(a->view()->window(), window());
  advance(0.2);
  EXPECT_EQ(drop(b), 0);
  EXPECT_EQ(journal.take(), "B.didAppear~ A.didDisappear~ (done)");
  EXPECT_FALSE(b->isBeingPresented());
  EXPECT_EQ(a->view()->window(), nullptr) << "what is covered wholly leaves the window";
  EXPECT_EQ(b->view()->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}));

  b->dismissViewController(true, note("(done)"));
  EXPECT_EQ(journal.take(), "B.willDisappear~ A.willAppear~");
  EXPECT_TRUE(b->wasBeingDismissed);
  EXPECT_EQ(a->view()->window(), window());
  advance(0.4);
  EXPECT_EQ(journal.take(), "A.didAppear~ B.didDisappear~ (done)");
  EXPECT_EQ(a->presentedViewController(), nullptr);
  EXPECT_EQ(b->presentingViewController(), nullptr);
  EXPECT_FALSE(b->isBeingDismissed());
  EXPECT_EQ(layersInWindow(), 1u);
}

TEST_F(ModalPresentationTest, WithoutAnimationAllIsToldBeforeTheCallReturns) {
  a->presentViewController(b, false, note("(in)"));
  EXPECT_EQ(journal.take(), "B.load A.willDisappear B.willAppear B.didAppear A.didDisappear (in)");
  a->dismissViewController(false, note("(out)"));
  EXPECT_EQ(journal.take(), "B.willDisappear A.willAppear A.didAppear B.didDisappear (out)");
  EXPECT_EQ(a->view()->window(), window());
}

TEST_F(ModalPresentationTest, ASheetLeavesTheScreenBelowWhereItIs) {
  b->setModalPresentationStyle(Style::pageSheet);
  a->presentViewController(b, true);
  advance(0.5);
  EXPECT_EQ(journal.take(), "B.load B.willAppear~ B.didAppear~");
  EXPECT_EQ(a->view()->window(), window());
  EXPECT_EQ(b->view()->convertRect(b->view()->bounds(), nullptr), (CGRect{0, 54, 390, 790}));
  EXPECT_EQ(b->view()->safeAreaInsets(), (UIEdgeInsets{0, 0, 34, 0}));
  b->dismissViewController(true);
  advance(0.5);
  EXPECT_EQ(journal.take(), "B.willDisappear~ B.didDisappear~");
}

TEST_F(ModalPresentationTest, ACrossDissolveFades) {
  b->setModalPresentationStyle(Style::overFullScreen);
  b->setModalTransitionStyle(UIModalTransitionStyle::crossDissolve);
  a->presentViewController(b, true);
  advance(0.175);
  EXPECT_NEAR(b->view()->superview()->layer()->presentationLayer()->opacity(), 0.5, 0.05);
  EXPECT_EQ(drop(b), 0);
  EXPECT_EQ(b->view()->alpha(), 1) << "the host's own alpha is left alone";
}

TEST_F(ModalPresentationTest, AChildPresentsThroughTheOutermostContainer) {
  const auto navigation = make<UINavigationController>(c);
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({navigation});
  show(tabs);
  journal.take();
  c->presentViewController(b, false);
  EXPECT_EQ(b->presentingViewController(), tabs);
  EXPECT_EQ(tabs->presentedViewController(), b);
  EXPECT_EQ(c->presentedViewController(), b);
  EXPECT_EQ(b->nextResponder(), tabs);
  EXPECT_EQ(journal.take(), "B.load C.willDisappear B.willAppear B.didAppear C.didDisappear");
  const auto inner = make<UINavigationController>(screen("D"));
  b->presentViewController(inner, false);
  EXPECT_EQ(inner->topViewController()->presentingViewController(), b) << "also of an ancestor";
  inner->topViewController()->dismissViewController(false);
  EXPECT_EQ(b->presentedViewController(), nullptr);
  EXPECT_EQ(tabs->presentedViewController(), b);
}

TEST_F(ModalPresentationTest, DismissingTakesAwayEverythingPresentedAbove) {
  const auto d = screen("D");
  a->presentViewController(b, false);
  b->presentViewController(c, false);
  d->setModalPresentationStyle(Style::pageSheet);
  c->presentViewController(d, false);
  journal.take();
  a->dismissViewController(true, note("(done)"));
  EXPECT_EQ(journal.take(), "D.willDisappear~ C.willDisappear~ A.willAppear~");
  EXPECT_TRUE(c->wasBeingDismissed);
  advance(0.5);
  EXPECT_EQ(journal.take(), "A.didAppear~ D.didDisappear~ C.didDisappear~ (done)");
  EXPECT_EQ(layersInWindow(), 1u);
  EXPECT_EQ(c->presentedViewController(), nullptr);
  EXPECT_EQ(d->presentingViewController(), nullptr);
  EXPECT_EQ(b->presentingViewController(), nullptr);
  a->presentViewController(c, false);
  EXPECT_EQ(a->presentedViewController(), c) << "they can be presented again";
}

TEST_F(ModalPresentationTest, AnOrderGivenDuringAMovementEndsThatFirst) {
  a->presentViewController(b, true, note("(in)"));
  journal.take();
  b->dismissViewController(true, note("(out)"));
  EXPECT_EQ(journal.take(), "B.didAppear~ A.didDisappear~ (in) B.willDisappear~ A.willAppear~");
  a->presentViewController(c, true);
  EXPECT_EQ(journal.take(), "A.didAppear~ B.didDisappear~ (out) C.load A.willDisappear~ C.willAppear~");
  advance(1);
  EXPECT_EQ(journal.take(), "C.didAppear~ A.didDisappear~");
  EXPECT_EQ(layersInWindow(), 1u) << "the container of C; the screen below is set aside";
}

TEST_F(ModalPresentationTest, WhatIsToldOfTheEndMayPresentAgain) {
  a->presentViewController(b, false);
  journal.take();
  a->onDidAppear = [this] { a->presentViewController(c, false); };
  b->dismissViewController(false);
  EXPECT_EQ(a->presentedViewController(), c);
  EXPECT_EQ(c->view()->window(), window());
  EXPECT_EQ(b->view()->window(), nullptr);
}

TEST_F(ModalPresentationTest, ImpossiblePresentationsAreRefusedWithALine) {
  const auto detached = screen("X");
  testing::internal::CaptureStderr();
  detached->presentViewController(b, false, note("(never)"));
  a->presentViewController(a, false, note("(never)"));
  a->presentViewController(b, false);
  a->presentViewController(c, false, note("(never)"));
  b->presentViewController(b, false, note("(never)"));
  a->presentViewController(nullptr, false, note("(never)"));
  const std::string lines = testing::internal::GetCapturedStderr();
  EXPECT_THAT(lines, testing::HasSubstr("its view is in no window"));
  EXPECT_THAT(lines, testing::HasSubstr("it presents another controller already"));
  EXPECT_EQ(a->presentedViewController(), b);
  EXPECT_THAT(journal.take(), testing::Not(testing::HasSubstr("never")));
  c->dismissViewController(true, note("(nothing to dismiss)"));
  EXPECT_EQ(journal.take(), "");
}

TEST_F(ModalPresentationTest, TouchesWaitUntilTheMovementIsOver) {
  class Tapped : public Object<Tapped, NSObject> {
   public:
    void tapped() { ++taps; }
    static void exportMethods(MethodTable<Tapped>& table) { table.add<&Tapped::tapped>("tapped"); }
    int taps = 0;
  };
  const auto receiver = make<Tapped>();
  const auto control = make<UIControl>(CGRect{0, 0, 390, 844});
  control->addTarget(receiver, sel("tapped"), UIControlEvents::touchUpInside);
  a->view()->addSubview(control);
  b->setModalPresentationStyle(Style::overFullScreen);
  a->presentViewController(b, true);
  tap(CGPoint{200, 200});
  EXPECT_EQ(receiver->taps, 0);
  advance(1);
  tap(CGPoint{200, 200});
  EXPECT_EQ(receiver->taps, 0) << "the presented view lies above";
  b->dismissViewController(false);
  tap(CGPoint{200, 200});
  EXPECT_EQ(receiver->taps, 1);
}

TEST_F(ModalPresentationTest, NothingLeaksWhenThePresenterGoesInTheMiddle) {
  b->writesDeath = c->writesDeath = true;
  a->presentViewController(b, false);
  b->presentViewController(c, true);
  b = c = nullptr;
  a = nullptr;
  journal.take();
  show(make<UIViewController>());
  EXPECT_THAT(journal.take(), testing::AllOf(testing::HasSubstr("B.gone"), testing::HasSubstr("C.gone")));
  EXPECT_EQ(layersInWindow(), 1u);
  advance(1);
}

TEST_F(ModalPresentationTest, AnAlertAsksAndRunsTheHandlerOnceItIsGone) {
  const auto alert = make<UIAlertController>("Remove tea?", "It leaves your cart.");
  alert->addAction(make<UIAlertAction>("Cancel", UIAlertActionStyle::cancel));
  alert->addAction(make<UIAlertAction>("Remove", UIAlertActionStyle::destructive, [this] {
    EXPECT_EQ(a->presentedViewController(), nullptr);
    journal.write("(removed)");
  }));
  a->presentViewController(alert, true);
  advance(0.5);
  picture("alert");
  tap(CGPoint{262, 462});
  advance(0.5);
  EXPECT_EQ(journal.take(), "(removed)");
}

TEST_F(ModalPresentationTest, WhatMustStayReachableLiesAboveWhateverIsPresented) {
  const auto handle = make<UIView>(CGRect{300, 300, 60, 60});
  handle->setFrontLevel(1);
  window()->addSubview(handle);
  const auto isReached = [&] {
    return window()->subviews().back() == handle && window()->hitTest({320, 320}, nullptr) == handle;
  };
  for (const Style style : {Style::fullScreen, Style::pageSheet, Style::overFullScreen}) {
    SCOPED_TRACE(static_cast<int>(style));
    const auto modal = screen("M");
    modal->setModalPresentationStyle(style);
    a->presentViewController(modal, true);
    settle();
    EXPECT_TRUE(isReached()) << "on its way in";
    advance(0.5);
    EXPECT_TRUE(isReached());
    const auto alert = make<UIAlertController>("Remove tea?", "");
    modal->presentViewController(alert, false);
    EXPECT_TRUE(isReached()) << "under an alert over a modal";
    a->dismissViewController(true);
    settle();
    EXPECT_TRUE(isReached()) << "on the way out";
    advance(0.5);
    EXPECT_TRUE(isReached());
    EXPECT_EQ(layersInWindow(), 2u);
  }
}

TEST_F(ModalPresentationTest, ThePictureOfASheet) {
  a->view()->setBackgroundColor(UIColor::systemTeal());
  b->setTitle("New order");
  const auto navigation = make<UINavigationController>(b);
  navigation->setModalPresentationStyle(Style::pageSheet);
  a->presentViewController(navigation, true);
  advance(0.5);
  EXPECT_EQ(b->view()->safeAreaInsets(), (UIEdgeInsets{44, 0, 34, 0}));
  picture("sheet");
}

}  // namespace
}  // namespace platform::test
