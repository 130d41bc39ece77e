#include "tests/lumicor/capture/DemonstrationTest.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "lumicor/ui/LumicorToast.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIDevice.h"

namespace lumicor::test {

void FakeRecorder::startCapture(CaptureHandler handler, Completion completion) {
  ++starts;
  handler_ = std::move(handler);
  completion_ = std::move(completion);
  if (!asksForPermission) answer();
}

void FakeRecorder::answer() {
  queue().async([completion = std::exchange(completion_, nullptr), error = startError] { completion(error); });
}

void FakeRecorder::forget() {
  handler_ = nullptr;
  completion_ = nullptr;
}

void FakeRecorder::stopCapture(Completion completion) {
  ++stops;
  queue().async([completion = std::move(completion), error = stopError] { completion(error); });
}

void FakeRecorder::deliver(RPSampleBufferType type) {
  const auto buffer = std::make_shared<CMSampleBuffer>(TiledBitmap(Bitmap(64, 64)), CMTimeMake(++frames_, 10));
  queue().async([handler = handler_, buffer, type] { handler(buffer, type, std::nullopt); });
  RunLoop::settle();
}

DemonstrationTest::DemonstrationTest() : information_(Bundle::main().infoDictionary()) {
  std::string path = (std::filesystem::temp_directory_path() / "lumicor-documents-XXXXXX").string();
  folder_ = mkdtemp(path.data());
  FileManager::defaultManager().setDocumentDirectory(folder_);
  Bundle::main().setInfoDictionary(json(R"({"CFBundleIdentifier":"example.tea"})"));
  Lumicor::isTracking = false;
  page()->view()->setAccessibilityIdentifier("page");
  LumicorTrackingTask::showTrackingControlView(page()->view());
  RunLoop::settle();
}

DemonstrationTest::~DemonstrationTest() {
  window()->endEditing(true);
  LumicorRecordingTask::shared().reset();
  RunLoop::advance(5);
  bar()->removeFromSuperview();
  Lumicor::shared().trackingButton = nullptr;
  RPScreenRecorder::setShared(nullptr);
  if (fake_) fake_->forget();
  UIDevice::setProfile(DeviceProfile::phone());
  Bundle::main().setInfoDictionary(information_);
  FileManager::defaultManager().setDocumentDirectory({});
  std::filesystem::remove_all(folder_);
}

std::string DemonstrationTest::buttonTitle() { return *bar()->clickButton()->currentTitle(); }

void DemonstrationTest::begin() {
  press();
  EXPECT_TRUE(RunLoop::advanceUntil([] { return buttonTitle() == "Stop"; }, 5));
}

void DemonstrationTest::end() {
  press();
  EXPECT_TRUE(RunLoop::advanceUntil([] { return !Lumicor::isTracking; }, 30));
  RunLoop::settle();
}

Ref<FakeRecorder> DemonstrationTest::useFakeRecorder() {
  fake_ = make<FakeRecorder>();
  RPScreenRecorder::setShared(fake_);
  return fake_;
}

void DemonstrationTest::useSimulator() { UIDevice::setProfile(DeviceProfile::simulator()); }

void DemonstrationTest::acceptAll() {
  for (int file = 0; file < 20; ++file) {
    const std::string number = std::to_string(file);
    service_.answer("/sdk/media/upload", json(R"({"statusCode":200,"data":{"url":"https://files.test/)" + number +
                                              R"(","key":"key )" + number + "\"}}"));
  }
  service_.answer("/sdk/task/register", json(R"({"statusCode":200,"data":{"insertedId":"task 1"}})"));
}

std::vector<std::string> DemonstrationTest::paths() const {
  std::vector<std::string> paths;
  for (const URLRequest& request : service_.requests()) paths.push_back(request.url().path());
  return paths;
}

std::vector<LumicorSnapshot> DemonstrationTest::registered() const {
  std::vector<LumicorSnapshot> flow;
  for (const JSONValue& body : service_.bodies("/sdk/snapshot/register")) {
    const Result<LumicorSnapshot> snapshot = decodeRecord<LumicorSnapshot>(*body.find("snapshot"));
    EXPECT_TRUE(snapshot) << snapshot.error();
    if (snapshot) flow.push_back(*snapshot);
  }
  return flow;
}

std::vector<std::string> DemonstrationTest::namesOf(const std::vector<LumicorSnapshot>& flow) {
  std::vector<std::string> names;
  for (const LumicorSnapshot& snapshot : flow) names.push_back(snapshot.actionElement().actionName());
  return names;
}

std::vector<std::string> DemonstrationTest::documents() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
    if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(folder_));
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace lumicor::test
