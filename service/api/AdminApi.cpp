#include "service/api/AdminApi.h"

#include <algorithm>
#include <charconv>

#include "service/api/Routes.h"
#include "service/base/RequestError.h"
#include "service/store/Store.h"

namespace service {
namespace {

/// "?after=ID&limit=N", both optional.
Page readPage(std::string_view query) {
  Page page;
  while (!query.empty()) {
    const std::string_view pair = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(query.size(), pair.size() + 1));
    const std::size_t equals = std::min(pair.find('='), pair.size());
    const std::string_view name = pair.substr(0, equals);
    const std::string_view text = pair.substr(std::min(pair.size(), equals + 1));
    std::int64_t number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && number >= 0;
    if (!isNumber || (name != "after" && name != "limit"))
      throw RequestError(400, "the query may hold after=NUMBER and limit=NUMBER only");
    (name == "after" ? page.after : page.limit) = number;
  }
  page.limit = std::min<std::int64_t>(page.limit, 1000);
  return page;
}

Json describe(const EventRecord& event) {
  return {{"id", event.id},
          {"receivedAt", event.receivedAt},
          {"userId", event.userId},
          {"eventName", event.eventName},
          {"taskId", event.taskId}};
}

Json describe(const MessageRecord& record) {
  return {{"id", record.id},
          {"receivedAt", record.receivedAt},
          {"userId", record.userId},
          {"message", record.message.message},
          {"isRemote", record.message.isRemote},
          {"timestamp", record.message.timestamp}};
}

Json describe(const QueryRecord& query) {
  return {{"id", query.id},       {"receivedAt", query.receivedAt}, {"userId", query.userId},
          {"query", query.query}, {"outcome", query.outcome},       {"taskId", query.taskId},
          {"score", query.score}};
}

template <typename Record>
void addList(Routes& routes, Store& store, const std::string& name, std::vector<Record> (Store::*read)(const Page&)) {
  routes.addAdmin("/admin/" + name, [&store, name, read](const HttpRequest& request) {
    Json list = Json::array();
    for (const Record& record : (store.*read)(readPage(request.query))) list.push_back(describe(record));
    return jsonReply(200, "OK", Json{{name, std::move(list)}});
  });
}

}  // namespace

void addAdminRoutes(Routes& routes, Store& store) {
  addList(routes, store, "events", &Store::events);
  addList(routes, store, "messages", &Store::messages);
  addList(routes, store, "queries", &Store::queries);
}

}  // namespace service
