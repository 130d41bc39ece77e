#include <gmock/gmock.h>

#include "platform/animation/CALayer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeTest : public AppFixture {
 protected:
  std::vector<std::string> log;
};

/// Notes what the platform tells it.
class ToldView : public Object<ToldView, UIView> {
 public:
  void willMoveToSuperview(const Ref<UIView>& superview) override { note(superview ? "will move" : "will leave"); }
  void didMoveToSuperview() override { note("did move"); }
  void didAddSubview(const Ref<UIView>&) override { note("did add"); }
  void willRemoveSubview(const Ref<UIView>&) override { note("will remove"); }
  void willMoveToWindow(const Ref<UIWindow>& window) override { note(window ? "will enter" : "will exit"); }
  void didMoveToWindow() override {
    note(window() ? "did enter" : "did exit");
    if (onWindow) onWindow();
  }
  void tintColorDidChange() override { note("tint"); }

  std::string name;
  std::vector<std::string>* log = nullptr;
  std::function<void()> onWindow;

 private:
  void note(const std::string& what) {
    if (log) log->push_back(name + " " + what);
  }
};

/// A chain of views, one inside the other; the innermost is `innermost`.
Ref<UIView> chainOf(int depth, Ref<UIView>* innermost) {
  Ref<UIView> at = *innermost = make<UIView>(CGRect{0, 0, 100, 100});
  for (int i = 1; i < depth; ++i) {
    const auto around = make<UIView>(CGRect{0, 0, 100, 100});
    around->addSubview(at);
    at = around;
  }
  return at;
}

}  // namespace

TEST_F(TreeTest, KeepsSubviewsAndTheirLayersInOrder) {
  const auto parent = make<UIView>();
  const auto own = CALayer::layer();  // a layer of the host's own, between those of views
  const auto a = make<UIView>();
  const auto b = make<UIView>();
  const auto c = make<UIView>();
  const auto layers = [&] {
    std::string names;
    for (const Ref<CALayer>& layer : parent->layer()->sublayers()) {
      names += layer == own ? '-' : layer == a->layer() ? 'a' : layer == b->layer() ? 'b' : 'c';
    }
    return names;
  };
  parent->addSubview(a);
  parent->layer()->addSublayer(own);
  parent->addSubview(b);
  EXPECT_EQ(layers(), "ab-") << "beside the layers of its siblings, not on top of what the host put there";
  parent->insertSubviewBelow(c, b);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, c, b));
  parent->bringSubviewToFront(a);
  EXPECT_THAT(parent->subviews(), ElementsAre(c, b, a));
  EXPECT_EQ(layers(), "cba-");
  parent->sendSubviewToBack(b);
  parent->insertSubviewAbove(c, a);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, a, c));
  EXPECT_EQ(layers(), "bac-");
  parent->addSubview(b);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, c, b));
  parent->insertSubview(c, 99);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, b, c));
  parent->insertSubviewAbove(b, a);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, b, c)) << "above its sibling already";
  EXPECT_EQ(layers(), "abc-");
  a->removeFromSuperview();
  EXPECT_EQ(layers(), "bc-");
  EXPECT_EQ(a->superview(), nullptr);
}

TEST_F(TreeTest, KeepsAViewInFrontOfSiblingsOfALowerLevelWhereverTheyAreInserted) {
  const auto parent = make<UIView>();
  const auto a = make<UIView>(), b = make<UIView>(), c = make<UIView>();
  const auto front = make<UIView>(), foremost = make<UIView>();
  front->setFrontLevel(1);
  foremost->setFrontLevel(2);
  for (const Ref<UIView>& view : {foremost, front, a, b}) parent->addSubview(view);
  EXPECT_THAT(parent->subviews(), ElementsAre(a, b, front, foremost));
  parent->insertSubviewAbove(c, foremost);
  parent->bringSubviewToFront(a);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, c, a, front, foremost));
  parent->sendSubviewToBack(foremost);
  parent->insertSubviewBelow(front, b);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, c, a, front, foremost));
  std::vector<Ref<CALayer>> layers;
  for (const Ref<UIView>& view : parent->subviews()) layers.push_back(view->layer());
  EXPECT_EQ(parent->layer()->sublayers(), layers);

  b->setFrontLevel(1);
  EXPECT_THAT(parent->subviews(), ElementsAre(c, a, front, b, foremost)) << "the last one of its level to come";
  parent->sendSubviewToBack(b);
  EXPECT_THAT(parent->subviews(), ElementsAre(c, a, b, front, foremost)) << "the last one of its own level";
  b->setFrontLevel(-1);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, c, a, front, foremost));
  foremost->setFrontLevel(0);
  EXPECT_THAT(parent->subviews(), ElementsAre(b, c, a, foremost, front));
}

TEST_F(TreeTest, TellsEverybodyConcernedOfMoves) {
  const auto told = [&](const char* name) {
    auto view = make<ToldView>();
    view->name = name;
    view->log = &log;
    return view;
  };
  const auto parent = told("parent");
  const auto child = told("child");
  const auto grandchild = told("grandchild");
  child->addSubview(grandchild);
  content()->addSubview(parent);
  log.clear();
  parent->addSubview(child);
  EXPECT_THAT(log, ElementsAre("child will move", "child will enter", "grandchild will enter", "child did enter",
                               "grandchild did enter", "child did move", "parent did add"));
  log.clear();
  child->removeFromSuperview();
  EXPECT_THAT(log, ElementsAre("parent will remove", "child will leave", "child will exit", "grandchild will exit",
                               "child did exit", "grandchild did exit", "child did move"));
  log.clear();
  parent->addSubview(child);
  log.clear();
  content()->addSubview(child);
  EXPECT_THAT(log, ElementsAre("parent will remove", "child will move", "child did move"))
      << "inside one window nobody leaves it";
}

TEST_F(TreeTest, HandsTintDownToThoseWithoutTheirOwn) {
  const auto parent = make<UIView>();
  const auto child = make<ToldView>();
  const auto stubborn = make<ToldView>();
  child->name = "child";
  stubborn->name = "stubborn";
  child->log = stubborn->log = &log;
  parent->addSubview(child);
  parent->addSubview(stubborn);
  EXPECT_EQ(child->tintColor(), UIColor(0, 122.0 / 255, 1, 1));
  stubborn->setTintColor(UIColor::black());
  log.clear();
  parent->setTintColor(UIColor::white());
  EXPECT_THAT(log, ElementsAre("child tint"));
  EXPECT_EQ(child->tintColor(), UIColor::white());
  EXPECT_EQ(stubborn->tintColor(), UIColor::black());
  log.clear();
  child->removeFromSuperview();
  EXPECT_EQ(log.back(), "child tint");
  EXPECT_EQ(child->tintColor(), UIColor(0, 122.0 / 255, 1, 1));
}

TEST_F(TreeTest, RefusesToPutAViewIntoItself) {
  const auto a = make<UIView>();
  const auto b = make<UIView>();
  a->addSubview(b);
  EXPECT_DEATH(b->addSubview(a), "cannot become a subview of itself");
  EXPECT_DEATH(a->addSubview(a), "cannot become a subview of itself");
}

TEST_F(TreeTest, FindsTagsDepthFirstFromTheBack) {
  const auto root = make<UIView>();
  const auto first = make<UIView>();
  const auto second = make<UIView>();
  const auto inFirst = make<UIView>();
  root->addSubview(first);
  root->addSubview(second);
  first->addSubview(inFirst);
  second->setTag(7);
  inFirst->setTag(7);
  EXPECT_EQ(root->viewWithTag(7), inFirst);
  EXPECT_EQ(root->viewWithTag(8), nullptr);
}

TEST_F(TreeTest, MayBeOfAnyDepth) {
  constexpr int depth = 20000;
  Ref<UIView> innermost;
  Ref<UIView> root = chainOf(depth, &innermost);
  const Weak<UIView> watched = innermost;
  content()->addSubview(root);
  EXPECT_EQ(innermost->window(), window());
  settle();  // laid out
  EXPECT_EQ(innermost->convertPoint({1, 1}, nullptr), (CGPoint{1, 1}));
  EXPECT_EQ(window()->hitTest({50, 50}, nullptr), innermost);
  EXPECT_EQ(window()->hitTest({150, 50}, nullptr), content());
  EXPECT_TRUE(innermost->isDescendantOfView(window().get()));
  innermost->touchesBegan({}, nullptr);  // up the whole responder chain
  innermost->setTag(7);
  EXPECT_EQ(root->viewWithTag(7), innermost);
  root->setTintColor(UIColor::black());
  EXPECT_EQ(UIApplication::shared().screenshot()->cgImage()->color(10, 10), UIColor::white());
  root->removeFromSuperview();
  EXPECT_EQ(innermost->window(), nullptr);
  innermost.reset();
  root.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(TreeTest, LeavesWhatSomebodyKeepsOutsideOfAnyWindow) {
  auto parent = make<UIView>();
  auto middle = make<UIView>();
  const auto kept = make<ToldView>();
  middle->addSubview(kept);
  parent->addSubview(middle);
  content()->addSubview(parent);
  kept->log = &log;
  middle.reset();
  parent->removeFromSuperview();
  log.clear();
  parent.reset();
  EXPECT_EQ(kept->superview(), nullptr);
  EXPECT_EQ(kept->layer()->superlayer(), nullptr);
  content()->addSubview(kept);
  EXPECT_EQ(kept->window(), window());

  auto second = make<UIWindow>(CGRect{0, 0, 100, 100});
  second->setHidden(false);
  second->addSubview(kept);
  log.clear();
  second.reset();
  EXPECT_THAT(log, ElementsAre(" did exit"));
  EXPECT_EQ(kept->window(), nullptr);
}

TEST_F(TreeTest, LetsConstraintsGoWithTheTreeTheyStoodIn) {
  auto outer = make<UIView>(CGRect{0, 0, 100, 100});
  const auto kept = make<UIView>();
  {
    const auto middle = make<UIView>();
    outer->addSubview(middle);
    middle->addSubview(kept);
    for (const Ref<UIView>& view : {middle, kept}) {
      view->setTranslatesAutoresizingMaskIntoConstraints(false);
      view->leftAnchor().constraintEqualToAnchor(outer->leftAnchor(), 10)->setActive(true);
      view->topAnchor().constraintEqualToAnchor(outer->topAnchor(), 10)->setActive(true);
      view->widthAnchor().constraintEqualToAnchor(outer->widthAnchor())->setActive(true);
    }
    kept->heightAnchor().constraintEqualToConstant(30)->setActive(true);
    content()->addSubview(outer);
    settle();
  }
  EXPECT_EQ(kept->bounds().size, (CGSize{100, 30}));
  outer->removeFromSuperview();
  outer.reset();
  const auto next = make<UIView>(CGRect{0, 0, 50, 50});
  next->addSubview(kept);
  content()->addSubview(next);
  kept->widthAnchor().constraintEqualToConstant(20)->setActive(true);
  settle();
  EXPECT_EQ(kept->bounds().size, (CGSize{20, 30})) << "its own constraints are still its own";
}

TEST_F(TreeTest, CopesWithHooksThatChangeTheTree) {
  const auto restless = make<ToldView>();
  const auto inner = make<ToldView>();
  restless->addSubview(inner);
  inner->log = &log;
  restless->onWindow = [&] {
    restless->onWindow = nullptr;
    restless->removeFromSuperview();
  };
  content()->addSubview(restless);
  EXPECT_EQ(restless->window(), nullptr);
  EXPECT_EQ(inner->window(), nullptr);
  EXPECT_THAT(content()->subviews(), IsEmpty());
  EXPECT_THAT(log, ElementsAre(" will enter", " will exit", " did exit")) << "where it is, it was told once";

  // One that the hook took to another window hears of that window alone.
  auto second = make<UIWindow>(CGRect{0, 0, 100, 100});
  const auto moved = make<ToldView>();
  restless->addSubview(moved);
  std::vector<Ref<UIWindow>> entered;
  moved->onWindow = [&] { entered.push_back(moved->window()); };
  restless->onWindow = [&] {
    if (restless->window()) second->addSubview(moved);
  };
  content()->addSubview(restless);
  EXPECT_THAT(entered, ElementsAre(second));
  moved->onWindow = restless->onWindow = nullptr;
}

}  // namespace platform::test
