#include "service/store/DataFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "service/base/LoadError.h"
#include "service/http/FileDescriptor.h"

namespace service {
namespace {

constexpr std::int64_t kSchemaVersion = 2;

/// What came with version 1.
constexpr const char* kChat = R"sql(
  CREATE TABLE events(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    receivedAt INTEGER NOT NULL, userId TEXT NOT NULL, eventName TEXT NOT NULL, taskId TEXT NOT NULL) STRICT;
  CREATE TABLE messages(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    receivedAt INTEGER NOT NULL, userId TEXT NOT NULL,
    message TEXT NOT NULL, isRemote INTEGER NOT NULL, timestamp INTEGER NOT NULL,
    UNIQUE(userId, timestamp, isRemote, message)) STRICT;
  CREATE TABLE queries(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    receivedAt INTEGER NOT NULL, userId TEXT NOT NULL,
    query TEXT NOT NULL, outcome TEXT NOT NULL, taskId TEXT NOT NULL, score REAL NOT NULL) STRICT;
)sql";

/// What came with version 2: demonstrations and what belongs to them.
constexpr const char* kDemonstrations = R"sql(
  CREATE TABLE demonstrations(
    id TEXT PRIMARY KEY,
    owner TEXT NOT NULL, userId TEXT NOT NULL, registeredAt INTEGER NOT NULL, changedAt INTEGER NOT NULL,
    appBundleId TEXT NOT NULL, recordingKey TEXT NOT NULL, opensChat INTEGER NOT NULL,
    isComplete INTEGER NOT NULL DEFAULT 0,
    document TEXT NOT NULL DEFAULT '') STRICT;
  CREATE TABLE snapshots(
    id INTEGER PRIMARY KEY,
    taskId TEXT NOT NULL REFERENCES demonstrations(id), position INTEGER NOT NULL, snapshot TEXT NOT NULL,
    action TEXT NOT NULL,
    UNIQUE(taskId, position)) STRICT;
  CREATE TABLE media(
    key TEXT PRIMARY KEY,
    owner TEXT NOT NULL, userId TEXT NOT NULL, viewName TEXT NOT NULL,
    token TEXT NOT NULL UNIQUE, expiresAt INTEGER NOT NULL,
    state TEXT NOT NULL, bytes INTEGER NOT NULL DEFAULT 0) STRICT;
  CREATE INDEX mediaOfOwner ON media(owner, state);
  CREATE INDEX mediaByExpiry ON media(state, expiresAt);
  CREATE TABLE settings(name TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT;
  INSERT INTO settings VALUES('taughtTasks', '0');
)sql";

std::int64_t schemaVersion(Database& database) {
  Statement statement = database.prepare("PRAGMA user_version");
  return statement.step() ? statement.integer(0) : 0;
}

void prepareSchema(Database& database, const std::string& name) {
  database.runAll("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;");
  // Looked at under the write lock: two services may be started on one folder at once.
  Transaction transaction(database);
  const std::int64_t version = schemaVersion(database);
  if (version > kSchemaVersion) {
    throw LoadError(name + ": written by a newer lumicor-service (version " + std::to_string(version) +
                    " of the database, this program knows " + std::to_string(kSchemaVersion) + ")");
  }
  if (version < 1) database.runAll(kChat);
  if (version < 2) database.runAll(kDemonstrations);
  database.runAll("PRAGMA user_version = 2");
  transaction.commit();
}

/// Holds the folder against other services until it is let go of. A folder that cannot be held is used all the same.
FileDescriptor holdFolder(const std::filesystem::path& folder) {
  FileDescriptor held(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  while (held.isOpen() && ::flock(held.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  return held;
}

}  // namespace

Database openDataFolder(const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "lumicor.sqlite";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, error)) throw LoadError(folder.string() + ": is not a usable folder");
  try {
    // A database changes to its journal without waiting for anybody: two services that begin on one folder take turns.
    const FileDescriptor held = holdFolder(folder);
    Database database(file);
    prepareSchema(database, file.string());
    return database;
  } catch (const DatabaseError& problem) {
    throw LoadError(file.string() + ": " + problem.what());
  }
}

}  // namespace service
