#pragma once

#include <string>
#include <vector>

#include "lumicor/capture/LumicorTrackingTask.h"
#include "platform/uikit/application/TouchDriver.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIControl.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

/// A screen of the host's. Its methods note what reached them, and how many actions were registered by then.
class HostPage : public Object<HostPage, UIViewController> {
 public:
  std::vector<std::string> heard;

  void press(const Ref<NSObject>& sender);
  void plain() { note("plain"); }
  void withEvent(const Ref<NSObject>& sender, const Ref<UIEvent>& event);
  void save(const Ref<NSObject>& sender);
  void tapped(const Ref<NSObject>&) { note("tapped"); }
  static void exportMethods(MethodTable<HostPage>& table);

  void note(const std::string& what);
};

/// A session in the middle of a demonstration on a screen of the host's, with hands on it. The hooks are installed.
class CaptureTest : public SessionTest {
 protected:
  CaptureTest();
  ~CaptureTest() override;

  const Ref<HostPage>& page() const { return page_; }
  /// A view of that class on the page, named unless the name is empty. Each stands below the one before.
  template <class View>
  Ref<View> add(const std::string& name, double height = 60) {
    auto view = make<View>(CGRect{0, nextY_, 300, height});
    nextY_ += height + 10;
    place(view, name);
    return view;
  }
  /// One that sends "press:" to the page.
  template <class Control>
  Ref<Control> addPressed(const std::string& name, UIControlEvents events = UIControlEvents::touchUpInside) {
    auto control = add<Control>(name);
    control->addTarget(page_, sel("press:"), events);
    return control;
  }
  void tap(const Ref<UIView>& view);
  void type(const std::string& text);
  void finishHands();

  /// The names of the actions registered, in order.
  static std::vector<std::string> names();
  static const LumicroElement& lastAction() { return LumicorTrackingTask::taskFlow.back().actionElement(); }
  /// What toasts say at this moment, oldest first.
  static std::vector<std::string> toasts();
  TouchDriver& hands() { return hands_; }

 private:
  void place(const Ref<UIView>& view, const std::string& name);

  Ref<HostPage> page_ = make<HostPage>();
  double nextY_ = 130;
  TouchDriver hands_;
};

}  // namespace lumicor::test
