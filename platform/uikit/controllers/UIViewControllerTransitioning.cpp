#include "platform/uikit/controllers/UIViewControllerTransitioning.h"

#include <utility>

namespace platform {

UIViewControllerContextTransitioning::UIViewControllerContextTransitioning(Description description,
                                                                           Completion completion)
    : what_(std::move(description)), completion_(std::move(completion)) {}

UIViewControllerContextTransitioning::~UIViewControllerContextTransitioning() = default;

Ref<UIViewController> UIViewControllerContextTransitioning::viewControllerForKey(const std::string& key) const {
  if (key == UITransitionContextFromViewControllerKey) return what_.from;
  if (key == UITransitionContextToViewControllerKey) return what_.to;
  return nullptr;
}

Ref<UIView> UIViewControllerContextTransitioning::viewForKey(const std::string& key) const {
  if (key == UITransitionContextFromViewKey && what_.from) return what_.from->view();
  if (key == UITransitionContextToViewKey && what_.to) return what_.to->view();
  return nullptr;
}

CGRect UIViewControllerContextTransitioning::initialFrameForViewController(
    const Ref<UIViewController>& controller) const {
  if (!controller) return {};
  return controller == what_.from ? what_.initialFrom : controller == what_.to ? what_.initialTo : CGRect{};
}

CGRect UIViewControllerContextTransitioning::finalFrameForViewController(
    const Ref<UIViewController>& controller) const {
  if (!controller) return {};
  return controller == what_.from ? what_.finalFrom : controller == what_.to ? what_.finalTo : CGRect{};
}

void UIViewControllerContextTransitioning::completeTransition(bool didComplete) {
  const Completion completion = std::exchange(completion_, nullptr);
  if (!completion) return;
  cancelled_ = !didComplete;
  completion(didComplete);
}

void UIViewControllerContextTransitioning::abandon() { completion_ = nullptr; }

}  // namespace platform
