#include "tests/platform/uikit/constraints/LayoutFixture.h"

namespace platform {
namespace {

using namespace layouttest;

/// One row of a conversation: a bubble round wrapped text that hangs from one side.
Ref<UIView> bubbleRow(const Ref<UIView>& list, const std::string& name, std::size_t letters, bool isRemote) {
  const auto row = placed(list, name);
  const auto bubble = placed(row, name + " bubble");
  const auto text = placed<Letters>(bubble, name + " text", letters);
  const auto dots = placed(row, name + " dots");
  const auto leading = text->leadingAnchor().constraintEqualToAnchor(row->leadingAnchor(), 32);
  const auto trailing = text->trailingAnchor().constraintEqualToAnchor(row->trailingAnchor(), -32);
  activate({text->topAnchor().constraintEqualToAnchor(row->topAnchor(), 16),
            text->bottomAnchor().constraintEqualToAnchor(row->bottomAnchor(), -16),
            bubble->topAnchor().constraintEqualToAnchor(text->topAnchor(), -10),
            bubble->leadingAnchor().constraintEqualToAnchor(text->leadingAnchor(), -10),
            bubble->bottomAnchor().constraintEqualToAnchor(text->bottomAnchor(), 10),
            bubble->trailingAnchor().constraintEqualToAnchor(text->trailingAnchor(), 10),
            dots->centerXAnchor().constraintEqualToAnchor(bubble->centerXAnchor()),
            dots->centerYAnchor().constraintEqualToAnchor(bubble->centerYAnchor()),
            dots->widthAnchor().constraintEqualToConstant(52), dots->heightAnchor().constraintEqualToConstant(12),
            at(text->widthAnchor().constraintLessThanOrEqualToConstant(250), 750), isRemote ? leading : trailing});
  return row;
}

/// A conversation above an input bar with a field that stretches and a button that does not.
class ConversationTest : public testing::Test {
 protected:
  ConversationTest() {
    const auto field = placed<Letters>(bar, "field", std::size_t{4});
    const auto send = placed<Letters>(bar, "send", std::size_t{5});
    field->setContentHuggingPriority(249, UILayoutAxis::horizontal);
    barBottom = bar->bottomAnchor().constraintEqualToAnchor(screen->layoutMarginsGuide()->bottomAnchor());
    activate({barBottom, list->topAnchor().constraintEqualToAnchor(screen->topAnchor()),
              list->leadingAnchor().constraintEqualToAnchor(screen->leadingAnchor()),
              list->trailingAnchor().constraintEqualToAnchor(screen->trailingAnchor()),
              list->bottomAnchor().constraintEqualToAnchor(bar->topAnchor()),
              bar->leadingAnchor().constraintEqualToAnchor(screen->leadingAnchor()),
              bar->trailingAnchor().constraintEqualToAnchor(screen->trailingAnchor()),
              bar->heightAnchor().constraintGreaterThanOrEqualToConstant(60),
              field->leadingAnchor().constraintEqualToAnchor(bar->leadingAnchor(), 16),
              field->topAnchor().constraintEqualToAnchor(bar->topAnchor(), 20),
              field->bottomAnchor().constraintEqualToAnchor(bar->bottomAnchor(), -20),
              send->leadingAnchor().constraintEqualToAnchor(field->trailingAnchor(), 8),
              send->trailingAnchor().constraintEqualToAnchor(bar->trailingAnchor(), -16),
              send->centerYAnchor().constraintEqualToAnchor(field->centerYAnchor())});
    Ref<UIView> above;
    const std::size_t lengths[] = {12, 70, 4};
    for (std::size_t i = 0; i < 3; ++i) {
      const auto row = bubbleRow(list, "row " + std::to_string(i), lengths[i], i == 1);
      activate({row->leadingAnchor().constraintEqualToAnchor(list->leadingAnchor()),
                row->trailingAnchor().constraintEqualToAnchor(list->trailingAnchor()),
                above ? row->topAnchor().constraintEqualToAnchor(above->bottomAnchor())
                      : row->topAnchor().constraintEqualToAnchor(list->topAnchor())});
      above = row;
    }
  }
  const Ref<UIView> screen = root(390, 600);
  const Ref<UIView> list = placed(screen, "list");
  const Ref<UIView> bar = placed(screen, "bar");
  Ref<NSLayoutConstraint> barBottom;
};

TEST_F(ConversationTest, IsLaidOutFromTextToScreen) {
  screen->layoutIfNeeded();
  EXPECT_EQ(dump(*screen), R"(root: 0 0  390 x 600
  list: 0 0  390 x 532
    row 0: 0 0  390 x 52
      row 0 bubble: 228 6  140 x 40
        row 0 text: 10 10  120 x 20
      row 0 dots: 272 20  52 x 12
    row 1: 0 52  390 x 92
      row 1 bubble: 22 6  270 x 80
        row 1 text: 10 10  250 x 60
      row 1 dots: 131 40  52 x 12
    row 2: 0 144  390 x 52
      row 2 bubble: 308 6  60 x 40
        row 2 text: 10 10  40 x 20
      row 2 dots: 312 20  52 x 12
  bar: 0 532  390 x 60
    field: 16 20  300 x 20
    send: 324 20  50 x 20
)");
}

TEST_F(ConversationTest, FollowsTheKeyboardAndARotation) {
  screen->layoutIfNeeded();
  barBottom->setConstant(-300);
  screen->layoutIfNeeded();
  EXPECT_EQ(text(bar->frame()), "0 232  390 x 60");
  EXPECT_EQ(text(list->frame()), "0 0  390 x 232");
  screen->setFrame({0, 0, 240, 600});
  barBottom->setConstant(0);
  screen->layoutIfNeeded();
  EXPECT_EQ(text(list->subviews()[1]->frame()), "0 52  240 x 92");  // its text may pass the far edge
  EXPECT_EQ(text(bar->subviews()[0]->frame()), "16 20  150 x 20");
}

}  // namespace
}  // namespace platform
