#pragma once

#include <deque>
#include <filesystem>

#include "lumicor/capture/LumicorRecordingTask.h"
#include "lumicor/capture/LumicorTrackingControlView.h"
#include "platform/foundation/FileManager.h"
#include "platform/media/RPScreenRecorder.h"
#include "platform/uikit/controls/UIButton.h"
#include "tests/lumicor/capture/CaptureTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

/// A recorder that does as it is told.
class FakeRecorder : public Object<FakeRecorder, RPScreenRecorder> {
 public:
  std::optional<NSError> startError;
  std::optional<NSError> stopError;
  bool asksForPermission = false;  ///< then the answer waits for `answer`
  int starts = 0;
  int stops = 0;

  void startCapture(CaptureHandler handler, Completion completion) override;
  void stopCapture(Completion completion) override;
  void answer();
  void deliver(RPSampleBufferType type = RPSampleBufferType::video);
  /// Lets go of its callers, who hold it.
  void forget();

  static NSError error(std::int64_t code) { return NSError(RPRecordingErrorDomain, code, "the recorder's reason"); }

 private:
  CaptureHandler handler_;
  Completion completion_;
  std::int64_t frames_ = 0;
};

/// A page with the control bar over it, a service, and a folder for documents. No demonstration has begun.
class DemonstrationTest : public CaptureTest {
 protected:
  DemonstrationTest();
  ~DemonstrationTest() override;

  static const Ref<LumicorTrackingControlView>& bar() { return Lumicor::shared().trackingButton; }
  static std::string buttonTitle();
  void press() { tap(bar()->clickButton()); }
  /// Presses "Start" and waits for the first frame.
  void begin();
  /// Presses "Stop" and waits until all is over.
  void end();
  Ref<FakeRecorder> useFakeRecorder();
  static void useSimulator();

  /// The service takes everything.
  void acceptAll();
  std::vector<std::string> paths() const;
  /// The snapshots that the service was given.
  std::vector<LumicorSnapshot> registered() const;
  static std::vector<std::string> namesOf(const std::vector<LumicorSnapshot>& flow);
  /// The files among the documents.
  std::vector<std::string> documents() const;
  const std::filesystem::path& folder() const { return folder_; }

  StubService service_;

 private:
  std::filesystem::path folder_;
  JSONValue information_;
  Ref<FakeRecorder> fake_;
};

}  // namespace lumicor::test
