#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/graphics/UIImage.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// The images that were downloaded in this process, by address. The oldest go when there are many. Any thread.
class LumicorImageCache : public Object<LumicorImageCache, NSObject> {
 public:
  static LumicorImageCache& shared();

  /// The cached image of the address, or none.
  Ref<UIImage> image(const std::string& absoluteString) const;
  void setImage(const Ref<UIImage>& image, const std::string& absoluteString);

  /// Gives the image of the address: a cached one before it returns, otherwise, once downloaded and decoded off the
  /// main thread, on the main queue. An address that forms no URL, a failed download, and data that is no image give
  /// nothing.
  void fetch(const std::string& address, std::function<void(const Ref<UIImage>&)> completion);

 private:
  static constexpr std::size_t maximumCount = 64;
  mutable std::mutex mutex_;
  std::unordered_map<std::string, Ref<UIImage>> cache_;
  std::deque<std::string> oldestFirst_;
};

}  // namespace lumicor
