#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/RPScreenRecorder.h"
#include "tests/support/AppFixture.h"
#include "tests/support/DecodedVideo.h"

namespace platform::test {

/// A folder of its own, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static int counter = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("media_test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ / name; }
  /// Hidden ones too.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
    return names;
  }

 private:
  std::filesystem::path path_;
};

inline AVOutputSettings h264(double width, double height) {
  return {{AVVideoCodecKey, AVVideoCodecTypeH264}, {AVVideoWidthKey, width}, {AVVideoHeightKey, height}};
}

/// Writes what a recorder delivers: the first buffer begins the session and is not in the file.
class Recording {
 public:
  Recording(const Ref<RPScreenRecorder>& recorder, const std::string& path, CGSize size)
      : recorder_(recorder), writer_(*AVAssetWriter::writerWithURL(URL::fileURL(path), AVFileTypeMPEG4)) {
    input_ = make<AVAssetWriterInput>(AVMediaTypeVideo, h264(size.width, size.height));
    input_->setExpectsMediaDataInRealTime(true);
    writer_->addInput(input_);
    recorder_->startCapture(
        [this](const CMSampleBufferRef& buffer, RPSampleBufferType type, const auto&) {
          if (type == RPSampleBufferType::video) take(buffer);
        },
        nullptr);
    RunLoop::settle();
  }
  void stop() {
    bool isOver = false;
    recorder_->stopCapture([&](const std::optional<NSError>&) {
      input_->markAsFinished();
      writer_->finishWriting([&isOver] { isOver = true; });
    });
    RunLoop::settle();
    EXPECT_TRUE(isOver);
  }
  const Ref<AVAssetWriter>& writer() const { return writer_; }
  /// Seconds since the first one.
  const std::vector<double>& instants() const { return instants_; }

 private:
  void take(const CMSampleBufferRef& buffer) {
    const CMTime time = CMSampleBufferGetPresentationTimeStamp(buffer);
    if (instants_.empty()) first_ = time;
    instants_.push_back(time.seconds() - first_.seconds());
    if (writer_->status() == AVAssetWriterStatus::unknown) {
      writer_->startWriting();
      writer_->startSessionAtSourceTime(time);
    } else if (input_->isReadyForMoreMediaData()) {
      input_->appendSampleBuffer(buffer);
    }
  }

  const Ref<RPScreenRecorder> recorder_;
  const Ref<AVAssetWriter> writer_;
  Ref<AVAssetWriterInput> input_;
  CMTime first_;
  std::vector<double> instants_;
};

}  // namespace platform::test
