#include "lumicor/actions/TLStepOperation.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/lumicor/actions/StepTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;

using StepOperationTest = StepTest;

const TLTaskResult done{.success = true, .resultValue = "", .clipboardContent = ""};
const TLTaskResult missed{.success = false, .resultValue = "", .clipboardContent = ""};

TLTaskResult doneWith(const std::string& value) {
  return {.success = true, .resultValue = value, .clipboardContent = ""};
}

// ---- Text

TEST_F(StepOperationTest, TypesIntoATextFieldAndTellsEverybody) {
  const auto field = add<UITextField>("name");
  field->setText("Ada");
  field->addTarget(host_, sel("onTap:"), UIControlEvents::editingChanged);
  const auto token = NotificationCenter::defaultCenter().addObserver(
      UITextFieldTextDidChangeNotification, field, [&](const Notification&) { host_->hear("notified"); });
  EXPECT_EQ(perform(step("name", "TYPE_TEXT", "Grace")), doneWith("Ada"));
  EXPECT_EQ(field->text(), "Grace");
  EXPECT_THAT(host_->heard, ElementsAre("tap by UITextField", "notified"));
}

TEST_F(StepOperationTest, TypesASecretAndSaysNothingOfTheOneBefore) {
  const auto field = add<UITextField>("password");
  field->setText("canary");
  field->setSecureTextEntry(true);
  EXPECT_EQ(perform(step("password", "TYPE_TEXT", "hunter2")), doneWith("••••••"));
  EXPECT_EQ(field->text(), "hunter2");
  field->setSecureTextEntry(false);  // a person asked to see it
  EXPECT_EQ(perform(step("password", "TYPE_TEXT", "hunter3")), doneWith("•••••••"));
  field->setText(std::nullopt);
  EXPECT_EQ(perform(step("password", "TYPE_TEXT", "hunter4")), doneWith(""));
  EXPECT_EQ(field->text(), "hunter4");
}

TEST_F(StepOperationTest, ReportsTheNewTextOfAFieldThatHadNone) {
  struct BlankField : Object<BlankField, UITextField> {
    std::optional<std::string> text() const override { return std::nullopt; }
  };
  add<BlankField>("name");
  EXPECT_EQ(perform(step("name", "", "Grace")), doneWith("Grace"));
}

TEST_F(StepOperationTest, ReplacesTheTextOfATextView) {
  const auto view = add<UITextView>("note");
  view->setText("before");
  const auto token = NotificationCenter::defaultCenter().addObserver(
      UITextViewTextDidChangeNotification, view, [&](const Notification&) { host_->hear("notified"); });
  EXPECT_EQ(perform(step("note", "TYPE_TEXT", "after")), doneWith("before"));
  EXPECT_EQ(view->text(), "after");
  EXPECT_THAT(host_->heard, ElementsAre("notified"));
}

// ---- Buttons and controls

TEST_F(StepOperationTest, PressesAButtonAndReportsItsTitleFromBefore) {
  const auto button = add<UIButton>("pay");
  struct Payer : Object<Payer, NSObject> {
    void pay(Ref<NSObject> sender) { as<UIButton>(sender)->setTitle("Paid", UIControlState::normal); }
    static void exportMethods(MethodTable<Payer>& table) { table.add<&Payer::pay>("pay:"); }
  };
  const auto payer = make<Payer>();
  EXPECT_EQ(perform(step("pay")), doneWith(""));
  button->setTitle("Pay", UIControlState::normal);
  button->addTarget(payer, sel("pay:"), UIControlEvents::touchUpInside);
  EXPECT_EQ(perform(step("pay")), doneWith("Pay"));
  EXPECT_EQ(button->currentTitle(), "Paid");
}

TEST_F(StepOperationTest, PressesAnyOtherControlAndFailsForAnythingElse) {
  add<UISwitch>("dark")->addTarget(host_, sel("onTap:"), UIControlEvents::touchUpInside);
  add<UILabel>("total");
  EXPECT_EQ(perform(step("dark")), done);
  EXPECT_THAT(host_->heard, ElementsAre("tap by UISwitch"));
  EXPECT_EQ(perform(step("total")), missed);
  EXPECT_EQ(perform(step("nowhere")), missed);
}

// ---- Pickers

struct Sizes : Object<Sizes, NSObject> {
  std::vector<std::string> heard;
  std::int64_t components(Ref<UIPickerView>) { return 2; }
  std::int64_t rows(Ref<UIPickerView>, std::int64_t) { return 5; }
  void selected(Ref<UIPickerView>, std::int64_t row, std::int64_t component) {
    heard.push_back(std::to_string(row) + " of " + std::to_string(component));
  }
  static void exportMethods(MethodTable<Sizes>& table) {
    table.add<&Sizes::components>("numberOfComponentsInPickerView:");
    table.add<&Sizes::rows>("pickerView:numberOfRowsInComponent:");
    table.add<&Sizes::selected>("pickerView:didSelectRow:inComponent:");
  }
};

struct NotingPicker : Object<NotingPicker, UIPickerView> {
  void selectRow(std::int64_t row, std::int64_t component, bool animated) override {
    wasAnimated = animated;
    Super::selectRow(row, component, animated);
  }
  bool wasAnimated = false;
};

TEST_F(StepOperationTest, TurnsAPickerAndTellsItsDelegate) {
  const auto sizes = make<Sizes>();
  const auto picker = add<NotingPicker>("size", CGRect{0, 0, 300, 200});
  picker->setDataSource(sizes);
  picker->setDelegate(sizes);
  EXPECT_EQ(perform(step("size", "TYPE_PICKER_VIEW", "2-0")), done);
  EXPECT_EQ(picker->selectedRowInComponent(0), 2);
  EXPECT_TRUE(picker->wasAnimated);
  EXPECT_TRUE(picker->isFirstResponder());
  RunLoop::advance(0.49);
  EXPECT_TRUE(picker->isFirstResponder());
  RunLoop::advance(0.02);
  EXPECT_FALSE(picker->isFirstResponder());
  for (const char* value : {"x-0", "2-x", "", "5-0", "1-2", "-1-0", "99999999999999999999-0", "2"}) {
    EXPECT_EQ(perform(step("size", "", value)), done) << value;
  }
  EXPECT_EQ(picker->selectedRowInComponent(0), 2);
  EXPECT_THAT(sizes->heard, ElementsAre("2 of 0"));
}

TEST_F(StepOperationTest, TurnsThePickerThatATextFieldIsTypedWith) {
  const auto sizes = make<Sizes>();
  const auto picker = make<UIPickerView>(CGRect{0, 0, 300, 200});
  picker->setDataSource(sizes);
  picker->setDelegate(sizes);
  const auto field = add<UITextField>("size", CGRect{0, 0, 100, 40});
  field->setText("M");
  EXPECT_EQ(perform(step("size", "TYPE_PICKER_VIEW", "1-1")), done) << "without a picker there is nothing to turn";
  field->setInputView(picker);
  EXPECT_EQ(perform(step("size", "TYPE_PICKER_VIEW", "1-1")), done);
  EXPECT_EQ(picker->selectedRowInComponent(1), 1);
  EXPECT_EQ(field->text(), "M");
  EXPECT_TRUE(field->isFirstResponder());
  RunLoop::advance(0.5);
  EXPECT_FALSE(field->isFirstResponder());
  EXPECT_THAT(sizes->heard, ElementsAre("1 of 1"));
}

// ---- Search

/// Hears of searches; the search button only when it wants to.
struct Searcher : Object<Searcher, NSObject> {
  std::vector<std::string> heard;
  void clicked(Ref<UISearchBar>) { heard.push_back("search"); }
  void changed(Ref<UISearchBar>, std::string text) { heard.push_back("text " + text); }
  void cancelled(Ref<UISearchBar>) { heard.push_back("cancel"); }
  static void exportMethods(MethodTable<Searcher>& table) {
    table.add<&Searcher::clicked>("searchBarSearchButtonClicked:");
    table.add<&Searcher::changed>("searchBar:textDidChange:");
    table.add<&Searcher::cancelled>("searchBarCancelButtonClicked:");
  }
};
struct TextOnly : Object<TextOnly, NSObject> {
  int heard = 0;
  void changed(Ref<UISearchBar>, std::string) { ++heard; }
  static void exportMethods(MethodTable<TextOnly>& table) { table.add<&TextOnly::changed>("searchBar:textDidChange:"); }
};

TEST_F(StepOperationTest, SearchesInABarFirstTheTextThenTheButton) {
  const auto searcher = make<Searcher>();
  const auto bar = add<UISearchBar>("find", CGRect{0, 0, 300, 50});
  bar->setDelegate(searcher);
  EXPECT_EQ(perform(step("find", "TYPE_SEARCH", "tea")), done);
  EXPECT_EQ(bar->text(), "tea");
  EXPECT_TRUE(bar->isFirstResponder());
  RunLoop::advance(0.51);
  EXPECT_FALSE(bar->isFirstResponder());
  EXPECT_THAT(searcher->heard, ElementsAre("text tea", "search"));
  EXPECT_EQ(perform(step("find", "TYPE_SEARCH_CANCEL")), done);
  EXPECT_THAT(searcher->heard, ElementsAre("text tea", "search", "cancel"));
  EXPECT_EQ(perform(step("find", "TYPE_BUTTON", "x")), missed) << "a search bar takes search steps alone";
  EXPECT_EQ(bar->text(), "tea");
}

TEST_F(StepOperationTest, TellsNothingToADelegateThatDoesNotHandleTheSearchButton) {
  const auto textOnly = make<TextOnly>();
  const auto bar = add<UISearchBar>("find", CGRect{0, 0, 300, 50});
  bar->setDelegate(textOnly);
  EXPECT_EQ(perform(step("find", "TYPE_SEARCH", "tea")), done);
  EXPECT_EQ(textOnly->heard, 0);
  bar->setDelegate(make<Searcher>());  // dies at once
  EXPECT_EQ(perform(step("find", "TYPE_SEARCH", "tea")), done);
  EXPECT_EQ(perform(step("find", "TYPE_SEARCH_CANCEL")), done);
}

TEST_F(StepOperationTest, SearchesThroughAControllerFirstTheButtonThenTheText) {
  const auto searcher = make<Searcher>();
  const auto search = make<UISearchController>();
  search->searchBar()->setDelegate(searcher);
  screen_->navigationItem()->setSearchController(search);
  show(make<UINavigationController>(screen_));
  RunLoop::advance(1);
  EXPECT_EQ(perform(step("nowhere", "TYPE_SEARCH", "tea")), done);
  EXPECT_TRUE(search->isActive());
  EXPECT_EQ(search->searchBar()->text(), "tea");
  EXPECT_THAT(searcher->heard, ElementsAre("search", "text tea"));
  ASSERT_TRUE(search->searchBar()->becomeFirstResponder());
  RunLoop::advance(0.51);
  EXPECT_FALSE(search->searchBar()->isFirstResponder()) << "half a second after the step it is put away";
  searcher->heard.clear();
  EXPECT_EQ(perform(step("nowhere", "TYPE_SEARCH_CANCEL")), done);
  EXPECT_THAT(searcher->heard, ElementsAre("cancel"));
  EXPECT_TRUE(search->isActive()) << "the delegate hears of it, the search is the host's to end";
  EXPECT_EQ(perform(step("nowhere", "TYPE_BUTTON")), missed);

  const auto textOnly = make<TextOnly>();
  search->searchBar()->setDelegate(textOnly);
  EXPECT_EQ(perform(step("nowhere", "TYPE_SEARCH", "tea")), done);
  EXPECT_EQ(textOnly->heard, 1) << "here the text is told whether or not the button is handled";
}

// ---- Cells

/// A list and a grid of named cells, which tell their selections.
struct Goods : Object<Goods, NSObject> {
  std::vector<std::string> heard;
  std::string prefix = "row ";
  std::string itemPrefix = "item ";
  std::int64_t count(Ref<UITableView>, std::int64_t) { return 3; }
  std::int64_t itemCount(Ref<UICollectionView>, std::int64_t) { return 3; }
  Ref<UITableViewCell> cell(Ref<UITableView> table, IndexPath path) {
    const auto cell = table->dequeueReusableCell("cell", path);
    cell->setAccessibilityIdentifier(prefix + std::to_string(path.row()));
    return cell;
  }
  Ref<UICollectionViewCell> item(Ref<UICollectionView> grid, IndexPath path) {
    const auto cell = grid->dequeueReusableCell("cell", path);
    cell->setAccessibilityIdentifier(itemPrefix + std::to_string(path.item()));
    return cell;
  }
  void selected(Ref<UITableView>, IndexPath path) { heard.push_back("row " + std::to_string(path.row())); }
  void selectedItem(Ref<UICollectionView>, IndexPath path) { heard.push_back("item " + std::to_string(path.item())); }
  static void exportMethods(MethodTable<Goods>& table) {
    table.add<&Goods::count>("tableView:numberOfRowsInSection:");
    table.add<&Goods::cell>("tableView:cellForRowAtIndexPath:");
    table.add<&Goods::selected>("tableView:didSelectRowAtIndexPath:");
    table.add<&Goods::itemCount>("collectionView:numberOfItemsInSection:");
    table.add<&Goods::item>("collectionView:cellForItemAtIndexPath:");
    table.add<&Goods::selectedItem>("collectionView:didSelectItemAtIndexPath:");
  }
};

class CellStepTest : public StepTest {
 protected:
  template <class Cell = UITableViewCell>
  Ref<UITableView> addTable() {
    const auto table = add<UITableView>("list", CGRect{0, 0, 390, 300}, UITableViewStyle::plain);
    table->registerClass<Cell>("cell");
    table->setDataSource(goods_);
    table->setDelegate(goods_);
    table->layoutIfNeeded();
    return table;
  }
  Ref<UICollectionView> addGrid() {
    const auto grid = add<UICollectionView>("grid", CGRect{0, 0, 390, 300}, make<UICollectionViewFlowLayout>());
    grid->registerClass<UICollectionViewCell>("cell");
    grid->setDataSource(goods_);
    grid->setDelegate(goods_);
    grid->layoutIfNeeded();
    return grid;
  }
  Ref<Goods> goods_ = make<Goods>();
};

TEST_F(CellStepTest, SelectsARowAndTellsTheDelegate) {
  const auto table = addTable();
  EXPECT_EQ(perform(step("row 1")), done);
  EXPECT_EQ(table->indexPathForSelectedRow(), IndexPath(1, 0));
  EXPECT_THAT(goods_->heard, ElementsAre("row 1"));
  table->setDelegate(nullptr);
  table->layoutIfNeeded();
  EXPECT_EQ(perform(step("row 2")), done);
  EXPECT_EQ(table->indexPathForSelectedRow(), IndexPath(2, 0));
}

/// Notes whether it was selected with an animation.
struct NotingCell : Object<NotingCell, UITableViewCell> {
  void setSelected(bool selected, bool animated) override {
    Super::setSelected(selected, animated);
    wasAnimated = wasAnimated || animated;
  }
  inline static bool wasAnimated = false;
};

TEST_F(CellStepTest, SelectsARowWithoutAnAnimation) {
  const auto table = addTable<NotingCell>();
  EXPECT_EQ(perform(step("row 1")), done);
  ASSERT_TRUE(as<NotingCell>(table->cellForRowAtIndexPath(IndexPath(1, 0))));
  EXPECT_TRUE(table->cellForRowAtIndexPath(IndexPath(1, 0))->isSelected());
  EXPECT_FALSE(NotingCell::wasAnimated);
}

TEST_F(CellStepTest, SelectsInTheListThatHoldsTheCellNotInOneAroundThat) {
  const auto outer = addTable();
  goods_->prefix = "inner row ";
  const auto inner = make<UITableView>(CGRect{0, 0, 200, 200}, UITableViewStyle::plain);
  inner->registerClass<UITableViewCell>("cell");
  inner->setDataSource(goods_);
  outer->cellForRowAtIndexPath(IndexPath(0, 0))->contentView()->addSubview(inner);
  inner->layoutIfNeeded();
  EXPECT_EQ(perform(step("inner row 2")), done);
  EXPECT_EQ(inner->indexPathForSelectedRow(), IndexPath(2, 0));
  EXPECT_FALSE(outer->indexPathForSelectedRow());
  EXPECT_THAT(goods_->heard, IsEmpty()) << "the delegate is the outer one's alone";
}

TEST_F(CellStepTest, SelectsAnItemAndTellsTheDelegate) {
  const auto grid = addGrid();
  EXPECT_EQ(perform(step("item 2")), done);
  EXPECT_THAT(grid->indexPathsForSelectedItems(), ElementsAre(IndexPath(2, 0)));
  EXPECT_THAT(goods_->heard, ElementsAre("item 2"));
}

TEST_F(CellStepTest, LeavesACellThatLeftItsTableMeanwhileAlone) {
  const auto table = addTable();
  const TLStepTarget target = TLStepTarget::find(step("row 1"));
  ASSERT_TRUE(target.view);
  table->removeFromSuperview();
  target.view->removeFromSuperview();
  TLTaskResult result;
  performStep(step("row 1"), target, result);
  EXPECT_THAT(goods_->heard, IsEmpty());
}

TEST_F(CellStepTest, PerformsTheSegueThatTheCellsNameSays) {
  const auto navigation = make<UINavigationController>(screen_);
  show(navigation);
  goods_->prefix = "tea SegueIdentifier-to-SegueIdentifier-detail ";  // its name is what follows the first mark
  addTable();
  struct Detail : Object<Detail, UIViewController> {};
  int made = 0;
  screen_->registerSegue("to-SegueIdentifier-detail 1", UIViewController::SegueKind::show, [&] {
    ++made;
    return make<Detail>();
  });
  EXPECT_EQ(perform(step("tea SegueIdentifier-to-SegueIdentifier-detail 2")), done)
      << "a segue that nobody registered is passed over";
  EXPECT_EQ(made, 0);
  EXPECT_EQ(perform(step("tea SegueIdentifier-to-SegueIdentifier-detail 1")), done);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(screen_->segueSender.lock(), screen_);
  RunLoop::advance(1);
  navigation->popViewControllerAnimated(false);
  RunLoop::advance(1);

  goods_->itemPrefix = "an item, SegueIdentifier-to-SegueIdentifier-detail ";
  addGrid();
  EXPECT_EQ(perform(step("an item, SegueIdentifier-to-SegueIdentifier-detail 1")), done);
  EXPECT_EQ(made, 2);
  EXPECT_EQ(navigation->viewControllers().size(), 2U);
  RunLoop::advance(1);  // the screen has slid in: nothing holds the two any more
}

TEST_F(CellStepTest, AsksAScreenThatPerformsItsSeguesItselfToo) {
  goods_->prefix = "tea SegueIdentifier-row ";
  screen_->ownSegue = "row 1";
  addTable();
  EXPECT_EQ(perform(step("tea SegueIdentifier-row 1")), done);
  EXPECT_EQ(perform(step("tea SegueIdentifier-row 2")), done) << "one that it does not know either is passed over";
  EXPECT_EQ(screen_->ownSeguesPerformed, 1);
  EXPECT_EQ(screen_->segueSender.lock(), screen_);
}

// ---- Tabs

TEST_F(StepOperationTest, SelectsATabByItsNumber) {
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({screen_, make<UIViewController>(), make<UIViewController>()});
  show(tabs);
  EXPECT_EQ(perform(step("bar", "TYPE_TABBAR", "2")), done);
  EXPECT_EQ(tabs->selectedIndex(), 2);
  EXPECT_EQ(perform(step("bar", "TYPE_TABBAR", "one")), missed);
  EXPECT_EQ(perform(step("bar", "TYPE_TABBAR", "99999999999999999999")), missed);
  EXPECT_EQ(perform(step("bar", "TYPE_BUTTON", "1")), missed) << "a number selects a tab in a tab step alone";
  EXPECT_EQ(perform(step("bar", "TYPE_TABBAR", "7")), done);
  EXPECT_EQ(tabs->selectedIndex(), 2) << "there is no eighth tab";
}

TEST_F(StepOperationTest, SelectsATabThroughTheTopScreenWhenOnlyASearchControllerWasFound) {
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<UINavigationController>(make<UIViewController>()), make<UIViewController>()});
  show(tabs);
  TLStepTarget target;
  TLTaskResult result;
  performStep(step("bar", "TYPE_TABBAR", "1"), target, result);
  EXPECT_EQ(tabs->selectedIndex(), 0);
  EXPECT_EQ(result, missed);
  target.searchController = make<UISearchController>();
  performStep(step("bar", "TYPE_TABBAR", "1"), target, result);
  EXPECT_EQ(tabs->selectedIndex(), 1);
  EXPECT_EQ(result, done);
}

// ---- Bars

TEST_F(StepOperationTest, SendsABarButtonsActionWhateverHappenedBefore) {
  const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, host_, sel("onTap:"));
  item->setAccessibilityIdentifier("add");
  screen_->navigationItem()->setRightBarButtonItem(item);
  show(make<UINavigationController>(screen_));
  EXPECT_EQ(perform(step("add")), done);
  EXPECT_THAT(host_->heard, ElementsAre("tap by UIBarButtonItem"));

  const auto button = add<UIButton>("add");
  button->setTitle("Also", UIControlState::normal);
  EXPECT_EQ(perform(step("add")), done) << "the title of a button of the same name is forgotten";
  EXPECT_EQ(host_->heard.size(), 2U);
}

/// A container whose screens' bars leave their actions to whoever up the responder chain takes them.
struct TakingNavigation : Object<TakingNavigation, UINavigationController> {
  std::vector<std::string> heard;
  void take(Ref<NSObject> sender) { heard.push_back(sender->isa().name()); }
  static void exportMethods(MethodTable<TakingNavigation>& table) { table.add<&TakingNavigation::take>("take:"); }
};

TEST_F(StepOperationTest, SendsAnActionWithoutATargetUpTheResponderChainAsAFingerDoes) {
  const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, nullptr, sel("take:"));
  item->setAccessibilityIdentifier("add");
  const auto control = make<UIButton>();
  control->addTarget(nullptr, sel("take:"), UIControlEvents::touchUpInside);
  control->addTarget(nullptr, sel("nobody takes:"), UIControlEvents::touchUpInside);
  const auto filter = make<UIBarButtonItem>(control);
  filter->setAccessibilityIdentifier("filter");
  screen_->navigationItem()->setRightBarButtonItems({item, filter});
  const auto navigation = make<TakingNavigation>(screen_);
  show(navigation);

  as<UIControl>(item->view())->sendActionsForControlEvents(UIControlEvents::touchUpInside);
  control->sendActionsForControlEvents(UIControlEvents::touchUpInside);
  EXPECT_THAT(navigation->heard, ElementsAre("UIBarButtonItem", "UIButton")) << "what a finger does";
  EXPECT_EQ(perform(step("add")), done);
  EXPECT_EQ(perform(step("filter")), done);
  EXPECT_THAT(navigation->heard, ElementsAre("UIBarButtonItem", "UIButton", "UIBarButtonItem", "UIButton"));

  item->setTarget(make<Host>());  // dies at once: an action for it is not one for the chain
  EXPECT_EQ(perform(step("add")), done);
  EXPECT_EQ(navigation->heard.size(), 4U);
}

TEST_F(StepOperationTest, SendsTheActionsOfABarButtonsOwnControl) {
  const auto control = make<UIButton>();
  const auto other = make<Host>();
  control->addTarget(host_, sel("onTap:"), UIControlEvents::touchUpInside);
  control->addTarget(other, sel("onTap:"), UIControlEvents::touchDown);
  const auto item = make<UIBarButtonItem>(control);
  item->setAccessibilityIdentifier("filter");
  const auto toolbar = make<UIToolbar>(CGRect{0, 0, 390, 44});
  toolbar->setItems({item});
  screen_->view()->addSubview(toolbar);
  EXPECT_EQ(perform(step("filter")), done);
  EXPECT_THAT(host_->heard, ElementsAre("tap by UIButton"));
  EXPECT_THAT(other->heard, IsEmpty());

  control->addTarget(host_, sel("hearAgain:"), UIControlEvents::touchUpInside);
  control->addTarget(other, sel("onTap:"), UIControlEvents::touchUpInside);
  host_->heard.clear();
  EXPECT_EQ(perform(step("filter")), done);
  EXPECT_THAT(host_->heard, ElementsAre("tap by UIButton", "again by UIButton")) << "every action";
  EXPECT_THAT(other->heard, ElementsAre("tap by UIButton")) << "of every target";

  const auto own = make<Host>();
  item->setTarget(own);
  item->setAction(sel("onTap:"));
  EXPECT_EQ(perform(step("filter")), done);
  EXPECT_THAT(own->heard, ElementsAre("tap by UIBarButtonItem"));
  EXPECT_EQ(host_->heard.size(), 2U) << "an action of the item's own takes the place of its control's";
  item->setTarget(nullptr);
  item->setAction(SEL());

  item->setCustomView(nullptr);
  EXPECT_EQ(perform(step("filter")), done) << "an item that does nothing was pressed all the same";
}

}  // namespace lumicor::test
