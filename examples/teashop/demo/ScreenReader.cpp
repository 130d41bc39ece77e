#include "examples/teashop/demo/ScreenReader.h"

#include "platform/uikit/UIKit.h"

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

Ref<UIView> screenReader::labelReading(const std::string& text) {
  return find([&](const Ref<UIView>& view) {
    return labelSatisfies(view, [&](const std::string& shown) { return shown == text; });
  });
}

bool screenReader::reads(const std::string& text) { return labelReading(text) != nullptr; }

bool screenReader::readsPartly(const std::string& text) {
  return find([&](const Ref<UIView>& view) {
           return labelSatisfies(view, [&](const std::string& shown) { return shown.find(text) != std::string::npos; });
         }) != nullptr;
}

bool screenReader::shows(const std::string& accessibilityIdentifier) {
  return named(accessibilityIdentifier) != nullptr;
}

bool screenReader::isSelected(const std::string& accessibilityIdentifier) {
  const auto control = as<UIControl>(named(accessibilityIdentifier));
  return control && control->isSelected();
}

std::string screenReader::textOf(const std::string& accessibilityIdentifier) {
  const auto view = named(accessibilityIdentifier);
  if (const auto label = as<UILabel>(view)) return label->text().value_or("");
  if (const auto field = as<UITextField>(view)) return field->text().value_or("");
  if (const auto area = as<UITextView>(view)) return area->text().value_or("");
  return "";
}

std::string screenReader::lowestText() {
  const auto list = find([](const Ref<UIView>& view) { return as<UITableView>(view) != nullptr; });
  if (!list) return "";
  std::string lowest;
  double bottom = 0;
  findIn(list, [&](const Ref<UIView>& view) {
    const auto label = as<UILabel>(view);
    const double end = view->convertRect(view->bounds(), nullptr).maxY();
    if (label && label->text() && end > bottom) {
      bottom = end;
      lowest = *label->text();
    }
    return false;
  });
  return lowest;
}

}  // namespace teashop
