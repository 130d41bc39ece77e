#include "platform/uikit/bars/_UIBarBackground.h"

#include <algorithm>

#include "platform/uikit/bars/_UIButtonBarButton.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

constexpr UIColor standardGround = UIColor(0.976, 0.976, 0.98, 1);

}  // namespace

void _UIBarBackground::init(Edge edge) {
  edge_ = edge;
  initWithFrame({});
  setUserInteractionEnabled(false);
  setColor(std::nullopt);
  hairline_ = make<UIView>();
  hairline_->setBackgroundColor(UIColor::separator());
  addSubview(hairline_);
}

void _UIBarBackground::setColor(std::optional<UIColor> color) { setBackgroundColor(color.value_or(standardGround)); }

void _UIBarBackground::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  const double thickness = 1 / UIScreen::main().scale();
  hairline_->setFrame({0, edge_ == Edge::top ? 0 : size.height - thickness, size.width, thickness});
}

CGSize sizeInBar(const Ref<UIView>& view, CGSize most) {
  CGSize size = view->bounds().size;
  if (as<_UIButtonBarButton>(view)) {
    size = view->sizeThatFits(most);
  } else if (!view->translatesAutoresizingMaskIntoConstraints()) {
    size = view->systemLayoutSizeFitting({0, 0});
  } else if (size.width <= 0 || size.height <= 0) {
    size = view->sizeThatFits(most);
  }
  return {std::clamp(size.width, 0.0, most.width), std::clamp(size.height, 0.0, most.height)};
}

}  // namespace platform
