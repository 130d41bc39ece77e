// What the service's addresses and sizes may turn out to be: nothing of it stops the assistant, or holds up the host.

#include <limits>

#include "lumicor/ui/LumicorAnimatedImage.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "lumicor/ui/LumicorProcessingDialogView.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/views/UIImageView.h"
#include "tests/lumicor/ui/ChatFixture.h"
#include "tests/platform/graphics/GIFFile.h"

namespace lumicor {
namespace {

using platform::test::GIFFile;
using Reply = URLProtocol::Reply;

constexpr const char* page = "<!doctype html><html><body>Please log in</body></html>";

std::string png(int side) { return UIImage::imageWithBitmap(Bitmap(side, side))->pngRepresentation(); }

/// The head of a PNG of 30,000 x 30,000 pixels, with a little of what would follow.
std::string hugePNG() {
  std::string file = png(8);
  for (const std::size_t at : {16u, 20u}) file.replace(at, 4, std::string("\0\0\x75\x30", 4));
  return file;
}

std::string film(int frames) {
  GIFFile file(2, 2);
  for (int i = 0; i < frames; ++i) file.add(static_cast<std::uint32_t>(i), 4);
  return file.bytes();
}

class AssetFaults : public test::ChatFixture {
 protected:
  /// A new button and chat with that layout, opened, drawn once and closed.
  void visit(const TLLayout& layout) {
    TLFloaterManager::shared().setLayoutData(layout);
    TLFloaterManager::shared().show();
    button()->setShow(true);
    pass(70);  // longer than any request waits
    draw();
    openChat();
    chat()->addMessage("Good day");
    pass(1);
    draw();
    ASSERT_EQ(navigation_->topViewController(), chat());
    tap(chat()->crossButton());
    pass(1);
    ASSERT_NE(navigation_->topViewController(), chat()) << "the cross works without its picture";
    ASSERT_EQ(button()->superview(), window());
  }
  void draw() const { renderLayer(*window()->layer(), {390, 844}, 1); }
};

TEST_F(AssetFaults, TheFaceIsWholeWhateverItsPicturesTurnOutToBe) {
  const std::string picture = png(40);
  const std::pair<const char*, Reply> rows[] = {
      {"no such host", Reply::failure(URLError::cannotFindHost)},
      {"a reply that never comes", Reply::never()},
      {"a page in place of the picture", Reply::data(200, page)},
      {"a page that says it is missing", Reply::data(404, page)},
      {"nothing", Reply::data(200, "")},
      {"a picture cut short", Reply::data(200, picture.substr(0, picture.size() / 2))},
      {"the head of a picture alone", Reply::data(200, picture.substr(0, 33))},
      {"a film cut short in its first frame", Reply::data(200, film(3).substr(0, 410))},
      {"a picture of 900 million pixels", Reply::data(200, hugePNG())},
      {"a film of 60,000 x 60,000 pixels", Reply::data(200, GIFFile(60000, 60000).addDamaged(60000, 60000).bytes())},
      {"more bytes than a reply may have", Reply::data(200, picture + std::string(33u << 20, 'x'))},
  };
  int row = 0;
  for (const auto& [what, reply] : rows) {
    SCOPED_TRACE(what);
    const std::string path = "/fault" + std::to_string(row++) + ".png";
    service_.answer(path, reply);
    TLLayout layout;
    layout.image = layout.closeButton = "https://assets.test" + path;
    visit(layout);
    EXPECT_EQ(LumicorImageCache::shared().image(layout.image), nullptr);
    const auto shown = as<UIImageView>(button()->subviews().front())->image();
    ASSERT_NE(shown, nullptr) << "the glyph stays";
    EXPECT_EQ(shown->size(), (CGSize{30, 30}));
  }
}

TEST_F(AssetFaults, AddressesThatAreNoneAreNotAskedFor) {
  for (const char* address : {"", " ", "logo.png", "//", "https://", "file:///etc/passwd", "data:image/png;base64,AA==",
                              "javascript:alert(1)", "https://exa mple/\x01", "\xff\xfe"}) {
    SCOPED_TRACE(address);
    TLLayout layout;
    layout.image = layout.closeButton = layout.styles.fontURL = address;
    visit(layout);
  }
  for (const URLRequest& request : service_.requests()) {
    EXPECT_THAT(request.url().absoluteString(), testing::StartsWith("https://service.test/sdk/"));
  }
}

TEST_F(AssetFaults, AFilmOfTenThousandFramesIsBounded) {
  const auto moving = animatedImageWithGIF(film(10000));
  ASSERT_NE(moving, nullptr);
  EXPECT_LE(moving->images().size(), 600u);
  GIFFile wide(1000, 1000);
  for (int i = 0; i < 100; ++i) wide.addDamaged(1000, 1000);
  const auto cut = animatedImageWithGIF(wide.bytes());
  EXPECT_LE(cut ? cut->images().size() : 0, 16u) << "64 MB of them";
}

TEST_F(AssetFaults, SizesOfAnyNumberLeaveAFaceThatWorks) {
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  for (const std::int64_t size :
       {std::int64_t{0}, std::int64_t{-5}, std::int64_t{5000}, std::int64_t{1} << 40, most, least}) {
    SCOPED_TRACE(size);
    for (std::int64_t TLStyles::*field : {&TLStyles::fontSize, &TLStyles::sendButtonSize, &TLStyles::fontWeight}) {
      TLLayout layout;
      layout.image = layout.closeButton = "";
      layout.styles.*field = size;
      visit(layout);
    }
    for (std::int64_t TLLayout::*field : {&TLLayout::size, &TLLayout::imageSize}) {
      SCOPED_TRACE(field == &TLLayout::size ? "size" : "imageSize");
      TLLayout layout;
      layout.image = layout.closeButton = "";
      layout.*field = size;
      visit(layout);
      EXPECT_LE(as<UIImageView>(button()->subviews().front())->image()->size().width, 200) << "hundreds of megabytes";
    }
  }
}

}  // namespace
}  // namespace lumicor
