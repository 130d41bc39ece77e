#include "platform/media/AVAssetWriter.h"

#include <utility>

#include "platform/media/AssetWriterInputLink.h"
#include "platform/media/AssetWriterSession.h"

namespace platform {

Result<Ref<AVAssetWriter>, NSError> AVAssetWriter::writerWithURL(const URL& url, const AVFileType& fileType) {
  if (fileType != AVFileTypeMPEG4) {
    return NSError(AVFoundationErrorDomain, AVErrorFileFormatNotRecognized, "Files of that type cannot be written.");
  }
  if (!url.isFileURL()) {
    return NSError(NSCocoaErrorDomain, NSFileWriteUnsupportedSchemeError,
                   url.absoluteString() + " is no address of a file");
  }
  Result<std::shared_ptr<PartialFile>, NSError> file = PartialFile::create(url.path());
  if (!file) return file.error();
  auto session = std::make_shared<Session>(url.path(), *file);
  return make<AVAssetWriter>(url, fileType, std::move(session));
}

AVAssetWriter::AVAssetWriter(URL url, AVFileType fileType, std::shared_ptr<Session> session)
    : url_(std::move(url)), fileType_(std::move(fileType)), session_(std::move(session)) {}

AVAssetWriter::~AVAssetWriter() { session_->cancel(); }

AVAssetWriterStatus AVAssetWriter::status() const { return session_->status(); }
std::optional<NSError> AVAssetWriter::error() const { return session_->error(); }
bool AVAssetWriter::canAddInput(const Ref<AVAssetWriterInput>& input) const { return session_->canAdd(input); }

void AVAssetWriter::addInput(const Ref<AVAssetWriterInput>& input) {
  const bool isFit = session_->canAdd(input);
  session_->add(input);
  if (isFit) input->link_->attach(session_);
}

bool AVAssetWriter::startWriting() { return session_->start(); }
void AVAssetWriter::startSessionAtSourceTime(CMTime time) { session_->startAt(time); }
void AVAssetWriter::endSessionAtSourceTime(CMTime time) { session_->endAt(time); }
void AVAssetWriter::finishWriting(std::function<void()> completion) { session_->finish(std::move(completion)); }
void AVAssetWriter::cancelWriting() { session_->cancel(); }

}  // namespace platform
