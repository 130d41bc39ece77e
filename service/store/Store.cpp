#include "service/store/Store.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "service/base/LoadError.h"
#include "service/http/FileDescriptor.h"

namespace service {
namespace {

constexpr std::int64_t kSchemaVersion = 1;

constexpr const char* kSchema = R"sql(
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
  PRAGMA user_version = 1;
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
  if (version == 0) database.runAll(kSchema);
  transaction.commit();
}

/// Holds the folder against other services until it is let go of. A folder that cannot be held is used all the same.
FileDescriptor holdFolder(const std::filesystem::path& folder) {
  FileDescriptor held(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  while (held.isOpen() && ::flock(held.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  return held;
}

Database openDatabase(const std::filesystem::path& folder) {
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

Statement pageOf(Database& database, const std::string& columns, const std::string& table, const Page& page) {
  Statement statement = database.prepare("SELECT " + columns + " FROM " + table + " WHERE id > ? ORDER BY id LIMIT ?");
  statement.bind(page.after).bind(page.limit);
  return statement;
}

}  // namespace

Store::Store(const std::filesystem::path& folder) : database_(openDatabase(folder)) {}

void Store::addEvent(const EventRecord& event) {
  const std::lock_guard lock(mutex_);
  database_.prepare("INSERT INTO events(receivedAt, userId, eventName, taskId) VALUES(?, ?, ?, ?)")
      .bind(event.receivedAt)
      .bind(event.userId)
      .bind(event.eventName)
      .bind(event.taskId)
      .run();
}

void Store::addMessages(std::int64_t receivedAt, std::string_view userId, const std::vector<ChatMessage>& messages) {
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  Statement insert = database_.prepare(
      "INSERT OR IGNORE INTO messages(receivedAt, userId, message, isRemote, timestamp) VALUES(?, ?, ?, ?, ?)");
  for (const ChatMessage& message : messages) {
    insert.bind(receivedAt)
        .bind(userId)
        .bind(message.message)
        .bind(std::int64_t{message.isRemote})
        .bind(message.timestamp)
        .run();
  }
  transaction.commit();
}

void Store::addQuery(const QueryRecord& query) {
  const std::lock_guard lock(mutex_);
  database_.prepare("INSERT INTO queries(receivedAt, userId, query, outcome, taskId, score) VALUES(?, ?, ?, ?, ?, ?)")
      .bind(query.receivedAt)
      .bind(query.userId)
      .bind(query.query)
      .bind(query.outcome)
      .bind(query.taskId)
      .bind(query.score)
      .run();
}

std::vector<EventRecord> Store::events(const Page& page) {
  const std::lock_guard lock(mutex_);
  Statement row = pageOf(database_, "id, receivedAt, userId, eventName, taskId", "events", page);
  std::vector<EventRecord> records;
  while (row.step()) records.push_back({row.integer(0), row.integer(1), row.text(2), row.text(3), row.text(4)});
  return records;
}

std::vector<MessageRecord> Store::messages(const Page& page) {
  const std::lock_guard lock(mutex_);
  Statement row = pageOf(database_, "id, receivedAt, userId, message, isRemote, timestamp", "messages", page);
  std::vector<MessageRecord> records;
  while (row.step())
    records.push_back(
        {row.integer(0), row.integer(1), row.text(2), {row.text(3), row.integer(4) != 0, row.integer(5)}});
  return records;
}

std::vector<QueryRecord> Store::queries(const Page& page) {
  const std::lock_guard lock(mutex_);
  Statement row = pageOf(database_, "id, receivedAt, userId, query, outcome, taskId, score", "queries", page);
  std::vector<QueryRecord> records;
  while (row.step()) {
    records.push_back(
        {row.integer(0), row.integer(1), row.text(2), row.text(3), row.text(4), row.text(5), row.real(6)});
  }
  return records;
}

std::vector<ChatMessage> Store::chatOf(std::string_view userId, std::int64_t limit) {
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare(
      "SELECT message, isRemote, timestamp FROM messages WHERE userId = ? ORDER BY timestamp DESC, id DESC LIMIT ?");
  row.bind(userId).bind(limit);
  std::vector<ChatMessage> newestFirst;
  while (row.step()) newestFirst.push_back({row.text(0), row.integer(1) != 0, row.integer(2)});
  std::reverse(newestFirst.begin(), newestFirst.end());
  return newestFirst;
}

}  // namespace service
