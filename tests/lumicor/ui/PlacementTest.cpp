// The rules of the floating button and of the keyboard that need no views.

#include "lumicor/ui/TLFloaterPlacement.h"
#include "lumicor/ui/TLKeyboardOffset.h"

namespace lumicor {
namespace {

constexpr CGSize screen{390, 844};
constexpr UIEdgeInsets insets{47, 0, 34, 0};
constexpr double side = 60;

TEST(FloaterPlacement, StartsNearTheRightEdgeAThirdDown) {
  EXPECT_EQ(floaterPlacement::initialFrame(screen, side), (CGRect{320, 253, 60, 60}));
  EXPECT_EQ(floaterPlacement::initialFrame({375.8, 667}, 48), (CGRect{305, 200, 48, 48}));
}

TEST(FloaterPlacement, ComesToRestAsTheZoneOfItsReleaseSays) {
  struct Case {
    const char* what;
    CGPoint released;
    CGPoint rests;
  };
  const Case cases[] = {
      {"top left, closer than ten points to the side", {4, 5}, {10, 57}},
      {"top left, farther: the side is left alone", {40, 5}, {40, 57}},
      {"top, just inside the zone", {40, 59.9}, {40, 57}},
      {"top right, beyond the edge", {350, 5}, {320, 57}},
      {"bottom, in the middle", {100, 730}, {100, 740}},
      {"bottom left, beyond the edge", {-20, 800}, {10, 740}},
      {"in the open, left half", {100, 300}, {10, 300}},
      {"in the open, right half", {200, 300}, {320, 300}},
      {"in the open, exactly in the middle: to the right", {165, 300}, {320, 300}},
      {"the first point below the top zone", {100, 60}, {10, 60}},
      {"the last point above the bottom zone", {100, 724}, {10, 724}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const CGRect rest =
        floaterPlacement::restingFrame({each.released.x, each.released.y, side, side}, screen, insets, side);
    EXPECT_EQ(rest.origin, each.rests);
    EXPECT_EQ(rest.size, (CGSize{side, side}));
  }
}

TEST(FloaterPlacement, CountsTheQuarterDiscAroundTheCornerAsTheCloseTarget) {
  EXPECT_TRUE(floaterPlacement::isInsideCloseTarget({160, 160}));
  EXPECT_TRUE(floaterPlacement::isInsideCloseTarget({64, 32})) << "160 points from the corner, to the dot";
  EXPECT_FALSE(floaterPlacement::isInsideCloseTarget({63.9, 32}));
  EXPECT_FALSE(floaterPlacement::isInsideCloseTarget({0, 160})) << "on the target's edge";
  EXPECT_FALSE(floaterPlacement::isInsideCloseTarget({160, 0}));
  EXPECT_FALSE(floaterPlacement::isInsideCloseTarget({20, 20}));
}

TEST(KeyboardOffset, MovesTheBarOnlyFromTheBottomAndKeepsBothBranches) {
  const CGRect bar{0, 740, 390, 70};
  KeyboardSituation situation{.viewHeight = 844, .bottomInset = 34, .barFrame = bar, .keyboardHeight = 300};
  EXPECT_EQ(keyboardOffset(situation), -300) << "the ordinary branch ignores the inset";
  situation.keyboardHeight = 730;
  EXPECT_EQ(keyboardOffset(situation), -696) << "too little room above: the inset counts";
  situation.keyboardHeight = 720;
  EXPECT_EQ(keyboardOffset(situation), -720) << "exactly enough room is enough";
  situation.barFrame.origin.y = 739.9;
  EXPECT_EQ(keyboardOffset(situation), std::nullopt) << "a bar that was moved already stays";
}

}  // namespace
}  // namespace lumicor
