// Everything that people see of the assistant, in the shop, kept as pictures. No network: what the service would hand
// out comes from the shop's own files.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

#include "examples/teashop/demo/Gallery.h"
#include "examples/teashop/demo/GalleryPage.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/uikit/device/UIDevice.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"
#include "tests/support/Pictures.h"

namespace teashop {
namespace {

namespace fs = std::filesystem;
using namespace platform;
using lumicor::test::StubService;

const fs::path assistant = ASSISTANT_FOLDER;

std::string contentOf(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

/// A pixel a point keeps the pictures small.
class SmallScreen {
 protected:
  SmallScreen() {
    DeviceProfile profile = before_;
    profile.scale = 1;
    UIDevice::setProfile(profile);
  }
  ~SmallScreen() { UIDevice::setProfile(before_); }

 private:
  DeviceProfile before_ = UIDevice::current().profile();
};

class GalleryTest : private SmallScreen, public lumicor::test::SessionTest {
 protected:
  GalleryTest() {
    for (const auto& file : fs::directory_iterator(assistant / "assets")) {
      service_.answer("/assets/" + file.path().filename().string(),
                      URLProtocol::Reply::data(200, contentOf(file.path())));
    }
    std::string configuration = contentOf(assistant / "config.json");
    for (std::size_t at = 0; (at = configuration.find("\"/assets/", at)) != std::string::npos; at += 10) {
      configuration.insert(at + 1, "https://service.test");
    }
    service_.answer("/sdk/init",
                    lumicor::test::json(R"({"statusCode":200,"message":"OK","data":)" + configuration + "}"));
    TeashopApplication::startAssistant("https://service.test");
  }
  ~GalleryTest() override {
    if (const auto& button = lumicor::TLFloaterManager::shared().floaterView()) button->removeFromSuperview();
    lumicor::TLFloaterManager::shared().setChatViewController(nullptr);
  }

  /// The part of the picture that it is about.
  static Ref<UIImage> cut(const GalleryPicture& picture) {
    const Bitmap& whole = *picture.image->cgImage();
    const double scale = picture.image->scale();
    const auto pixels = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
    Bitmap part(pixels(picture.focus.width()), pixels(picture.focus.height()));
    for (int y = 0; y < part.height(); ++y) {
      const std::uint32_t* const from = whole.row(y + pixels(picture.focus.minY())) + pixels(picture.focus.minX());
      std::copy_n(from, part.width(), part.row(y));
    }
    return UIImage::imageWithBitmap(std::move(part), scale);
  }

  StubService service_;
  TeashopApplication application_;
};

TEST_F(GalleryTest, LooksAsItDid) {
  std::set<std::string> names;
  const std::string failure = Gallery(application_, assistant / "styles").play([&](const GalleryPicture& picture) {
    EXPECT_TRUE(names.insert(picture.name).second) << picture.name;
    platform::test::expectPicture(*cut(picture), picture.name);
  });
  EXPECT_EQ(failure, "");
  for (const auto& file : fs::directory_iterator(fs::path(PICTURE_FOLDER))) {
    EXPECT_TRUE(names.contains(file.path().stem().string())) << file.path() << " is of no state any more";
  }
}

TEST_F(GalleryTest, SaysWhichStateItDidNotReach) {
  EXPECT_EQ(Gallery(application_, assistant / "none").play([](const GalleryPicture&) {}).substr(0, 20),
            "the style sheet dark");
}

TEST(GalleryPage, ShowsEveryPictureOnceUnderItsSection) {
  std::string folder = (fs::temp_directory_path() / "gallery-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const auto image = UIImage::imageWithBitmap(Bitmap(4, 4));
  GalleryPage page(folder);
  page.add({"one", {"First & foremost", "Lead"}, "One", "<b>", image, {}});
  page.add({"two", {"First & foremost", "Lead"}, "Two", "", image, {}});
  page.add({"three", {"Second", "Lead", true}, "Three", "", image, {}});
  EXPECT_TRUE(page.write());
  const std::string text = contentOf(fs::path(folder) / "gallery.html");
  for (const char* const name : {"one", "two", "three"}) {
    EXPECT_NE(text.find("<img src=\"gallery/" + std::string(name) + ".png\""), std::string::npos) << name;
    EXPECT_TRUE(UIImage::imageWithContentsOfFile(folder + "/gallery/" + name + ".png")) << name;
  }
  EXPECT_NE(text.find("&lt;b&gt;"), std::string::npos);
  EXPECT_EQ(text.find("<h2>First &amp; foremost"), text.rfind("<h2>First &amp; foremost"));
  EXPECT_EQ(text.find("<script"), std::string::npos);
  fs::remove_all(folder);
  EXPECT_FALSE(GalleryPage("/dev/null/nowhere").write());
}

}  // namespace
}  // namespace teashop
