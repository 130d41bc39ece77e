#include "platform/engine/ffmpeg/FFmpegVideoEncoder.h"

#include <algorithm>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

// ---- The door

bool VideoEncoder::canEncode(std::int64_t width, std::int64_t height) {
  constexpr std::int64_t longestSide = 16'384, mostBlocks = 139'264;
  if (width < 1 || height < 1 || width > longestSide || height > longestSide) return false;
  return ((width + 15) / 16) * ((height + 15) / 16) <= mostBlocks;
}

VideoEncoder::Opened VideoEncoder::open(const std::string& path, int width, int height,
                                        std::function<void(VideoError)> failed) {
  // What goes wrong is told to the owner. A host that wants the libraries' own words has chosen a level.
  if (av_log_get_level() == AV_LOG_INFO) av_log_set_level(AV_LOG_FATAL);
  if (!canEncode(width, height)) return {nullptr, {VideoError::Kind::encoder, 0, "no video can be of that size"}};
  auto thread = std::make_shared<EncodingThread>(width, height, std::move(failed));
  if (std::optional<VideoError> error = thread->open(path)) return {nullptr, *std::move(error)};
  if (!EncodingThread::start(thread)) {
    return {nullptr, {VideoError::Kind::encoder, 0, "there is no thread for the encoder"}};
  }
  return {std::make_unique<FFmpegVideoEncoder>(std::move(thread)), {}};
}

// ---- From other threads

EncodingThread::EncodingThread(int width, int height, std::function<void(VideoError)> failed)
    : failed_(std::move(failed)), converter_(width, height) {}

std::optional<VideoError> EncodingThread::open(const std::string& path) {
  if (!converter_.isUsable()) return videoErrorOf(AVERROR(ENOMEM), "the encoder");
  const AVFrame& frame = converter_.frame();
  if (auto error = encoder_.open(frame.width, frame.height)) return error;
  return file_.open(path, encoder_.context());
}

bool EncodingThread::start(std::shared_ptr<EncodingThread> thread) {
  // Signals are for the application's threads; one for a file that grew too large is seen as a failed write.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  bool isStarted = true;
  try {
    std::thread([thread = std::move(thread)] { thread->run(); }).detach();
  } catch (const std::system_error&) {
    isStarted = false;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return isStarted;
}

bool EncodingThread::hasRoom() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size() < VideoEncoder::mostWaiting;
}

void EncodingThread::append(TiledBitmap picture, std::int64_t begin, std::int64_t end) {
  TiledBitmap old;  // let go of after the lock
  {
    const std::lock_guard lock(mutex_);
    if (waiting_.size() >= VideoEncoder::mostWaiting) {
      Picture& last = waiting_.back();
      old = std::exchange(last.content, std::move(picture));
      last.begin = begin;
      last.end = end;
    } else {
      waiting_.push_back({std::move(picture), begin, end, BackgroundActivity("video encoding")});
    }
  }
  changed_.notify_one();
}

void EncodingThread::finish(std::optional<std::int64_t> end, std::function<void(std::optional<VideoError>)> finished) {
  {
    const std::lock_guard lock(mutex_);
    chosenEnd_ = end;
    finished_ = std::move(finished);
    finishing_.emplace("video encoding");
  }
  changed_.notify_one();
}

void EncodingThread::cancel() {
  std::deque<Picture> dropped;
  {
    const std::lock_guard lock(mutex_);
    isCancelled_ = true;
    dropped.swap(waiting_);
  }
  changed_.notify_one();
}

// ---- On the thread

void EncodingThread::run() {
  std::optional<VideoError> error;
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isCancelled_ || finished_ || !waiting_.empty(); });
    if (isCancelled_) return;
    if (waiting_.empty()) break;
    std::optional<Picture> picture(std::move(waiting_.front()));
    waiting_.pop_front();
    lock.unlock();
    if (!error && (error = encode(*picture))) failed_(*error);
    picture.reset();
    lock.lock();
  }
  const auto finished = std::exchange(finished_, nullptr);
  std::optional<BackgroundActivity> activity = std::exchange(finishing_, std::nullopt);
  lock.unlock();
  if (!error) error = complete();
  finished(error);
}

std::optional<VideoError> EncodingThread::encode(const Picture& picture) {
  end_ = std::max(end_, picture.end);
  switch (converter_.take(picture.content)) {
    case PictureConverter::Outcome::same:
      return std::nullopt;
    case PictureConverter::Outcome::failed:
      return VideoError{VideoError::Kind::encoder, 0, "a picture could not be scaled"};
    case PictureConverter::Outcome::different:
      break;
  }
  end_ = std::max(end_, picture.begin + VideoEncoder::shortestPicture);
  return encoder_.encode(converter_.frame(), picture.begin, [this](AVPacket& packet) { return file_.write(packet); });
}

std::optional<VideoError> EncodingThread::complete() {
  if (auto error = encoder_.flush([this](AVPacket& packet) { return file_.write(packet); })) return error;
  return file_.finish(chosenEnd_.value_or(end_));
}

}  // namespace platform
