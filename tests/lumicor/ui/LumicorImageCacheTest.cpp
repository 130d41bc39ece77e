#include <future>

#include "lumicor/ui/LumicorImageCache.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor {
namespace {

/// An image of that many bytes in memory.
Ref<UIImage> imageOf(int bytes) { return UIImage::imageWithBitmap(Bitmap(bytes / 4, 1)); }

std::string png() { return imageOf(16)->pngRepresentation(); }

/// What an earlier round of the tests fetched is in the cache of the process.
void forget(const std::string& address) { LumicorImageCache::shared().setImage(nullptr, address); }

TEST(ImageCache, AsksForAnAddressOnce) {
  const VirtualTime time;
  test::StubService service;
  service.answer("/logo.png", URLProtocol::Reply::data(200, png()));
  service.answer("/broken.png", URLProtocol::Reply::data(200, "no picture"));
  int received = 0;
  forget("https://assets.test/logo.png");
  const auto count = [&](const Ref<UIImage>& image) { received += image ? 1 : 0; };
  LumicorImageCache::shared().fetch("https://assets.test/logo.png", count);
  RunLoop::settle();
  LumicorImageCache::shared().fetch("https://assets.test/logo.png", count);
  EXPECT_EQ(received, 2) << "the second time before fetch returns";
  LumicorImageCache::shared().fetch("https://assets.test/broken.png", count);
  LumicorImageCache::shared().fetch("no address", count);
  RunLoop::settle();
  EXPECT_EQ(received, 2);
  EXPECT_EQ(service.requests().size(), 2u);
}

TEST(ImageCache, HoldsSoManyBytesAndLetsGoOfWhatWasNotAskedForTheLongest) {
  const auto cache = make<LumicorImageCache>(1000);
  cache->setImage(imageOf(400), "a");
  cache->setImage(imageOf(400), "b");
  EXPECT_NE(cache->image("a"), nullptr);
  cache->setImage(imageOf(400), "c");
  EXPECT_NE(cache->image("a"), nullptr);
  EXPECT_EQ(cache->image("b"), nullptr);
  EXPECT_EQ(cache->bytes(), 800u);

  cache->setImage(imageOf(100), "a");
  EXPECT_EQ(cache->bytes(), 500u) << "the new image of an address takes the place of the old";
  cache->setImage(imageOf(1004), "too large");
  EXPECT_EQ(cache->image("too large"), nullptr);
  EXPECT_EQ(cache->bytes(), 500u) << "nothing goes for what is not kept";

  cache->setImage(UIImage::animatedImage({imageOf(300), imageOf(300), imageOf(300)}, 1), "film");
  EXPECT_EQ(cache->bytes(), 1000u) << "every frame counts";
  EXPECT_EQ(cache->image("c"), nullptr);
}

TEST(ImageCache, DecodesOutsideTheQueueThatCompletesRequests) {
  const VirtualTime time;
  test::StubService service;
  service.answer("/slow.png", URLProtocol::Reply::data(200, png()));
  forget("https://assets.test/slow.png");
  std::promise<void> decodingMayGoOn, textArrived;
  LumicorImageCache::decodingQueue().async([&] { decodingMayGoOn.get_future().wait(); });
  int shown = 0;
  LumicorImageCache::shared().fetch("https://assets.test/slow.png", [&](const Ref<UIImage>&) { ++shown; });
  // Completions of one session run one after the other.
  bool wasDecoded = true;
  URLSession::shared()
      ->dataTask(*URL::parse("https://assets.test/text"),
                 [&](const auto&, const auto&, const auto&) {
                   wasDecoded = LumicorImageCache::shared().image("https://assets.test/slow.png") != nullptr;
                   textArrived.set_value();
                 })
      ->resume();
  textArrived.get_future().wait();
  EXPECT_FALSE(wasDecoded);
  decodingMayGoOn.set_value();
  RunLoop::settle();
  EXPECT_EQ(shown, 1);
}

}  // namespace
}  // namespace lumicor
