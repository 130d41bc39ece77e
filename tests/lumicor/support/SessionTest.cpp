#include "tests/lumicor/support/SessionTest.h"

#include <cstdlib>
#include <sstream>

#include "platform/foundation/UserDefaults.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor::test {

namespace {

std::filesystem::path newFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "lumicor-test-XXXXXX").string();
  if (!mkdtemp(path.data())) throw std::runtime_error("no temporary folder");
  return path;
}

}  // namespace

SessionTest::SessionTest() : folder_(newFolder()), window_(make<UIWindow>(CGRect{0, 0, 390, 844})) {
  UserDefaults::setStandardDirectory(folder_);
  window_->makeKeyAndVisible();
  Lumicor& session = Lumicor::shared();
  session.setEndpoint("https://service.test");
  session.setSecretKey("");
  session.setInitialized(false);
  session.setShouldEnableDebug(false);
  session.setCurrentViewListener(nullptr);
  session.setCurrentView("");
  session.setCurrentViewController(nullptr);
  session.setChatHistory({});
  for (const auto& [label, region] : session.getSwiftUICoordinates()) session.onSwiftUIViewDisappear(label);
  Lumicor::isTracking = false;
  Lumicor::showTrackingView = false;
  Lumicor::showTesselLumicor = false;
}

SessionTest::~SessionTest() {
  if (logging_) log();
  Lumicor::shared().setShouldEnableDebug(false);
  Lumicor::shared().setCurrentViewController(nullptr);
  window_->setRootViewController(nullptr);
  UserDefaults::standard().synchronize();
  std::filesystem::remove_all(folder_);
}

void SessionTest::show(const Ref<UIViewController>& root) {
  window_->setRootViewController(root);
  UIApplication::shared().layoutAndDisplayIfNeeded();
}

void SessionTest::showAsCurrent(const Ref<UIViewController>& root) {
  show(root);
  Lumicor::shared().setCurrentViewController(root);
  Lumicor::shared().setCurrentView(NSStringFromClass(root->classForCoder()));
}

void SessionTest::beginLog() {
  Lumicor::shared().setShouldEnableDebug(true);
  testing::internal::CaptureStdout();
  logging_ = true;
}

std::vector<std::string> SessionTest::log() {
  std::istringstream text(testing::internal::GetCapturedStdout());
  Lumicor::shared().setShouldEnableDebug(false);
  logging_ = false;
  std::vector<std::string> messages;
  for (std::string line; std::getline(text, line);) messages.push_back(line.substr(line.find(", ") + 2));
  return messages;
}

}  // namespace lumicor::test
