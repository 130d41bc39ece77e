#include "service/teaching/MediaFolder.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>

#include "service/base/Json.h"
#include "service/base/LoadError.h"
#include "service/base/RandomName.h"
#include "service/base/RequestError.h"
#include "service/base/Sha256.h"
#include "service/http/FileDescriptor.h"
#include "service/store/DataFolder.h"

namespace service {
namespace {

bool isExtension(std::string_view text) {
  const auto isPlain = [](unsigned char c) { return c < 0x80 && std::isalnum(c) != 0; };
  return !text.empty() && text.size() <= 8 && std::all_of(text.begin(), text.end(), isPlain);
}

std::filesystem::path madeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, error)) throw LoadError(folder.string() + ": is not a usable folder");
  return folder;
}

/// Another service may work on the same folder: only what has been left alone for longer than any upload may take.
void removeLeftovers(const std::filesystem::path& folder) {
  std::error_code error;
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".part" && entry.last_write_time(error) < longAgo)
      std::filesystem::remove(entry.path(), error);
  }
}

HttpResponse reply(int status, std::string_view message) {
  OrderedJson body;
  body["statusCode"] = status;
  body["message"] = message;
  return {status, "application/json", writeJson(body), {{"Cache-Control", "no-store"}}};
}

}  // namespace

/// One file on its way: written beside its name, and given its name when it is whole.
class MediaFolder::Upload final : public BodyReceiver {
 public:
  Upload(MediaFolder& folder, std::string key, std::int64_t most)
      : folder_(folder),
        key_(std::move(key)),
        most_(most),
        file_(::open(folder_.partOf(key_).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600)) {}

  ~Upload() override {
    if (isWhole_) return;
    ::unlink(folder_.partOf(key_).c_str());
    folder_.forget(key_);
  }

  bool take(std::string_view bytes) override {
    if (written_ + static_cast<std::int64_t>(bytes.size()) > most_)
      return refuse(413, "the file is larger than is accepted");
    while (!bytes.empty()) {
      const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return refuse(500, "the service failed");
      bytes.remove_prefix(static_cast<std::size_t>(count));
      written_ += count;
    }
    return true;
  }

  HttpResponse refusal() override { return reply(status_, message_); }

  HttpResponse finish() override {
    const std::filesystem::path part = folder_.partOf(key_);
    const bool isKept = file_.isOpen() && ::fdatasync(file_.get()) == 0 &&
                        ::rename(part.c_str(), (folder_.folder_ / key_).c_str()) == 0;
    if (!isKept) return reply(500, "the service failed");
    folder_.complete(key_, written_);
    isWhole_ = true;
    return reply(200, "OK");
  }

 private:
  bool refuse(int status, std::string_view message) {
    status_ = status;
    message_ = message;
    return false;
  }

  MediaFolder& folder_;
  const std::string key_;
  const std::int64_t most_;
  FileDescriptor file_;
  std::int64_t written_ = 0;
  bool isWhole_ = false;
  int status_ = 500;
  std::string_view message_;
};

MediaFolder::MediaFolder(const std::filesystem::path& dataFolder, TeachingLimits limits)
    : folder_(dataFolder / "media"), limits_(limits), database_(openDataFolder(dataFolder)) {
  removeLeftovers(madeFolder(folder_));
}

UploadAddress MediaFolder::open(std::string_view owner, std::string_view userId, std::string_view viewName,
                                const std::string& extension, std::int64_t now) {
  if (!isExtension(extension)) throw RequestError(400, "extension: must be 1 to 8 letters or digits");
  const UploadAddress address{randomName(), randomName() + "." + extension};
  const std::lock_guard lock(mutex_);
  Transaction transaction(database_);
  // An upload that its process did not survive holds its place no longer than one that is under way could take.
  constexpr std::int64_t kLongestUpload = 3'600'000;
  for (const auto& [state, before] : {std::pair("waiting", now), std::pair("coming", now - kLongestUpload)})
    database_.prepare("DELETE FROM media WHERE state = ? AND expiresAt < ?")
        .bind(std::string_view(state))
        .bind(before)
        .run();
  Statement open = database_.prepare("SELECT count(*) FROM media WHERE owner = ? AND state = 'waiting'");
  open.bind(owner);
  if (open.step() && open.integer(0) >= limits_.openAddresses)
    throw RequestError(429, "too many upload addresses are waiting for their files");
  database_
      .prepare(
          "INSERT INTO media(key, owner, userId, viewName, token, expiresAt, state) "
          "VALUES(?, ?, ?, ?, ?, ?, 'waiting')")
      .bind(address.key)
      .bind(owner)
      .bind(userId)
      .bind(viewName)
      .bind(sha256(address.token))
      .bind(now + limits_.addressTime)
      .run();
  transaction.commit();
  return address;
}

std::unique_ptr<BodyReceiver> MediaFolder::receive(std::string_view token, std::optional<std::int64_t> length,
                                                   std::int64_t now) {
  std::string key;
  std::int64_t most = 0;
  {
    const std::lock_guard lock(mutex_);
    Transaction transaction(database_);
    Statement find =
        database_.prepare("SELECT key, owner FROM media WHERE token = ? AND state = 'waiting' AND expiresAt > ?");
    find.bind(sha256(token)).bind(now);
    if (!find.step()) throw RequestError(404, "this upload address does not exist, was used or has expired");
    key = find.text(0);
    const std::string owner = find.text(1);
    Statement sum = database_.prepare("SELECT coalesce(sum(bytes), 0) FROM media WHERE owner = ?");
    sum.bind(owner);
    sum.step();
    most = std::min(limits_.fileBytes, limits_.keyBytes - sum.integer(0));
    if (most <= 0 || length.value_or(0) > most) throw RequestError(413, "there is no room for the file");
    // What is announced is reserved, so that files that come at the same time stay within the limit together.
    most = length.value_or(most);
    database_.prepare("UPDATE media SET state = 'coming', bytes = ? WHERE key = ?").bind(most).bind(key).run();
    transaction.commit();
  }
  return std::make_unique<Upload>(*this, std::move(key), most);
}

void MediaFolder::complete(const std::string& key, std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  database_.prepare("UPDATE media SET state = 'unnamed', bytes = ? WHERE key = ?").bind(bytes).bind(key).run();
}

void MediaFolder::forget(const std::string& key) noexcept {
  try {
    const std::lock_guard lock(mutex_);
    database_.prepare("DELETE FROM media WHERE key = ?").bind(key).run();
  } catch (const std::exception&) {
    // It goes with the addresses that have expired.
  }
}

void MediaFolder::remove(std::string_view owner, std::string_view userId, const std::vector<std::string>& keys) {
  const std::lock_guard lock(mutex_);
  for (const std::string& key : keys) {
    Statement find = database_.prepare(
        "SELECT key FROM media WHERE key = ? AND owner = ? AND userId = ? AND state IN ('kept', 'unnamed')");
    find.bind(key).bind(owner).bind(userId);
    if (find.step()) erase(find.text(0));
  }
}

void MediaFolder::removeUnnamed(std::int64_t now) {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> keys;
  Statement find = database_.prepare("SELECT key FROM media WHERE state = 'unnamed' AND expiresAt < ?");
  find.bind(now - limits_.demonstrationTime);
  while (find.step()) keys.push_back(find.text(0));
  for (const std::string& key : keys) erase(key);
}

void MediaFolder::erase(const std::string& key) {
  std::error_code error;
  std::filesystem::remove(folder_ / key, error);
  database_.prepare("DELETE FROM media WHERE key = ?").bind(key).run();
}

}  // namespace service
