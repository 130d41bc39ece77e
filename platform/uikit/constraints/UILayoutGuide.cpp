#include "platform/uikit/constraints/UILayoutGuide.h"

#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

Ref<UIView> UILayoutGuide::owningView() const {
  return view_ ? std::static_pointer_cast<UIView>(view_->weak_from_this().lock()) : nullptr;
}

CGRect UILayoutGuide::layoutFrame() const {
  if (!view_) return {};
  if (source_ != Source::constraints) {
    const CGSize size = view_->bounds().size;
    return CGRect{{0, 0}, size}.insetBy(ViewLayout::insetsOf(*view_, source_ == Source::safeArea));
  }
  const LayoutEngine* const engine = ViewLayout::engineOf(*view_);
  return engine ? engine->frameOf(*this).value_or(CGRect{}) : CGRect{};
}

}  // namespace platform
