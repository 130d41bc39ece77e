// What the assistant's face owes to people who hear it, who see little, and whose fingers are wide.

#include <algorithm>

#include "lumicor/ui/LumicorLoaderView.h"
#include "lumicor/ui/LumicorToast.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "tests/lumicor/ui/ChatFixture.h"
#include "tests/support/Contrast.h"

namespace lumicor {
namespace {

using platform::test::contrast;
using platform::test::readable;

/// What a finger needs, in points.
constexpr double fingerSize = 44;

class ChatAccessibility : public test::ChatFixture {
 protected:
  void SetUp() override {
    service_.answer("/sdk/steps/get", URLProtocol::Reply::failure(URLError::Code::networkConnectionLost).after(30));
    Lumicor::shared().setChatHistory({{"Good day", true, 1}, {"Two sencha, please", false, 2}, {"Done", true, 3}});
    TLFloaterManager::shared().show();
    button()->setShow(true);
    pass(1);
    openChat();
  }
  void TearDown() override { pass(31); }

  Ref<TLChatMessageCell> cell(std::int64_t row) const {
    return as<TLChatMessageCell>(chat()->tableView()->cellForRowAtIndexPath(IndexPath(row, 0)));
  }
  static UIColor ground(const Ref<UIView>& view) { return view->backgroundColor().value(); }

  template <class T>
  static std::vector<Ref<T>> below(const Ref<UIView>& root) {
    std::vector<Ref<T>> found;
    if (root->isHidden()) return found;
    if (const auto view = as<T>(root)) found.push_back(view);
    for (const Ref<UIView>& child : root->subviews()) {
      const auto more = below<T>(child);
      found.insert(found.end(), more.begin(), more.end());
    }
    return found;
  }
};

TEST_F(ChatAccessibility, EveryControlSaysWhatItIs) {
  const auto controls = below<UIControl>(chat()->view());
  EXPECT_EQ(controls.size(), 3u) << "close, field, Send";
  for (const Ref<UIControl>& control : controls) {
    EXPECT_NE(control->accessibilityLabel().value_or(""), "") << control->description();
  }
  EXPECT_NE(button()->accessibilityLabel().value_or(""), "");
  chat()->inputTextField()->setText("hello");
  chat()->sendMessage();
  pass(0.5);
  ASSERT_FALSE(cell(4)->typingIndicatorView()->isHidden());
  EXPECT_EQ(cell(4)->typingIndicatorView()->accessibilityLabel(), "Typing") << "not the marker behind the dots";
}

// Title, close, messages from old to new, field, Send: whether a reader goes by the tree or by what stands where.
TEST_F(ChatAccessibility, IsReadFromTopToBottom) {
  const std::vector<Ref<UIView>> expected = {chat()->titleLabel(),    chat()->crossButton(),   cell(0)->messageLabel(),
                                             cell(1)->messageLabel(), cell(2)->messageLabel(), chat()->inputTextField(),
                                             chat()->sendButton()};
  double row = 0, column = 0;
  for (const Ref<UIView>& view : expected) {
    const CGPoint place = view->convertPoint({view->bounds().midX(), view->bounds().midY()}, nullptr);
    const bool isSameRow = std::abs(place.y - row) < 1;
    EXPECT_TRUE(isSameRow ? place.x > column : place.y > row) << view->description();
    row = place.y;
    column = place.x;
  }
  const auto all = below<UIView>(chat()->view());
  auto last = all.begin();
  for (const Ref<UIView>& view :
       {expected[0], expected[1], Ref<UIView>(chat()->tableView()), expected[5], expected[6]}) {
    const auto found = std::find(all.begin(), all.end(), view);
    ASSERT_NE(found, all.end());
    EXPECT_GE(found, last) << view->description();
    last = found;
  }
}

TEST_F(ChatAccessibility, EveryControlTakesAFingersWidth) {
  const auto takesFinger = [](const Ref<UIView>& view) {
    constexpr double reach = fingerSize / 2 - 0.01;
    const CGPoint center{view->bounds().midX(), view->bounds().midY()};
    return view->pointInside({center.x - reach, center.y}, nullptr) &&
           view->pointInside({center.x + reach, center.y}, nullptr) &&
           view->pointInside({center.x, center.y - reach}, nullptr) &&
           view->pointInside({center.x, center.y + reach}, nullptr);
  };
  for (const Ref<UIControl>& control : below<UIControl>(chat()->view())) {
    EXPECT_TRUE(takesFinger(control)) << control->accessibilityLabel().value_or("");
  }
  EXPECT_TRUE(takesFinger(button()));
}

TEST_F(ChatAccessibility, TextStandsOutFromItsGround) {
  for (const std::int64_t row : {0, 1}) {
    EXPECT_GE(contrast(cell(row)->messageLabel()->textColor(), ground(cell(row)->bubbleBackgroundView())), readable)
        << row;
  }
  EXPECT_GE(contrast(chat()->titleLabel()->textColor(), ground(chat()->view())), readable);
  EXPECT_GE(contrast(chat()->sendButton()->currentTitleColor(), ground(chat()->sendButton())), readable);
  EXPECT_GE(contrast(chat()->inputTextField()->textColor(), ground(chat()->inputTextField())), readable);
  const auto loader = make<LumicorLoaderView>(CGRect{0, 0, 150, 150});
  EXPECT_GE(contrast(loader->loadingLabel()->textColor(), ground(loader)), readable);
  const auto toast = make<LumicorToast>();
  EXPECT_GE(contrast(toast->label()->textColor(), ground(toast)), readable);
  const auto dots = ground(cell(0)->bubbleBackgroundView());
  EXPECT_GE(contrast(UIColor::white(), dots), platform::test::discernible) << "the typing dots are always white";
}

// What is paler on purpose. One that becomes readable belongs into the test above.
TEST_F(ChatAccessibility, KnowsItsExceptions) {
  const auto& field = chat()->inputTextField();
  const auto placeholder = field->attributedPlaceholder()->attributes().foregroundColor.value();
  EXPECT_EQ(placeholder, UIColor::lightGray());
  EXPECT_LT(contrast(placeholder, ground(field)), readable)
      << "the placeholder is light grey on white: it must not be taken for a text, and the field says what it is";
  chat()->setInputEnabled(false);
  EXPECT_EQ(chat()->sendButton()->currentTitleColor(), UIColor::gray());
  EXPECT_LT(contrast(UIColor::gray(), ground(chat()->sendButton())), readable)
      << "the title of a Send that cannot be pressed is grey on grey: that is how it says so";
}

}  // namespace
}  // namespace lumicor
