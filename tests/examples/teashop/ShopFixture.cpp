#include "tests/examples/teashop/ShopFixture.h"

#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop::test {

namespace {

using Test = std::function<bool(const Ref<UIView>&)>;

Ref<UIView> search(const Ref<UIView>& view, const Test& test) {
  if (view->isHidden()) return nullptr;
  if (test(view)) return view;
  for (const Ref<UIView>& child : view->subviews()) {
    if (auto found = search(child, test)) return found;
  }
  return nullptr;
}

Ref<UIView> onScreen(const Test& test) {
  const auto windows = UIApplication::shared().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (auto found = search(*window, test)) return found;
  }
  return nullptr;
}

}  // namespace

ShopFixture::~ShopFixture() {
  application_.tabs()->view()->endEditing(true);
  RunLoop::advance(1);
}

void ShopFixture::open(const std::string& name) {
  const NamedScreen* const screen = screenNamed(name);
  ASSERT_NE(screen, nullptr) << name;
  screen->show(application_);
  RunLoop::advance(1);
}

Ref<UIView> ShopFixture::find(const std::string& identifier) const {
  auto found = onScreen([&](const Ref<UIView>& view) { return view->accessibilityIdentifier() == identifier; });
  EXPECT_NE(found, nullptr) << identifier << " is not on " << screenName();
  return found;
}

bool ShopFixture::shows(const std::string& identifier) const {
  return onScreen([&](const Ref<UIView>& view) { return view->accessibilityIdentifier() == identifier; }) != nullptr;
}

std::string ShopFixture::text(const std::string& identifier) const {
  const auto view = find(identifier);
  if (const auto label = as<UILabel>(view)) return label->text().value_or("");
  if (const auto field = as<UITextField>(view)) return field->text().value_or("");
  return "";
}

std::string ShopFixture::screenName() const {
  const auto screen = lumicor::LumicorUtils::getCurrentViewController();
  return screen ? NSStringFromClass(screen->classForCoder()) : "";
}

Ref<UINavigationController> ShopFixture::navigation() const {
  return as<UINavigationController>(application_.tabs()->selectedViewController());
}

void ShopFixture::tap(const std::string& identifier) {
  if (const auto view = find(identifier)) hands_.tap(view);
  RunLoop::advance(1);
}

void ShopFixture::tapText(const std::string& text) {
  const auto view = onScreen([&](const Ref<UIView>& candidate) {
    const auto label = as<UILabel>(candidate);
    return label && label->text() == text;
  });
  ASSERT_NE(view, nullptr) << text;
  hands_.tap(view);
  RunLoop::advance(1);
}

void ShopFixture::tapBarButton(const std::string& identifier) {
  const auto screen = lumicor::LumicorUtils::getCurrentViewController();
  const auto item = screen->navigationController()->navigationBar()->topItem();
  for (const auto& items : {item->leftBarButtonItems(), item->rightBarButtonItems()}) {
    for (const Ref<UIBarButtonItem>& button : items) {
      if (button->accessibilityIdentifier() == identifier) hands_.tap(button->view());
    }
  }
  RunLoop::advance(1);
}

void ShopFixture::drag(const std::string& identifier, double dx, double dy) {
  const auto view = find(identifier);
  ASSERT_NE(view, nullptr);
  const CGRect frame = view->convertRect(view->bounds(), nullptr);
  const CGPoint from{frame.midX() - dx / 2, frame.midY() - dy / 2};
  hands_.drag({from, {from.x + dx, from.y + dy}}, 0.2);
  RunLoop::advance(2);
}

void ShopFixture::type(const std::string& text) {
  hands_.type(text);
  RunLoop::advance(0.2 * static_cast<double>(text.size()) + 1);
}

}  // namespace teashop::test
