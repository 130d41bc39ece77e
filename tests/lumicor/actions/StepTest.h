#pragma once

#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "lumicor/actions/TLTaskResult.h"
#include "lumicor/core/TLAction.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIControl.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

/// The screen that steps are for. Counts how often it was looked over.
struct CartScreen : Object<CartScreen, UIViewController> {
  Ref<UINavigationController> navigationController() const override;
  void prepareForSegue(Ref<UIStoryboardSegue>, Ref<NSObject> sender) override { segueSender = sender; }
  void performSegue(const std::string& identifier, const Ref<NSObject>& sender) override;
  mutable int lookups = 0;
  Weak<NSObject> segueSender;  ///< the screen itself: it must not hold itself
  std::function<void()> onLookup;
  std::string ownSegue;  ///< performed without being registered
  int ownSeguesPerformed = 0;
};

/// A host's delegate, data source and target in one: it writes down what it hears.
class Host : public Object<Host, NSObject> {
 public:
  std::vector<std::string> heard;
  void hear(const std::string& what) { heard.push_back(what); }

  void onTap(Ref<NSObject> sender);
  void hearAgain(Ref<NSObject> sender);
  static void exportMethods(MethodTable<Host>& table);
};

/// A current screen with views that steps are performed on.
class StepTest : public SessionTest {
 protected:
  StepTest() { showAsCurrent(screen_); }

  template <class View, class... Args>
  Ref<View> add(const char* identifier, Args&&... args) {
    const auto view = make<View>(std::forward<Args>(args)...);
    view->setAccessibilityIdentifier(identifier);
    screen_->view()->addSubview(view);
    return view;
  }
  static TLAction step(std::string elementId, std::string actionType = "TYPE_BUTTON", std::string value = "") {
    return {std::move(elementId), 0, std::move(value), {}, "CartScreen", std::move(actionType)};
  }
  /// What the step's action says when it is performed on the screen right now.
  TLTaskResult perform(const TLAction& step);

  Ref<CartScreen> screen_ = make<CartScreen>();
  Ref<Host> host_ = make<Host>();
};

}  // namespace lumicor::test
