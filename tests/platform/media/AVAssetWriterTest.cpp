#include <cstdlib>
#include <fstream>
#include <sys/resource.h>
#include <thread>

#include "platform/dispatch/DispatchQueue.h"
#include "tests/platform/media/RecordingFixture.h"

namespace platform::test {
namespace {

constexpr std::uint32_t red = 0xffff0000u, blue = 0xff0000ffu;

TiledBitmap plain(int width, int height, std::uint32_t color) {
  Bitmap bitmap(width, height);
  std::fill_n(bitmap.data(), static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color);
  return TiledBitmap(bitmap);
}

/// Every pixel another, in every picture others: nothing to save by.
TiledBitmap noise(int width, int height, std::uint32_t seed) {
  Bitmap bitmap(width, height);
  std::uint32_t state = seed * 2654435761u + 1;
  for (std::uint32_t* pixel = bitmap.data(); pixel != bitmap.data() + width * height; ++pixel) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    *pixel = 0xff000000u | (state & 0xffffffu);
  }
  return TiledBitmap(bitmap);
}

CMSampleBufferRef at(double seconds, TiledBitmap picture, double duration = 0) {
  return std::make_shared<CMSampleBuffer>(std::move(picture), CMTimeMakeWithSeconds(seconds, 1000),
                                          CMTimeMakeWithSeconds(duration, 1000));
}

std::uint32_t colorAt(const Bitmap& picture, int x, int y) {
  const UIColor color = picture.color(x, y);
  const auto part = [](double value) { return value > 0.5 ? 255u : 0u; };
  return 0xff000000u | part(color.red()) << 16 | part(color.green()) << 8 | part(color.blue());
}

class AVAssetWriterTest : public testing::Test {
 protected:
  Ref<AVAssetWriter> open(const std::string& name = "video.mp4") {
    auto writer = AVAssetWriter::writerWithURL(URL::fileURL(folder_.file(name)), AVFileTypeMPEG4);
    EXPECT_TRUE(writer);
    return *writer;
  }
  /// A writer of such a video whose session begins at 10 seconds.
  Ref<AVAssetWriter> begin(double width, double height) {
    const auto writer = open();
    input_ = make<AVAssetWriterInput>(AVMediaTypeVideo, h264(width, height));
    EXPECT_TRUE(writer->canAddInput(input_));
    writer->addInput(input_);
    EXPECT_TRUE(writer->startWriting());
    writer->startSessionAtSourceTime(CMTimeMake(10, 1));
    return writer;
  }
  static void finish(const Ref<AVAssetWriter>& writer) {
    bool isOver = false;
    writer->finishWriting([&isOver] {
      EXPECT_FALSE(isMainThread());
      isOver = true;
    });
    RunLoop::settle();
    EXPECT_TRUE(isOver);
  }
  std::optional<DecodedVideo> video() const { return DecodedVideo::read(folder_.file("video.mp4")); }
  static std::int64_t codeOf(const Ref<AVAssetWriter>& writer) {
    EXPECT_EQ(writer->status(), AVAssetWriterStatus::failed);
    return writer->error() ? writer->error()->code() : 0;
  }

  VirtualTime time_;
  TemporaryFolder folder_;
  Ref<AVAssetWriterInput> input_;
};

// ---- Where a file can be made

TEST_F(AVAssetWriterTest, RefusesAFileThatCannotBeMade) {
  const auto codeFor = [](const URL& url, const AVFileType& type = AVFileTypeMPEG4) -> std::int64_t {
    const auto writer = AVAssetWriter::writerWithURL(url, type);
    return writer ? 0 : writer.error().code();
  };
  EXPECT_EQ(codeFor(*URL::parse("https://example.com/video.mp4")), NSFileWriteUnsupportedSchemeError);
  EXPECT_EQ(codeFor(URL::fileURL(folder_.file("none/video.mp4"))), NSFileNoSuchFileError);
  EXPECT_NE(codeFor(URL::fileURL(folder_.file("video.mp4") + "/")), 0);
  EXPECT_EQ(codeFor(URL::fileURL(folder_.file(std::string(300, 'a')))), NSFileWriteInvalidFileNameError);
  EXPECT_EQ(codeFor(URL::fileURL(folder_.file("video.mov")), "com.apple.quicktime-movie"),
            AVErrorFileFormatNotRecognized);
  EXPECT_NE(codeFor(URL::fileURL("/proc/video.mp4")), 0) << "a folder that takes no files";
  EXPECT_THAT(folder_.names(), testing::IsEmpty());
}

TEST_F(AVAssetWriterTest, PutsTheWholeFileInThePlaceOfAnOlderOneAndClearsUpAfterTheDead) {
  std::ofstream(folder_.file("video.mp4")) << "older";
  std::ofstream(folder_.file(".video.mp4.part-2147483646-0")) << "left by a process that is no more";
  const auto writer = begin(64, 64);
  input_->appendSampleBuffer(at(10, plain(64, 64, red)));
  std::ifstream older(folder_.file("video.mp4"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(older), {}), "older") << "until the new one is whole";
  finish(writer);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"video.mp4"});
  EXPECT_TRUE(video());
}

TEST_F(AVAssetWriterTest, FailsWhenTheFileCannotGetItsName) {
  std::filesystem::create_directories(folder_.file("video.mp4/full"));
  const auto writer = begin(64, 64);
  input_->appendSampleBuffer(at(10, plain(64, 64, red)));
  finish(writer);
  EXPECT_EQ(writer->status(), AVAssetWriterStatus::failed);
  EXPECT_TRUE(writer->error());
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"video.mp4"});
}

TEST_F(AVAssetWriterTest, AFullDiskEndsWritingAndLeavesNoFile) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  for (const rlim_t room : {rlim_t{0}, rlim_t{40'000}}) {
    const auto writer = begin(256, 256);
    rlimit small = before;
    small.rlim_cur = room;
    setrlimit(RLIMIT_FSIZE, &small);
    for (int i = 0; i < 20; ++i) {
      input_->appendSampleBuffer(at(10 + i, noise(256, 256, static_cast<std::uint32_t>(i))));
      RunLoop::settle();
    }
    finish(writer);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(codeOf(writer), AVErrorDiskFull) << room;
    EXPECT_FALSE(input_->isReadyForMoreMediaData());
    EXPECT_THAT(folder_.names(), testing::IsEmpty()) << room;
  }
}

// ---- Settings

TEST_F(AVAssetWriterTest, TakesSizesThatAVideoCanHave) {
  const auto isTaken = [&](AVOutputSettings settings, const AVMediaType& type = AVMediaTypeVideo) {
    const auto writer = open();
    const auto input = make<AVAssetWriterInput>(type, std::move(settings));
    const bool isFit = writer->canAddInput(input);
    writer->addInput(input);
    EXPECT_EQ(writer->startWriting(), isFit);
    if (!isFit) {
      EXPECT_EQ(codeOf(writer), AVErrorInvalidOutputSettings);
    }
    return isFit;
  };
  EXPECT_TRUE(isTaken(h264(1, 1)));
  EXPECT_TRUE(isTaken(h264(390.9, 844)));
  const double wrong[][2] = {{0, 844},    {390, 0},     {-390, 844},      {0.5, 10},          {1e9, 10},
                             {10, 1e300}, {20'000, 16}, {16'384, 16'384}, {std::nan(""), 10}, {HUGE_VAL, 10}};
  for (const auto& size : wrong) EXPECT_FALSE(isTaken(h264(size[0], size[1]))) << size[0] << " x " << size[1];
  AVOutputSettings other = h264(64, 64);
  other[AVVideoCodecKey] = "hvc1";
  EXPECT_FALSE(isTaken(other));
  EXPECT_FALSE(isTaken({}));
  other = h264(64, 64);
  other[AVVideoWidthKey] = "64";
  EXPECT_FALSE(isTaken(other));
  EXPECT_FALSE(isTaken(h264(64, 64), "soun"));
}

TEST_F(AVAssetWriterTest, KeepsToTheOrderOfItsCalls) {
  const auto writer = open();
  EXPECT_FALSE(writer->startWriting()) << "without an input";
  EXPECT_EQ(codeOf(writer), AVErrorOperationNotAllowed);

  const auto second = begin(64, 64);
  EXPECT_FALSE(second->startWriting());
  EXPECT_FALSE(second->canAddInput(make<AVAssetWriterInput>(AVMediaTypeVideo, h264(64, 64))));
  EXPECT_FALSE(input_->appendSampleBuffer(nullptr));
  EXPECT_FALSE(input_->appendSampleBuffer(at(10, {}))) << "sound";
  EXPECT_FALSE(input_->appendSampleBuffer(at(9, plain(64, 64, red)))) << "before the session";
  EXPECT_TRUE(input_->appendSampleBuffer(at(11, plain(64, 64, red))));
  EXPECT_FALSE(input_->appendSampleBuffer(at(11, plain(64, 64, blue)))) << "no later than the one before";
  input_->markAsFinished();
  EXPECT_FALSE(input_->isReadyForMoreMediaData());
  EXPECT_FALSE(input_->appendSampleBuffer(at(12, plain(64, 64, blue))));
  finish(second);
  EXPECT_EQ(second->status(), AVAssetWriterStatus::completed);
  finish(second);
  second->cancelWriting();
  EXPECT_EQ(second->status(), AVAssetWriterStatus::completed);

  const auto empty = begin(64, 64);
  finish(empty);
  EXPECT_EQ(codeOf(empty), AVErrorNoDataCaptured);
  const auto never = open();
  finish(never);
  EXPECT_EQ(codeOf(never), AVErrorNoDataCaptured);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"video.mp4"});
}

// ---- Pictures

TEST_F(AVAssetWriterTest, TheFirstPictureIsShownFromTheBeginningAndTheLastUntilTheEnd) {
  auto writer = begin(64, 64);
  const TiledBitmap same = plain(64, 64, blue);
  input_->appendSampleBuffer(at(10.25, plain(64, 64, red)));
  input_->appendSampleBuffer(at(10.5, same, 0.25));
  input_->appendSampleBuffer(at(11.5, same));  // nothing new: it only lasts
  finish(writer);
  auto video = this->video();
  ASSERT_TRUE(video && video->frames.size() == 2);
  EXPECT_DOUBLE_EQ(video->frames[0].begin, 0);
  EXPECT_DOUBLE_EQ(video->frames[1].begin, 0.5);
  EXPECT_DOUBLE_EQ(video->duration, 1.5);

  writer = begin(64, 64);
  input_->appendSampleBuffer(at(10.5, same, 0.25));
  writer->endSessionAtSourceTime(CMTimeMake(14, 1));
  finish(writer);
  EXPECT_DOUBLE_EQ(this->video()->duration, 4);
}

TEST_F(AVAssetWriterTest, AnOddSideGrowsByItsLastRowOrColumn) {
  for (const int factor : {1, 2, 3, 4}) {
    const auto writer = begin(101, 75);
    Bitmap bitmap(101 * factor, 75 * factor);
    for (int y = 0; y < bitmap.height(); ++y) {
      for (int x = 0; x < bitmap.width(); ++x) bitmap.row(y)[x] = x < 50 * factor ? red : blue;
    }
    input_->appendSampleBuffer(at(10, TiledBitmap(bitmap)));
    finish(writer);
    const auto video = this->video();
    ASSERT_TRUE(video && !video->frames.empty());
    EXPECT_EQ(video->width, 102);
    EXPECT_EQ(video->height, 76);
    const Bitmap& picture = video->frames[0].picture;
    EXPECT_EQ(colorAt(picture, 2, 75), red) << factor;
    EXPECT_EQ(colorAt(picture, 46, 40), red) << factor;
    EXPECT_EQ(colorAt(picture, 53, 40), blue) << factor;
    EXPECT_EQ(colorAt(picture, 101, 75), blue) << factor;
  }
}

TEST_F(AVAssetWriterTest, AnyOtherSizeFitsInTheMiddle) {
  const auto writer = begin(200, 100);
  input_->appendSampleBuffer(at(10, plain(150, 150, red)));
  input_->appendSampleBuffer(at(11, plain(310, 30, red)));
  input_->appendSampleBuffer(at(12, plain(200, 100, blue)));
  finish(writer);
  const auto video = this->video();
  ASSERT_TRUE(video && video->frames.size() == 3);
  const auto seen = [&](std::size_t frame, int x, int y) { return colorAt(video->frames[frame].picture, x, y); };
  EXPECT_EQ(seen(0, 100, 4), red);
  EXPECT_EQ(seen(0, 56, 50), red);
  EXPECT_EQ(seen(0, 40, 50), 0xff000000u);
  EXPECT_EQ(seen(0, 160, 50), 0xff000000u);
  EXPECT_EQ(seen(1, 4, 50), red);
  EXPECT_EQ(seen(1, 100, 30), 0xff000000u) << "what the wider picture leaves free";
  EXPECT_EQ(seen(2, 2, 2), blue);
}

TEST_F(AVAssetWriterTest, OnlyTheTilesThatChangedAreConvertedAndTheyAreRight) {
  const auto writer = begin(200, 150);
  Bitmap bitmap(400, 300);
  std::fill_n(bitmap.data(), 400 * 300, red);
  TiledBitmap picture(bitmap);
  input_->setExpectsMediaDataInRealTime(false);
  EXPECT_TRUE(input_->appendSampleBuffer(at(10, picture)));
  for (int step = 1; step <= 8; ++step) {
    const int left = 45 * step, top = 30 * step;
    for (int y = top; y < top + 30; ++y) std::fill_n(bitmap.row(y) + left, 30, blue);
    picture = picture.updated(bitmap, CGRect(left, top, 30, 30));
    RunLoop::settle();  // the encoder keeps up
    EXPECT_TRUE(input_->appendSampleBuffer(at(10 + step, picture)));
  }
  finish(writer);
  const auto video = this->video();
  ASSERT_TRUE(video && video->frames.size() == 9);
  for (int frame = 0; frame < 9; ++frame) {
    const Bitmap& shown = video->frames[static_cast<std::size_t>(frame)].picture;
    for (int step = 1; step <= 8; ++step) {
      const int x = (45 * step + 15) / 2, y = (30 * step + 15) / 2;
      EXPECT_EQ(colorAt(shown, x, y), step <= frame ? blue : red) << frame << " " << step;
    }
  }
}

// ---- An encoder that is behind. In real time: in virtual time it is never behind.

class BusyAssetWriterTest : public AVAssetWriterTest {
 protected:
  BusyAssetWriterTest() { Clock::useRealTime(); }
  static void finishInRealTime(const Ref<AVAssetWriter>& writer) {
    std::atomic<bool> isOver{false};
    writer->finishWriting([&isOver] {
      isOver = true;
      isOver.notify_all();
    });
    isOver.wait(false);
  }
};

TEST_F(BusyAssetWriterTest, InRealTimeTheNewestPictureTakesThePlaceOfOneThatWaits) {
  const auto writer = begin(512, 512);
  input_->setExpectsMediaDataInRealTime(true);
  constexpr int count = 60;
  for (int i = 0; i < count; ++i) {
    EXPECT_TRUE(input_->isReadyForMoreMediaData());
    const bool isLast = i == count - 1;
    EXPECT_TRUE(input_->appendSampleBuffer(
        at(10 + i, isLast ? plain(512, 512, blue) : noise(512, 512, static_cast<std::uint32_t>(i)))));
  }
  finishInRealTime(writer);
  const auto video = this->video();
  ASSERT_TRUE(video && !video->frames.empty());
  EXPECT_LE(video->frames.size(), static_cast<std::size_t>(count));
  EXPECT_EQ(colorAt(video->frames.back().picture, 256, 256), blue) << "the last one is never lost";
  EXPECT_NEAR(video->frames.back().begin, count - 1, 1e-6);
}

TEST_F(BusyAssetWriterTest, OtherwiseEveryPictureThatWasTakenIsInTheFile) {
  const auto writer = begin(512, 512);
  std::size_t taken = 0;
  for (int i = 0; i < 60; ++i) {
    const bool isReady = input_->isReadyForMoreMediaData();
    const bool isTaken = input_->appendSampleBuffer(at(10 + i, noise(512, 512, static_cast<std::uint32_t>(i))));
    EXPECT_TRUE(isTaken || !isReady);
    taken += isTaken;
  }
  finishInRealTime(writer);
  const auto video = this->video();
  ASSERT_TRUE(video);
  EXPECT_EQ(video->frames.size(), taken);
}

TEST_F(BusyAssetWriterTest, LetGoOfOrCancelledInTheMiddleItLeavesNothing) {
  auto writer = begin(512, 512);
  for (int i = 0; i < 3; ++i) input_->appendSampleBuffer(at(10 + i, noise(512, 512, 1)));
  writer.reset();
  EXPECT_THAT(folder_.names(), testing::IsEmpty());
  EXPECT_FALSE(input_->isReadyForMoreMediaData());
  EXPECT_FALSE(input_->appendSampleBuffer(at(20, noise(512, 512, 1))));

  writer = begin(512, 512);
  input_->appendSampleBuffer(at(10, noise(512, 512, 1)));
  writer->cancelWriting();
  EXPECT_EQ(writer->status(), AVAssetWriterStatus::cancelled);
  EXPECT_FALSE(writer->error());
  finishInRealTime(writer);
  EXPECT_EQ(writer->status(), AVAssetWriterStatus::cancelled);
  EXPECT_THAT(folder_.names(), testing::IsEmpty());
}

TEST_F(BusyAssetWriterTest, LetGoOfWhileItFinishesItStillDoes) {
  auto writer = begin(512, 512);
  input_->appendSampleBuffer(at(10, noise(512, 512, 1)));
  std::atomic<bool> isOver{false};
  writer->finishWriting([&isOver] {
    isOver = true;
    isOver.notify_all();
  });
  writer->cancelWriting();
  writer.reset();
  isOver.wait(false);
  EXPECT_TRUE(video());
}

using AssetWriterDeathTest = BusyAssetWriterTest;

TEST_F(AssetWriterDeathTest, AProcessThatEndsInTheMiddleEndsWellAndLeavesNothing) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const std::string file = (std::filesystem::temp_directory_path() / "media_test_exit.mp4").string();
  const auto leaveInTheMiddle = [&] {
    const auto writer = *AVAssetWriter::writerWithURL(URL::fileURL(file), AVFileTypeMPEG4);
    // Never let go of, as by a program that does not care.
    static auto* const kept = new Ref<AVAssetWriter>(writer);
    const auto input = make<AVAssetWriterInput>(AVMediaTypeVideo, h264(512, 512));
    (*kept)->addInput(input);
    (*kept)->startWriting();
    (*kept)->startSessionAtSourceTime(CMTimeMake(10, 1));
    for (int i = 0; i < 3; ++i) input->appendSampleBuffer(at(10 + i, noise(512, 512, 1)));
    std::exit(7);
  };
  EXPECT_EXIT(leaveInTheMiddle(), testing::ExitedWithCode(7), "");
  EXPECT_FALSE(std::filesystem::exists(file));
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
    EXPECT_FALSE(entry.path().filename().string().starts_with(".media_test_exit.mp4")) << entry.path();
  }
}

}  // namespace
}  // namespace platform::test
