#include "lumicor/capture/LumicorScreenshots.h"

#include <atomic>
#include <memory>
#include <utility>

#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/DispatchGroup.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/FileManager.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/ScreenDisplay.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

using namespace platform;

namespace {

constexpr const char* folderName = "LumicorScreenshots";
constexpr const char* fileName = "LumicorScreenshot.png";
constexpr int uploadsAtOnce = 4;

/// Encoding, writing and removing, one after the other.
const DispatchQueue& fileQueue() {
  static const DispatchQueue& queue = *new DispatchQueue(DispatchQueue::serial("screenshots"));
  return queue;
}

URL folder() {
  return FileManager::defaultManager()
      .urlsForDirectory(FileManager::SearchPathDirectory::documentDirectory)
      .front()
      .appendingPathComponent(folderName);
}

void removeFolder() {
  if (FileManager::defaultManager().fileExistsAtPath(folder().path())) {
    (void)FileManager::defaultManager().removeItemAtURL(folder());
  }
}

/// One picture that was not like the one before it. Its file is known once it has been written.
struct File {
  std::string viewName;
  std::string path;
  std::string key;
};

void write(const TiledBitmap& picture, double scale, std::size_t number, File& file) {
  const URL place = folder().appendingPathComponent(std::to_string(number));
  const URL url = place.appendingPathComponent(fileName);
  const auto image = UIImage::imageWithBitmap(picture.bitmap(), scale);
  std::optional<NSError> error = FileManager::defaultManager().createDirectoryAtURL(place);
  if (!error) error = FileManager::defaultManager().writeContents(image->pngRepresentation(), url);
  if (error) return LumicorDebugHelper::log("Error when writing a screenshot " + error->description());
  file.path = url.path();
}

/// What a demonstration has taken so far.
struct Shots {
  std::vector<std::shared_ptr<File>> files;
  std::vector<std::size_t> fileOfSnapshot;
};

Shots& shots() {
  static Shots& taken = *new Shots;
  return taken;
}
/// There during a demonstration: then the screen's picture is kept up to date.
Ref<ScreenDisplay>& display() {
  static Ref<ScreenDisplay>& shown = *new Ref<ScreenDisplay>;
  return shown;
}
TiledBitmap& lastPicture() {
  static TiledBitmap& picture = *new TiledBitmap;
  return picture;
}

/// Sends files, a few at a time, and removes each once it was sent.
class Upload : public std::enable_shared_from_this<Upload> {
 public:
  using Completion = std::function<void(std::vector<std::string>)>;
  Upload(Shots taken, Completion completion) : shots_(std::move(taken)), completion_(std::move(completion)) {}

  void run() {
    const DispatchGroup lanes;
    for (int lane = 0; lane < uploadsAtOnce; ++lane) {
      lanes.enter();
      sendNext(lanes);
    }
    lanes.notify(fileQueue(), [self = shared_from_this()] { self->finish(); });
  }

 private:
  void sendNext(const DispatchGroup& lanes) {
    std::size_t next = next_++;
    while (next < shots_.files.size() && shots_.files[next]->path.empty()) next = next_++;
    if (next >= shots_.files.size()) return lanes.leave();
    const std::shared_ptr<File> file = shots_.files[next];
    LumicorNetworkTask::uploadMedia(file->viewName, file->path, "png",
                                    [self = shared_from_this(), lanes, file](const std::optional<std::string>& key) {
                                      file->key = key.value_or("");
                                      self->sendNext(lanes);
                                    });
  }

  void finish() {
    removeFolder();
    std::vector<std::string> keys;
    for (const std::size_t file : shots_.fileOfSnapshot) keys.push_back(shots_.files[file]->key);
    completion_(std::move(keys));
  }

  const Shots shots_;
  const Completion completion_;
  std::atomic<std::size_t> next_{0};
};

}  // namespace

void LumicorScreenshots::begin() {
  drop();
  display() = ScreenDisplay::shared();
  display()->showFrame();  // whole once; afterwards each frame draws what changed
}

void LumicorScreenshots::take(const std::string& viewName) {
  if (!display()) return;
  Shots& taken = shots();
  const TiledBitmap picture = display()->picture();
  if (taken.files.empty() || !picture.isSameAs(lastPicture())) {
    const std::size_t number = taken.files.size();
    const auto file = std::make_shared<File>(File{viewName, "", ""});
    taken.files.push_back(file);
    fileQueue().async(
        [picture, scale = UIScreen::main().scale(), number, file] { write(picture, scale, number, *file); });
    lastPicture() = picture;
  }
  taken.fileOfSnapshot.push_back(taken.files.size() - 1);
}

void LumicorScreenshots::stop() {
  display() = nullptr;
  lastPicture() = {};
}

void LumicorScreenshots::upload(std::function<void(std::vector<std::string>)> completion) {
  auto upload = std::make_shared<Upload>(std::exchange(shots(), {}), std::move(completion));
  fileQueue().async([upload] { upload->run(); });  // behind the last one written
}

void LumicorScreenshots::drop() {
  stop();
  shots() = {};
  fileQueue().async(&removeFolder);
}

}  // namespace lumicor
