#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/Clock.h"
#include "platform/uikit/application/UIWindow.h"

namespace lumicor::test {

using namespace platform;

/// A session in its first state, in virtual time, with an empty store and a key window.
class SessionTest : public testing::Test {
 protected:
  SessionTest();
  ~SessionTest() override;

  /// Puts a controller at the window's root and lays it out.
  void show(const Ref<UIViewController>& root);
  /// The same, and makes it the façade's current screen, as its appearance would.
  void showAsCurrent(const Ref<UIViewController>& root);
  /// Turns the log on; its lines are kept from here on.
  void beginLog();
  /// The messages logged since, without the time that leads each line.
  std::vector<std::string> log();

  const Ref<UIWindow>& window() const { return window_; }

 private:
  VirtualTime time_;
  std::filesystem::path folder_;
  Ref<UIWindow> window_;
  bool logging_ = false;
};

}  // namespace lumicor::test
