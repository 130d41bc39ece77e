#include "platform/uikit/controllers/ModalPresentation.h"

#include <cstdio>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "platform/animation/CAShapeLayer.h"
#include "platform/uikit/controllers/UILayoutContainerView.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/device/UIAccessibility.h"

namespace platform {

namespace {

constexpr double dimmingAlpha = 0.25;
constexpr unsigned fillsSuperview = UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight;

/// Round at the top alone: the lower edge is that of the screen.
CGPath sheetOutline(CGSize size) {
  constexpr double radius = ModalPresentation::sheetCornerRadius;
  constexpr double right = std::numbers::pi / 2;
  CGPath path;
  path.move({0, size.height});
  path.line({0, radius});
  path.arc({radius, radius}, radius, 2 * right, 3 * right, true);
  path.arc({size.width - radius, radius}, radius, 3 * right, 4 * right, true);
  path.line({size.width, size.height});
  path.close();
  return path;
}

void refuse(const UIViewController& presenting, const UIViewController& presented, const char* why) {
  std::fprintf(stderr, "A %s does not present a %s: %s.\n", presenting.isa().name().c_str(),
               presented.isa().name().c_str(), why);
}

std::vector<Ref<UIViewController>> alive(const std::vector<Weak<UIViewController>>& list) {
  std::vector<Ref<UIViewController>> found;
  for (const auto& one : list) {
    if (Ref<UIViewController> controller = one.lock()) found.push_back(std::move(controller));
  }
  return found;
}

}  // namespace

ModalPresentation::ModalPresentation(const Ref<UIViewController>& presenting, const Ref<UIViewController>& presented)
    : presenting_(presenting), presented_(presented) {}

ModalPresentation::~ModalPresentation() {
  if (container_) container_->removeFromSuperview();
}

// ---- Orders

void ModalPresentation::present(const Ref<UIViewController>& presenting, const Ref<UIViewController>& presented,
                                bool animated, Completion completion) {
  if (presenting->presented_ && presenting->presented_->presentation_->stage_ == Stage::dismissing) {
    const auto going = presenting->presented_->presentation_;
    going->finish();
  }
  if (presenting->presented_) return refuse(*presenting, *presented, "it presents another controller already");
  const Ref<UIView> window = presenting->isViewLoaded() ? presenting->view()->windowView() : nullptr;
  if (!window) return refuse(*presenting, *presented, "its view is in no window");
  if (presented == presenting || presented->presentation_ || presented->parentViewController()) {
    return refuse(*presenting, *presented, "that is shown already");
  }
  if (presenting->presentation_) {
    const auto own = presenting->presentation_;
    if (own->stage_ == Stage::presenting) own->finish();
  }
  presented->presentation_ = std::make_shared<ModalPresentation>(presenting, presented);
  const auto presentation = presented->presentation_;
  presenting->presented_ = presented;
  presented->presenting_ = presenting;
  presentation->begin(window, animated, std::move(completion));
}

void ModalPresentation::dismiss(const Ref<UIViewController>& presenting, bool animated, Completion completion) {
  if (!presenting->presented_) return;
  const auto presentation = presenting->presented_->presentation_;
  if (presentation->stage_ == Stage::dismissing) return;
  if (presentation->stage_ == Stage::presenting) presentation->finish();
  // A callback at the end of the presentation may have dismissed it already.
  if (presentation->stage_ == Stage::presented) presentation->beginDismissal(animated, std::move(completion));
}

// ---- The way in

bool ModalPresentation::coversAll() const {
  const Ref<UIViewController> presented = presented_.lock();
  return presented && presented->modalPresentationStyle() == UIModalPresentationStyle::fullScreen;
}

bool ModalPresentation::isSheet() const {
  const Ref<UIViewController> presented = presented_.lock();
  return presented && presented->modalPresentationStyle() == UIModalPresentationStyle::pageSheet;
}

CGRect ModalPresentation::holderFrame() const {
  const CGRect all = container_->bounds();
  return isSheet() ? CGRect{0, sheetTop, all.size.width, all.size.height - sheetTop} : all;
}

void ModalPresentation::build(const Ref<UIView>& window) {
  auto container = make<UILayoutContainerView>(window->bounds());
  container->setAutoresizingMask(fillsSuperview);
  container->setBlocksTouches(true);
  container->setLayout([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->layOut();
  });
  container_ = container;
  if (isSheet()) {
    dimming_ = make<UIView>(container->bounds());
    dimming_->setBackgroundColor(UIColor::black().colorWithAlphaComponent(dimmingAlpha));
    container->addSubview(dimming_);
  }
  holder_ = make<UIView>(holderFrame());
  container->addSubview(holder_);
  window->addSubview(container);
}

void ModalPresentation::layOut() {
  const CGRect all = container_->bounds();
  if (dimming_) dimming_->setFrame(all);
  const CGRect frame = holderFrame();
  holder_->setBounds({0, 0, frame.size.width, frame.size.height});
  holder_->setCenter(frame.center());
  const Ref<UIViewController> presented = presented_.lock();
  if (presented && presented->isViewLoaded()) presented->view()->setFrame(holder_->bounds());
  if (!isSheet()) return;
  auto mask = make<CAShapeLayer>();
  mask->setFrame(holder_->bounds());
  mask->setPath(sheetOutline(frame.size));
  holder_->layer()->setMask(mask);
}

void ModalPresentation::begin(const Ref<UIView>& window, bool animated, Completion completion) {
  const Ref<UIViewController> presenting = presenting_.lock();
  const Ref<UIViewController> presented = presented_.lock();
  presented->beingPresented_ = true;
  presented->loadViewIfNeeded();
  build(window);
  layOut();
  const bool covers = coversAll();
  if (covers) presenting->beginAppearanceTransition(false, animated);
  presented->beginAppearanceTransition(true, animated);
  holder_->addSubview(presented->view());
  layOut();

  end_ = [this, covers, completion = std::move(completion)] {
    const Ref<UIViewController> below = presenting_.lock();
    const Ref<UIViewController> above = presented_.lock();
    stage_ = Stage::presented;
    if (!below || !above) return;
    as<UILayoutContainerView>(container_)->setBlocksTouches(false);
    if (covers) setAside(below);
    above->endAppearanceTransition();
    if (covers) below->endAppearanceTransition();
    above->beingPresented_ = false;
    if (completion) completion();
  };
  if (!animated) return finish();
  UIView::performWithoutAnimation([&] {
    container_->layoutIfNeeded();
    showAway(true);
  });
  animate([this] { showAway(false); });
}

/// Where the presented view comes from and goes to: below the edge, or out of sight.
void ModalPresentation::showAway(bool away) {
  if (dimming_) dimming_->setAlpha(away ? 0 : 1);
  const Ref<UIViewController> presented = presented_.lock();
  const bool fades = UIAccessibility::isReduceMotionEnabled() ||
                     (presented && presented->modalTransitionStyle() == UIModalTransitionStyle::crossDissolve);
  const double dy = container_->bounds().size.height - holderFrame().minY();
  holder_->setAlpha(away && fades ? 0 : 1);
  holder_->setTransform(CGAffineTransform::translation(0, away && !fades ? dy : 0));
}

/// A screen that is covered wholly leaves the window until it is uncovered.
void ModalPresentation::setAside(const Ref<UIViewController>& presenting) {
  const Ref<UIView> place = presenting->view()->superview();
  aside_ = place;
  if (place) presenting->view()->removeFromSuperview();
}

void ModalPresentation::bringBack(const Ref<UIViewController>& presenting) {
  const Ref<UIView> place = aside_.lock();
  aside_.reset();
  if (!place || presenting->view()->superview()) return;
  place->insertSubview(presenting->view(), 0);
  place->setNeedsLayout();
  presenting->view()->setFrame(place->bounds());
}

// ---- The way out

void ModalPresentation::beginDismissal(bool animated, Completion completion) {
  const auto keeper = shared_from_this();
  const Ref<UIViewController> presenting = presenting_.lock();
  const Ref<UIViewController> presented = presented_.lock();
  if (!presenting || !presented) return;
  stage_ = Stage::dismissing;

  // What lies between goes without being seen; the uppermost makes the movement.
  std::vector<Ref<UIViewController>> chain{presented};
  while (chain.back()->presented_) {
    const auto above = chain.back()->presented_->presentation_;
    if (above->stage_ != Stage::presented) above->finish();
    if (!chain.back()->presented_) break;
    chain.push_back(chain.back()->presented_);
  }
  const Ref<UIViewController> uppermost = chain.back();
  const auto moving = uppermost->presentation_;
  moving->stage_ = Stage::dismissing;
  for (const auto& one : chain) one->beingDismissed_ = true;
  as<UILayoutContainerView>(moving->container_)->setBlocksTouches(true);

  std::vector<Ref<UIViewController>> disappearing;
  for (auto one = chain.rbegin(); one != chain.rend(); ++one) {
    if ((*one)->appearance_ != UIViewController::Appearance::appeared) continue;
    (*one)->beginAppearanceTransition(false, animated);
    disappearing.push_back(*one);
  }
  const bool uncovers = presenting->appearance_ == UIViewController::Appearance::disappeared;
  if (uncovers) {
    presenting->beginAppearanceTransition(true, animated);
    bringBack(presenting);
  }
  for (const auto& one : chain) {
    if (one != uppermost) one->presentation_->container_->removeFromSuperview();
  }

  const std::vector<Weak<UIViewController>> going(chain.begin(), chain.end());
  const std::vector<Weak<UIViewController>> seen(disappearing.begin(), disappearing.end());
  end_ = [this, going, seen, uncovers, completion = std::move(completion)] {
    finishDismissal(alive(going), alive(seen), uncovers);
    if (completion) completion();
  };
  if (!animated) return finish();
  animate([moving] { moving->showAway(true); });
}

void ModalPresentation::finishDismissal(const Screens& chain, const Screens& disappearing, bool uncovers) {
  const auto keeper = shared_from_this();
  const Ref<UIViewController> presenting = presenting_.lock();
  if (presenting) presenting->presented_ = nullptr;
  for (const auto& one : chain) {
    const auto presentation = std::exchange(one->presentation_, nullptr);
    presentation->stage_ = Stage::over;
    presentation->container_->removeFromSuperview();
    one->view()->removeFromSuperview();
    one->presenting_.reset();
    one->presented_ = nullptr;
  }
  if (uncovers && presenting) presenting->endAppearanceTransition();
  for (const auto& one : disappearing) one->endAppearanceTransition();
  for (const auto& one : chain) one->beingDismissed_ = false;
}

// ---- The movement

void ModalPresentation::animate(std::function<void()> changes) {
  const Ref<UIViewController> presented = presented_.lock();
  const bool dissolves = presented && presented->modalTransitionStyle() == UIModalTransitionStyle::crossDissolve;
  const int number = ++movement_;
  UIView::animateWithDuration(dissolves ? dissolveDuration : coverDuration, 0, UIViewAnimationCurve::easeInOut,
                              std::move(changes), [weak = weak_from_this(), number](bool) {
                                const auto self = weak.lock();
                                if (self && self->movement_ == number) self->finish();
                              });
}

void ModalPresentation::finish() {
  const auto keeper = shared_from_this();
  const auto end = std::exchange(end_, nullptr);
  if (!end) return;
  ++movement_;
  holder_->layer()->removeAnimationForKey("transform");
  holder_->layer()->removeAnimationForKey("opacity");
  end();
}

}  // namespace platform
