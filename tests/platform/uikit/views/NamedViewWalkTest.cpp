#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <random>

#include "platform/animation/CALayer.h"
#include "platform/uikit/views/NamedViewWalk.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A view whose name comes from elsewhere and changes without anybody being told.
struct Oracle : Object<Oracle, UIView> {
  const std::optional<std::string>* answer = nullptr;
  std::optional<std::string> accessibilityIdentifier() const override {
    return answer ? *answer : UIView::accessibilityIdentifier();
  }
};

std::vector<std::string> walk(UIView& root) {
  std::vector<std::string> names;
  NamedViewWalk walk(root);
  while (walk.next()) names.push_back(walk.name());
  EXPECT_FALSE(walk.isCutShort());
  return names;
}

/// The same by asking every view.
void askEveryView(UIView& view, std::vector<std::string>& names) {
  if (const auto name = view.accessibilityIdentifier()) names.push_back(*name);
  for (const Ref<UIView>& child : view.subviews()) askEveryView(*child, names);
}

/// Up the layers one by one, nothing remembered.
CGPoint originInRoot(const UIView& view) {
  CGPoint point = view.bounds().origin;
  for (const UIView* at = &view; at->superview(); at = at->superview().get()) {
    point = at->layer()->transformToSuperlayer().apply(point);
  }
  return point;
}

class NamedViewWalkTest : public AppFixture {};

}  // namespace

TEST_F(NamedViewWalkTest, ReadsEachViewWhenItIsReached) {
  const auto named = [&](const char* name, const Ref<UIView>& parent) {
    const auto view = make<UIView>();
    view->setAccessibilityIdentifier(name);
    parent->addSubview(view);
    return view;
  };
  const auto a = named("a", content()), b = named("b", content());
  const auto inA = named("in a", a);
  NamedViewWalk walk(*content());
  EXPECT_EQ(walk.next(), a.get());
  inA->setAccessibilityIdentifier("renamed");
  EXPECT_EQ(walk.next(), inA.get());
  EXPECT_EQ(walk.name(), "renamed");
  b->removeFromSuperview();
  EXPECT_TRUE(walk.isCutShort());
  EXPECT_EQ(walk.next(), nullptr) << "b may be gone for good";
}

TEST_F(NamedViewWalkTest, AsksViewsThatAnswerForThemselvesEveryTime) {
  std::optional<std::string> answer;
  for (const Ref<Oracle>& oracle : {make<Oracle>(), std::make_shared<Oracle>()}) {
    const auto between = make<UIView>();
    oracle->answer = &answer;
    between->addSubview(oracle);
    content()->addSubview(between);
    answer = std::nullopt;
    EXPECT_THAT(walk(*content()), IsEmpty());
    answer = "now";
    EXPECT_THAT(walk(*content()), ElementsAre("now"));
    between->removeFromSuperview();
  }
}

/// A screen that lives for long: whatever happens to names, trees and places, walks and places are those that asking
/// everybody anew would give.
TEST_F(NamedViewWalkTest, StaysRightThroughLongHistories) {
  std::mt19937 random(20261123);
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  const auto number = [&] { return static_cast<double>(below(4000)) / 8 - 250; };
  std::vector<Ref<UIView>> views{content()};
  const auto anyView = [&] { return views[below(views.size())]; };
  const auto anyButRoot = [&] { return views[1 + below(views.size() - 1)]; };
  std::array<std::optional<std::string>, 3> answers;
  const auto rename = [&](std::optional<std::string>& name, std::size_t i) {
    name = below(2) ? std::optional("view " + std::to_string(i)) : std::nullopt;
  };

  for (std::size_t i = 0; i < 6000; ++i) {
    const std::size_t what = views.size() < 150 ? 0 : below(15);
    switch (what) {
      case 0: {
        Ref<UIView> view;
        if (i % 40 == 0) {
          const auto oracle = make<Oracle>();
          oracle->answer = &answers[below(answers.size())];
          view = oracle;
        } else {
          view = make<UIView>(CGRect{number(), number(), 50, 60});
        }
        // Half of them into a few views, so that some have more subviews than there are groups to remember.
        const Ref<UIView> parent = below(2) ? anyView() : views[below(std::min<std::size_t>(3, views.size()))];
        parent->insertSubview(view, below(parent->subviews().size() + 1));
        if (below(4) == 0) view->setAccessibilityIdentifier("view " + std::to_string(i));
        views.push_back(view);
        break;
      }
      case 1:
      case 2: {
        std::optional<std::string> name;
        rename(name, i);
        anyView()->setAccessibilityIdentifier(name);
        break;
      }
      case 3: {  // to another place, unless that lies inside
        const auto moved = anyButRoot();
        const auto target = anyView();
        if (!target->isDescendantOfView(moved.get())) target->insertSubview(moved, below(5));
        break;
      }
      case 4: {  // gone with what is in it; what is kept stands alone
        const auto lost = anyButRoot();
        lost->removeFromSuperview();
        std::erase_if(views, [&](const Ref<UIView>& view) { return view->isDescendantOfView(lost.get()) && below(8); });
        break;
      }
      case 5:
        anyButRoot()->superview() ? anyButRoot()->sendSubviewToBack(anyView()) : void();
        break;
      case 6:
        anyButRoot()->setTransform(CGAffineTransform::rotation(static_cast<double>(below(7))).scaledBy(1.25, 0.5));
        break;
      case 7:
        anyButRoot()->setTransform({});
        break;
      case 8:
        anyButRoot()->setBounds({number(), number(), 70, 80});
        break;
      case 9:
        anyButRoot()->setFrame({number(), number(), 30, 40});
        break;
      case 10:
        anyView()->setHidden(below(2));
        break;
      case 11:
        anyButRoot()->layer()->setPosition({number(), number()});
        break;
      case 12:
        anyButRoot()->layer()->setAnchorPoint({0.25, 1});
        break;
      case 13:
        anyButRoot()->layer()->setValueForKeyPath(number(), "transform.translation.x");
        break;
      default:
        rename(answers[below(answers.size())], i);
    }
    if (i % 5 != 0 || views.size() < 2) continue;
    std::vector<std::string> expected;
    const Ref<UIView> root = i % 2 ? content() : anyView();
    askEveryView(*root, expected);
    ASSERT_EQ(walk(*root), expected) << "after " << i;
    for (int k = 0; k < 30; ++k) {
      const Ref<UIView> view = anyView();
      const CGPoint origin = view->convertRect(view->bounds(), nullptr).origin, naive = originInRoot(*view);
      const CGRect box = view->convertRect({view->bounds().origin, {0, 0}}, nullptr);
      ASSERT_NEAR(box.origin.x, naive.x, 1e-6 * (1 + std::abs(naive.x))) << "after " << i << ", " << what;
      ASSERT_NEAR(box.origin.y, naive.y, 1e-6 * (1 + std::abs(naive.y))) << "after " << i << ", " << what;
      ASSERT_EQ(origin, view->convertRect(view->bounds(), nullptr).origin) << "asked twice";
    }
  }
}

}  // namespace platform::test
