#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "service/base/Json.h"
#include "service/base/TeachingLimits.h"
#include "service/store/Database.h"

namespace service {

/// Who registers: a digest that stands for the secret key, and the user.
struct Demonstrator {
  std::string owner;
  std::string userId;
};

/// What is told of a task when it is registered.
struct Registration {
  std::string appBundleId;
  std::string recordingKey;
  bool opensChat = true;
};

struct Demonstration {
  std::string id;
  std::string owner;
  std::string userId;
  std::string appBundleId;
  std::string recordingKey;
  std::int64_t registeredAt = 0;  ///< milliseconds since 1970
  std::int64_t snapshots = 0;
  bool isComplete = false;  ///< its closing snapshot has come
  Json draft;               ///< of a complete one, see draftTask()
};

/// The demonstrations that applications register, and the tasks that are made of them. A demonstration is complete when
/// its closing snapshot has come; one that never ends is listed as incomplete.
/// Any thread, and several processes on one folder. Throws RequestError for what a client may not do, JsonError for
/// what is malformed, DatabaseError when the disk fails.
class DemonstrationStore {
 public:
  /// Opens the data folder. Throws LoadError.
  DemonstrationStore(const std::filesystem::path& dataFolder, TeachingLimits limits);

  /// What stands for a secret key, which is kept nowhere itself.
  std::string ownerOf(const std::string& secretKey) const;

  /// The new task's id.
  std::string registerTask(const Demonstrator& who, const Registration& registration, std::int64_t now);
  /// Indexes begin at 0 and have no gaps. One that is there already is accepted when it is the same, since its sender
  /// may have missed the reply, and refused when it is not.
  void registerSnapshot(const Demonstrator& who, const std::string& taskId, std::int64_t index, const Json& snapshot,
                        std::int64_t now);

  /// The incomplete ones for which nothing has come for as long as the limits allow.
  std::vector<std::string> abandoned(std::int64_t now);
  /// Oldest first.
  std::vector<Demonstration> list();
  /// Throws JsonError when there is none.
  Demonstration find(const std::string& id);
  /// The screenshots that the snapshots of a demonstration name.
  std::vector<std::string> screenshotKeys(const std::string& id);
  /// Changes the draft of a complete one; nothing is kept when `change` throws.
  void edit(const std::string& id, const std::function<void(Json& draft)>& change);
  void remove(const std::string& id);

  /// Another number whenever a draft was changed or removed by any process.
  std::int64_t revision();

 private:
  Demonstration found(const std::string& id);
  Json draftOf(const std::string& taskId, bool opensChat);
  void noteChange();

  const TeachingLimits limits_;
  mutable std::mutex mutex_;
  Database database_;
  std::string salt_;
};

}  // namespace service
