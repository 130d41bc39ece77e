#include "lumicor/ui/LumicorImageCache.h"

#include "lumicor/ui/LumicorAnimatedImage.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace lumicor {

namespace {

std::size_t bytesOf(const UIImage& image) {
  if (image.images().empty())
    return image.cgImage()->bytesPerRow() * static_cast<std::size_t>(image.cgImage()->height());
  std::size_t sum = 0;
  for (const Ref<UIImage>& frame : image.images()) sum += bytesOf(*frame);
  return sum;
}

}  // namespace

LumicorImageCache& LumicorImageCache::shared() {
  static const Ref<LumicorImageCache> cache = make<LumicorImageCache>();
  return *cache;
}

DispatchQueue LumicorImageCache::decodingQueue() {
  static const auto& queue = *new DispatchQueue(DispatchQueue::serial("image decoding"));
  return queue;
}

Ref<UIImage> LumicorImageCache::image(const std::string& absoluteString) {
  const std::lock_guard lock(mutex_);
  const auto found = byAddress_.find(absoluteString);
  if (found == byAddress_.end()) return nullptr;
  latestFirst_.splice(latestFirst_.begin(), latestFirst_, found->second);
  return found->second->image;
}

void LumicorImageCache::setImage(const Ref<UIImage>& image, const std::string& absoluteString) {
  const std::size_t added = image ? bytesOf(*image) : 0;
  const std::lock_guard lock(mutex_);
  if (const auto found = byAddress_.find(absoluteString); found != byAddress_.end()) remove(found->second);
  if (!image || added > maximumBytes_) return;
  while (bytes_ > maximumBytes_ - added) remove(std::prev(latestFirst_.end()));
  latestFirst_.push_front({absoluteString, image, added});
  byAddress_[absoluteString] = latestFirst_.begin();
  bytes_ += added;
}

std::size_t LumicorImageCache::bytes() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

void LumicorImageCache::remove(std::list<Entry>::iterator entry) {
  bytes_ -= entry->bytes;
  byAddress_.erase(entry->address);
  latestFirst_.erase(entry);
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
    decodingQueue().async([key, completion, data = *data] {
      const Ref<UIImage> image = downloadedImage(data);
      if (!image) return;
      shared().setImage(image, key);
      DispatchQueue::main().async([image, completion] { completion(image); });
    });
  };
  URLSession::shared()->dataTask(*url, received)->resume();
}

}  // namespace lumicor
