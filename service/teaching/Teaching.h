#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "service/teaching/DemonstrationStore.h"
#include "service/teaching/MediaFolder.h"
#include "service/teaching/TaughtTask.h"

namespace service {

/// What a person does with the demonstrations of a data folder, whether or not a service runs on it: the same for the
/// command line and for the admin paths. Throws JsonError for what cannot be done. Any thread.
class Teaching {
 public:
  /// Both are borrowed.
  Teaching(DemonstrationStore& demonstrations, MediaFolder& media) : demonstrations_(demonstrations), media_(media) {}

  /// {"id", "state", "title", "actions", "userId", "registeredAt"}, oldest first. The state is "incomplete", "unnamed"
  /// or "answered".
  Json list();
  /// The same with the task itself: samples, slots, steps and notes.
  Json show(const std::string& id);
  void name(const std::string& id, const std::string& title, const std::vector<std::string>& samples);
  void correct(const std::string& id, const std::string& slot, const SlotCorrection& correction);
  /// With its snapshots, screenshots and video.
  void remove(const std::string& id);
  /// The same for those that never ended, and for the files of those that never began.
  void removeAbandoned(std::int64_t now);

 private:
  DemonstrationStore& demonstrations_;
  MediaFolder& media_;
};

}  // namespace service
