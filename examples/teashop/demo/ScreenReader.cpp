#include "examples/teashop/demo/ScreenReader.h"

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UILabel.h"

namespace teashop {

using namespace platform;

namespace {

Ref<UIView> findIn(const Ref<UIView>& view, const screenReader::Predicate& predicate) {
  if (view->isHidden() || view->alpha() < 0.01) return nullptr;
  if (predicate(view)) return view;
  for (const Ref<UIView>& child : view->subviews()) {
    if (auto found = findIn(child, predicate)) return found;
  }
  return nullptr;
}

bool labelSatisfies(const Ref<UIView>& view, const std::function<bool(const std::string&)>& test) {
  const auto label = as<UILabel>(view);
  return label && label->text() && test(*label->text());
}

}  // namespace

Ref<UIView> screenReader::find(const Predicate& predicate) {
  const auto windows = UIApplication::shared().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (auto found = findIn(*window, predicate)) return found;
  }
  return nullptr;
}

Ref<UIView> screenReader::named(const std::string& accessibilityIdentifier) {
  return find([&](const Ref<UIView>& view) { return view->accessibilityIdentifier() == accessibilityIdentifier; });
}

Ref<UIView> screenReader::ofClass(const std::string& className) {
  return find([&](const Ref<UIView>& view) { return view->isa().name() == className; });
}

Ref<UIView> screenReader::buttonTitled(const std::string& title) {
  return find([&](const Ref<UIView>& view) {
    const auto button = as<UIButton>(view);
    return button && button->currentTitle() == title;
  });
}

bool screenReader::reads(const std::string& text) {
  return find([&](const Ref<UIView>& view) {
           return labelSatisfies(view, [&](const std::string& shown) { return shown == text; });
         }) != nullptr;
}

bool screenReader::readsPartly(const std::string& text) {
  return find([&](const Ref<UIView>& view) {
           return labelSatisfies(view, [&](const std::string& shown) { return shown.find(text) != std::string::npos; });
         }) != nullptr;
}

}  // namespace teashop
