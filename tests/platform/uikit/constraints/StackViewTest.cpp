#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

/// A view of a size of its own.
class Block : public Object<Block, UIView> {
 public:
  CGSize size;
  void init(double width, double height) {
    size = {width, height};
    initWithFrame(CGRect{});
  }
  CGSize intrinsicContentSize() const override { return size; }
};

class StackViewTest : public AppFixture {
 protected:
  void build(std::vector<Ref<UIView>> views, CGSize size) {
    stack = make<UIStackView>(std::move(views));
    stack->setTranslatesAutoresizingMaskIntoConstraints(false);
    content()->addSubview(stack);
    NSLayoutConstraint::activateConstraints({stack->leftAnchor().constraintEqualToAnchor(content()->leftAnchor(), 10),
                                             stack->topAnchor().constraintEqualToAnchor(content()->topAnchor(), 100)});
    if (size.width > 0) stack->widthAnchor().constraintEqualToConstant(size.width)->setActive(true);
    if (size.height > 0) stack->heightAnchor().constraintEqualToConstant(size.height)->setActive(true);
  }
  Ref<UIStackView> stack;
  Ref<UIView> a = make<Block>(40, 20);
  Ref<UIView> b = make<Block>(60, 30);
  Ref<UIView> c = make<Block>(20, 10);
};

TEST_F(StackViewTest, IsAsLargeAsItsViewsAndTheSpacesBetween) {
  build({a, b, c}, {});
  stack->setSpacing(8);
  settle();
  EXPECT_EQ(stack->frame().size, (CGSize{136, 30}));
  EXPECT_EQ(a->frame(), CGRect(0, 0, 40, 30));
  EXPECT_EQ(b->frame(), CGRect(48, 0, 60, 30));
  EXPECT_EQ(c->frame(), CGRect(116, 0, 20, 30));
  stack->setAxis(UILayoutAxis::vertical);
  stack->setCustomSpacing(20, a);
  settle();
  EXPECT_EQ(stack->frame().size, (CGSize{60, 20 + 20 + 30 + 8 + 10}));
  EXPECT_EQ(b->frame(), CGRect(0, 40, 60, 30));
}

TEST_F(StackViewTest, AHiddenViewTakesNoRoomAndARemovedOneLeaves) {
  build({a, b, c}, {});
  stack->setSpacing(10);
  settle();
  b->setHidden(true);
  settle();
  EXPECT_EQ(c->frame().minX(), 50);
  EXPECT_EQ(stack->frame().width(), 70);
  b->setHidden(false);
  settle();
  EXPECT_EQ(c->frame().minX(), 120);
  a->removeFromSuperview();
  settle();
  EXPECT_EQ(stack->arrangedSubviews(), (std::vector<Ref<UIView>>{b, c}));
  EXPECT_EQ(b->frame().minX(), 0);
  stack->insertArrangedSubview(a, 9);
  stack->insertArrangedSubview(c, 0);
  settle();
  EXPECT_EQ(c->frame().minX(), 0);
  EXPECT_EQ(a->frame().minX(), 20 + 10 + 60 + 10);
  for (const auto& view : {a, b, c}) stack->removeArrangedSubview(view);
  settle();
  EXPECT_EQ(stack->subviews().size(), 3u);
}

TEST_F(StackViewTest, DistributesRoomAsItIsTold) {
  build({a, b, c}, {330, 50});
  stack->setDistribution(UIStackViewDistribution::fillEqually);
  stack->setSpacing(15);
  settle();
  EXPECT_EQ(b->frame(), CGRect(115, 0, 100, 50));
  stack->setDistribution(UIStackViewDistribution::equalSpacing);
  settle();
  EXPECT_EQ(a->frame().width(), 40);
  EXPECT_EQ(b->frame().minX(), 40 + 105);
  EXPECT_EQ(c->frame().maxX(), 330);
  stack->setDistribution(UIStackViewDistribution::equalCentering);
  settle();
  EXPECT_NEAR(b->frame().midX() - a->frame().midX(), c->frame().midX() - b->frame().midX(), 0.51);
  stack->setDistribution(UIStackViewDistribution::fillProportionally);
  stack->setSpacing(0);
  settle();
  EXPECT_NEAR(a->frame().width() / b->frame().width(), 40.0 / 60, 0.02);
  EXPECT_NEAR(a->frame().width() / c->frame().width(), 2, 0.05);
}

TEST_F(StackViewTest, AlignsAcrossItsAxisAndKeepsMargins) {
  build({a, b}, {200, 60});
  const struct {
    UIStackViewAlignment alignment;
    double top;
    double height;
  } table[] = {{UIStackViewAlignment::fill, 0, 60},
               {UIStackViewAlignment::top, 0, 20},
               {UIStackViewAlignment::center, 20, 20},
               {UIStackViewAlignment::bottom, 40, 20}};
  for (const auto& row : table) {
    stack->setAlignment(row.alignment);
    settle();
    EXPECT_EQ(a->frame().minY(), row.top);
    EXPECT_EQ(a->frame().height(), row.height);
  }
  stack->setLayoutMargins({5, 6, 7, 8});
  stack->setLayoutMarginsRelativeArrangement(true);
  stack->setAlignment(UIStackViewAlignment::fill);
  settle();
  EXPECT_EQ(a->frame().origin, (CGPoint{6, 5}));
  EXPECT_EQ(b->frame().maxX(), 192);
  EXPECT_EQ(a->frame().height(), 48);
}

TEST_F(StackViewTest, TakesItsOwnEntriesForArguments) {
  build({a, b, c}, {});
  stack->setCustomSpacing(50, b);
  stack->insertArrangedSubview(stack->arrangedSubviews()[0], 2);
  EXPECT_EQ(stack->arrangedSubviews(), (std::vector<Ref<UIView>>{b, a, c}));
  stack->removeArrangedSubview(stack->arrangedSubviews()[1]);
  stack->removeArrangedSubview(stack->arrangedSubviews()[1]);
  EXPECT_EQ(stack->arrangedSubviews(), std::vector<Ref<UIView>>{b});
  stack->addArrangedSubview(c);
  settle();
  EXPECT_EQ(c->frame().minX(), 60 + 50) << "b keeps the space it was given";
}

}  // namespace
}  // namespace platform::test
