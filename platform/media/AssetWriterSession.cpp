#include "platform/media/AssetWriterSession.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace platform {

namespace {

/// Between two instants, in the encoder's ticks, rounded.
std::int64_t ticksBetween(CMTime from, CMTime to) {
  __extension__ using Wide = __int128;
  const Wide ticks = VideoEncoder::ticksPerSecond;
  const Wide scale = static_cast<Wide>(from.timescale) * to.timescale;
  const Wide distance = static_cast<Wide>(to.value) * from.timescale - static_cast<Wide>(from.value) * to.timescale;
  const Wide rounded = (distance * ticks * 2 + (distance < 0 ? -scale : scale)) / (scale * 2);
  constexpr Wide bound = Wide{1} << 46;  // some years: more than any recording, far from any overflow
  return static_cast<std::int64_t>(std::clamp(rounded, -bound, bound));
}

std::int64_t ticksOf(CMTime duration) { return duration.isValid() ? ticksBetween(kCMTimeZero, duration) : 0; }

NSError writerError(AVErrorCode code, std::string sentence) {
  return {AVFoundationErrorDomain, code, std::move(sentence)};
}

}  // namespace

AVAssetWriter::Session::Session(std::string path, std::shared_ptr<PartialFile> file)
    : path_(std::move(path)), file_(std::move(file)) {}

AVAssetWriterStatus AVAssetWriter::Session::status() const {
  const std::lock_guard lock(mutex_);
  return status_;
}

std::optional<NSError> AVAssetWriter::Session::error() const {
  const std::lock_guard lock(mutex_);
  return error_;
}

// ---- Before writing

std::optional<AVAssetWriter::Session::Size> AVAssetWriter::Session::sizeOf(const AVAssetWriterInput& input) {
  const AVOutputSettings& settings = input.outputSettings();
  const auto codec = settings.find(AVVideoCodecKey);
  if (codec == settings.end() || !codec->second.asString() || *codec->second.asString() != AVVideoCodecTypeH264) {
    return std::nullopt;
  }
  const auto side = [&settings](const char* key) -> int {
    constexpr double longest = 1e6;  // no side is that long, and it is a whole number of any kind
    const auto found = settings.find(key);
    const std::optional<double> value = found == settings.end() ? std::nullopt : found->second.asDouble();
    return value && *value >= 1 && *value < longest ? static_cast<int>(*value) : 0;
  };
  const Size size{side(AVVideoWidthKey), side(AVVideoHeightKey)};
  return VideoEncoder::canEncode(size.width, size.height) ? std::optional(size) : std::nullopt;
}

bool AVAssetWriter::Session::canAdd(const Ref<AVAssetWriterInput>& input) const {
  const std::lock_guard lock(mutex_);
  return input && !input_ && status_ == AVAssetWriterStatus::unknown && input->mediaType() == AVMediaTypeVideo &&
         sizeOf(*input);
}

void AVAssetWriter::Session::add(const Ref<AVAssetWriterInput>& input) {
  const bool isFit = canAdd(input);
  const std::lock_guard lock(mutex_);
  if (status_ != AVAssetWriterStatus::unknown) return;
  isFit ? static_cast<void>(input_ = input) : static_cast<void>(isInputRefused_ = true);
}

std::optional<NSError> AVAssetWriter::Session::open() {
  if (!input_ && !isInputRefused_) return writerError(AVErrorOperationNotAllowed, "The writer has no input.");
  if (isInputRefused_) {
    return writerError(AVErrorInvalidOutputSettings, "The settings of the input cannot be written.");
  }
  const Size size = *sizeOf(*input_);
  VideoEncoder::Opened opened =
      VideoEncoder::open(file_->path(), size.width, size.height, [weak = weak_from_this()](const VideoError& error) {
        if (const auto session = weak.lock()) session->encoderFailed(error);
      });
  if (!opened.encoder) return errorFor(opened.error);
  encoder_ = std::move(opened.encoder);
  return std::nullopt;
}

bool AVAssetWriter::Session::start() {
  const std::lock_guard lock(mutex_);
  if (status_ != AVAssetWriterStatus::unknown) return false;
  if (std::optional<NSError> error = open()) {
    endWith(AVAssetWriterStatus::failed, std::move(error));
    return false;
  }
  status_ = AVAssetWriterStatus::writing;
  return true;
}

// ---- While writing

void AVAssetWriter::Session::startAt(CMTime time) {
  const std::lock_guard lock(mutex_);
  if (status_ == AVAssetWriterStatus::writing && !start_.isValid()) start_ = time;
}

void AVAssetWriter::Session::endAt(CMTime time) {
  const std::lock_guard lock(mutex_);
  if (status_ == AVAssetWriterStatus::writing && !isFinishing_) end_ = time;
}

bool AVAssetWriter::Session::isReady(Pace pace) const {
  const std::lock_guard lock(mutex_);
  if (status_ != AVAssetWriterStatus::writing || isFinishing_) return false;
  return pace == Pace::realTime || encoder_->hasRoom();
}

bool AVAssetWriter::Session::append(const CMSampleBuffer& buffer, Pace pace) {
  if (buffer.image().isEmpty() || !isReady(pace)) return false;
  const std::lock_guard lock(mutex_);
  if (status_ != AVAssetWriterStatus::writing || isFinishing_ || !start_.isValid()) return false;
  const CMTime time = buffer.presentationTime();
  if (!time.isValid() || time < start_) return false;
  const std::int64_t begin = ticksBetween(start_, time);
  if (lastBegin_ && begin <= *lastBegin_) return false;
  // Nobody knows better what there was to see before the first picture.
  const std::int64_t shownFrom = lastBegin_ ? begin : 0;
  lastBegin_ = begin;
  encoder_->append(buffer.image(), shownFrom, begin + std::max<std::int64_t>(ticksOf(buffer.duration()), 0));
  return true;
}

void AVAssetWriter::Session::encoderFailed(const VideoError& error) {
  const std::lock_guard lock(mutex_);
  if (status_ == AVAssetWriterStatus::writing && !isFinishing_) endWith(AVAssetWriterStatus::failed, errorFor(error));
}

// ---- The end

void AVAssetWriter::Session::finish(std::function<void()> completion) {
  const std::lock_guard lock(mutex_);
  completions_.push_back(std::move(completion));
  if (isFinishing_) return;
  if (status_ == AVAssetWriterStatus::writing && lastBegin_) {
    isFinishing_ = true;
    const auto end = end_.isValid() ? std::optional(ticksBetween(start_, end_)) : std::nullopt;
    encoder_->finish(end, [session = shared_from_this()](const std::optional<VideoError>& error) {
      session->encoderFinished(error);
    });
    return;
  }
  if (status_ == AVAssetWriterStatus::writing || status_ == AVAssetWriterStatus::unknown) {
    endWith(AVAssetWriterStatus::failed, writerError(AVErrorNoDataCaptured, "There was nothing to write."));
  }
  callBack();
}

void AVAssetWriter::Session::encoderFinished(const std::optional<VideoError>& error) {
  const std::lock_guard lock(mutex_);
  std::optional<NSError> failure = error ? std::optional(errorFor(*error)) : file_->complete();
  const AVAssetWriterStatus status = failure ? AVAssetWriterStatus::failed : AVAssetWriterStatus::completed;
  isFinishing_ = false;
  endWith(status, std::move(failure));
  callBack();
}

void AVAssetWriter::Session::cancel() {
  const std::lock_guard lock(mutex_);
  if (isFinishing_) return;
  if (status_ == AVAssetWriterStatus::writing || status_ == AVAssetWriterStatus::unknown) {
    endWith(AVAssetWriterStatus::cancelled, std::nullopt);
  }
}

void AVAssetWriter::Session::endWith(AVAssetWriterStatus status, std::optional<NSError> error) {
  status_ = status;
  error_ = std::move(error);
  encoder_.reset();
  file_->remove();
  input_.reset();
}

void AVAssetWriter::Session::callBack() {
  for (std::function<void()>& completion : std::exchange(completions_, {})) {
    if (completion) queue_.async(std::move(completion));
  }
}

NSError AVAssetWriter::Session::errorFor(const VideoError& error) const {
  if (error.kind == VideoError::Kind::encoder) return writerError(AVErrorEncodeFailed, error.description);
  const bool isFull = error.reason == ENOSPC || error.reason == EDQUOT || error.reason == EFBIG;
  return isFull ? writerError(AVErrorDiskFull, error.description) : NSError::fileError(error.reason, path_);
}

}  // namespace platform
