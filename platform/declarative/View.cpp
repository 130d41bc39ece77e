#include "platform/declarative/View.h"

#include "platform/declarative/Elements.h"

namespace platform::declarative {

View View::padding(UIEdgeInsets insets) const { return describe<PaddingElement>({*this, insets}); }

View View::frame(std::optional<double> width, std::optional<double> height, Alignment alignment) const {
  return describe<FrameElement>({*this, width, height, false, false, alignment});
}

View View::expand(bool horizontally, bool vertically, Alignment alignment) const {
  return describe<FrameElement>({*this, std::nullopt, std::nullopt, horizontally, vertically, alignment});
}

View View::background(const View& behind) const { return describe<LayeredElement>({*this, behind, true}); }
View View::overlay(const View& above) const { return describe<LayeredElement>({*this, above, false}); }

View View::font(const UIFont& font) const { return describe<EnvironmentElement>({*this, font, std::nullopt}); }

View View::foregroundColor(const UIColor& color) const {
  return describe<EnvironmentElement>({*this, std::nullopt, color});
}

View View::opacity(double opacity) const { return describe<GroupElement>({.content = *this, .opacity = opacity}); }

View View::cornerRadius(double radius) const {
  return describe<GroupElement>({.content = *this, .cornerRadius = radius});
}

View View::onTapGesture(std::function<void()> action) const {
  return describe<GroupElement>({.content = *this, .tapped = std::move(action)});
}

View View::accessibilityIdentifier(const std::string& identifier) const {
  return describe<GroupElement>({.content = *this, .identifier = identifier});
}

View View::onAppear(std::function<void()> action) const {
  return describe<LifecycleElement>({*this, std::move(action), nullptr});
}

View View::onDisappear(std::function<void()> action) const {
  return describe<LifecycleElement>({*this, nullptr, std::move(action)});
}

View Text(const std::string& text) { return describe<TextElement>({text}); }
View Image(const Ref<UIImage>& image) { return describe<ImageElement>({image}); }
View Color(const UIColor& color) { return describe<ColorElement>({color}); }
View Spacer(double minimum) { return describe<SpacerElement>({minimum}); }

View Button(const std::string& title, std::function<void()> action) {
  return describe<ButtonElement>({title, std::move(action)});
}

View Toggle(bool isOn, std::function<void(bool)> changed) {
  return describe<ToggleElement>({isOn, std::move(changed)});
}

View Represented(std::function<Ref<UIView>()> make, std::function<void(UIView&)> update) {
  return describe<RepresentedElement>({std::move(make), std::move(update)});
}

View HStack(std::vector<View> children, double spacing, VerticalAlignment alignment) {
  return describe<StackElement>(
      {std::move(children), StackElement::Direction::horizontal, spacing, {HorizontalAlignment::center, alignment}});
}

View VStack(std::vector<View> children, double spacing, HorizontalAlignment alignment) {
  return describe<StackElement>(
      {std::move(children), StackElement::Direction::vertical, spacing, {alignment, VerticalAlignment::center}});
}

View ZStack(std::vector<View> children, Alignment alignment) {
  return describe<StackElement>({std::move(children), StackElement::Direction::depth, 0, alignment});
}

View ScrollView(const View& content) { return describe<ScrollElement>({content}); }

View GeometryReader(std::function<View(const GeometryProxy&)> content) {
  return describe<GeometryElement>({std::move(content)});
}

}  // namespace platform::declarative
