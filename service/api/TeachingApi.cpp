#include "service/api/TeachingApi.h"

#include <charconv>

#include "service/api/Routes.h"
#include "service/base/Configuration.h"
#include "service/base/RequestError.h"

namespace service {
namespace {

constexpr std::string_view kUploadPath = "/sdk/media/file/";
constexpr std::string_view kTaskPath = "/admin/tasks/";

/// Names and descriptions, which are short.
std::string shortString(const JsonObject& body, std::string_view key) {
  constexpr std::size_t kLongest = 1024;
  std::string text = body.string(key);
  if (text.size() > kLongest) body.complain(key, "must not be longer than " + std::to_string(kLongest) + " bytes");
  return text;
}

std::optional<std::int64_t> lengthOf(const HttpRequest& request) {
  const auto text = request.headers.value("Content-Length");
  std::int64_t length = 0;
  if (!text || std::from_chars(text->data(), text->data() + text->size(), length).ec != std::errc())
    return std::nullopt;
  return length;
}

std::optional<std::string> optionalString(const JsonObject& body, std::string_view key) {
  return body.has(key) ? std::optional(body.nonEmptyString(key)) : std::nullopt;
}

}  // namespace

TeachingApi::TeachingApi(const Configuration& configuration, DemonstrationStore& demonstrations, MediaFolder& media,
                         Now now)
    : configuration_(configuration),
      demonstrations_(demonstrations),
      media_(media),
      teaching_(demonstrations, media),
      now_(std::move(now)) {}

Demonstrator TeachingApi::demonstrator(const Identity& who) const {
  return {demonstrations_.ownerOf(who.secretKey), who.userId};
}

void TeachingApi::addTo(Routes& routes) {
  const auto bind = [this](auto method) {
    return [this, method](const Identity& who, const JsonObject& body) { return (this->*method)(who, body); };
  };
  routes.addSdk("/sdk/task/register", bind(&TeachingApi::registerTask));
  routes.addSdk("/sdk/snapshot/register", bind(&TeachingApi::registerSnapshot));
  routes.addSdk("/sdk/media/upload", bind(&TeachingApi::openUpload));
  const auto most = static_cast<std::uint64_t>(configuration_.teachingLimits().fileBytes);
  routes.addUpload(std::string(kUploadPath), most, [this](const HttpRequest& request) {
    return media_.receive(std::string_view(request.path).substr(kUploadPath.size()), lengthOf(request), now_());
  });
  addAdminTo(routes);
}

Json TeachingApi::registerTask(const Identity& who, const JsonObject& body) {
  for (const auto* key : {"taskName", "taskDescription", "status"}) shortString(body, key);
  body.integer("triggers");
  const Registration registration{shortString(body, "appBundleId"), shortString(body, "recordingKey"),
                                  body.boolean("openChatWindow")};
  teaching_.removeAbandoned(now_());
  return {{"insertedId", demonstrations_.registerTask(demonstrator(who), registration, now_())}};
}

Json TeachingApi::registerSnapshot(const Identity& who, const JsonObject& body) {
  for (const auto* key : {"snapshotName", "snapshotDescription"}) shortString(body, key);
  demonstrations_.registerSnapshot(demonstrator(who), shortString(body, "taskId"), body.integer("index"),
                                   body.at("snapshot"), now_());
  return nullptr;
}

Json TeachingApi::openUpload(const Identity& who, const JsonObject& body) {
  const Demonstrator owner = demonstrator(who);
  const UploadAddress address =
      media_.open(owner.owner, owner.userId, shortString(body, "viewName"), shortString(body, "extension"), now_());
  const std::string& base = configuration_.publicAddress().empty() ? baseAddress_ : configuration_.publicAddress();
  return {{"url", base + std::string(kUploadPath) + address.token}, {"key", address.key}};
}

void TeachingApi::addAdminTo(Routes& routes) {
  routes.addAdmin("/admin/tasks", [this](const HttpRequest&) {
    return jsonReply(200, "OK", Json{{"tasks", teaching_.list()}});
  });
  routes.addAdmin(std::string(kTaskPath), [this](const HttpRequest& request) {
    return jsonReply(200, "OK", teaching_.show(request.path.substr(kTaskPath.size())));
  });
  routes.addAdminPost("/admin/task/name", [this](const JsonObject& body) -> Json {
    body.allowOnly({"id", "title", "samples"});
    teaching_.name(body.string("id"), body.nonEmptyString("title"),
                   body.has("samples") ? body.strings("samples") : std::vector<std::string>());
    return nullptr;
  });
  routes.addAdminPost("/admin/task/slot", [this](const JsonObject& body) -> Json {
    body.allowOnly({"id", "slot", "name", "ask", "example", "choices"});
    teaching_.correct(body.string("id"), body.string("slot"),
                      {optionalString(body, "name"), optionalString(body, "ask"), optionalString(body, "example"),
                       body.has("choices") ? body.strings("choices") : std::vector<std::string>()});
    return nullptr;
  });
  routes.addAdminPost("/admin/task/remove", [this](const JsonObject& body) -> Json {
    body.allowOnly({"id"});
    teaching_.remove(body.string("id"));
    return nullptr;
  });
}

}  // namespace service
