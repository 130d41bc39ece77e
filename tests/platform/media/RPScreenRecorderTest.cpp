#include <thread>

#include "platform/uikit/application/ScreenDisplay.h"
#include "tests/platform/media/RecordingFixture.h"

namespace platform::test {
namespace {

using Code = std::optional<std::int64_t>;

Code codeOf(const std::optional<NSError>& error) {
  if (!error) return std::nullopt;
  EXPECT_EQ(error->domain(), RPRecordingErrorDomain);
  EXPECT_FALSE(error->localizedDescription().empty());
  return error->code();
}

class RPScreenRecorderTest : public AppFixture {
 protected:
  void TearDown() override {
    recorder_.reset();
    AppFixture::TearDown();
  }
  void start() {
    recorder_->startCapture(
        [this](const CMSampleBufferRef& buffer, RPSampleBufferType, const std::optional<NSError>&) {
          EXPECT_FALSE(isMainThread());
          log_.push_back("buffer");
          buffers_.push_back(buffer);
        },
        [this](const std::optional<NSError>& error) { note("started", error); });
    settle();
  }
  void stop() {
    recorder_->stopCapture([this](const std::optional<NSError>& error) { note("stopped", error); });
    settle();
  }
  void note(const std::string& what, const std::optional<NSError>& error) {
    EXPECT_FALSE(isMainThread());
    log_.push_back(error ? what + " " + std::to_string(*codeOf(error)) : what);
  }
  std::vector<std::string> takeLog() { return std::exchange(log_, {}); }

  Ref<RPScreenRecorder> recorder_ = make<RPScreenRecorder>();
  std::vector<std::string> log_;  // of the recorder's queue, read while that is still
  std::vector<CMSampleBufferRef> buffers_;
};

using Log = std::vector<std::string>;

TEST_F(RPScreenRecorderTest, TellsItsStartThenBuffersThenItsStopAndNothingAfter) {
  EXPECT_FALSE(recorder_->isRecording());
  start();
  EXPECT_TRUE(recorder_->isRecording());
  advance(1);
  stop();
  EXPECT_FALSE(recorder_->isRecording());
  content()->setBackgroundColor(UIColor::black());
  advance(1);
  EXPECT_EQ(takeLog(), (Log{"started", "buffer", "buffer", "buffer", "stopped"}));
  EXPECT_EQ(buffers_.back()->image().width(), 780);
  EXPECT_TRUE(buffers_[0]->image().isSameAs(buffers_[2]->image())) << "what does not change is shared";
  for (std::size_t i = 1; i < buffers_.size(); ++i) {
    EXPECT_LT(buffers_[i - 1]->presentationTime(), buffers_[i]->presentationTime());
  }
  start();
  stop();
  EXPECT_EQ(takeLog(), (Log{"started", "buffer", "buffer", "stopped"})) << "and can begin again at once";
}

TEST_F(RPScreenRecorderTest, TheLastBufferHoldsWhatWasChangedRightBeforeTheStop) {
  start();
  advance(1);
  content()->setBackgroundColor(UIColor::black());
  settle();  // that was a frame, and the next one is not due yet
  content()->setBackgroundColor(UIColor(0, 0, 1, 1));
  stop();
  EXPECT_EQ(buffers_.back()->image().bitmap().pixel(100, 800), 0xff0000ffu);
}

TEST_F(RPScreenRecorderTest, AHandlerThatIsBehindGetsTheNewestAndNobodyWaitsForIt) {
  std::atomic<bool> mayGoOn{false};
  std::vector<std::uint32_t> seen;
  recorder_->startCapture(
      [&](const CMSampleBufferRef& buffer, RPSampleBufferType, const auto&) {
        mayGoOn.wait(false);
        seen.push_back(buffer->image().bitmap().pixel(100, 800) & 255);
      },
      nullptr);
  RunLoop::main().drainDueWork();
  const Ref<ScreenDisplay> display = ScreenDisplay::shared();
  for (int i = 1; i <= 20; ++i) {
    content()->setBackgroundColor(UIColor(0, 0, i / 255.0, 1));
    display->showFrame();
  }
  mayGoOn = true;
  mayGoOn.notify_all();
  stop();
  ASSERT_FALSE(seen.empty());
  EXPECT_LE(seen.size(), 4u);
  EXPECT_EQ(seen.back(), 20u);
}

TEST_F(RPScreenRecorderTest, StartsOnceAndStopsOnce) {
  stop();
  EXPECT_EQ(takeLog(), Log{"stopped -5829"});
  start();
  start();
  EXPECT_EQ(takeLog(), (Log{"started", "started -5830"}));
  EXPECT_TRUE(recorder_->isRecording());
  stop();
  stop();
  EXPECT_EQ(takeLog(), (Log{"buffer", "stopped", "stopped -5829"}));
}

TEST_F(RPScreenRecorderTest, AsksThePersonAndKeepsToTheAnswer) {
  std::vector<RPScreenRecorder::PermissionAnswer> asked;
  recorder_->setPermissionQuestion([&](const RPScreenRecorder::PermissionAnswer& answer) {
    EXPECT_TRUE(isMainThread());
    asked.push_back(answer);
  });
  start();
  advance(5);
  EXPECT_EQ(takeLog(), Log{}) << "it waits for the answer";
  start();
  EXPECT_EQ(takeLog(), Log{"started -5830"});
  asked.at(0)(NSError(RPRecordingErrorDomain, RPRecordingErrorUserDeclined, "No."));
  asked.at(0)(std::nullopt);  // too late
  advance(1);
  EXPECT_EQ(takeLog(), Log{"started -5801"});
  EXPECT_FALSE(recorder_->isRecording());

  start();
  stop();
  EXPECT_EQ(takeLog(), (Log{"started -5806", "stopped"}));
  asked.at(1)(std::nullopt);
  advance(1);
  EXPECT_EQ(takeLog(), Log{}) << "an answer to a question that nobody asks any more";

  start();
  asked.at(0)(std::nullopt);  // an old one
  settle();
  EXPECT_FALSE(recorder_->isRecording());
  std::thread([&] { asked.at(2)(std::nullopt); }).join();
  settle();
  EXPECT_EQ(takeLog().at(0), "started");
}

TEST_F(RPScreenRecorderTest, AScreenWithoutPixelsCannotBeRecorded) {
  DeviceProfile none = UIDevice::current().profile();
  none.screenSize = {0, 0};
  UIDevice::setProfile(none);
  start();
  EXPECT_EQ(takeLog(), Log{"started -5803"});
}

TEST_F(RPScreenRecorderTest, LetGoOfItRecordsNoMore) {
  start();
  advance(0.5);
  recorder_.reset();
  takeLog();
  content()->setBackgroundColor(UIColor::black());
  advance(1);
  EXPECT_EQ(takeLog(), Log{});
}

TEST_F(RPScreenRecorderTest, AnotherCanStandInForTheSharedOne) {
  const Ref<RPScreenRecorder> own = RPScreenRecorder::shared();
  EXPECT_NE(own, recorder_);
  RPScreenRecorder::setShared(recorder_);
  EXPECT_EQ(RPScreenRecorder::shared(), recorder_);
  RPScreenRecorder::setShared(nullptr);
  EXPECT_EQ(RPScreenRecorder::shared(), own);
}

}  // namespace
}  // namespace platform::test
