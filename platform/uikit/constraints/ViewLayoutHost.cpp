#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/LayoutHost.h"

namespace platform {

namespace {

/// Hands what views tell to the layout pass.
class ViewLayoutHost final : public LayoutHost {
  void didChangeGeometry(UIView& view, CGSize oldSize) override { ViewLayout::didChangeGeometry(view, oldSize); }
  void willLeaveSuperview(UIView& view) override { ViewLayout::willLeaveSuperview(view); }
  void didEnterSuperview(UIView& view) override { ViewLayout::didEnterSuperview(view); }
  void didChangeSafeArea(UIView& view) override { ViewLayout::didChangeSafeArea(view); }
};

}  // namespace

LayoutHost& LayoutHost::shared() {
  static ViewLayoutHost host;
  return host;
}

}  // namespace platform
