#include "lumicor/ui/LumicorAnimatedImage.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "lumicor/ui/LumicorLoaderView.h"
#include "lumicor/ui/LumicorProcessingDialogView.h"
#include "platform/animation/CAAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/uikit/views/UIImageView.h"
#include "tests/lumicor/ui/ChatFixture.h"
#include "tests/platform/graphics/GIFFile.h"

namespace lumicor {
namespace {

using platform::test::GIFFile;

class WaitingViews : public test::ChatFixture {
 protected:
  const std::size_t before_ = window()->subviews().size();
};

TEST_F(WaitingViews, TheLoaderTurnsOverADimmedScreen) {
  const auto loader = make<LumicorLoaderView>(CGRect{120, 347, 150, 150});
  EXPECT_EQ(loader->spinnerLayer()->frame(), (CGRect{50, 30, 50, 50}));
  EXPECT_EQ(loader->loadingLabel()->frame(), (CGRect{0, 90, 150, 20}));
  EXPECT_GT(150 - loader->loadingLabel()->intrinsicContentSize().width, 16) << "clear of the card's edges";
  EXPECT_NE(loader->spinnerLayer()->animationForKey("rotationAnimation"), nullptr);

  loader->show();
  ASSERT_NE(loader->overlayView(), nullptr);
  EXPECT_EQ(loader->overlayView()->frame(), window()->bounds());
  EXPECT_EQ(window()->subviews().back(), loader) << "the card lies on the veil";
  const Ref<UIView> overlay = loader->overlayView();
  loader->show();
  EXPECT_EQ(loader->overlayView(), overlay) << "one veil, however often it is shown";
  tap(button());
  EXPECT_NE(navigation_->topViewController(), chat()) << "a tap on what lies below does nothing";

  loader->dismiss();
  EXPECT_EQ(overlay->superview(), nullptr);
  EXPECT_EQ(loader->superview(), nullptr);
  tap(button());
  EXPECT_EQ(navigation_->topViewController(), chat());
}

TEST_F(WaitingViews, TheLoaderIsShownAgainWhenItsWindowHasGone) {
  const auto loader = make<LumicorLoaderView>(CGRect{120, 347, 150, 150});
  auto other = make<UIWindow>(CGRect{0, 0, 390, 844});
  other->makeKeyAndVisible();
  loader->show();
  EXPECT_EQ(loader->window(), other);
  other->setHidden(true);
  other.reset();
  window()->makeKeyAndVisible();
  loader->show();
  EXPECT_EQ(loader->window(), window());
  EXPECT_EQ(window()->subviews().size(), before_ + 2);
  loader->dismiss();
  EXPECT_EQ(window()->subviews().size(), before_);
}

TEST_F(WaitingViews, TheDialogPlaysTheServicesAnimationAndGoesWithItsVeil) {
  Lumicor::shared().setEndpoint("https://dialog.test");
  service_.answer("/assets/processing.gif",
                  URLProtocol::Reply::data(200, GIFFile(8, 8).add(0xff0000, 20).add(0x00ff00, 40).bytes()));
  LumicorImageCache::shared().setImage(nullptr, LumicorProcessingDialogView::animationAddress());
  const auto dialog = make<LumicorProcessingDialogView>();
  EXPECT_EQ(dialog->frame(), (CGRect{170, 675.2, 50, 50}));
  EXPECT_EQ(dialog->gifImageView()->frame(), (CGRect{5, 5, 40, 40}));
  dialog->show();
  EXPECT_EQ(dialog->superview(), nullptr) << "a turn of the main queue later";
  pass(0.1);
  ASSERT_NE(dialog->overlayView(), nullptr);
  EXPECT_EQ(window()->subviews().back(), dialog);
  ASSERT_NE(dialog->gifImageView()->image(), nullptr);
  EXPECT_EQ(dialog->gifImageView()->image()->images().size(), 2u);
  EXPECT_DOUBLE_EQ(dialog->gifImageView()->image()->duration(), 0.6);
  const auto again = make<LumicorProcessingDialogView>();
  EXPECT_NE(again->gifImageView()->image(), nullptr) << "from the cache";

  const Ref<UIView> overlay = dialog->overlayView();
  dialog->dismiss();
  pass(0.1);
  EXPECT_EQ(overlay->superview(), nullptr);
  EXPECT_EQ(dialog->superview(), nullptr);
}

TEST_F(WaitingViews, ADialogWithoutAnAnimationIsStillACard) {
  Lumicor::shared().setEndpoint("https://broken.test");
  service_.answer("/assets/processing.gif", URLProtocol::Reply::data(200, "<html>not here</html>"));
  const auto dialog = make<LumicorProcessingDialogView>();
  dialog->show();
  dialog->show();
  pass(0.1);
  EXPECT_EQ(dialog->gifImageView()->image(), nullptr);
  EXPECT_EQ(window()->subviews().size(), before_ + 2) << "one veil, one card";
  dialog->dismiss();
  pass(0.1);
  EXPECT_EQ(window()->subviews().size(), before_);
}

TEST(AnimatedImage, KeepsFramesThatCanBeReadAndAddsUpTheirTimes) {
  const std::string film = GIFFile(4, 4).add(0xff0000, 10).add(0x0000ff, 25).addDamaged(4, 4).bytes();
  const auto moving = animatedImageWithGIF(film);
  ASSERT_NE(moving, nullptr);
  EXPECT_EQ(moving->images().size(), 2u) << "the damaged one is passed over";
  EXPECT_DOUBLE_EQ(moving->duration(), 0.35);
  EXPECT_EQ(animatedImageWithGIF("no picture"), nullptr);
  EXPECT_EQ(animatedImageWithGIF(film.substr(0, 20)), nullptr);

  const auto still = downloadedImage(GIFFile(4, 4).add(0xff0000, 10).bytes());
  ASSERT_NE(still, nullptr);
  EXPECT_TRUE(still->images().empty());
}

}  // namespace
}  // namespace lumicor
