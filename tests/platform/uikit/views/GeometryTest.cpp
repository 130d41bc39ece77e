#include <cmath>
#include <gmock/gmock.h>

#include "platform/uikit/application/UIWindow.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

namespace {

class GeometryTest : public AppFixture {
 protected:
  Ref<UIView> add(CGRect frame, const Ref<UIView>& superview = nullptr) {
    auto view = make<UIView>(frame);
    (superview ? superview : content())->addSubview(view);
    return view;
  }
};

void expectNear(CGPoint a, CGPoint b) {
  EXPECT_NEAR(a.x, b.x, 1e-9);
  EXPECT_NEAR(a.y, b.y, 1e-9);
}

}  // namespace

TEST_F(GeometryTest, KeepsFrameBoundsAndCenterInStep) {
  const auto view = add({10, 20, 100, 50});
  EXPECT_EQ(view->center(), (CGPoint{60, 45}));
  view->setBounds({5, 7, 60, 30});
  EXPECT_EQ(view->frame(), (CGRect{30, 30, 60, 30})) << "it grows and shrinks about its centre";
  view->setFrame({0, 0, 40, 40});
  EXPECT_EQ(view->bounds(), (CGRect{5, 7, 40, 40})) << "a frame leaves the origin of the bounds alone";
  view->setCenter({100, 100});
  EXPECT_EQ(view->frame(), (CGRect{80, 80, 40, 40}));
  view->setTransform(CGAffineTransform::scale(2, 0.5));
  EXPECT_EQ(view->frame(), (CGRect{60, 90, 80, 20}));
  EXPECT_EQ(view->bounds().size, (CGSize{40, 40}));
  view->setTransform(CGAffineTransformIdentity);
  view->setFrame({0, 0, -5, 10});
  EXPECT_EQ(view->bounds().size.width, 0);
}

TEST_F(GeometryTest, TellsWholeNumbersWhereWholeNumbersWereMeant) {
  // Half sizes that binary fractions cannot hold must leave no trace: coordinates get cut down to whole points.
  for (int i = 0; i < 200; ++i) {
    const double size = 30 + i * 0.1;
    const auto outer = add({13.0 + i, 5, size, size * 1.7});
    const auto inner = add({7, 9.0 + i, size / 3, size / 7}, outer);
    EXPECT_EQ(outer->frame().origin, (CGPoint{13.0 + i, 5}));
    const CGRect inWindow = inner->convertRect(inner->bounds(), window().get());
    EXPECT_EQ(inWindow.origin, (CGPoint{20.0 + i, 14.0 + i}));
    outer->removeFromSuperview();
  }
}

TEST_F(GeometryTest, ConvertsBetweenAnyTwoViews) {
  const auto left = add({20, 100, 100, 100});
  const auto leftChild = add({10, 10, 50, 50}, left);
  const auto right = add({200, 300, 100, 100});
  right->setBounds({0, 1000, 100, 100});  // scrolled
  const auto rightChild = add({5, 1005, 20, 20}, right);
  const auto turned = add({0, 0, 100, 40});
  turned->setTransform(CGAffineTransform::rotation(M_PI_2));

  EXPECT_EQ(leftChild->convertPoint({1, 2}, nullptr), (CGPoint{31, 112}));
  EXPECT_EQ(leftChild->convertPoint({1, 2}, rightChild.get()), (CGPoint{31 - 205, 112 - 305}));
  EXPECT_EQ(rightChild->convertPointFrom({1, 2}, leftChild.get()), (CGPoint{31 - 205, 112 - 305}));
  EXPECT_EQ(rightChild->convertPointFrom({205, 305}, nullptr), (CGPoint{0, 0}));
  EXPECT_EQ(right->convertRect({0, 1000, 10, 20}, window().get()), (CGRect{200, 300, 10, 20}));
  EXPECT_EQ(left->convertRectFrom({31, 112, 4, 4}, nullptr), (CGRect{11, 12, 4, 4}));
  EXPECT_EQ(left->convertPoint({3, 4}, left.get()), (CGPoint{3, 4}));

  expectNear(turned->convertPoint({0, 0}, content().get()), {70, -30});
  expectNear(turned->convertPointFrom({70, -30}, content().get()), {0, 0});
  const CGRect box = turned->convertRect(turned->bounds(), content().get());
  expectNear(box.origin, {30, -30});
  EXPECT_NEAR(box.size.width, 40, 1e-9);

  const auto elsewhere = make<UIView>(CGRect{500, 500, 10, 10});
  EXPECT_EQ(elsewhere->convertPoint({1, 1}, window().get()), (CGPoint{1, 1})) << "roots lie on one another";
}

TEST_F(GeometryTest, ConvertsBetweenWindowsByWayOfTheScreen) {
  const auto other = make<UIWindow>(CGRect{0, 0, 390, 844});
  other->setHidden(false);
  const auto outer = add({10, 10, 100, 100}, other);
  const auto inner = add({1, 2, 20, 20}, outer);
  window()->setFrame({0, 100, 390, 744});
  const auto here = add({5, 5, 50, 50});
  EXPECT_EQ(outer->convertRect(outer->bounds(), window().get()), (CGRect{10, -90, 100, 100}));
  EXPECT_EQ(inner->convertPoint({0, 0}, here.get()), (CGPoint{6, -93}));
  EXPECT_EQ(here->convertPointFrom({0, 0}, inner.get()), (CGPoint{6, -93}));
  EXPECT_EQ(here->convertRectFrom({0, 0, 4, 4}, inner.get()), (CGRect{6, -93, 4, 4}));
  EXPECT_EQ(window()->convertPoint({0, 0}, other.get()), (CGPoint{0, 100}));
  EXPECT_EQ(inner->convertPoint({0, 0}, nullptr), (CGPoint{11, 12})) << "none is its own window";
  window()->setBounds({0, 50, 390, 744});  // scrolled
  EXPECT_EQ(outer->convertPoint({0, 0}, window().get()), (CGPoint{10, -40}));
  const auto loose = make<UIView>(CGRect{500, 500, 10, 10});
  EXPECT_EQ(loose->convertPoint({1, 1}, window().get()), (CGPoint{1, 1})) << "it stands on no screen";
}

TEST_F(GeometryTest, HandsTheSafeAreaDownAsFarAsViewsReachIntoIt) {
  EXPECT_EQ(window()->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}));
  struct Case {
    CGRect frame;
    UIEdgeInsets expected;
  };
  const Case cases[] = {{{0, 0, 390, 844}, {47, 0, 34, 0}},
                        {{0, 20, 390, 804}, {27, 0, 14, 0}},
                        {{0, 47, 390, 763}, {0, 0, 0, 0}},
                        {{0, 744, 390, 200}, {0, 0, 34, 0}},
                        {{0, -100, 390, 150}, {47, 0, 0, 0}}};
  const auto view = add({0, 100, 10, 10});
  const auto child = add({0, 5, 10, 10}, view);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.frame.origin.y);
    view->setFrame(c.frame);
    EXPECT_EQ(view->safeAreaInsets(), c.expected);
    EXPECT_EQ(child->safeAreaInsets().top, std::max(0.0, c.expected.top - 5));
  }
  view->setFrame({0, 0, 390, 844});
  view->setCenter({195, 1300});
  EXPECT_EQ(view->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}))
      << "what slides off the screen keeps its content still";
  view->removeFromSuperview();
  EXPECT_EQ(view->safeAreaInsets(), UIEdgeInsets{});
  EXPECT_EQ(child->safeAreaInsets(), UIEdgeInsets{});
}

TEST_F(GeometryTest, AddsWhatAControllersBarsTakeToTheSafeArea) {
  const auto root = make<UIViewController>();
  root->setAdditionalSafeAreaInsets({44, 0, 49, 0});
  show(root);
  const auto child = add({0, 0, 390, 400}, root->view());
  EXPECT_EQ(root->view()->safeAreaInsets(), (UIEdgeInsets{91, 0, 83, 0}));
  EXPECT_EQ(child->safeAreaInsets(), (UIEdgeInsets{91, 0, 0, 0}));
  root->setAdditionalSafeAreaInsets({0, 0, 0, 0});
  EXPECT_EQ(child->safeAreaInsets(), (UIEdgeInsets{47, 0, 0, 0}));
}

}  // namespace platform::test
