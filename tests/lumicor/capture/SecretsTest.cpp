// What a person types into a secure field stays with them: a word planted there is looked for in everything that a
// demonstration leaves behind.

#include <fstream>
#include <gmock/gmock.h>

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/lumicor/capture/DemonstrationTest.h"
#include "tests/support/DecodedVideo.h"

namespace lumicor::test {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class SecretsTest : public DemonstrationTest {
 protected:
  SecretsTest() { password_->setSecureTextEntry(true); }

  void typeSecret() {
    tap(password_);
    type(canary);
    RunLoop::advance(3);
  }
  std::string everythingSent() const {
    std::string all;
    for (const URLRequest& request : service_.requests()) {
      all += request.url().absoluteString() + request.httpBody().value_or("");
      for (const auto& [field, value] : request.headers().entries()) all += field + value;
    }
    return all;
  }
  std::string everythingWritten() const {
    std::string all;
    for (const std::string& name : documents()) {
      std::ifstream file(folder() / name);
      all += name + std::string(std::istreambuf_iterator<char>(file), {});
    }
    return all;
  }
  static std::string everythingKept() {
    std::string all;
    for (const LumicorSnapshot& snapshot : LumicorTrackingTask::taskFlow) all += *encodeJSON(snapshot);
    return all;
  }

  static inline const std::string canary = "canary77";
  Ref<UITextField> password_ = add<UITextField>("password");
};

TEST_F(SecretsTest, AreNowhereInWhatADemonstrationLeavesBehind) {
  acceptAll();
  beginLog();
  const auto button = addPressed<UIButton>("enter");
  begin();
  typeSecret();
  EXPECT_EQ(lastAction().elementId(), "password");
  EXPECT_EQ(lastAction().value(), "••••••••");
  password_->setSecureTextEntry(false);  // the person asks to see it
  RunLoop::advance(1);
  tap(button);
  type("x");
  RunLoop::advance(3);
  EXPECT_THAT(everythingKept(), Not(HasSubstr(canary)));
  EXPECT_THAT(everythingWritten(), Not(HasSubstr(canary)));
  EXPECT_THAT(toasts(), Each(Not(HasSubstr(canary))));
  end();
  EXPECT_EQ(password_->text(), canary + "x") << "the host has it";
  EXPECT_THAT(registered(), SizeIs(4));
  EXPECT_THAT(everythingSent(), Not(HasSubstr(canary)));
  EXPECT_THAT(everythingSent(), HasSubstr("••••••••"));
  EXPECT_THAT(everythingWritten(), Not(HasSubstr(canary)));
  EXPECT_THAT(log(), Each(Not(HasSubstr(canary))));
}

TEST_F(SecretsTest, AreBulletsInPicturesAndBlackOnceTheirLettersShow) {
  useSimulator();
  acceptAll();
  begin();
  typeSecret();
  password_->setSecureTextEntry(false);
  RunLoop::advance(1);
  LumicorTrackingTask::registerUserAction("look", password_);
  end();
  std::vector<std::uint32_t> middles;
  for (const URLRequest& request : service_.requests()) {
    const auto picture = request.httpMethod() == "PUT" ? UIImage::imageWithData(*request.httpBody()) : nullptr;
    const CGPoint middle = password_->frame().center();
    if (picture) {
      middles.push_back(picture->cgImage()->pixel(static_cast<int>(2 * middle.x), static_cast<int>(2 * middle.y)));
    }
  }
  constexpr std::uint32_t black = 0xff000000;
  ASSERT_GE(middles.size(), 2U);
  EXPECT_NE(middles[0], black);
  middles.erase(middles.begin());
  EXPECT_THAT(middles, Each(black));
}

/// How many pixels of two places of pictures, of one size, are plainly different.
int differences(const Bitmap& a, CGRect placeA, const Bitmap& b, CGRect placeB) {
  constexpr int plain = 90;  // of 255; encoding changes less
  int count = 0;
  for (int y = 0; y < static_cast<int>(placeA.height()); ++y) {
    for (int x = 0; x < static_cast<int>(placeA.width()); ++x) {
      const auto green = [&](const Bitmap& picture, const CGRect& place) {
        const auto at = [](double origin, int step) { return static_cast<int>(origin) + step; };
        return static_cast<int>(picture.pixel(at(place.minX(), x), at(place.minY(), y)) >> 8 & 255);
      };
      count += std::abs(green(a, placeA) - green(b, placeB)) > plain;
    }
  }
  return count;
}

TEST_F(SecretsTest, AreInNoFrameOfTheVideo) {
  acceptAll();
  const auto name = add<UITextField>("name");
  begin();
  tap(name);
  type(canary);
  typeSecret();
  password_->setSecureTextEntry(false);
  RunLoop::advance(1);
  tap(name);
  RunLoop::advance(3);
  end();
  const auto video = platform::test::DecodedVideo::read(folder() / "LumicorTaskRecording.mp4");
  ASSERT_TRUE(video);
  ASSERT_GT(video->frames.size(), 20U);
  // What the letters look like is seen in the other field; of both, the part with the text is compared.
  const auto text = [](const Ref<UITextField>& field) {
    return CGRect{field->frame().minX(), field->frame().minY() + 15, 120, 30};
  };
  const Bitmap& last = video->frames.back().picture;
  constexpr int letters = 60;  // pixels that tell a text from bullets, from nothing and from black
  int shown = 0;
  for (const auto& frame : video->frames) {
    EXPECT_GT(differences(frame.picture, text(password_), last, text(name)), letters) << "at " << frame.begin;
    shown += differences(frame.picture, text(name), last, text(name)) < letters / 3;
  }
  EXPECT_GT(shown, 10) << "letters that may be seen are found";
}

}  // namespace lumicor::test
