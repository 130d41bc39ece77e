#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/graphics/UIImage.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// The images that were downloaded in this process, by address, in so many bytes of decoded pixels: the one that was
/// not asked for the longest goes first. Any thread.
class LumicorImageCache : public Object<LumicorImageCache, NSObject> {
 public:
  static constexpr std::size_t usualMaximumBytes = 64u << 20;

  explicit LumicorImageCache(std::size_t maximumBytes = usualMaximumBytes) : maximumBytes_(maximumBytes) {}
  static LumicorImageCache& shared();

  /// The cached image of the address, or none.
  Ref<UIImage> image(const std::string& absoluteString);
  /// An image of more bytes than the cache holds is not kept.
  void setImage(const Ref<UIImage>& image, const std::string& absoluteString);
  /// Of the decoded pixels of all images and of all their frames.
  std::size_t bytes() const;

  /// Gives the image of the address: a cached one before it returns, otherwise, once downloaded and decoded off the
  /// main thread, on the main queue. One image is decoded at a time, on a queue that nothing else waits for. An address
  /// that forms no URL, a failed download, data that is no image, and an image beyond `PictureBudget::forAddresses`
  /// give nothing.
  void fetch(const std::string& address, std::function<void(const Ref<UIImage>&)> completion);
  /// Where downloaded images are decoded: it may take seconds, and the replies of other requests are handed over one by
  /// one on their session's queue.
  static DispatchQueue decodingQueue();

 private:
  struct Entry {
    std::string address;
    Ref<UIImage> image;
    std::size_t bytes;
  };
  void remove(std::list<Entry>::iterator entry);  // with the lock held

  const std::size_t maximumBytes_;
  mutable std::mutex mutex_;
  std::list<Entry> latestFirst_;
  std::unordered_map<std::string, std::list<Entry>::iterator> byAddress_;
  std::size_t bytes_ = 0;
};

}  // namespace lumicor
