#include "platform/uikit/bars/UINavigationBar.h"

#include <algorithm>
#include <utility>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/NavigationBarHost.h"
#include "platform/uikit/bars/_UIBarBackground.h"
#include "platform/uikit/bars/_UIButtonBarButton.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/views/UILabel.h"

namespace platform {

namespace {

constexpr double edge = 8;       // from the bar's sides to the outermost button
constexpr double space = 4;      // between buttons, and between them and the title
constexpr double travel = 0.35;  // how far a title comes or goes, in parts of the bar's width
constexpr double largeTitleMargin = 16;

}  // namespace

/// The views that show one item.
struct UINavigationBar::Contents {
  Ref<UINavigationItem> item;
  Ref<UILabel> title;
  Ref<UIView> titleView;
  Ref<UILabel> largeTitle;
  Ref<UIBarButtonItem> backItem;
  Ref<_UIButtonBarButton> back;
  std::vector<Ref<UIView>> left;
  std::vector<Ref<UIView>> right;
  Ref<UIView> searchBar;

  std::vector<Ref<UIView>> all() const {
    std::vector<Ref<UIView>> views{title, titleView, largeTitle, back};
    views.insert(views.end(), left.begin(), left.end());
    views.insert(views.end(), right.begin(), right.end());
    views.push_back(searchBar);
    std::erase(views, nullptr);
    return views;
  }
  /// Those that are the bar's own to fade; the host's views come and go at once.
  std::vector<Ref<UIView>> own() const {
    std::vector<Ref<UIView>> views = all();
    std::erase_if(views, [&](const Ref<UIView>& view) {
      return view != title && view != largeTitle && !as<_UIButtonBarButton>(view);
    });
    return views;
  }
  bool has(const Ref<UIView>& view) const {
    const auto views = all();
    return std::find(views.begin(), views.end(), view) != views.end();
  }
};

UINavigationBar::UINavigationBar() = default;
UINavigationBar::~UINavigationBar() = default;

void UINavigationBar::exportMethods(MethodTable<UINavigationBar>& table) {
  table.add<&UINavigationBar::backButtonTapped>("backButtonTapped");
}

void UINavigationBar::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  background_ = make<_UIBarBackground>(_UIBarBackground::Edge::bottom);
  addSubview(background_);
}

// ---- Items

void UINavigationBar::setItems(std::vector<Ref<UINavigationItem>> items, bool animated) {
  std::erase(items, nullptr);
  const Ref<UINavigationBar> me = self();
  const auto old = std::exchange(items_, std::move(items));
  for (const Ref<UINavigationItem>& item : old) {
    if (item->bar_.lock() == me) item->bar_.reset();
  }
  for (const Ref<UINavigationItem>& item : items_) item->bar_ = me;
  if (items_ == old) return;
  const Ref<UINavigationItem> top = topItem();
  Direction direction = Direction::none;
  if (top && !old.empty() && top != old.back()) {
    direction = std::find(old.begin(), old.end(), top) != old.end() ? Direction::backward : Direction::forward;
  }
  show(direction, animated);
}

void UINavigationBar::pushNavigationItem(const Ref<UINavigationItem>& item, bool animated) {
  auto items = items_;
  items.push_back(item);
  setItems(std::move(items), animated);
}

Ref<UINavigationItem> UINavigationBar::popNavigationItem(bool animated) {
  if (items_.size() < 2) return nullptr;
  const Ref<UINavigationItem> item = items_.back();
  setItems({items_.begin(), items_.end() - 1}, animated);
  sendOptional(delegate(), sel("navigationBar:didPopItem:"), self(), item);
  return item;
}

void UINavigationBar::itemDidChange(const UINavigationItem& item, bool animated) {
  if (&item == topItem().get() || &item == backItem().get()) show(Direction::none, animated);
}

void UINavigationBar::backButtonTapped() {
  const Ref<UINavigationItem> item = topItem();
  if (!item || items_.size() < 2) return;
  static const SEL shouldPop = sel("navigationBar:shouldPopItem:");
  if (askOptional<bool>(delegate(), shouldPop, self(), item).value_or(true)) popNavigationItem(true);
}

void UINavigationBar::setBarTintColor(std::optional<UIColor> color) {
  barTintColor_ = color;
  background_->setColor(color);
}

void UINavigationBar::setTitleColor(std::optional<UIColor> color) {
  titleColor_ = color;
  show(Direction::none, false);
}

void UINavigationBar::setPrefersLargeTitles(bool prefers) {
  if (prefersLargeTitles_ == prefers) return;
  prefersLargeTitles_ = prefers;
  show(Direction::none, false);
}

Ref<UILabel> UINavigationBar::titleLabel() const { return contents_ ? contents_->title : nullptr; }
Ref<UIView> UINavigationBar::backButtonView() const { return contents_ ? contents_->back : nullptr; }

bool UINavigationBar::showsLargeTitle() const {
  using Mode = UINavigationItemLargeTitleDisplayMode;
  const Ref<UINavigationItem> item = topItem();
  if (!prefersLargeTitles_ || !item || !item->title() || item->titleView()) return false;
  if (item->largeTitleDisplayMode() != Mode::automatic) return item->largeTitleDisplayMode() == Mode::always;
  return items_.size() == 1;
}

double UINavigationBar::contentHeight() const {
  const Ref<UINavigationItem> item = topItem();
  return standardHeight + (showsLargeTitle() ? largeTitleHeight : 0) +
         (item && item->searchController() ? searchBarHeight : 0);
}

void UINavigationBar::setTopExtension(double points) {
  if (topExtension_ == points) return;
  topExtension_ = points;
  setNeedsLayout();
}

// ---- From an item to views

std::string UINavigationBar::backTitle() const {
  const Ref<UINavigationItem> previous = backItem();
  if (previous->backButtonTitle()) return *previous->backButtonTitle();
  if (previous->backBarButtonItem() && previous->backBarButtonItem()->title()) {
    return *previous->backBarButtonItem()->title();
  }
  return previous->title() && !previous->title()->empty() ? *previous->title() : "Back";
}

void UINavigationBar::fillTitle(Contents& contents, const Contents* old) {
  const UINavigationItem& item = *contents.item;
  contents.titleView = item.titleView();
  if (!contents.titleView) {
    contents.title = old && old->title ? old->title : make<UILabel>();
    contents.title->setFont(UIFont::systemFont(17, UIFontWeightSemibold));
    contents.title->setTextAlignment(NSTextAlignment::center);
    contents.title->setTextColor(titleColor_.value_or(UIColor::label()));
    contents.title->setText(item.title());
    contents.title->setHidden(showsLargeTitle());
  }
  if (showsLargeTitle()) {
    contents.largeTitle = old && old->largeTitle ? old->largeTitle : make<UILabel>();
    contents.largeTitle->setFont(UIFont::systemFont(34, UIFontWeightBold));
    contents.largeTitle->setTextColor(titleColor_.value_or(UIColor::label()));
    contents.largeTitle->setText(item.title());
  }
  contents.searchBar = item.searchBar_;
}

void UINavigationBar::fillButtons(Contents& contents, const Contents* old) {
  const UINavigationItem& item = *contents.item;
  const auto viewsOf = [this](const std::vector<Ref<UIBarButtonItem>>& items) {
    std::vector<Ref<UIView>> views;
    for (const Ref<UIBarButtonItem>& button : items) {
      button->bar_ = self();
      if (const Ref<UIView> view = button->ensureView()) views.push_back(view);
    }
    return views;
  };
  contents.left = viewsOf(item.leftBarButtonItems());
  contents.right = viewsOf(item.rightBarButtonItems());
  if (items_.size() < 2 || item.hidesBackButton()) return;
  if (!contents.left.empty() && !item.leftItemsSupplementBackButton()) return;
  if (old && old->back) {  // it may be under a finger
    contents.backItem = old->backItem;
    contents.backItem->setTitle(backTitle());
  } else {
    contents.backItem =
        make<UIBarButtonItem>(backTitle(), UIBarButtonItemStyle::plain, self(), sel("backButtonTapped"));
  }
  const auto& look = backItem()->backBarButtonItem();
  contents.backItem->setTintColor(look ? look->tintColor() : std::nullopt);
  contents.back = as<_UIButtonBarButton>(contents.backItem->ensureView());
  contents.back->setShowsBackIndicator(true);
}

void UINavigationBar::show(Direction direction, bool animated) {
  const double heightBefore = bounds().size.height;
  animated = animated && window() && UIView::areAnimationsEnabled();
  const std::unique_ptr<Contents> old = std::exchange(contents_, nullptr);
  if (const Ref<UINavigationItem> item = topItem()) {
    contents_ = std::make_unique<Contents>();
    contents_->item = item;
    fillTitle(*contents_, direction == Direction::none ? old.get() : nullptr);
    fillButtons(*contents_, direction == Direction::none ? old.get() : nullptr);
    UIView::performWithoutAnimation([&] { bring(*contents_, old.get(), direction, animated); });
  }
  if (old) take(*old, direction, animated);
  if (contents_ && animated) {
    UIView::animateWithDuration(transitionDuration, [own = contents_->own(), all = contents_->all()] {
      for (const Ref<UIView>& view : own) view->setAlpha(1);
      for (const Ref<UIView>& view : all) view->setTransform(CGAffineTransformIdentity);
    });
  }
  setNeedsLayout();
  const Ref<NavigationBarHost> host = host_.lock();
  if (host && direction == Direction::none && contentHeight() != heightBefore) host->barHeightDidChange(animated);
}

/// Puts new views in, where an animation starts when there is one.
void UINavigationBar::bring(const Contents& contents, const Contents* old, Direction direction, bool animated) {
  for (const Ref<UIView>& view : contents.all()) {
    if (view->superview().get() != this) addSubview(view);
    view->setTransform(CGAffineTransformIdentity);
  }
  for (const Ref<UIView>& view : contents.own()) {
    const bool isNew = !old || !old->has(view);
    view->setAlpha(isNew && animated ? 0 : 1);
  }
  layoutIfNeeded();
  layoutSubviews();
  if (!animated || direction == Direction::none) return;
  const double dx = bounds().size.width * travel * (direction == Direction::forward ? 1 : -1);
  for (const Ref<UIView>& view : {Ref<UIView>(contents.title), contents.titleView, Ref<UIView>(contents.largeTitle)}) {
    if (view) view->setTransform(CGAffineTransform::translation(dx, 0));
  }
}

/// Takes old views out, those apart that stay.
void UINavigationBar::take(const Contents& contents, Direction direction, bool animated) {
  const auto stays = [this](const Ref<UIView>& view) { return contents_ && contents_->has(view); };
  std::vector<Ref<UIView>> fading = contents.own();
  std::erase_if(fading, stays);
  for (const Ref<UIView>& view : contents.all()) {
    const bool fades = animated && std::find(fading.begin(), fading.end(), view) != fading.end();
    if (!fades && !stays(view) && view->superview().get() == this) view->removeFromSuperview();
  }
  if (!animated) return;
  const double dx = bounds().size.width * travel * (direction == Direction::forward ? -1 : 1);
  UIView::animateWithDuration(
      transitionDuration,
      [&] {
        for (const Ref<UIView>& view : fading) {
          view->setAlpha(0);
          const bool slides = view == contents.title && direction != Direction::none;
          if (slides) view->setTransform(CGAffineTransform::translation(dx, 0));
        }
      },
      [weak = weakSelf(), fading](bool) {
        const auto self = weak.lock();
        for (const Ref<UIView>& view : fading) {
          const bool cameBack = self && self->contents_ && self->contents_->has(view);
          if (self && !cameBack && view->superview() == self) view->removeFromSuperview();
        }
      });
}

// ---- Layout

CGSize UINavigationBar::sizeThatFits(CGSize size) const { return {size.width, contentHeight()}; }
CGSize UINavigationBar::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, contentHeight()}; }

void UINavigationBar::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  background_->setFrame({0, -topExtension_, size.width, size.height + topExtension_});
  if (!contents_) return;
  const double right = layOutRight();
  const double left = layOutLeft();
  layOutTitle(left, right);
  double y = standardHeight;
  if (contents_->largeTitle) {
    contents_->largeTitle->setFrame({largeTitleMargin, y + 3, std::max(0.0, size.width - 2 * largeTitleMargin), 41});
    y += largeTitleHeight;
  }
  if (contents_->searchBar) contents_->searchBar->setFrame({0, y, size.width, searchBarHeight});
}

namespace {

/// Frames are set through the centre: a view that slides keeps its transform.
void setPlace(UIView& view, const CGRect& place) {
  view.setBounds({view.bounds().origin, place.size});
  view.setCenter(place.center());
}

}  // namespace

/// Places the buttons at the trailing edge; returns the x where they begin.
double UINavigationBar::layOutRight() {
  double x = bounds().size.width - edge;
  for (const Ref<UIView>& view : contents_->right) {
    const CGSize size = sizeInBar(view, {bounds().size.width / 2, standardHeight});
    const bool isButton = as<_UIButtonBarButton>(view) != nullptr;
    x -= size.width + (isButton ? 0 : edge);
    setPlace(*view, {x, (standardHeight - size.height) / 2, size.width, size.height});
    x -= isButton ? 0 : space;
  }
  return x;
}

/// Places the buttons at the leading edge; returns the x where they end. A back title that leaves too little room for
/// the title becomes "Back", and then nothing.
double UINavigationBar::layOutLeft() {
  const double width = bounds().size.width;
  double x = 0;
  if (contents_->back) {
    const double title = contents_->title && !contents_->title->isHidden()
                             ? contents_->title->sizeThatFits({width, standardHeight}).width
                             : 0;
    const double room = std::max(44.0, (width - title) / 2);
    std::string text = backTitle();
    if (contents_->back->widthWithTitle(text) > room) text = "Back";
    if (contents_->back->widthWithTitle(text) > room) text.clear();
    contents_->backItem->setTitle(text);
    const CGSize size = contents_->back->sizeThatFits({});
    setPlace(*contents_->back, {0, 0, size.width, standardHeight});
    x = size.width;
  }
  if (!contents_->back || !contents_->left.empty()) x += edge;
  for (const Ref<UIView>& view : contents_->left) {
    const CGSize size = sizeInBar(view, {width / 2, standardHeight});
    const bool isButton = as<_UIButtonBarButton>(view) != nullptr;
    x += isButton ? 0 : edge;
    setPlace(*view, {x, (standardHeight - size.height) / 2, size.width, size.height});
    x += size.width + (isButton ? 0 : space);
  }
  return x;
}

/// In the middle of the bar where it fits, else in the middle of what the buttons leave.
void UINavigationBar::layOutTitle(double left, double right) {
  const Ref<UIView> title = contents_->titleView ? contents_->titleView : Ref<UIView>(contents_->title);
  if (!title) return;
  const double middle = bounds().size.width / 2;
  const double room = std::max(0.0, right - left - 2 * space);
  CGSize size = contents_->titleView ? sizeInBar(title, {room, standardHeight})
                                     : title->sizeThatFits({CGFloatMax, standardHeight});
  size.width = std::min(size.width, room);
  double x = middle - size.width / 2;
  x = std::clamp(x, left + space, std::max(left + space, right - space - size.width));
  setPlace(*title, {x, (standardHeight - size.height) / 2, size.width, size.height});
}

}  // namespace platform
