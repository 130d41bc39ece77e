#include "tests/lumicor/capture/CaptureTest.h"

#include "lumicor/capture/LumicorHooks.h"
#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/ui/LumicorToast.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor::test {

void HostPage::exportMethods(MethodTable<HostPage>& table) {
  table.add<&HostPage::press>("press:")
      .add<&HostPage::plain>("plain")
      .add<&HostPage::withEvent>("press:event:")
      .add<&HostPage::save>("save:")
      .add<&HostPage::tapped>("tapped:");
}

void HostPage::note(const std::string& what) {
  heard.push_back(what + " after " + std::to_string(LumicorTrackingTask::taskFlow.size()));
}

void HostPage::press(const Ref<NSObject>& sender) { note("press " + NSStringFromClass(sender->classForCoder())); }
void HostPage::save(const Ref<NSObject>& sender) { note("save " + NSStringFromClass(sender->classForCoder())); }
void HostPage::withEvent(const Ref<NSObject>&, const Ref<UIEvent>& event) {
  note(event ? "press with event" : "press without event");
}

CaptureTest::CaptureTest() {
  LumicorHooks::install();
  LumicorTrackingTask::taskFlow.clear();
  page_->view()->setBackgroundColor(UIColor::white());
  show(page_);
  RunLoop::advance(1);
  Lumicor::shared().setInitialized(true);
  Lumicor::isTracking = true;
}

CaptureTest::~CaptureTest() {
  window()->endEditing(true);
  LumicorPendingInputs::settle();
  RunLoop::advance(10);  // debounces and toasts end
  Lumicor::isTracking = false;
  LumicorTrackingTask::taskFlow.clear();
}

void CaptureTest::place(const Ref<UIView>& view, const std::string& name) {
  if (!name.empty()) view->setAccessibilityIdentifier(name);
  page_->view()->addSubview(view);
  UIApplication::shared().layoutAndDisplayIfNeeded();
}

void CaptureTest::finishHands() {
  EXPECT_TRUE(RunLoop::advanceUntil([this] { return !hands_.isBusy(); }, 60));
  RunLoop::settle();
}

void CaptureTest::tap(const Ref<UIView>& view) {
  hands_.tap(view);
  finishHands();
}

void CaptureTest::type(const std::string& text) {
  hands_.type(text);
  finishHands();
}

std::vector<std::string> CaptureTest::names() {
  std::vector<std::string> names;
  for (const LumicorSnapshot& snapshot : LumicorTrackingTask::taskFlow) {
    names.push_back(snapshot.actionElement().actionName());
  }
  return names;
}

std::vector<std::string> CaptureTest::toasts() {
  std::vector<std::string> texts;
  for (const Ref<LumicorToast>& toast : LumicorToast::shown()) texts.push_back(toast->label()->text().value_or(""));
  return texts;
}

}  // namespace lumicor::test
