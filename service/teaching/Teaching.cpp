#include "service/teaching/Teaching.h"

namespace service {
namespace {

Json summaryOf(const Demonstration& record) {
  const bool isAnswered = record.isComplete && isAnswerable(record.draft);
  return {{"id", record.id},
          {"state", !record.isComplete ? "incomplete"
                    : isAnswered       ? "answered"
                                       : "unnamed"},
          {"title", record.isComplete ? record.draft["title"] : Json("")},
          // The closing snapshot is not an action.
          {"actions", record.snapshots - (record.isComplete ? 1 : 0)},
          {"appBundleId", record.appBundleId},
          {"userId", record.userId},
          {"registeredAt", record.registeredAt}};
}

}  // namespace

Json Teaching::list() {
  Json list = Json::array();
  for (const Demonstration& record : demonstrations_.list()) list.push_back(summaryOf(record));
  return list;
}

Json Teaching::show(const std::string& id) {
  const Demonstration record = demonstrations_.find(id);
  Json shown = summaryOf(record);
  shown["recordingKey"] = record.recordingKey;
  if (record.isComplete) shown.update(record.draft);
  return shown;
}

void Teaching::name(const std::string& id, const std::string& title, const std::vector<std::string>& samples) {
  demonstrations_.edit(id, [&](Json& draft) { nameTask(draft, title, samples); });
}

void Teaching::correct(const std::string& id, const std::string& slot, const SlotCorrection& correction) {
  demonstrations_.edit(id, [&](Json& draft) { correctSlot(draft, slot, correction); });
}

void Teaching::remove(const std::string& id) {
  const Demonstration record = demonstrations_.find(id);
  std::vector<std::string> files = demonstrations_.screenshotKeys(id);
  files.push_back(record.recordingKey);
  demonstrations_.remove(id);
  media_.remove(record.owner, record.userId, files);
}

void Teaching::removeAbandoned(std::int64_t now) {
  for (const std::string& id : demonstrations_.abandoned(now)) {
    try {
      remove(id);
    } catch (const JsonError&) {
      // Somebody else was faster.
    }
  }
  media_.removeUnnamed(now);
}

}  // namespace service
