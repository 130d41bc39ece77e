#include "service/teaching/DemonstrationStore.h"

#include <optional>

#include "service/base/RandomName.h"
#include "service/base/RequestError.h"
#include "service/base/Sha256.h"
#include "service/store/DataFolder.h"
#include "service/teaching/DemonstratedAction.h"
#include "service/teaching/TaskDraft.h"

namespace service {
namespace {

/// The demonstrations, read by read(); `rest` says which.
std::string selecting(std::string_view rest) {
  constexpr std::string_view kColumns =
      "SELECT id, owner, userId, appBundleId, recordingKey, registeredAt, isComplete, document, "
      "(SELECT count(*) FROM snapshots WHERE taskId = demonstrations.id) FROM demonstrations ";
  std::string sql;
  sql.append(kColumns).append(rest);
  return sql;
}

Demonstration read(const Statement& row) {
  Demonstration record{row.text(0),    row.text(1),    row.text(2),         row.text(3), row.text(4),
                       row.integer(5), row.integer(8), row.integer(6) != 0, Json()};
  if (record.isComplete) record.draft = parseJson(row.text(7));
  return record;
}

std::string readSalt(Database& database) {
  Transaction transaction(database);
  database.prepare("INSERT OR IGNORE INTO settings VALUES('salt', ?)").bind(randomName()).run();
  Statement row = database.prepare("SELECT value FROM settings WHERE name = 'salt'");
  row.step();
  std::string salt = row.text(0);
  transaction.commit();
  return salt;
}

std::int64_t countOf(Database& database, const char* sql, std::string_view argument) {
  Statement row = database.prepare(sql);
  row.bind(argument);
  row.step();
  return row.integer(0);
}

/// An uploaded file is kept for the demonstration that names it.
void keepFile(Database& database, const std::string& owner, const std::string& key) {
  if (key.empty()) return;
  database.prepare("UPDATE media SET state = 'kept' WHERE key = ? AND owner = ? AND state = 'unnamed'")
      .bind(key)
      .bind(owner)
      .run();
}

void erase(Database& database, const std::string& id) {
  database.prepare("DELETE FROM snapshots WHERE taskId = ?").bind(id).run();
  database.prepare("DELETE FROM demonstrations WHERE id = ?").bind(id).run();
}

}  // namespace

DemonstrationStore::DemonstrationStore(const std::filesystem::path& dataFolder, TeachingLimits limits)
    : limits_(limits), database_(openDataFolder(dataFolder)), salt_(readSalt(database_)) {}

std::string DemonstrationStore::ownerOf(const std::string& secretKey) const { return sha256(salt_ + secretKey); }

std::string DemonstrationStore::registerTask(const Demonstrator& who, const Registration& registration,
                                             std::int64_t now) {
  const std::string id = "taught-" + randomName();
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  if (countOf(database_, "SELECT count(*) FROM demonstrations WHERE owner = ?", who.owner) >= limits_.demonstrations)
    throw RequestError(429, "too many demonstrations are kept for this key");
  database_
      .prepare(
          "INSERT INTO demonstrations(id, owner, userId, registeredAt, changedAt, appBundleId, recordingKey, "
          "opensChat) VALUES(?, ?, ?, ?, ?, ?, ?, ?)")
      .bind(id)
      .bind(who.owner)
      .bind(who.userId)
      .bind(now)
      .bind(now)
      .bind(registration.appBundleId)
      .bind(registration.recordingKey)
      .bind(std::int64_t{registration.opensChat})
      .run();
  keepFile(database_, who.owner, registration.recordingKey);
  transaction.commit();
  return id;
}

void DemonstrationStore::registerSnapshot(const Demonstrator& who, const std::string& taskId, std::int64_t index,
                                          const Json& snapshot, std::int64_t now) {
  const SnapshotRecord record = SnapshotRecord::read({snapshot, "snapshot"});
  const std::string text = writeJson(snapshot);
  const std::string action = writeJson(DemonstratedAction::read(record).json());
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Statement task =
      database_.prepare("SELECT isComplete, opensChat FROM demonstrations WHERE id = ? AND owner = ? AND userId = ?");
  task.bind(taskId).bind(who.owner).bind(who.userId);
  // Whether somebody else has such a task is not told.
  if (!task.step()) throw RequestError(404, "there is no such task");
  const bool isComplete = task.integer(0) != 0;
  const bool opensChat = task.integer(1) != 0;
  const std::int64_t count = countOf(database_, "SELECT count(*) FROM snapshots WHERE taskId = ?", taskId);
  if (index >= 0 && index < count) {
    Statement kept = database_.prepare("SELECT snapshot = ? FROM snapshots WHERE taskId = ? AND position = ?");
    kept.bind(text).bind(taskId).bind(index);
    if (kept.step() && kept.integer(0) != 0) return;
    throw RequestError(409, "index: there is another snapshot at " + std::to_string(index) + " already");
  }
  if (isComplete) throw RequestError(409, "the demonstration has ended");
  if (index != count) throw RequestError(409, "index: the next snapshot is " + std::to_string(count));
  if (count >= limits_.snapshots) throw RequestError(413, "the demonstration has too many snapshots");
  database_.prepare("INSERT INTO snapshots(taskId, position, snapshot, action) VALUES(?, ?, ?, ?)")
      .bind(taskId)
      .bind(index)
      .bind(text)
      .bind(action)
      .run();
  keepFile(database_, who.owner, record.screenshotKey);
  database_.prepare("UPDATE demonstrations SET changedAt = ? WHERE id = ?").bind(now).bind(taskId).run();
  if (record.isClosing()) {
    database_.prepare("UPDATE demonstrations SET isComplete = 1, document = ? WHERE id = ?")
        .bind(writeJson(draftOf(taskId, opensChat)))
        .bind(taskId)
        .run();
  }
  transaction.commit();
}

Json DemonstrationStore::draftOf(const std::string& taskId, bool opensChat) {
  Statement row = database_.prepare("SELECT action FROM snapshots WHERE taskId = ? ORDER BY position");
  row.bind(taskId);
  std::vector<DemonstratedAction> actions;
  while (row.step()) actions.push_back(DemonstratedAction::fromJson(Json::parse(row.text(0))));
  const DemonstratedAction closing = std::move(actions.back());
  actions.pop_back();
  return draftTask(taskId, foldActions(std::move(actions)), closing, opensChat);
}

std::vector<Demonstration> DemonstrationStore::list() {
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare(selecting("ORDER BY registeredAt, id"));
  std::vector<Demonstration> records;
  while (row.step()) records.push_back(read(row));
  return records;
}

std::vector<std::string> DemonstrationStore::abandoned(std::int64_t now) {
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare("SELECT id FROM demonstrations WHERE isComplete = 0 AND changedAt < ?");
  row.bind(now - limits_.demonstrationTime);
  std::vector<std::string> ids;
  while (row.step()) ids.push_back(row.text(0));
  return ids;
}

Demonstration DemonstrationStore::found(const std::string& id) {
  Statement row = database_.prepare(selecting("WHERE id = ?"));
  row.bind(id);
  if (!row.step()) throw JsonError("there is no demonstration \"" + id + "\"");
  return read(row);
}

Demonstration DemonstrationStore::find(const std::string& id) {
  const std::lock_guard lock(mutex_);
  return found(id);
}

std::vector<std::string> DemonstrationStore::screenshotKeys(const std::string& id) {
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare("SELECT json_extract(snapshot, '$.screenshotKey') FROM snapshots WHERE taskId = ?");
  row.bind(id);
  std::vector<std::string> keys;
  while (row.step()) keys.push_back(row.text(0));
  return keys;
}

void DemonstrationStore::edit(const std::string& id, const std::function<void(Json& draft)>& change) {
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Demonstration record = found(id);
  if (!record.isComplete) throw JsonError("the demonstration \"" + id + "\" is not complete");
  change(record.draft);
  database_.prepare("UPDATE demonstrations SET document = ? WHERE id = ?").bind(writeJson(record.draft)).bind(id).run();
  noteChange();
  transaction.commit();
}

void DemonstrationStore::remove(const std::string& id) {
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  found(id);
  erase(database_, id);
  noteChange();
  transaction.commit();
}

void DemonstrationStore::noteChange() {
  database_.run("UPDATE settings SET value = CAST(CAST(value AS INTEGER) + 1 AS TEXT) WHERE name = 'taughtTasks'");
}

std::int64_t DemonstrationStore::revision() {
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare("SELECT value FROM settings WHERE name = 'taughtTasks'");
  return row.step() ? row.integer(0) : 0;
}

}  // namespace service
