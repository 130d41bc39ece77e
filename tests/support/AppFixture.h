#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/dispatch/Clock.h"
#include "platform/uikit/application/TouchDriver.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform::test {

/// An application in virtual time: a device, a key window, a root controller with an empty white view, and hands. What
/// the hands do is over when the call returns. Everything is put away at the end, first responder and keyboard
/// included.
class AppFixture : public testing::Test {
 protected:
  explicit AppFixture(const DeviceProfile& profile = DeviceProfile::phone());
  ~AppFixture() override;
  /// Puts the application away while the test's own members are still there.
  void TearDown() override;

  const Ref<UIWindow>& window() const { return window_; }
  /// The view of the root controller.
  const Ref<UIView>& content() const { return window_->rootViewController()->view(); }
  /// Makes it the window's root and lays everything out.
  void show(const Ref<UIViewController>& root);

  /// What is due now runs, everything is laid out; no time passes.
  void settle();
  void advance(double seconds);

  /// The front-most view of that identifier in any window, depth first; a test failure and none when there is none.
  Ref<UIView> find(const std::string& identifier) const;
  template <class T>
  Ref<T> find(const std::string& identifier) const {
    return as<T>(find(identifier));
  }

  void tap(const std::string& identifier);
  void tap(CGPoint screenPoint, int count = 1);
  void longPress(CGPoint screenPoint, double seconds = 0.8);
  void drag(const std::vector<CGPoint>& screenPoints, double seconds = 0.3);
  void scroll(const std::string& identifier, double dx, double dy);
  /// Into the first responder, on the software keyboard when it is there.
  void type(const std::string& text);

  /// Compares what the screen shows with "pictures/<name>.png" beside the test's source; a difference leaves
  /// "<name>.actual.png" in the working directory. With LUMICOR_UPDATE_PICTURES set the picture is stored instead.
  void picture(const std::string& name, const char* sourceFile = __builtin_FILE());

  TouchDriver& hands() { return hands_; }

 private:
  void finish();
  VirtualTime time_;
  DeviceProfile profileBefore_;
  Ref<UIWindow> window_;
  TouchDriver hands_;
};

}  // namespace platform::test
