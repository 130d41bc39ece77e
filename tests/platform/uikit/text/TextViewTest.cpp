#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/ParagraphStack.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

using Code = UIKey::Code;

class ViewDelegate : public Object<ViewDelegate, NSObject> {
 public:
  Journal journal;
  bool changes = true;
  bool shouldBegin(const Ref<NSObject>&) { return journal.note("begin?"), true; }
  void didBegin(const Ref<NSObject>&) { journal.note("begun"); }
  bool shouldEnd(const Ref<NSObject>&) { return journal.note("end?"), true; }
  void didEnd(const Ref<NSObject>&) { journal.note("ended"); }
  bool shouldChange(const Ref<NSObject>&, NSRange range, std::string text) {
    journal.note("change?" + std::to_string(range.location) + "+" + std::to_string(range.length) + "=" + text);
    return changes;
  }
  void changed(const Ref<NSObject>&) { journal.note("changed"); }
  void scrolled(const Ref<NSObject>&) { journal.note("scrolled"); }
  static void exportMethods(MethodTable<ViewDelegate>& table) {
    table.add<&ViewDelegate::shouldBegin>("textViewShouldBeginEditing:");
    table.add<&ViewDelegate::didBegin>("textViewDidBeginEditing:");
    table.add<&ViewDelegate::shouldEnd>("textViewShouldEndEditing:");
    table.add<&ViewDelegate::didEnd>("textViewDidEndEditing:");
    table.add<&ViewDelegate::shouldChange>("textView:shouldChangeTextInRange:replacementText:");
    table.add<&ViewDelegate::changed>("textViewDidChange:");
    table.add<&ViewDelegate::scrolled>("scrollViewDidScroll:");
  }
};

class TextViewTest : public AppFixture {
 protected:
  TextViewTest() {
    view->setFrame({20, 100, 300, 120});
    view->setAccessibilityIdentifier("text");
    content()->addSubview(view);
    settle();
  }
  void keys(const std::vector<UIKey>& all) {
    for (const UIKey& key : all) UIApplication::shared().deliverKey(key);
  }
  static UIKey pressed(Code code, bool shift = false, bool control = false) { return {code, "", shift, control}; }
  static UIKey typed(const std::string& text) { return {Code::character, text, false, false}; }
  std::int64_t caret() const { return view->selectedRange().location; }

  Ref<UITextView> view = make<UITextView>();
  Ref<ViewDelegate> delegate = make<ViewDelegate>();
};

TEST_F(TextViewTest, TypingTellsDelegateAndObserversAndReturnBreaksTheLine) {
  view->setDelegate(delegate);
  int changes = 0;
  const auto token = NotificationCenter::defaultCenter().addObserver(UITextViewTextDidChangeNotification, view,
                                                                     [&](const Notification&) { ++changes; });
  tap("text");
  EXPECT_EQ(delegate->journal.take(), "begin? begun");
  type("a\n");
  EXPECT_EQ(delegate->journal.take(), "change?0+0=a changed change?1+0=\n changed");
  EXPECT_EQ(view->text(), "a\n");
  EXPECT_EQ(changes, 2);
  delegate->changes = false;
  type("b");
  EXPECT_EQ(view->text(), "a\n");
  view->setText("by program");
  EXPECT_EQ(changes, 2);
  view->resignFirstResponder();
  EXPECT_EQ(delegate->journal.take(), "change?2+0=b end? ended");
}

TEST_F(TextViewTest, TheCaretMovesByLinesAndKeepsItsColumn) {
  view->setText("a long first line\nx\na long third line");
  view->becomeFirstResponder();
  view->setSelectedRange({10, 0});
  keys({pressed(Code::down)});
  EXPECT_EQ(caret(), 19);
  keys({pressed(Code::down)});
  EXPECT_NEAR(static_cast<double>(caret() - 20), 10, 1);
  keys({pressed(Code::down)});
  EXPECT_EQ(caret(), 37);
  keys({pressed(Code::home)});
  EXPECT_EQ(caret(), 20);
  keys({pressed(Code::end)});
  EXPECT_EQ(caret(), 37);
  keys({pressed(Code::home, false, true)});
  EXPECT_EQ(caret(), 0);
  keys({pressed(Code::up)});
  EXPECT_EQ(caret(), 0);
  keys({pressed(Code::down, true), typed("y")});
  EXPECT_EQ(view->text(), "yx\na long third line");
}

TEST_F(TextViewTest, TheTextScrollsToKeepTheCaretInViewAndByTheFinger) {
  view->becomeFirstResponder();
  for (int i = 0; i < 30; ++i) keys({typed("line"), pressed(Code::returnKey)});
  settle();
  EXPECT_GT(view->contentSize().height, 600);
  EXPECT_NEAR(view->contentOffset().y, view->contentSize().height - 120, 30);
  view->resignFirstResponder();
  advance(1);
  view->setDelegate(delegate);
  drag({{100, 120}, {100, 200}});
  EXPECT_LT(view->contentOffset().y, view->contentSize().height - 150);
  EXPECT_FALSE(view->isFirstResponder());  // a drag is no tap
  EXPECT_NE(delegate->journal.take().find("scrolled"), std::string::npos);
}

TEST_F(TextViewTest, OneThatIsNotEditableCanBeReadAndCopiedFrom) {
  view->setText("green tea");
  view->setEditable(false);
  tap("text");
  EXPECT_FALSE(view->isFirstResponder());
  advance(1);
  tap(CGPoint{40, 118}, 2);
  EXPECT_TRUE(view->isFirstResponder());
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
  keys(
      {{Code::character, "c", false, true}, typed("x"), pressed(Code::backspace), {Code::character, "v", false, true}});
  EXPECT_EQ(UIPasteboard::general().string(), "green");
  EXPECT_EQ(view->text(), "green tea");
}

TEST_F(TextViewTest, WithoutScrollingItIsAsHighAsItsText) {
  view->setText("one\ntwo\nthree");
  EXPECT_EQ(view->intrinsicContentSize().height, UIViewNoIntrinsicMetric);
  view->setScrollEnabled(false);
  const double three = view->intrinsicContentSize().height;
  view->setText("one");
  const double one = view->intrinsicContentSize().height;
  EXPECT_NEAR((three - 16) / (one - 16), 3, 0.1);
  view->setText("words that need more than one line at this narrow width");
  EXPECT_GT(*view->intrinsicHeightForWidth(120), 3 * (one - 16));
}

TEST_F(TextViewTest, EditsInAVeryLongTextLeaveTheRestAlone) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "paragraph number " + std::to_string(i) + " of a very long text\n";
  view->setText(text);
  view->becomeFirstResponder();
  settle();
  view->setSelectedRange({static_cast<std::int64_t>(text.size() / 2), 0});
  settle();
  EXPECT_GT(view->contentOffset().y, 100000);
  keys({typed("x"), pressed(Code::backspace), pressed(Code::returnKey), pressed(Code::backspace)});
  EXPECT_EQ(view->text(), text);
  view->setText(std::string(1 << 20, 'x'));
  view->setSelectedRange({1 << 19, 0});
  keys({typed("\xFF"), pressed(Code::backspace)});
  settle();
  EXPECT_EQ(view->text()->size(), std::size_t{1} << 20);
}

TEST_F(TextViewTest, AnEditedStackOfParagraphsIsWhatAFreshOneWouldBe) {
  TextStyle style;
  EditableText text;
  text.setText("one\ntwo is longer and wraps at this width\n\nfour");
  ParagraphStack edited;
  edited.reset(text, style, 120);
  const struct {
    NSRange range;
    const char* replacement;
  } edits[] = {{{0, 0}, "zero\n"}, {{5, 4}, ""},  {{3, 1}, "\n\n"},      {{10, 20}, "x\ny\nz"},
               {{0, 3}, ""},       {{4, 0}, "a"}, {{2, 12}, "\nwords "}, {{0, 1000}, "all new"}};
  for (const auto& edit : edits) {
    const NSRange range = text.whole(edit.range);
    text.replace(range, edit.replacement);
    const auto start = static_cast<std::size_t>(range.location);
    edited.replaced(text, start, static_cast<std::size_t>(range.end()), start + std::string(edit.replacement).size());
    ParagraphStack fresh;
    fresh.reset(text, style, 120);
    EXPECT_EQ(edited.height(), fresh.height()) << text.text();
    for (std::size_t at = 0; at <= text.text().size(); ++at) {
      EXPECT_EQ(edited.caretRect(at), fresh.caretRect(at)) << at << " in " << text.text();
    }
    for (double y = -10; y < fresh.height() + 10; y += 7) {
      EXPECT_EQ(edited.positionAt({30, y}), fresh.positionAt({30, y}));
    }
  }
}

}  // namespace
}  // namespace platform::test
