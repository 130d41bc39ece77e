#include "platform/foundation/UserDefaultsFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::string_view magic = "defaults1 ";

/// FNV-1a.
std::uint64_t checksum(std::string_view bytes, std::uint64_t sum = 0xcbf29ce484222325) {
  for (const char c : bytes) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return sum;
}

std::string hexadecimal(std::uint64_t value) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(value));
  return text;
}

std::uint64_t sumOf(std::string_view key, UserDefaultsFile::Type type, std::string_view value) {
  const char mark = static_cast<char>(type);
  return checksum(value, checksum(key, checksum({&mark, 1})));
}

std::string reasonOf(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

/// A descriptor that is closed at the end of its scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  const int number_;
};

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// Makes a change of the folder itself, such as a new name, last.
std::optional<std::string> syncDirectory(const std::filesystem::path& directory) {
  const Descriptor folder(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || ::fsync(folder.number()) != 0) return reasonOf("the folder could not be synchronised");
  return std::nullopt;
}

template <class N>
bool readNumber(std::string_view& text, N& number, int base) {
  const std::size_t end = text.find_first_of(" \n");
  if (end == std::string_view::npos) return false;
  const auto read = std::from_chars(text.data(), text.data() + end, number, base);
  if (read.ec != std::errc{} || read.ptr != text.data() + end) return false;
  text.remove_prefix(end + 1);
  return true;
}

}  // namespace

std::string UserDefaultsFile::nameFor(std::string_view key) {
  constexpr std::size_t longestReadable = 120;
  std::string name = key.empty() ? "%" : "";
  for (const char c : key) {
    const bool isSafe = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    // Capitals are marked, for file systems that do not tell them from small letters.
    if (c >= 'A' && c <= 'Z') {
      name += {'+', static_cast<char>(c)};
    } else if (isSafe) {
      name += c;
    } else {
      char escaped[4];
      std::snprintf(escaped, sizeof escaped, "%%%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      name += escaped;
    }
  }
  if (name.size() > longestReadable) name = name.substr(0, longestReadable) + "." + hexadecimal(checksum(key));
  return name + std::string(extension);
}

Data UserDefaultsFile::encode(std::string_view key, const Value& value) {
  Data bytes(magic);
  bytes += {static_cast<char>(value.type), ' '};
  bytes += std::to_string(key.size()) + " " + std::to_string(value.bytes.size()) + " ";
  bytes += hexadecimal(sumOf(key, value.type, value.bytes)) + "\n";
  bytes += key;
  bytes += value.bytes;
  return bytes;
}

std::optional<UserDefaultsFile::Entry> UserDefaultsFile::decode(std::string_view bytes) {
  if (!bytes.starts_with(magic) || bytes.size() < magic.size() + 2) return std::nullopt;
  bytes.remove_prefix(magic.size());
  const char mark = bytes[0];
  if (std::string_view("dsib").find(mark) == std::string_view::npos) return std::nullopt;
  bytes.remove_prefix(2);
  std::size_t keySize = 0;
  std::size_t valueSize = 0;
  std::uint64_t sum = 0;
  if (!readNumber(bytes, keySize, 10) || !readNumber(bytes, valueSize, 10) || !readNumber(bytes, sum, 16)) {
    return std::nullopt;
  }
  if (keySize > bytes.size() || valueSize != bytes.size() - keySize) return std::nullopt;
  Entry entry{std::string(bytes.substr(0, keySize)), {Type{mark}, Data(bytes.substr(keySize))}};
  if (sumOf(entry.key, entry.value.type, entry.value.bytes) != sum) return std::nullopt;
  return entry;
}

int UserDefaultsFile::openFile(const char* file) {
  return ::open(file, O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // a pipe of that name must not keep us waiting
}

UserDefaultsFile::Content UserDefaultsFile::read(const std::filesystem::path& file, std::size_t mostBytes,
                                                 Opener open) {
  const Descriptor opened(open(file.c_str()));
  if (!opened && errno == ENOENT) return {};
  struct stat status {};
  if (!opened || ::fstat(opened.number(), &status) != 0) return {std::nullopt, std::strerror(errno)};
  if (!S_ISREG(status.st_mode)) return {std::nullopt, "it is no plain file"};
  Data bytes(std::min(static_cast<std::size_t>(status.st_size), mostBytes) + 1, '\0');
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = ::read(opened.number(), bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return {std::nullopt, std::strerror(errno)};
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return {std::move(bytes), {}};
}

std::optional<std::string> UserDefaultsFile::write(const std::filesystem::path& directory, const std::string& name,
                                                   std::string_view bytes) {
  static std::atomic<unsigned> counter{0};
  const std::filesystem::path target = directory / name;
  const std::string temporary =
      target.string() + ".new-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1));
  std::optional<std::string> failure;
  {
    const Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file) return reasonOf("a new file could not be made");
    if (!writeAll(file.number(), bytes) || ::fsync(file.number()) != 0) failure = reasonOf("it could not be written");
  }
  if (!failure && ::rename(temporary.c_str(), target.c_str()) != 0) failure = reasonOf("it could not be replaced");
  if (failure) {
    ::unlink(temporary.c_str());
    return failure;
  }
  return syncDirectory(directory);
}

std::optional<std::string> UserDefaultsFile::remove(const std::filesystem::path& directory, const std::string& name) {
  if (::unlink((directory / name).c_str()) != 0 && errno != ENOENT) return reasonOf("it could not be removed");
  return syncDirectory(directory);
}

bool UserDefaultsFile::isAbandoned(const std::filesystem::path& file) {
  constexpr std::string_view mark = ".new-";
  const std::string name = file.filename().string();
  const std::size_t at = name.rfind(mark);
  if (at == std::string::npos) return false;
  int process = 0;
  const char* const digits = name.data() + at + mark.size();
  if (std::from_chars(digits, name.data() + name.size(), process).ec != std::errc{} || process <= 0) return false;
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace platform
