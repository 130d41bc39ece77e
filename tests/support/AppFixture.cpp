#include "tests/support/AppFixture.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "tests/support/Pictures.h"

namespace platform::test {

namespace {

/// No action of the hands lasts longer.
constexpr double patience = 300;

Ref<UIView> findBelow(const Ref<UIView>& root, const std::string& identifier) {
  std::vector<Ref<UIView>> open{root};
  while (!open.empty()) {
    const Ref<UIView> view = std::move(open.back());
    open.pop_back();
    if (view->accessibilityIdentifier() == identifier) return view;
    const auto& children = view->subviews();
    open.insert(open.end(), children.begin(), children.end());
  }
  return nullptr;
}

}  // namespace

AppFixture::AppFixture(const DeviceProfile& profile) : profileBefore_(UIDevice::current().profile()) {
  UIDevice::setProfile(profile);
  window_ = make<UIWindow>(UIScreen::main().bounds());
  window_->setBackgroundColor(UIColor::white());
  const auto root = make<UIViewController>();
  root->view()->setBackgroundColor(UIColor::white());
  window_->setRootViewController(root);
  window_->makeKeyAndVisible();
  settle();
}

void AppFixture::TearDown() {
  while (UIApplication::shared().isIgnoringInteractionEvents()) UIApplication::shared().endIgnoringInteractionEvents();
  window_->endEditing(true);
  RunLoop::advance(1);  // the keyboard slides out
  window_->setHidden(true);
  window_.reset();
  RunLoop::settle();
}

AppFixture::~AppFixture() { UIDevice::setProfile(profileBefore_); }

void AppFixture::show(const Ref<UIViewController>& root) {
  window_->setRootViewController(root);
  settle();
}

void AppFixture::settle() {
  RunLoop::settle();
  UIApplication::shared().layoutAndDisplayIfNeeded();
}

void AppFixture::advance(double seconds) {
  RunLoop::advance(seconds);
  UIApplication::shared().layoutAndDisplayIfNeeded();
}

Ref<UIView> AppFixture::find(const std::string& identifier) const {
  const auto windows = UIApplication::shared().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (Ref<UIView> view = findBelow(*window, identifier)) return view;
  }
  ADD_FAILURE() << "no view is called \"" << identifier << '"';
  return nullptr;
}

// ---- Hands

void AppFixture::finish() {
  EXPECT_TRUE(RunLoop::advanceUntil([this] { return !hands_.isBusy(); }, patience)) << "the hands never came to an end";
  settle();
}

void AppFixture::tap(const std::string& identifier) {
  const Ref<UIView> view = find(identifier);
  if (!view) return;
  hands_.tap(view);
  finish();
}

void AppFixture::tap(CGPoint screenPoint, int count) {
  hands_.tap(screenPoint, count);
  finish();
}

void AppFixture::longPress(CGPoint screenPoint, double seconds) {
  hands_.longPress(screenPoint, seconds);
  finish();
}

void AppFixture::drag(const std::vector<CGPoint>& screenPoints, double seconds) {
  hands_.drag(screenPoints, seconds);
  finish();
}

void AppFixture::scroll(const std::string& identifier, double dx, double dy) {
  const Ref<UIView> view = find(identifier);
  if (!view) return;
  hands_.scroll(view, dx, dy);
  finish();
}

void AppFixture::type(const std::string& text) {
  hands_.type(text);
  finish();
}

void AppFixture::picture(const std::string& name, const char* sourceFile) {
  settle();
  expectPicture(*UIApplication::shared().screenshot(), name, sourceFile);
}

}  // namespace platform::test
