#pragma once

#include <functional>
#include <memory>

#include "platform/declarative/View.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace platform {

class HostingView;

/// Shows a declarative view as a screen or a part of one. The description is made by a closure, anew whenever what it
/// depends on has changed and the host says so with setNeedsUpdate(). Main thread.
class UIHostingController : public Object<UIHostingController, UIViewController> {
 public:
  using Body = std::function<declarative::View()>;
  explicit UIHostingController(Body body);
  ~UIHostingController() override;

  /// The description is made again before the next frame.
  void setNeedsUpdate();
  void setRootView(Body body);

  void loadView() override;
  void viewWillAppear(bool animated) override;
  void viewDidDisappear(bool animated) override;

 private:
  Body body_;
  Ref<HostingView> hosting_;
};

}  // namespace platform
