#include <fstream>
#include <iterator>

#include "platform/animation/FrameClock.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/ScreenHost.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/platform/media/RecordingFixture.h"

namespace platform::test {
namespace {

const UIColor red(1, 0, 0, 1), green(0, 1, 0, 1), blue(0, 0, 1, 1), white = UIColor::white();

bool isNear(const UIColor& a, const UIColor& b, double tolerance = 0.03) {
  return std::abs(a.red() - b.red()) < tolerance && std::abs(a.green() - b.green()) < tolerance &&
         std::abs(a.blue() - b.blue()) < tolerance;
}

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Small, so that decoding whole videos stays cheap.
class ScreenVideoTest : public AppFixture {
 protected:
  void TearDown() override {
    recorder_.reset();
    AppFixture::TearDown();
  }
  Ref<UIView> addBox(CGRect frame, const UIColor& color) {
    auto box = make<UIView>(frame);
    box->setBackgroundColor(color);
    content()->addSubview(box);
    return box;
  }
  DecodedVideo video(const std::string& name = "video.mp4") {
    auto video = DecodedVideo::read(folder_.file(name));
    EXPECT_TRUE(video) << name;
    return video ? *std::move(video) : DecodedVideo();
  }

  TemporaryFolder folder_;
  Ref<RPScreenRecorder> recorder_ = make<RPScreenRecorder>();
};

TEST_F(ScreenVideoTest, AStillScreenIsAVideoFromTheStartToTheStop) {
  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  for (int i = 0; i < 25; ++i) {
    FrameClock::shared().setNeedsFrame();  // frames in which nothing changes
    advance(0.1);
  }
  recording.stop();
  EXPECT_EQ(recording.writer()->status(), AVAssetWriterStatus::completed);
  EXPECT_EQ(recording.instants().size(), 3u);
  const DecodedVideo video = this->video();
  EXPECT_EQ(video.codec, "h264");
  EXPECT_THAT(video.container, testing::HasSubstr("mp4"));
  EXPECT_EQ(video.width, 390);
  EXPECT_EQ(video.height, 844);
  EXPECT_TRUE(video.isIndexInFront);
  ASSERT_EQ(video.frames.size(), 1u);
  EXPECT_DOUBLE_EQ(video.frames[0].begin, 0);
  EXPECT_NEAR(video.duration, recording.instants().back(), 1e-4);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"video.mp4"});
}

TEST_F(ScreenVideoTest, EveryChangeIsThereAtItsInstantAndTheSameDoingsGiveTheSameFile) {
  const auto demonstrate = [&](const std::string& name) {
    const auto box = addBox({10, 10, 100, 100}, red);
    settle();
    advance(1);
    Recording recording(recorder_, folder_.file(name), {390, 844});
    advance(0.5);
    box->setBackgroundColor(green);
    advance(0.75);
    box->setBackgroundColor(blue);
    advance(1);
    recording.stop();
    box->removeFromSuperview();
    return recording.instants();
  };
  const std::vector<double> instants = demonstrate("video.mp4");
  ASSERT_EQ(instants.size(), 5u);
  EXPECT_NEAR(instants[2], 0.5, 1.0 / 60);
  EXPECT_NEAR(instants[3], 1.25, 1.0 / 60);
  const DecodedVideo video = this->video();
  ASSERT_EQ(video.frames.size(), 3u);
  EXPECT_NEAR(video.frames[1].begin, instants[2], 1e-5);
  EXPECT_NEAR(video.frames[2].begin, instants[3], 1e-5);
  EXPECT_NEAR(video.frames[2].begin + video.frames[2].duration, instants[4], 1e-5);
  const UIColor shown[] = {red, green, blue};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(isNear(video.frames[i].picture.color(60, 60), shown[i])) << i;

  demonstrate("again.mp4");
  EXPECT_EQ(bytesOf(folder_.file("video.mp4")), bytesOf(folder_.file("again.mp4")));
}

TEST_F(ScreenVideoTest, ColoursComeOutAsDrawn) {
  const UIColor drawn[] = {
      red, green, blue, white, UIColor::black(), UIColor(0.5, 0.5, 0.5, 1), UIColor(1, 0.8, 0.2, 1)};
  double y = 0;
  for (const UIColor& color : drawn) addBox({0, y += 80, 390, 80}, color);
  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  advance(1);
  recording.stop();
  const DecodedVideo video = this->video();
  ASSERT_FALSE(video.frames.empty());
  for (int i = 0; i < 7; ++i) {
    const UIColor seen = video.frames[0].picture.color(195, 120 + 80 * i);
    EXPECT_TRUE(isNear(seen, drawn[i])) << i << ": " << seen.red() << " " << seen.green() << " " << seen.blue();
  }
}

TEST_F(ScreenVideoTest, WhatMovesIsShownAtMostSixtyTimesASecond) {
  const auto box = addBox({0, 100, 50, 50}, red);
  Recording recording(recorder_, folder_.file("video.mp4"), {195, 422});
  UIView::animateWithDuration(1, [&] { box->setFrame({300, 100, 50, 50}); });
  advance(3);
  recording.stop();
  const std::vector<double>& instants = recording.instants();
  EXPECT_GT(instants.size(), 55u);
  EXPECT_LT(instants.size(), 65u);
  for (std::size_t i = 1; i + 1 < instants.size(); ++i) EXPECT_GT(instants[i] - instants[i - 1], 0.0166) << i;
  const DecodedVideo video = this->video();
  ASSERT_GT(video.frames.size(), 50u);
  EXPECT_TRUE(isNear(video.frames.front().picture.color(12, 62), red));
  EXPECT_TRUE(isNear(video.frames.back().picture.color(162, 62), red));
}

/// How many pixels of a picture are of about that colour.
int count(const Bitmap& picture, const UIColor& color) {
  int found = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) found += isNear(picture.color(x, y), color, 0.3);
  }
  return found;
}

TEST_F(ScreenVideoTest, APrivateViewIsBlackWhereverItGoes) {
  const auto shade = addBox({0, 100, 390, 300}, white);
  shade->setClipsToBounds(true);
  auto secret = make<UIView>(CGRect(20, 20, 100, 60));
  auto letters = make<UIView>(CGRect(-10, -10, 30, 30));  // a subview that stands out
  for (const auto& view : {secret, letters}) view->setBackgroundColor(red);
  secret->addSubview(letters);
  secret->setHiddenFromCapture(true);
  shade->addSubview(secret);
  settle();
  const auto expectUnseen = [&](const Ref<UIImage>& picture, const char* what) {
    ASSERT_TRUE(picture) << what;
    EXPECT_EQ(count(*picture->cgImage(), red), 0) << what;
    EXPECT_EQ(picture->size(), window()->bounds().size) << what;
  };
  expectUnseen(UIApplication::shared().screenshot(), "the screen");
  expectUnseen(UIApplication::shared().captureImage(window()), "the window");
  const CGImageRef kept = UIApplication::shared().captureImage(window())->cgImage();
  EXPECT_TRUE(isNear(kept->color(2 * 70, 2 * 150), UIColor::black()));
  EXPECT_TRUE(isNear(kept->color(2 * 150, 2 * 150), white)) << "beside it everything shows";
  EXPECT_TRUE(isNear(kept->color(2 * 15, 2 * 115), UIColor::black())) << "its subviews are as private";

  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  advance(0.2);
  UIView::animateWithDuration(0.5, [&] { secret->setFrame({250, 200, 100, 60}); });
  advance(0.7);
  UIView::animateWithDuration(0.3, [&] { shade->setFrame({0, 150, 390, 300}); });
  advance(0.5);
  secret->setTransform(CGAffineTransform::rotation(0.7));
  advance(0.2);
  shade->setBounds({0, 220, 390, 300});  // scrolled half out of its clip
  advance(0.2);
  const auto clipped = UIApplication::shared().captureImage(window())->cgImage();
  EXPECT_TRUE(isNear(clipped->color(2 * 300, 2 * 145), white)) << "nothing is taken from beyond the clip";
  EXPECT_TRUE(isNear(clipped->color(2 * 300, 2 * 160), UIColor::black()));
  // Its picture on the way somewhere else is as private.
  const auto picture = shade->snapshotViewAfterScreenUpdates(true);
  picture->setFrame({0, 450, 390, 300});
  content()->addSubview(picture);
  advance(0.2);
  secret->setHidden(true);
  advance(0.2);
  recording.stop();
  const DecodedVideo video = this->video();
  ASSERT_GT(video.frames.size(), 25u);
  for (const auto& frame : video.frames) EXPECT_EQ(count(frame.picture, red), 0) << frame.begin;
  const Bitmap& last = video.frames.back().picture;
  EXPECT_GT(count(last, white), 390 * 500) << "what is hidden anyway leaves no black behind";
}

TEST_F(ScreenVideoTest, TheKeysThatTypeASecretAreNotShown) {
  const auto field = make<UITextField>(CGRect(20, 60, 350, 40));
  content()->addSubview(field);
  const auto keysAreBlack = [&] {
    const CGRect keys = UIKeyboard::shared().frame();
    const auto picture = UIApplication::shared().screenshot()->cgImage();
    for (double y = keys.minY() + 5; y < keys.minY() + 200; y += 5) {
      const UIColor color = picture->color(static_cast<int>(2 * keys.midX()), static_cast<int>(2 * y));
      if (!isNear(color, UIColor::black())) return false;
    }
    return true;
  };
  field->becomeFirstResponder();
  advance(1);
  EXPECT_FALSE(keysAreBlack());
  field->setSecureTextEntry(true);
  advance(0.1);
  EXPECT_TRUE(keysAreBlack());
  field->setSecureTextEntry(false);
  advance(0.1);
  EXPECT_FALSE(keysAreBlack());
}

TEST_F(ScreenVideoTest, AMarkThatComesOrGoesShowsAtOnce) {
  const auto box = addBox({100, 100, 100, 100}, red);
  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  advance(0.5);
  box->setHiddenFromCapture(true);
  advance(0.5);
  box->setHiddenFromCapture(false);
  advance(0.5);
  recording.stop();
  const DecodedVideo video = this->video();
  ASSERT_EQ(video.frames.size(), 3u);
  const UIColor seen[] = {red, UIColor::black(), red};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(isNear(video.frames[i].picture.color(150, 150), seen[i])) << i;
}

TEST_F(ScreenVideoTest, AScreenThatTurnsIsShownWholeInTheSamePicture) {
  addBox({0, 0, 390, 844}, red);
  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  advance(0.5);
  DeviceProfile turned = UIDevice::current().profile();
  turned.screenSize = {844, 390};
  UIDevice::setProfile(turned);
  window()->setFrame(UIScreen::main().bounds());
  content()->setBackgroundColor(green);
  advance(0.5);
  recording.stop();
  const DecodedVideo video = this->video();
  ASSERT_EQ(video.frames.size(), 2u);
  const Bitmap& last = video.frames[1].picture;
  EXPECT_EQ(last.width(), 390);
  EXPECT_TRUE(isNear(last.color(195, 100), UIColor::black())) << "beside what is shown";
  EXPECT_TRUE(isNear(last.color(380, 422), green));
  EXPECT_TRUE(isNear(last.color(10, 422), red));
}

TEST_F(ScreenVideoTest, AWindowOnTheDesktopAndARecordingShareTheScreen) {
  const auto box = addBox({0, 0, 390, 400}, red);
  auto host = std::make_unique<ScreenHost>("Shared");
  Recording recording(recorder_, folder_.file("video.mp4"), {390, 844});
  advance(0.5);
  host.reset();
  box->setBackgroundColor(green);
  advance(0.5);
  CGRect told;
  const Ref<ScreenDisplay> display = ScreenDisplay::shared();
  const auto observer = display->addObserver([&](const CGRect& changed) { told = told.unionWith(changed); });
  host = std::make_unique<ScreenHost>("Shared");
  advance(0.1);
  EXPECT_EQ(told, CGRect(0, 0, 780, 1688)) << "a window that comes later shows everything";
  display->removeObserver(observer);
  box->setBackgroundColor(blue);
  advance(0.5);
  recording.stop();
  host.reset();
  const DecodedVideo video = this->video();
  ASSERT_EQ(video.frames.size(), 3u);
  EXPECT_TRUE(isNear(video.frames[2].picture.color(195, 200), blue));
}

}  // namespace
}  // namespace platform::test
