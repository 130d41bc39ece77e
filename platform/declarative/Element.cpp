#include "platform/declarative/Element.h"

#include <algorithm>

namespace platform::declarative {

void Element::appear() {
  if (!appeared_) {
    appeared_ = true;
    didAppear();
  }
  forEachChild([](Element& child) { child.appear(); });
}

void Element::disappear() {
  forEachChild([](Element& child) { child.disappear(); });
  if (!appeared_) return;
  appeared_ = false;
  didDisappear();
}

Slot::~Slot() {
  if (element_) element_->disappear();
}

void Slot::update(const View& view, const Environment& environment) {
  const Description& description = *view.description();
  if (!element_ || kind_ != description.kind()) {
    if (element_) element_->disappear();
    element_ = description.makeElement();
    kind_ = description.kind();
  }
  element_->update(description, environment);
}

void LeafElement::place(CGRect rect) {
  if (view_) view_->setFrame(rect);
}

void LeafElement::collectViews(std::vector<Ref<UIView>>& views) {
  if (view_) views.push_back(view_);
}

void showViews(UIView& host, const std::vector<Ref<UIView>>& views) {
  if (host.subviews() == views) return;
  const std::vector<Ref<UIView>> before = host.subviews();
  for (const Ref<UIView>& view : before) {
    if (std::ranges::find(views, view) == views.end()) view->removeFromSuperview();
  }
  for (std::size_t i = 0; i < views.size(); ++i) {
    const auto& now = host.subviews();
    if (i >= now.size() || now[i] != views[i]) host.insertSubview(views[i], i);
  }
}

CGRect aligned(CGSize size, CGRect within, Alignment alignment) {
  const double freeX = within.size.width - size.width;
  const double freeY = within.size.height - size.height;
  const double shareX = alignment.horizontal == HorizontalAlignment::leading  ? 0
                        : alignment.horizontal == HorizontalAlignment::center ? 0.5
                                                                              : 1;
  const double shareY = alignment.vertical == VerticalAlignment::top      ? 0
                        : alignment.vertical == VerticalAlignment::center ? 0.5
                                                                          : 1;
  return {within.origin.x + freeX * shareX, within.origin.y + freeY * shareY, size.width, size.height};
}

}  // namespace platform::declarative
