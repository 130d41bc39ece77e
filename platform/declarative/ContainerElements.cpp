#include <algorithm>

#include "platform/animation/CALayer.h"
#include "platform/declarative/Elements.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"

namespace platform::declarative {

// ---- Environment

void EnvironmentElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<EnvironmentElement>(description);
  Environment inside = environment;
  if (properties.font) inside.font = *properties.font;
  if (properties.foregroundColor) inside.foregroundColor = *properties.foregroundColor;
  child_.update(properties.content, inside);
}

namespace {

/// A reader of geometry inside measures itself in the window: the view has to be in its place before the content is.
void enter(const Weak<UIView>& host, const Ref<UIView>& view) {
  const auto parent = host.lock();
  if (parent && !view->superview()) parent->addSubview(view);
}

void placeInside(Element& content, UIView& view, CGRect rect) {
  content.place(rect);
  std::vector<Ref<UIView>> views;
  content.collectViews(views);
  showViews(view, views);
}

}  // namespace

// ---- Group

void GroupElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<GroupElement>(description);
  if (!view_) view_ = make<UIView>();
  view_->setAlpha(properties.opacity);
  view_->layer()->setCornerRadius(properties.cornerRadius);
  view_->setClipsToBounds(properties.cornerRadius > 0);
  view_->setAccessibilityIdentifier(properties.identifier);
  if (properties.tapped && !target_) {
    target_ = make<ActionTarget>();
    view_->addGestureRecognizer(make<UITapGestureRecognizer>(target_, sel("fire:")));
  }
  if (target_) {
    target_->action = [tapped = properties.tapped](const Ref<NSObject>&) {
      if (tapped) tapped();
    };
  }
  host_ = environment.host;
  Environment inside = environment;
  inside.host = view_;
  child_.update(properties.content, inside);
}

void GroupElement::place(CGRect rect) {
  enter(host_, view_);
  view_->setFrame(rect);
  placeInside(*child_, *view_, {{0, 0}, rect.size});
}

// ---- Scroll

void ScrollElement::update(const Description& description, const Environment& environment) {
  if (!view_) view_ = make<UIScrollView>();
  host_ = environment.host;
  Environment inside = environment;
  inside.host = view_;
  child_.update(propertiesOf<ScrollElement>(description).content, inside);
}

CGSize ScrollElement::sizeThatFits(ProposedSize offered) {
  const CGSize content = child_->sizeThatFits({offered.width, std::nullopt});
  return {offered.width.value_or(content.width), offered.height.value_or(content.height)};
}

void ScrollElement::place(CGRect rect) {
  enter(host_, view_);
  view_->setFrame(rect);
  const CGSize content = child_->sizeThatFits({rect.size.width, std::nullopt});
  view_->setContentSize({rect.size.width, content.height});
  placeInside(*child_, *view_, {0, 0, rect.size.width, content.height});
}

void ScrollElement::collectViews(std::vector<Ref<UIView>>& views) { views.push_back(view_); }

// ---- Appearing and disappearing

void LifecycleElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<LifecycleElement>(description);
  appeared_ = properties.appeared;
  disappeared_ = properties.disappeared;
  child_.update(properties.content, environment);
}

void LifecycleElement::didAppear() {
  if (const auto run = appeared_) run();
}

void LifecycleElement::didDisappear() {
  if (const auto run = disappeared_) run();
}

// ---- Geometry

void GeometryElement::update(const Description& description, const Environment& environment) {
  content_ = propertiesOf<GeometryElement>(description).content;
  environment_ = environment;
  evaluatedAt_.reset();
}

CGSize GeometryElement::sizeThatFits(ProposedSize offered) {
  constexpr double defaultLength = 10;
  return {offered.width.value_or(defaultLength), offered.height.value_or(defaultLength)};
}

CGRect GeometryElement::globalFrame() const {
  const auto host = environment_.host.lock();
  return host ? host->convertRect(rect_, nullptr) : rect_;
}

void GeometryElement::place(CGRect rect) {
  rect_ = rect;
  const CGRect global = globalFrame();
  if (!environment_.isOnScreen()) {
    evaluatedAt_.reset();
  } else if (!evaluatedAt_ || *evaluatedAt_ != global) {
    evaluatedAt_ = global;
    child_.update(content_(GeometryProxy(rect.size, global)), environment_);
  }
  if (!child_) return;
  const CGSize size = child_->sizeThatFits({rect.size.width, rect.size.height});
  child_->place({rect.origin, size});
}

void GeometryElement::collectViews(std::vector<Ref<UIView>>& views) {
  if (child_) child_->collectViews(views);
}

bool GeometryElement::hasMoved() const { return evaluatedAt_ && *evaluatedAt_ != globalFrame(); }

}  // namespace platform::declarative
