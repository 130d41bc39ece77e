#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "service/store/Database.h"

namespace service {

/// One line of a chat, as the application shows it.
struct ChatMessage {
  std::string message;
  bool isRemote = false;       ///< from the assistant
  std::int64_t timestamp = 0;  ///< milliseconds since 1970, by the application's clock
};

struct EventRecord {
  std::int64_t id = 0;
  std::int64_t receivedAt = 0;  ///< milliseconds since 1970
  std::string userId;
  std::string eventName;
  std::string taskId;
};

struct MessageRecord {
  std::int64_t id = 0;
  std::int64_t receivedAt = 0;
  std::string userId;
  ChatMessage message;
};

struct QueryRecord {
  std::int64_t id = 0;
  std::int64_t receivedAt = 0;
  std::string userId;
  std::string query;
  std::string outcome;  ///< "steps", "text", "question" or "no match"
  std::string taskId;
  double score = 0;
};

/// Which part of a list to read: at most `limit` records, those that came after the one with id `after`.
struct Page {
  std::int64_t after = 0;
  std::int64_t limit = 100;
};

/// What the service keeps: events, uploaded chats and the requests it was asked, in the order they came.
/// Any thread. A record is in the file when the call returns. Throws DatabaseError.
class Store {
 public:
  /// Opens or creates "lumicor.sqlite" in the folder, which is made when missing. Throws LoadError when the folder or
  /// file is not usable or was written by a newer version.
  explicit Store(const std::filesystem::path& folder);

  void addEvent(const EventRecord& event);
  /// All of them or none. A message that this user uploaded before is not kept twice, since an application whose
  /// upload went unanswered sends it again.
  void addMessages(std::int64_t receivedAt, std::string_view userId, const std::vector<ChatMessage>& messages);
  void addQuery(const QueryRecord& query);

  std::vector<EventRecord> events(const Page& page);
  std::vector<MessageRecord> messages(const Page& page);
  std::vector<QueryRecord> queries(const Page& page);
  /// The newest messages that a user uploaded, oldest first.
  std::vector<ChatMessage> chatOf(std::string_view userId, std::int64_t limit);

 private:
  std::mutex mutex_;
  Database database_;
};

}  // namespace service
