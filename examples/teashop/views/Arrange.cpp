#include "examples/teashop/views/Arrange.h"

#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace teashop {

using namespace platform;

namespace {

Ref<UIStackView> makeStack(std::vector<Ref<UIView>> views, UILayoutAxis axis, UIStackViewAlignment alignment,
                           double spacing) {
  auto stack = make<UIStackView>(std::move(views));
  stack->setTranslatesAutoresizingMaskIntoConstraints(false);
  stack->setAxis(axis);
  stack->setAlignment(alignment);
  stack->setSpacing(spacing);
  return stack;
}

template <class Edges>
void pinTo(UIView& view, const Edges& edges, UIEdgeInsets insets) {
  view.setTranslatesAutoresizingMaskIntoConstraints(false);
  NSLayoutConstraint::activateConstraints({
      view.topAnchor().constraintEqualToAnchor(edges->topAnchor(), insets.top),
      view.leadingAnchor().constraintEqualToAnchor(edges->leadingAnchor(), insets.left),
      view.trailingAnchor().constraintEqualToAnchor(edges->trailingAnchor(), -insets.right),
      view.bottomAnchor().constraintEqualToAnchor(edges->bottomAnchor(), -insets.bottom),
  });
}

}  // namespace

Ref<UIStackView> makeColumn(std::vector<Ref<UIView>> views, double spacing) {
  return makeStack(std::move(views), UILayoutAxis::vertical, UIStackViewAlignment::fill, spacing);
}

Ref<UIStackView> makeRow(std::vector<Ref<UIView>> views, double spacing) {
  return makeStack(std::move(views), UILayoutAxis::horizontal, UIStackViewAlignment::center, spacing);
}

void keepWidth(const Ref<UIView>& view) {
  view->setContentHuggingPriority(751, UILayoutAxis::horizontal);
  view->setContentCompressionResistancePriority(751, UILayoutAxis::horizontal);
}

void pin(const Ref<UIView>& view, const Ref<UILayoutGuide>& guide, UIEdgeInsets insets) { pinTo(*view, guide, insets); }
void pin(const Ref<UIView>& view, const Ref<UIView>& around, UIEdgeInsets insets) { pinTo(*view, around, insets); }

void setHeight(const Ref<UIView>& view, double height) {
  view->heightAnchor().constraintEqualToConstant(height)->setActive(true);
}

void setWidth(const Ref<UIView>& view, double width) {
  view->widthAnchor().constraintEqualToConstant(width)->setActive(true);
}

Ref<UIImageView> makeSymbol(const std::string& name, double size, const UIColor& color) {
  auto view = make<UIImageView>(UISystemSymbol::image(name, size));
  view->setTranslatesAutoresizingMaskIntoConstraints(false);
  view->setTintColor(color);
  return view;
}

}  // namespace teashop
