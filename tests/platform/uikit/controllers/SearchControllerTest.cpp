#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Updater : public Object<Updater, NSObject> {
 public:
  explicit Updater(Journal journal) : journal_(std::move(journal)) {}
  void update(Ref<UISearchController> search) {
    journal_.write((search->isActive() ? "on:" : "off:") + search->searchBar()->text().value_or(""));
  }
  static void exportMethods(MethodTable<Updater>& table) {
    table.add<&Updater::update>("updateSearchResultsForSearchController:");
  }

 private:
  Journal journal_;
};

class Delegate : public Object<Delegate, NSObject> {
 public:
  explicit Delegate(Journal journal) : journal_(std::move(journal)) {}
  void willPresent(Ref<UISearchController>) { journal_.write("willPresent"); }
  void didPresent(Ref<UISearchController>) { journal_.write("didPresent"); }
  void willDismiss(Ref<UISearchController>) { journal_.write("willDismiss"); }
  void didDismiss(Ref<UISearchController>) { journal_.write("didDismiss"); }
  static void exportMethods(MethodTable<Delegate>& table) {
    table.add<&Delegate::willPresent>("willPresentSearchController:")
        .add<&Delegate::didPresent>("didPresentSearchController:")
        .add<&Delegate::willDismiss>("willDismissSearchController:")
        .add<&Delegate::didDismiss>("didDismissSearchController:");
  }

 private:
  Journal journal_;
};

class SearchControllerTest : public AppFixture {
 protected:
  SearchControllerTest() {
    a = make<JournalScreen>("A", journal);
    results = make<JournalScreen>("R", journal);
    search = make<UISearchController>(results);
    search->setSearchResultsUpdater(updater);
    a->navigationItem()->setSearchController(search);
    navigation = make<UINavigationController>(a);
    show(navigation);
    journal.take();
  }
  void tapView(const Ref<UIView>& view) { tap(view->convertRect(view->bounds(), nullptr).center()); }
  Journal journal;
  Ref<Updater> updater = make<Updater>(journal);
  Ref<JournalScreen> a, results;
  Ref<UISearchController> search;
  Ref<UINavigationController> navigation;
};

TEST_F(SearchControllerTest, TheSearchBarStandsUnderTheTitle) {
  EXPECT_EQ(navigation->navigationBar()->frame().height(), 96);
  EXPECT_EQ(search->searchBar()->convertRect(search->searchBar()->bounds(), nullptr), (CGRect{0, 91, 390, 52}));
  EXPECT_EQ(a->view()->safeAreaInsets().top, 143);
  a->navigationItem()->setSearchController(nullptr);
  settle();
  EXPECT_EQ(search->searchBar()->superview(), nullptr);
  EXPECT_EQ(a->view()->safeAreaInsets().top, 91);
}

TEST_F(SearchControllerTest, TypingShowsTheResultsAndCancellingTakesThemAway) {
  tapView(search->searchBar()->searchTextField());
  EXPECT_TRUE(search->isActive());
  EXPECT_TRUE(search->searchBar()->showsCancelButton());
  EXPECT_EQ(journal.take(), "on:");
  type("te");
  EXPECT_EQ(journal.take(), "R.will+ R.load R.willAppear R.didAppear R.did+ on:t on:te");
  EXPECT_TRUE(results->view()->isDescendantOfView(a->view().get()));
  tapView(search->searchBar()->cancelButton());
  EXPECT_FALSE(search->isActive());
  EXPECT_EQ(search->searchBar()->text(), "");
  EXPECT_FALSE(search->searchBar()->searchTextField()->isFirstResponder());
  EXPECT_EQ(journal.take(), "R.willDisappear R.didDisappear off:");
  EXPECT_FALSE(results->wasMovingFromParent) << "hidden, not removed";
  EXPECT_EQ(results->view()->superview(), nullptr);

  tapView(search->searchBar()->searchTextField());
  type("te");
  EXPECT_EQ(journal.take(), "on: R.willAppear R.didAppear on:t on:te");
  type("\b\b");
  EXPECT_EQ(journal.take(), "on:t R.willDisappear R.didDisappear on:");
}

TEST_F(SearchControllerTest, ResultsGoWithTheSearchedScreenAndMayMoveToAnother) {
  search->setActive(true);
  type("te");
  search->setActive(false);
  journal.take();
  const auto b = make<JournalScreen>("B", journal);
  a->navigationItem()->setSearchController(nullptr);
  b->navigationItem()->setSearchController(search);
  navigation->pushViewController(b, false);
  settle();
  journal.take();
  search->setActive(true);
  type("t");
  EXPECT_EQ(results->parentViewController(), b);
  EXPECT_TRUE(results->view()->isDescendantOfView(b->view().get()));
  EXPECT_EQ(journal.take(), "on: R.did- R.will+ R.willAppear R.didAppear R.did+ on:t");
  b->navigationItem()->setSearchController(nullptr);
  search = nullptr;
  EXPECT_EQ(results->parentViewController(), nullptr) << "nobody is left to show it";
  EXPECT_EQ(results->view()->superview(), nullptr);
}

TEST_F(SearchControllerTest, ActivatingByProgramBringsTheKeyboardAndATapOnTheScreenEndsIt) {
  search->setActive(true);
  search->setActive(true);
  EXPECT_EQ(journal.take(), "on:");
  EXPECT_TRUE(search->searchBar()->searchTextField()->isFirstResponder());
  tap(CGPoint{200, 300});
  EXPECT_FALSE(search->isActive());
  EXPECT_EQ(journal.take(), "off:");
  EXPECT_TRUE(a->view()->subviews().empty());
}

TEST_F(SearchControllerTest, TheDelegateHearsBeforeAndAfterItComesAndGoes) {
  const auto delegate = make<Delegate>(journal);
  search->setDelegate(delegate);
  search->setActive(true);
  EXPECT_EQ(journal.take(), "willPresent on: didPresent");
  search->setActive(false);
  EXPECT_EQ(journal.take(), "willDismiss off: didDismiss");
}

TEST_F(SearchControllerTest, TheScreenIsObscuredOnlyWhenThatIsWanted) {
  search->setActive(true);
  ASSERT_EQ(a->view()->subviews().size(), 1u);
  search->setActive(false);
  search->setObscuresBackgroundDuringPresentation(false);
  search->setActive(true);
  EXPECT_TRUE(a->view()->subviews().empty());
  tap(CGPoint{200, 300});
  EXPECT_TRUE(search->isActive()) << "a tap on the screen is the screen's";
}

TEST_F(SearchControllerTest, ThePictureOfALargeTitleWithASearch) {
  a->setTitle("Teas");
  search->searchBar()->setPlaceholder("Search teas");
  navigation->navigationBar()->setPrefersLargeTitles(true);
  picture("large_title");
}

}  // namespace
}  // namespace platform::test
