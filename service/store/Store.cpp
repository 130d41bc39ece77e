#include "service/store/Store.h"

#include <algorithm>

#include "service/store/DataFolder.h"

namespace service {
namespace {

Statement pageOf(Database& database, const std::string& columns, const std::string& table, const Page& page) {
  Statement statement = database.prepare("SELECT " + columns + " FROM " + table + " WHERE id > ? ORDER BY id LIMIT ?");
  statement.bind(page.after).bind(page.limit);
  return statement;
}

}  // namespace

Store::Store(const std::filesystem::path& folder) : database_(openDataFolder(folder)) {}

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
