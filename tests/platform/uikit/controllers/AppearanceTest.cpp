#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UIStoryboardSegue.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class AppearanceTest : public AppFixture {
 protected:
  Ref<JournalScreen> screen(const std::string& name) { return make<JournalScreen>(name, journal); }
  void contain(const Ref<UIViewController>& parent, const Ref<UIViewController>& child) {
    parent->addChildViewController(child);
    parent->view()->addSubview(child->view());
    child->didMoveToParent(parent);
  }
  Journal journal;
};

TEST_F(AppearanceTest, TheRootOfAWindowAppearsWhenItIsSetAndDisappearsWhenItIsReplaced) {
  const auto a = screen("A");
  const auto b = screen("B");
  EXPECT_FALSE(a->isViewLoaded());
  show(a);
  EXPECT_EQ(journal.take(), "A.load A.willAppear A.didAppear");
  EXPECT_EQ(a->nextResponder(), window());
  EXPECT_EQ(a->view()->viewController(), a);
  show(b);
  EXPECT_EQ(journal.take(), "A.willDisappear A.didDisappear B.load B.willAppear B.didAppear");
  EXPECT_EQ(a->view()->superview(), nullptr);
}

TEST_F(AppearanceTest, AskingWhetherThereIsAViewMakesNone) {
  const auto a = screen("A");
  EXPECT_EQ(a->viewIfLoaded(), nullptr);
  EXPECT_FALSE(a->isViewLoaded());
  EXPECT_EQ(journal.take(), "");
  a->loadViewIfNeeded();
  EXPECT_EQ(a->viewIfLoaded(), a->view());
  EXPECT_EQ(journal.take(), "A.load");
}

TEST_F(AppearanceTest, ParentsHearOfWhatWillHappenFirstAndOfWhatDidHappenLast) {
  const auto parent = screen("P");
  const auto child = screen("C");
  const auto grandchild = screen("G");
  contain(child, grandchild);
  contain(parent, child);
  journal.take();
  show(parent);
  EXPECT_EQ(journal.take(), "P.willAppear C.willAppear G.willAppear G.didAppear C.didAppear P.didAppear");
  show(make<UIViewController>());
  EXPECT_EQ(journal.take(),
            "P.willDisappear C.willDisappear G.willDisappear G.didDisappear C.didDisappear P.didDisappear");
}

/// A navigation or tab bar controller of the host's, which does something around its base.
template <class Container>
class JournalContainer : public Object<JournalContainer<Container>, Container> {
 public:
  explicit JournalContainer(Journal journal) : journal_(std::move(journal)) {}
  void viewDidAppear(bool animated) override {
    journal_.write("N.hears");
    if (beforeBase) beforeBase();
    if (callsBase) Container::viewDidAppear(animated);
    journal_.write("N.did");
  }
  std::function<void()> beforeBase;
  bool callsBase = true;

 private:
  Journal journal_;
};

TEST_F(AppearanceTest, ContainersOfThePlatformHaveAppearedBeforeTheirScreens) {
  const auto navigation = make<JournalContainer<UINavigationController>>(journal);
  navigation->pushViewController(screen("A"), false);
  journal.take();
  show(navigation);
  EXPECT_EQ(journal.take(), "A.load A.willAppear N.hears A.didAppear N.did");
  show(make<UIViewController>());
  EXPECT_EQ(journal.take(), "A.willDisappear A.didDisappear");
  navigation->callsBase = false;
  show(navigation);
  EXPECT_EQ(journal.take(), "A.willAppear N.hears N.did A.didAppear") << "its screen appears all the same";
  navigation->viewDidAppear(false);
  EXPECT_EQ(journal.take(), "N.hears N.did") << "once";

  const auto tabs = make<JournalContainer<UITabBarController>>(journal);
  tabs->setViewControllers({screen("B"), screen("C")});
  tabs->beforeBase = [&] { tabs->setSelectedIndex(1); };
  journal.take();
  show(tabs);
  settle();
  EXPECT_EQ(journal.take(),
            "A.willDisappear A.didDisappear B.load B.willAppear N.hears B.didAppear N.did C.load C.willAppear "
            "B.willDisappear B.didDisappear C.didAppear");
}

TEST_F(AppearanceTest, AScreenPushedWhileItsContainerAppearsComesAfterTheOneThatIsComing) {
  const auto navigation = make<JournalContainer<UINavigationController>>(journal);
  navigation->pushViewController(screen("A"), false);
  navigation->beforeBase = [&] { navigation->pushViewController(screen("B"), false); };
  journal.take();
  show(navigation);
  settle();
  EXPECT_EQ(journal.take(),
            "A.load A.willAppear N.hears B.will+ A.didAppear N.did B.load A.willDisappear B.willAppear A.didDisappear "
            "B.didAppear B.did+");
}

TEST_F(AppearanceTest, AChildPutIntoAVisibleViewByHandAppearsAndTakenOutDisappears) {
  const auto parent = screen("P");
  const auto child = screen("C");
  show(parent);
  journal.take();
  contain(parent, child);
  EXPECT_EQ(journal.take(), "C.will+ C.load C.willAppear C.didAppear C.did+");
  EXPECT_EQ(child->parentViewController(), parent);
  child->willMoveToParent(nullptr);
  child->view()->removeFromSuperview();
  EXPECT_TRUE(child->wasMovingFromParent);
  child->removeFromParentViewController();
  EXPECT_EQ(journal.take(), "C.will- C.willDisappear C.didDisappear C.did-");
  EXPECT_FALSE(child->isMovingFromParentViewController());
  EXPECT_TRUE(parent->childViewControllers().empty());
}

TEST_F(AppearanceTest, AChildBelongsToOneParentAndLeavesTheOldOneFirst) {
  const auto first = screen("P");
  const auto second = screen("Q");
  const auto child = screen("C");
  first->addChildViewController(child);
  child->didMoveToParent(first);
  journal.take();
  second->addChildViewController(child);
  EXPECT_EQ(journal.take(), "C.did- C.will+");
  EXPECT_TRUE(first->childViewControllers().empty());
  EXPECT_EQ(child->parentViewController(), second);
}

TEST_F(AppearanceTest, AChildAddedToAPlatformContainerJoinsItsScreens) {
  const auto navigation = make<UINavigationController>(screen("A"));
  const auto tabs = make<UITabBarController>();
  const auto child = screen("C");
  navigation->addChildViewController(child);
  EXPECT_EQ(navigation->topViewController(), child);
  tabs->addChildViewController(child);
  EXPECT_EQ(tabs->selectedViewController(), child);
  EXPECT_EQ(navigation->viewControllers().size(), 1u);
  EXPECT_EQ(journal.take(), "A.will+ A.did+ C.will+ C.did+ C.will- C.did- C.will+ C.did+");
}

TEST_F(AppearanceTest, ControllersAndTheirViewsDieWithTheWindowsRoot) {
  {
    const auto parent = screen("P");
    const auto child = screen("C");
    parent->writesDeath = child->writesDeath = true;
    contain(parent, child);
    show(parent);
    journal.take();
  }
  show(make<UIViewController>());
  EXPECT_EQ(journal.take(), "P.willDisappear C.willDisappear C.didDisappear P.didDisappear P.gone C.gone");
}

TEST_F(AppearanceTest, AViewIsMadeOnceEvenWhenLoadingAsksForIt) {
  class Custom : public Object<Custom, UIViewController> {
   public:
    void loadView() override {
      ++loads;
      EXPECT_EQ(view(), nullptr);
      setView(make<UIView>(CGRect{0, 0, 10, 10}));
    }
    int loads = 0;
  };
  const auto custom = make<Custom>();
  EXPECT_EQ(custom->view()->bounds().size, (CGSize{10, 10}));
  EXPECT_EQ(custom->loads, 1);
  class Forgetful : public Object<Forgetful, UIViewController> {
    void loadView() override {}
  };
  EXPECT_NE(make<Forgetful>()->view(), nullptr);
}

TEST_F(AppearanceTest, AdditionalSafeAreaReachesTheViewAndItsSubviews) {
  const auto a = screen("A");
  show(a);
  EXPECT_EQ(a->view()->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}));
  a->setAdditionalSafeAreaInsets({3, 0, 6, 0});
  EXPECT_EQ(a->view()->safeAreaInsets(), (UIEdgeInsets{50, 0, 40, 0}));
}

// ---- Segues

class Sender : public Object<Sender, NSObject> {};

TEST_F(AppearanceTest, ASegueThatTheScreenDoesNotKnowIsPassedOverWhenItMayBe) {
  class Router : public Object<Router, JournalScreen> {
   public:
    using Object::Object;
    void performSegue(const std::string& identifier, const Ref<NSObject>& sender) override {
      asked += identifier + " ";
      if (identifier != "own") Super::performSegue(identifier, sender);
    }
    std::string asked;
  };
  const auto router = make<Router>("A", journal);
  int made = 0;
  router->registerSegue("known", UIStoryboardSegue::Kind::show, [&]() -> Ref<UIViewController> {
    ++made;
    return nullptr;
  });
  for (const char* identifier : {"own", "known", "unknown"}) router->performSegueIfKnown(identifier, nullptr);
  EXPECT_EQ(router->asked, "own known unknown ");
  EXPECT_EQ(made, 1);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(router->performSegue("unknown", nullptr), "Router has no segue with identifier 'unknown'");
}

TEST_F(AppearanceTest, ASegueMakesItsDestinationPreparesItAndPresentsIt) {
  class Source : public Object<Source, JournalScreen> {
   public:
    using Object::Object;
    void prepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject> sender) override {
      Super::prepareForSegue(segue, sender);
      prepared = segue;
      from = sender;
      loadedBefore = segue->destinationViewController()->isViewLoaded();
    }
    Ref<UIStoryboardSegue> prepared;
    Ref<NSObject> from;
    bool loadedBefore = true;
  };
  const auto source = make<Source>("S", journal);
  const auto destination = screen("D");
  const auto sender = make<Sender>();
  source->registerSegue("more", UIViewController::SegueKind::show, [destination] { return destination; });
  show(source);
  source->performSegue("more", sender);
  ASSERT_NE(source->prepared, nullptr);
  EXPECT_EQ(source->prepared->identifier(), "more");
  EXPECT_EQ(source->prepared->sourceViewController(), source);
  EXPECT_EQ(source->prepared->destinationViewController(), destination);
  EXPECT_EQ(source->from, sender);
  EXPECT_FALSE(source->loadedBefore);
  // No navigation controller is around, so showing presents.
  EXPECT_EQ(source->presentedViewController(), destination);
  EXPECT_TRUE(source->hasSegue("more"));
  EXPECT_FALSE(source->hasSegue("less"));
  source->prepared = nullptr;  // a segue owns its source
}

TEST_F(AppearanceTest, AnUnknownSegueIsAProgrammingError) {
  const auto source = screen("S");
  EXPECT_DEATH(source->performSegue("nowhere", nullptr), "JournalScreen has no segue with identifier 'nowhere'");
}

}  // namespace
}  // namespace platform::test
