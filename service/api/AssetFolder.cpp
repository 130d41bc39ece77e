#include "service/api/AssetFolder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fcntl.h>
#include <sys/stat.h>

#include "service/base/LoadError.h"
#include "service/base/RequestError.h"
#include "service/http/FileDescriptor.h"

namespace service {
namespace {

constexpr off_t kMaximumSize = 16 << 20;

bool isPlainName(std::string_view name) {
  const auto isPlain = [](unsigned char c) { return std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.'; };
  return !name.empty() && name.size() <= 200 && !name.starts_with('.') &&
         std::all_of(name.begin(), name.end(), isPlain);
}

std::string mediaType(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 11> kTypes{{{".png", "image/png"},
                                                                                  {".jpg", "image/jpeg"},
                                                                                  {".jpeg", "image/jpeg"},
                                                                                  {".gif", "image/gif"},
                                                                                  {".webp", "image/webp"},
                                                                                  {".svg", "image/svg+xml"},
                                                                                  {".otf", "font/otf"},
                                                                                  {".ttf", "font/ttf"},
                                                                                  {".json", "application/json"},
                                                                                  {".txt", "text/plain"},
                                                                                  {".mp4", "video/mp4"}}};
  for (const auto& [ending, type] : kTypes) {
    if (name.ends_with(ending)) return std::string(type);
  }
  return "application/octet-stream";
}

std::string readAll(const FileDescriptor& file, std::size_t size) {
  std::string content(size, '\0');
  std::size_t done = 0;
  while (done < size) {
    const ssize_t part = ::read(file.get(), content.data() + done, size - done);
    if (part <= 0) break;
    done += static_cast<std::size_t>(part);
  }
  content.resize(done);
  return content;
}

}  // namespace

AssetFolder::AssetFolder(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code error;
  if (!std::filesystem::is_directory(folder_, error)) throw LoadError(folder_.string() + ": is not a folder");
}

FileDescriptor AssetFolder::open(std::string_view name, std::size_t& size) const {
  if (!isPlainName(name)) return FileDescriptor();
  const std::filesystem::path path = folder_ / name;
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat facts {};
  if (!file.isOpen() || ::fstat(file.get(), &facts) != 0) return FileDescriptor();
  if (!S_ISREG(facts.st_mode) || facts.st_size > kMaximumSize) return FileDescriptor();
  size = static_cast<std::size_t>(facts.st_size);
  return file;
}

bool AssetFolder::has(std::string_view name) const {
  std::size_t size = 0;
  return open(name, size).isOpen();
}

HttpResponse AssetFolder::serve(std::string_view name) const {
  std::size_t size = 0;
  const FileDescriptor file = open(name, size);
  if (!file.isOpen()) throw RequestError(404, "there is no such asset");
  return {200,
          mediaType(name),
          readAll(file, size),
          {{"X-Content-Type-Options", "nosniff"}, {"Cache-Control", "max-age=300"}}};
}

}  // namespace service
