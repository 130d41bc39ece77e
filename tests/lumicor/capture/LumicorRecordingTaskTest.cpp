#include <fstream>
#include <gmock/gmock.h>

#include "lumicor/capture/LumicorRecorder.h"
#include "lumicor/capture/LumicorRecordingTask.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/lumicor/capture/DemonstrationTest.h"
#include "tests/support/DecodedVideo.h"

namespace lumicor::test {

using platform::test::DecodedVideo;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// ---- The recorder

class LumicorRecorderTest : public DemonstrationTest {
 protected:
  LumicorRecorderTest() : fake_(useFakeRecorder()), recorder_(make<LumicorRecorder>()) {}

  void start(const std::optional<URL>& to = std::nullopt, const std::optional<CGSize>& size = std::nullopt) {
    recorder_->startRecording(
        to, size, [this](const NSError& error) { errors_.push_back(error.code()); }, [this] { ++started_; });
    RunLoop::settle();
  }
  /// What the stop handler was told: addresses, and the codes of errors.
  std::vector<std::string> stop() {
    std::vector<std::string> told;
    recorder_->stopRecording([&](const LumicorRecorder::StopResult& result) {
      told.push_back(result ? result->value_or("no address") : std::to_string(result.error().code()));
    });
    RunLoop::settle();
    return told;
  }

  Ref<FakeRecorder> fake_;
  Ref<LumicorRecorder> recorder_;
  std::vector<std::int64_t> errors_;
  std::atomic<int> started_ = 0;
};

TEST_F(LumicorRecorderTest, WritesTheScreenInPointsToItsUsualFile) {
  EXPECT_FALSE(fake_->isMicrophoneEnabled());
  std::ofstream(folder() / "LumicorTaskRecording.mp4") << "an earlier one";
  start();
  EXPECT_EQ(
      recorder_->videoWriterInput()->outputSettings(),
      (AVOutputSettings{{AVVideoCodecKey, AVVideoCodecTypeH264}, {AVVideoWidthKey, 390.0}, {AVVideoHeightKey, 844.0}}));
  EXPECT_TRUE(recorder_->videoWriterInput()->expectsMediaDataInRealTime());
  EXPECT_EQ(started_, 0) << "not before the first frame";
  fake_->deliver(RPSampleBufferType::audioApp);
  EXPECT_EQ(started_, 0);
  for (int frame = 0; frame < 4; ++frame) fake_->deliver();
  EXPECT_EQ(started_, 1);
  const std::string path = folder() / "LumicorTaskRecording.mp4";
  EXPECT_THAT(stop(), ElementsAre(URL::fileURL(path).absoluteString()));
  const auto video = DecodedVideo::read(path);
  ASSERT_TRUE(video);
  EXPECT_EQ(video->frames.size(), 3U) << "the first frame is not appended";
  EXPECT_EQ(video->width, 390);
  EXPECT_EQ(video->height, 844);
}

TEST_F(LumicorRecorderTest, WritesWhereAndAsLargeAsItIsTold) {
  const std::string path = folder() / "other.mp4";
  start(URL::fileURL(path), CGSize{64, 32});
  for (int frame = 0; frame < 3; ++frame) fake_->deliver();
  EXPECT_THAT(stop(), ElementsAre(URL::fileURL(path).absoluteString()));
  EXPECT_EQ(DecodedVideo::read(path)->width, 64);
  EXPECT_THAT(documents(), ElementsAre("other.mp4"));
}

TEST_F(LumicorRecorderTest, LogsAFileThatCannotBeMade) {
  beginLog();
  start(URL::fileURL((folder() / "missing" / "x.mp4").string()));
  EXPECT_THAT(log(), ElementsAre(HasSubstr("Error when starting recording ")));
  EXPECT_EQ(fake_->starts, 0);
  EXPECT_THAT(errors_, SizeIs(1));
}

TEST_F(LumicorRecorderTest, ReportsAFailedStopAndThenTheFinishedFile) {
  start();
  for (int frame = 0; frame < 3; ++frame) fake_->deliver();
  fake_->stopError = FakeRecorder::error(-5804);
  EXPECT_THAT(stop(),
              ElementsAre("-5804", URL::fileURL((folder() / "LumicorTaskRecording.mp4").string()).absoluteString()));
}

TEST_F(LumicorRecorderTest, DoesNotBeginOnceItWasStopped) {
  recorder_->startRecording(
      std::nullopt, std::nullopt, [](const NSError&) {}, [] {});
  stop();
  EXPECT_EQ(fake_->starts, 0);
}

// ---- From start to finish

using RecordingTaskTest = DemonstrationTest;

TEST_F(RecordingTaskTest, HandsADemonstrationOverVideoFirstAndThenItsPicturesTaskAndSnapshots) {
  acceptAll();
  const auto button = addPressed<UIButton>("pay");
  const auto label = add<UILabel>("sum");
  begin();
  EXPECT_FALSE(LumicorRecordingTask::shared().loaderView()) << "gone with the first frame";
  tap(button);
  label->setText("paid");
  RunLoop::advance(1);
  tap(button);
  press();
  ASSERT_TRUE(RunLoop::advanceUntil([] { return !Lumicor::isTracking; }, 10));
  RunLoop::settle();

  const std::vector<JSONValue> media = service_.bodies("/sdk/media/upload");
  ASSERT_THAT(media, SizeIs(testing::Gt(2U)));
  EXPECT_EQ(media[0], json(R"({"viewName":"taskRecording","extension":"mp4"})"));
  EXPECT_EQ(media[1], json(R"({"viewName":"HostPage","extension":"png"})"));
  EXPECT_EQ(*service_.bodies("/sdk/task/register").at(0).find("recordingKey")->asString(), "key 0");
  const auto flow = registered();
  EXPECT_THAT(namesOf(flow),
              ElementsAre("Action on Optional(\"pay\")", "Action on Optional(\"pay\")", "Recording Stopped"));
  EXPECT_NE(flow[0].screenshotKey(), "");
  EXPECT_NE(flow[0].screenshotKey(), flow[1].screenshotKey()) << "the screen had changed";
  const auto order = paths();
  EXPECT_LT(std::ranges::find(order, "/sdk/task/register"), std::ranges::find(order, "/sdk/snapshot/register"));

  // What was sent can be looked at.
  const auto bodyOf = [&](const std::string& path) {
    for (const URLRequest& request : service_.requests()) {
      if (request.url().path() == path) return request.httpBody().value_or("");
    }
    return std::string();
  };
  const auto picture = UIImage::imageWithData(bodyOf("/1"));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->cgImage()->width(), 780);
  EXPECT_THAT(documents(), ElementsAre("LumicorTaskRecording.mp4")) << "no pictures are left behind";
  const std::string video = folder() / "LumicorTaskRecording.mp4";
  ASSERT_TRUE(DecodedVideo::read(video));
  EXPECT_EQ(DecodedVideo::read(video)->width, 390);
  std::ifstream file(video);
  EXPECT_EQ(bodyOf("/0"), std::string(std::istreambuf_iterator<char>(file), {}));

  EXPECT_THAT(toasts(), Contains("Task Capture Failed")) << "so the program says after an accepted registration";
  EXPECT_EQ(buttonTitle(), "Start");
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_FALSE(LumicorRecordingTask::shared().loaderView());
}

TEST_F(RecordingTaskTest, SharesThePictureOfAScreenThatDidNotChange) {
  acceptAll();
  useSimulator();
  begin();
  const auto view = add<UIView>("v");
  RunLoop::advance(5);
  LumicorTrackingTask::registerUserAction("a", view);
  LumicorTrackingTask::registerUserAction("b", view);
  end();
  const auto flow = registered();
  ASSERT_THAT(flow, SizeIs(3));
  EXPECT_NE(flow[0].screenshotKey(), "");
  EXPECT_EQ(flow[0].screenshotKey(), flow[1].screenshotKey());
}

TEST_F(RecordingTaskTest, HandsALongDemonstrationOver) {
  acceptAll();
  useSimulator();
  begin();
  const auto view = add<UIView>("v");
  for (int action = 0; action < 2000; ++action) LumicorTrackingTask::registerUserAction("a", view);
  RunLoop::settle();
  EXPECT_THAT(documents(), SizeIs(testing::Le(2U))) << "the screen was not drawn anew in between";
  end();
  const auto flow = registered();
  ASSERT_THAT(flow, SizeIs(2001));
  for (std::size_t i = 0; i < flow.size(); ++i) ASSERT_EQ(flow[i].index(), static_cast<std::int64_t>(i));
  EXPECT_NE(flow[1999].screenshotKey(), "");
}

TEST_F(RecordingTaskTest, ShowsItsLoaderUntilTheFirstFrameAndAgainWhileItHandsOver) {
  const auto fake = useFakeRecorder();
  fake->asksForPermission = true;
  press();
  ASSERT_TRUE(LumicorRecordingTask::shared().loaderView());
  EXPECT_EQ(LumicorRecordingTask::shared().loaderView()->frame(), (CGRect{120, 347, 150, 150}));
  EXPECT_FALSE(bar()->clickButton()->isEnabled());
  EXPECT_TRUE(Lumicor::isTracking);
  fake->answer();
  fake->deliver();
  EXPECT_FALSE(LumicorRecordingTask::shared().loaderView());
  EXPECT_EQ(buttonTitle(), "Stop");
  EXPECT_TRUE(bar()->clickButton()->isEnabled());

  service_.answer("/sdk/media/upload", URLProtocol::Reply::never());
  fake->deliver();
  fake->deliver();
  tap(addPressed<UIButton>("pay"));
  press();
  RunLoop::advance(1);
  EXPECT_TRUE(LumicorRecordingTask::shared().loaderView());
  EXPECT_THAT(names(), SizeIs(2)) << "the flow stays until it is registered";
}

TEST_F(RecordingTaskTest, TellsThatNothingWasRecorded) {
  const auto fake = useFakeRecorder();
  press();
  fake->deliver();
  press();
  EXPECT_FALSE(Lumicor::isTracking);
  EXPECT_THAT(toasts(), ElementsAre("No actions recorded"));
  EXPECT_THAT(service_.requests(), IsEmpty());
  EXPECT_EQ(buttonTitle(), "Start");
}

// ---- Faults

class RecordingFaultTest : public DemonstrationTest {
 protected:
  /// A demonstration of one action that has come as far as its recorder lets it.
  void demonstrate() {
    press();
    for (int frame = 0; frame < 3; ++frame) fake_->deliver();
    tap(button_);
    press();
    RunLoop::advance(70);
  }
  void expectIdle() {
    EXPECT_FALSE(Lumicor::isTracking);
    EXPECT_EQ(buttonTitle(), "Start");
    EXPECT_TRUE(bar()->clickButton()->isEnabled());
    EXPECT_FALSE(LumicorRecordingTask::shared().loaderView());
    EXPECT_THAT(names(), IsEmpty());
  }

  Ref<FakeRecorder> fake_ = useFakeRecorder();
  Ref<UIButton> button_ = addPressed<UIButton>("pay");
};

TEST_F(RecordingFaultTest, ARefusalIsToldAndEverythingIsAsBefore) {
  for (const std::int64_t code : {-5801, -5807}) {
    fake_->startError = FakeRecorder::error(code);
    press();
    expectIdle();
    EXPECT_THAT(toasts(), ElementsAre("Permission denied"));
    RunLoop::advance(5);
  }
}

TEST_F(RecordingFaultTest, AStartThatFailsOtherwiseIsLogged) {
  fake_->startError = FakeRecorder::error(-5803);
  beginLog();
  press();
  EXPECT_THAT(log(), Contains("An error occurred: the recorder's reason"));
  expectIdle();
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(RecordingFaultTest, AFileThatCannotBeMadeEndsTheStart) {
  std::filesystem::remove_all(folder());
  std::ofstream(folder()) << "no folder";
  press();
  expectIdle();
  EXPECT_EQ(fake_->starts, 0);
}

TEST_F(RecordingFaultTest, AFailedStopIsLoggedAndTheDemonstrationStillHandedOver) {
  acceptAll();
  fake_->stopError = FakeRecorder::error(-5804);
  beginLog();
  demonstrate();
  EXPECT_THAT(log(), Contains("An error occurred: the recorder's reason"));
  EXPECT_THAT(registered(), SizeIs(2));
  EXPECT_THAT(service_.bodies("/sdk/task/register"), SizeIs(1)) << "once, though the stop reports twice";
  expectIdle();
}

TEST_F(RecordingFaultTest, RefusedUploadsLeaveEmptyKeys) {
  service_.answer("/sdk/media/upload", json(R"({"statusCode":500})"));
  service_.answer("/sdk/task/register", json(R"({"statusCode":200,"data":{"insertedId":"t"}})"));
  demonstrate();
  EXPECT_EQ(*service_.bodies("/sdk/task/register").at(0).find("recordingKey")->asString(), "");
  ASSERT_THAT(registered(), SizeIs(2));
  EXPECT_EQ(registered()[0].screenshotKey(), "");
  expectIdle();
}

TEST_F(RecordingFaultTest, UploadsThatAreCutLoseNothingElse) {
  acceptAll();
  for (const char* file : {"/0", "/1", "/2"}) {
    service_.answer(file, URLProtocol::Reply::failure(URLError::networkConnectionLost));
  }
  demonstrate();
  ASSERT_THAT(registered(), SizeIs(2));
  EXPECT_EQ(registered()[0].screenshotKey(), "key 1") << "the key is told whether or not the file arrived";
  expectIdle();
}

TEST_F(RecordingFaultTest, ARefusedTaskEndsTheDemonstration) {
  service_.answer("/sdk/task/register", json(R"({"statusCode":500})"));
  demonstrate();
  EXPECT_THAT(registered(), IsEmpty());
  expectIdle();
}

TEST_F(RecordingFaultTest, ARefusedSecondSnapshotEndsTheRegistrationAlone) {
  acceptAll();
  service_.answer("/sdk/snapshot/register", json(R"({"statusCode":200})"));
  service_.answer("/sdk/snapshot/register", json(R"({"statusCode":500})"));
  demonstrate();
  EXPECT_THAT(registered(), SizeIs(2));
  expectIdle();
  demonstrate();
  EXPECT_THAT(service_.bodies("/sdk/task/register"), SizeIs(2)) << "and another one can be shown";
}

TEST_F(RecordingFaultTest, NoRoomForPicturesLeavesThemOut) {
  acceptAll();
  std::ofstream(folder() / "LumicorScreenshots") << "in the way";
  press();
  for (int frame = 0; frame < 3; ++frame) fake_->deliver();
  std::ofstream(folder() / "LumicorScreenshots") << "in the way";
  tap(button_);
  press();
  RunLoop::advance(10);
  ASSERT_THAT(registered(), SizeIs(2));
  EXPECT_EQ(registered()[0].screenshotKey(), "");
  expectIdle();
}

}  // namespace lumicor::test
