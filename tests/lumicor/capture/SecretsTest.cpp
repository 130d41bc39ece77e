// What a person types into a secure field stays with them: a word planted there is looked for in everything that a
// demonstration leaves behind.

#include <fstream>
#include <gmock/gmock.h>

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UITextField.h"
#include "tests/lumicor/capture/DemonstrationTest.h"

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

}  // namespace lumicor::test
