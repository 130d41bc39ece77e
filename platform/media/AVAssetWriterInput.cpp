#include "platform/media/AVAssetWriterInput.h"

#include <utility>

#include "platform/media/AssetWriterInputLink.h"

namespace platform {

AVAssetWriterInput::AVAssetWriterInput(AVMediaType mediaType, AVOutputSettings settings)
    : mediaType_(std::move(mediaType)), settings_(std::move(settings)), link_(std::make_shared<Link>()) {}

AVAssetWriterInput::~AVAssetWriterInput() = default;

void AVAssetWriterInput::setExpectsMediaDataInRealTime(bool expects) { link_->isRealTime = expects; }
bool AVAssetWriterInput::expectsMediaDataInRealTime() const { return link_->isRealTime; }

bool AVAssetWriterInput::isReadyForMoreMediaData() const {
  const auto session = link_->session();
  return session && !link_->isMarkedFinished && session->isReady(link_->pace());
}

bool AVAssetWriterInput::appendSampleBuffer(const CMSampleBufferRef& buffer) {
  const auto session = link_->session();
  return session && buffer && !link_->isMarkedFinished && session->append(*buffer, link_->pace());
}

void AVAssetWriterInput::markAsFinished() { link_->isMarkedFinished = true; }

}  // namespace platform
