#include "platform/uikit/text/TextInputOrder.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "platform/uikit/views/RootViewHost.h"

namespace platform {

namespace {

/// The root view of the screen: the last view before the controller.
Ref<UIView> screenAround(const Ref<UIView>& field) {
  Ref<UIView> root = field;
  for (Ref<UIResponder> at = field; at; at = at->nextResponder()) {
    if (as<RootViewHost>(at)) return root;
    if (const auto view = as<UIView>(at)) root = view;
  }
  return nullptr;
}

/// The views that take text, and can be seen and touched, back to front.
std::vector<Ref<UIView>> textInputs(const Ref<UIView>& root) {
  std::vector<Ref<UIView>> inputs;
  std::vector<Ref<UIView>> pending = {root};
  while (!pending.empty()) {
    const Ref<UIView> view = std::move(pending.back());
    pending.pop_back();
    if (view->isHidden() || view->alpha() < 0.01 || !view->isUserInteractionEnabled()) continue;
    if (view->wantsKeyboard() && view->canBecomeFirstResponder()) inputs.push_back(view);
    const auto& subviews = view->subviews();
    pending.insert(pending.end(), subviews.rbegin(), subviews.rend());
  }
  return inputs;
}

}  // namespace

bool goToNextTextInput(UIView& field, bool backwards) {
  const Ref<UIView> screen = screenAround(as<UIView>(field.shared_from_this()));
  if (!screen) return false;
  std::vector<Ref<UIView>> inputs = textInputs(screen);
  const auto place = [](const Ref<UIView>& view) {
    const CGPoint origin = view->convertPoint(view->bounds().origin, nullptr);
    return std::tuple(origin.y, origin.x);
  };
  std::ranges::stable_sort(inputs, {}, place);
  const auto at = std::ranges::find(inputs, &field, &Ref<UIView>::get);
  if (at == inputs.end() || inputs.size() < 2) return false;
  const std::size_t index = static_cast<std::size_t>(at - inputs.begin());
  return inputs[(index + (backwards ? inputs.size() - 1 : 1)) % inputs.size()]->becomeFirstResponder();
}

}  // namespace platform
