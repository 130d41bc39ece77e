#include "lumicor/ui/LumicorImageCache.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace lumicor {

LumicorImageCache& LumicorImageCache::shared() {
  static const Ref<LumicorImageCache> cache = make<LumicorImageCache>();
  return *cache;
}

Ref<UIImage> LumicorImageCache::image(const std::string& absoluteString) const {
  const std::lock_guard lock(mutex_);
  const auto found = cache_.find(absoluteString);
  return found == cache_.end() ? nullptr : found->second;
}

void LumicorImageCache::setImage(const Ref<UIImage>& image, const std::string& absoluteString) {
  const std::lock_guard lock(mutex_);
  if (!cache_.insert_or_assign(absoluteString, image).second) return;
  oldestFirst_.push_back(absoluteString);
  if (oldestFirst_.size() <= maximumCount) return;
  cache_.erase(oldestFirst_.front());
  oldestFirst_.pop_front();
}

void LumicorImageCache::fetch(const std::string& address, std::function<void(const Ref<UIImage>&)> completion) {
  const auto url = URL::parse(address);
  if (!url) return;
  const std::string key = url->absoluteString();
  if (const auto cached = image(key)) {
    completion(cached);
    return;
  }
  const auto received = [key, completion = std::move(completion)](const auto& data, const auto&, const auto& error) {
    if (error || !data) return;
    const Ref<UIImage> image = UIImage::imageWithData(*data);
    if (!image) return;
    shared().setImage(image, key);
    DispatchQueue::main().async([image, completion] { completion(image); });
  };
  URLSession::shared()->dataTask(*url, received)->resume();
}

}  // namespace lumicor
