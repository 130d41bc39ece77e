#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/uikit/controllers/UIViewController.h"

namespace platform::test {

/// What happened, in order, as one line of words. Copies write into the same line.
class Journal {
 public:
  void write(const std::string& word) { *line_ += (line_->empty() ? "" : " ") + word; }
  /// Everything since the last time.
  std::string take() { return std::exchange(*line_, {}); }

 private:
  std::shared_ptr<std::string> line_ = std::make_shared<std::string>();
};

/// A screen that writes down what it is told: "A.load", "A.willAppear", and with a "~" behind when it is animated.
/// Parents are "+" when it gets one and "-" when it loses it.
class JournalScreen : public Object<JournalScreen, UIViewController> {
 public:
  JournalScreen(std::string name, Journal journal) : name_(std::move(name)), journal_(std::move(journal)) {
    setTitle(name_);
  }
  ~JournalScreen() override {
    if (writesDeath) write("gone");
  }

  void viewDidLoad() override {
    write("load");
    view()->setBackgroundColor(UIColor::white());
    view()->setAccessibilityIdentifier(name_);
  }
  void viewWillAppear(bool animated) override {
    Super::viewWillAppear(animated);
    write("willAppear", animated);
    if (onWillAppear) std::exchange(onWillAppear, nullptr)();
  }
  void viewDidAppear(bool animated) override {
    Super::viewDidAppear(animated);
    write("didAppear", animated);
    if (onDidAppear) std::exchange(onDidAppear, nullptr)();
  }
  void viewWillDisappear(bool animated) override {
    Super::viewWillDisappear(animated);
    write("willDisappear", animated);
    wasMovingFromParent = isMovingFromParentViewController();
    wasBeingDismissed = isBeingDismissed();
    hadNavigation = navigationController() != nullptr;
  }
  void viewDidDisappear(bool animated) override {
    Super::viewDidDisappear(animated);
    write("didDisappear", animated);
  }
  void willMoveToParent(Ref<UIViewController> parent) override {
    Super::willMoveToParent(parent);
    write(parent ? "will+" : "will-");
  }
  void didMoveToParent(const Ref<UIViewController>& parent) override {
    Super::didMoveToParent(parent);
    write(parent ? "did+" : "did-");
  }

  std::function<void()> onWillAppear;
  std::function<void()> onDidAppear;
  bool writesDeath = false;
  // As they were when it was last told that it will disappear.
  bool wasMovingFromParent = false;
  bool wasBeingDismissed = false;
  bool hadNavigation = false;

 private:
  void write(const std::string& what, bool animated = false) {
    journal_.write(name_ + "." + what + (animated ? "~" : ""));
  }
  std::string name_;
  Journal journal_;
};

}  // namespace platform::test
