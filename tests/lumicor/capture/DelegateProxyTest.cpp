#include <gmock/gmock.h>

#include "lumicor/capture/LumicorPickerViewDelegateProxy.h"
#include "lumicor/capture/LumicorProxyInstallation.h"
#include "lumicor/capture/LumicorSearchBarDelegateProxy.h"
#include "lumicor/capture/LumicorTabBarDelegateProxy.h"
#include "lumicor/capture/LumicorTextViewDelegateProxy.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/lumicor/capture/CaptureTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A host's delegate for everything; what it hears stands in one list.
struct HostDelegate : Object<HostDelegate, NSObject> {
  std::vector<std::string> heard;
  Weak<NSObject> inner;  ///< asked besides, by a delegate that was set over another one

  void hear(const std::string& what) {
    heard.push_back(what + " after " + std::to_string(LumicorTrackingTask::taskFlow.size()));
  }
  void textChanged(const Ref<UITextView>& view) {
    hear("text");
    sendOptional(inner.lock(), sel("textViewDidChange:"), view);
  }
  bool shouldBegin(const Ref<UITextView>& view) {
    hear("should begin");
    return askOptional<bool>(inner.lock(), sel("textViewShouldBeginEditing:"), view).value_or(true);
  }
  void searched(const Ref<UISearchBar>&, const std::string& text) { hear("search " + text); }
  void searchClicked(const Ref<UISearchBar>&) { hear("clicked"); }
  void cancelClicked(const Ref<UISearchBar>& bar) { hear("cancelled with \"" + bar->text().value_or("") + "\""); }
  void rowSelected(const Ref<UIPickerView>&, std::int64_t row, std::int64_t component) {
    hear(std::to_string(row) + "-" + std::to_string(component));
  }
  std::string title(const Ref<UIPickerView>&, std::int64_t row, std::int64_t) { return "Row " + std::to_string(row); }
  std::int64_t components(const Ref<UIPickerView>&) { return 2; }
  std::int64_t rows(const Ref<UIPickerView>&, std::int64_t) { return 10; }
  void tabSelected(const Ref<UITabBarController>&, const Ref<UIViewController>&) { hear("tab"); }

  static void exportMethods(MethodTable<HostDelegate>& table) {
    table.add<&HostDelegate::textChanged>("textViewDidChange:")
        .add<&HostDelegate::shouldBegin>("textViewShouldBeginEditing:")
        .add<&HostDelegate::searched>("searchBar:textDidChange:")
        .add<&HostDelegate::searchClicked>("searchBarSearchButtonClicked:")
        .add<&HostDelegate::cancelClicked>("searchBarCancelButtonClicked:")
        .add<&HostDelegate::rowSelected>("pickerView:didSelectRow:inComponent:")
        .add<&HostDelegate::title>("pickerView:titleForRow:forComponent:")
        .add<&HostDelegate::components>("numberOfComponentsInPickerView:")
        .add<&HostDelegate::rows>("pickerView:numberOfRowsInComponent:")
        .add<&HostDelegate::tabSelected>("tabBarController:didSelectViewController:");
  }
};

class DelegateProxyTest : public CaptureTest {
 protected:
  ~DelegateProxyTest() override {
    Lumicor& session = Lumicor::shared();
    session.tabBarDelegates.clear();
    session.searchBarDelegates.clear();
    session.pickerViewDelegates.clear();
    session.textViewDelegates.clear();
  }
  void install() { LumicorTrackingTask::handleScreenChange(page()); }

  template <class View>
  Ref<View> addWithDelegate(const std::string& name, double height = 60) {
    const auto view = add<View>(name, height);
    view->setDelegate(host_);
    return view;
  }
  Ref<UIPickerView> addPicker(const std::string& name) {
    const auto picker = addWithDelegate<UIPickerView>(name, 200);
    picker->setDataSource(host_);
    return picker;
  }
  /// A person's turn of a wheel, as the delegate is told of it.
  static void turn(const Ref<UIPickerView>& picker, std::int64_t row, std::int64_t component = 0) {
    picker->selectRow(row, component, false);
    sendOptional(picker->delegate(), sel("pickerView:didSelectRow:inComponent:"), picker, row, component);
  }

  Ref<HostDelegate> host_ = make<HostDelegate>();
};

// ---- Text views

TEST_F(DelegateProxyTest, RegistersTextOnceAfterItHasBeenStillAndTellsTheHostFirst) {
  const auto text = addWithDelegate<UITextView>("note");
  install();
  tap(text);
  host_->heard.clear();
  hands().setTypingInterval(0.5);
  type("abc");
  EXPECT_THAT(host_->heard, ElementsAre("text after 0", "text after 0", "text after 0"));
  RunLoop::advance(0.8);
  EXPECT_THAT(names(), IsEmpty());
  RunLoop::advance(0.8);
  EXPECT_THAT(names(), ElementsAre("textView"));
  EXPECT_EQ(lastAction().value(), "abc");
  Lumicor::isTracking = false;
  type("d");
  RunLoop::advance(3);
  EXPECT_THAT(names(), SizeIs(1));
  EXPECT_THAT(host_->heard, SizeIs(4)) << "without tracking the proxy only hands on";
}

TEST_F(DelegateProxyTest, HandsOnWhatItDoesNotHearItself) {
  const auto text = addWithDelegate<UITextView>("note");
  install();
  const auto proxy = text->delegate();
  EXPECT_TRUE(proxy->respondsToSelector(sel("textViewShouldBeginEditing:")));
  EXPECT_FALSE(proxy->respondsToSelector(sel("textViewShouldEndEditing:")));
  tap(text);
  EXPECT_THAT(host_->heard, ElementsAre("should begin after 0"));

  host_ = nullptr;
  EXPECT_FALSE(proxy->respondsToSelector(sel("textViewShouldBeginEditing:")));
  EXPECT_TRUE(proxy->respondsToSelector(sel("textViewDidChange:")));
  type("x");
  RunLoop::advance(2);
  EXPECT_THAT(names(), ElementsAre("textView")) << "the dead delegate is not missed";
}

TEST_F(DelegateProxyTest, LooksAfterATextViewThatCameLate) {
  install();
  const auto text = addWithDelegate<UITextView>("note");
  tap(text);
  type("x");
  RunLoop::advance(2);
  EXPECT_THAT(names(), ElementsAre("textView"));
}

// ---- Search bars

TEST_F(DelegateProxyTest, RegistersASearchOnceWhetherConfirmedOrLeftAlone) {
  const auto bar = addWithDelegate<UISearchBar>("find");
  install();
  tap(bar->searchTextField());
  hands().setTypingInterval(0.2);
  type("te");
  RunLoop::advance(1.7);
  EXPECT_THAT(names(), IsEmpty());
  RunLoop::advance(0.3);
  EXPECT_THAT(names(), ElementsAre("searchTriggered"));
  EXPECT_EQ(lastAction().value(), "te");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_SEARCH);

  type("a\n");
  EXPECT_THAT(names(), SizeIs(2)) << "at once";
  EXPECT_EQ(lastAction().value(), "tea");
  RunLoop::advance(5);
  EXPECT_THAT(names(), SizeIs(2)) << "and not again";
  EXPECT_THAT(host_->heard,
              ElementsAre("search t after 0", "search te after 0", "search tea after 1", "clicked after 2"));
}

TEST_F(DelegateProxyTest, RegistersAGivenUpSearchAndEmptiesTheBarAlsoWithoutTracking) {
  const auto bar = addWithDelegate<UISearchBar>("find");
  bar->setShowsCancelButton(true);
  install();
  tap(bar->searchTextField());
  type("tea");
  host_->heard.clear();
  tap(bar->cancelButton());
  EXPECT_THAT(names(), ElementsAre("searchCancelled"));
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_SEARCH_CANCEL);
  EXPECT_EQ(lastAction().value(), "tea");
  EXPECT_EQ(bar->text(), "");
  EXPECT_FALSE(bar->isFirstResponder());
  EXPECT_THAT(host_->heard, ElementsAre("cancelled with \"\" after 1")) << "last of all";

  Lumicor::isTracking = false;
  bar->setText("x");
  tap(bar->cancelButton());
  RunLoop::advance(5);
  EXPECT_EQ(bar->text(), "");
  EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(DelegateProxyTest, LetsASearchGoWhoseBarIsGone) {
  auto bar = addWithDelegate<UISearchBar>("find");
  install();
  bar->searchTextField()->becomeFirstResponder();
  type("te");
  bar->resignFirstResponder();
  bar->removeFromSuperview();
  bar = nullptr;
  RunLoop::advance(1);
  LumicorProxyInstallation::forgetLostControls();
  EXPECT_THAT(Lumicor::shared().searchBarDelegates, IsEmpty());
  RunLoop::advance(5);
  EXPECT_THAT(names(), IsEmpty());
}

// ---- Pickers

TEST_F(DelegateProxyTest, RegistersTheRowOnWhichAWheelCameToRest) {
  const auto picker = addPicker("size");
  install();
  for (const std::int64_t row : {3, 4, 5}) {
    turn(picker, row, 1);
    RunLoop::advance(1);
  }
  RunLoop::advance(1.9);
  EXPECT_THAT(names(), IsEmpty());
  RunLoop::advance(0.2);
  EXPECT_THAT(names(), ElementsAre("pickerView"));
  EXPECT_EQ(lastAction().elementId(), "size");
  EXPECT_EQ(lastAction().value(), "5-1") << "as it is chosen again";
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_PICKER_VIEW);
  EXPECT_THAT(host_->heard, ElementsAre("3-1 after 0", "4-1 after 0", "5-1 after 0"));
  const auto proxy = Lumicor::shared().pickerViewDelegates.at(picker);
  EXPECT_EQ(proxy->lastSelectedRow(), 5);
  EXPECT_EQ(proxy->lastSelectedComponent(), 1);
}

TEST_F(DelegateProxyTest, RegistersAPickerThatIsAKeyboardInItsFieldsName) {
  const auto field = add<UITextField>("size");
  const auto picker = make<UIPickerView>();
  picker->setDataSource(host_);
  picker->setDelegate(host_);
  field->setInputView(picker);
  install();
  turn(picker, 5);
  RunLoop::advance(3.1);
  EXPECT_THAT(names(), ElementsAre("pickerView-5-0"));
  EXPECT_EQ(lastAction().elementId(), "size");
  EXPECT_EQ(lastAction().value(), "5-0");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_PICKER_VIEW);

  turn(picker, 6);
  Lumicor::isTracking = false;
  RunLoop::advance(4);
  EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(DelegateProxyTest, LeavesTheWheelsOfADatePickerToThePlatform) {
  add<UIDatePicker>("when", 200);
  add<UITextField>("birthday")->setInputView(make<UIDatePicker>());
  install();
  EXPECT_THAT(Lumicor::shared().pickerViewDelegates, IsEmpty());
}

// ---- Tabs

TEST_F(DelegateProxyTest, TellsTheHostOfATabOnceAfterItWasRegistered) {
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({page(), make<HostPage>()});
  tabs->setDelegate(host_);
  show(tabs);
  RunLoop::advance(1);
  tabs->tabBar()->setAccessibilityIdentifier("tabs");
  const auto tapTab = [&](double x) {
    const CGRect bar = tabs->tabBar()->convertRect(tabs->tabBar()->bounds(), nullptr);
    hands().tap(CGPoint{bar.origin.x + bar.size.width * x, bar.origin.y + 20});
    finishHands();
  };
  tapTab(0.75);
  EXPECT_THAT(names(), ElementsAre("tabbar"));
  EXPECT_EQ(lastAction().elementId(), "tabs");
  EXPECT_EQ(lastAction().value(), "1");
  EXPECT_EQ(lastAction().type(), LumicorType::TYPE_TABBAR);
  EXPECT_THAT(host_->heard, ElementsAre("tab after 1"));

  tabs->tabBar()->setAccessibilityIdentifier(std::nullopt);
  tapTab(0.25);
  Lumicor::isTracking = false;
  tapTab(0.75);
  EXPECT_THAT(host_->heard, SizeIs(3)) << "whatever is registered";
  EXPECT_THAT(names(), SizeIs(1));
}

// ---- Installation

TEST_F(DelegateProxyTest, AreInstalledDuringADemonstrationAlone) {
  Lumicor::isTracking = false;
  const auto text = addWithDelegate<UITextView>("note");
  install();
  EXPECT_EQ(text->delegate(), host_);
  Lumicor::isTracking = true;
  const auto search = make<UISearchController>(nullptr);
  page()->navigationItem()->setSearchController(search);
  install();
  EXPECT_EQ(text->delegate(), Lumicor::shared().textViewDelegates.at(text));
  EXPECT_TRUE(Lumicor::shared().searchBarDelegates.contains(search->searchBar()));
}

TEST_F(DelegateProxyTest, NeverWrapThemselvesHoweverOftenTheHostSetsItsDelegate) {
  const auto text = addWithDelegate<UITextView>("note");
  install();
  const auto first = text->delegate();
  install();
  EXPECT_EQ(text->delegate(), first);
  for (int visit = 0; visit < 3; ++visit) {
    text->setDelegate(host_);
    install();
    EXPECT_EQ(text->delegate(), first) << "the same proxy stands in front again";
  }
  const auto other = make<HostDelegate>();
  text->setDelegate(other);
  install();
  tap(text);
  type("x");
  RunLoop::advance(2);
  EXPECT_THAT(other->heard, ElementsAre("should begin after 0", "text after 0"));
  EXPECT_THAT(host_->heard, IsEmpty());
  EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(DelegateProxyTest, StandInFrontOfADelegateThatTheHostSetOverThem) {
  const auto text = addWithDelegate<UITextView>("note");
  install();
  const auto over = make<HostDelegate>();
  over->inner = text->delegate();
  text->setDelegate(over);
  install();
  tap(text);
  type("x");
  RunLoop::advance(2);
  EXPECT_THAT(over->heard, ElementsAre("should begin after 0", "text after 0"));
  EXPECT_THAT(host_->heard, ElementsAre("should begin after 0", "text after 0")) << "and nothing goes round in circles";
  EXPECT_THAT(names(), ElementsAre("textView"));
}

TEST_F(DelegateProxyTest, AreForgottenWithTheirControls) {
  auto text = addWithDelegate<UITextView>("note");
  const auto kept = addWithDelegate<UITextView>("kept");
  install();
  const Weak<UITextView> gone = text;
  text->removeFromSuperview();
  text = nullptr;
  EXPECT_FALSE(gone.expired()) << "the table holds it";
  install();
  EXPECT_TRUE(gone.expired());
  EXPECT_THAT(Lumicor::shared().textViewDelegates, SizeIs(1));

  // A host that changes its mind all day leaves nothing behind.
  std::vector<Weak<NSObject>> proxies;
  std::vector<Ref<HostDelegate>> delegates;
  for (int change = 0; change < 1000; ++change) {
    delegates.push_back(make<HostDelegate>());
    kept->setDelegate(delegates.back());
    install();
    proxies.push_back(kept->delegate());
  }
  EXPECT_LT(std::ranges::count_if(proxies, [](const auto& proxy) { return !proxy.expired(); }), 10);
}

}  // namespace lumicor::test
