#include "platform/foundation/URL.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace platform {

namespace {

constexpr std::size_t longestAddress = 16 << 10;

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string lowered(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

bool hasOnlyAllowedCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c <= ' ' || c > '~' || std::string_view("<>\"{}|\\^`").find(c) != std::string_view::npos) return false;
    if (c == '%' && !(i + 2 < text.size() && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]))) return false;
  }
  return true;
}

/// The length of the scheme before its colon, or 0.
std::size_t schemeLength(std::string_view text) {
  if (text.empty() || !isLetter(text[0])) return 0;
  std::size_t i = 1;
  while (i < text.size() &&
         (isLetter(text[i]) || isDigit(text[i]) || text[i] == '+' || text[i] == '-' || text[i] == '.'))
    ++i;
  return i < text.size() && text[i] == ':' ? i : 0;
}

std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain += text[i];
      continue;
    }
    unsigned value = 0;
    std::from_chars(text.data() + i + 1, text.data() + i + 3, value, 16);
    plain += static_cast<char>(value);
    i += 2;
  }
  return plain;
}

/// RFC 3986, 5.2.4: "/a/b/../c/./d" is "/a/c/d".
std::string withoutDots(std::string_view path) {
  std::string result;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/', path.front() == '/' ? 1 : 0), path.size());
    const std::string_view segment = path.substr(0, end);
    path.remove_prefix(end);
    if (segment == "/.." || segment == "..") {
      result.erase(std::min(result.rfind('/'), result.size()));
      if (path.empty()) result += '/';
    } else if (segment == "/." || segment == ".") {
      if (path.empty()) result += '/';
    } else {
      result += segment;
    }
  }
  return result;
}

struct Authority {
  std::string host;
  std::optional<std::uint16_t> port;
};

/// "[::1]:8080" or "user@host:80"; none when it is malformed.
std::optional<Authority> readAuthority(std::string_view text) {
  if (const std::size_t at = text.rfind('@'); at != std::string_view::npos) text.remove_prefix(at + 1);
  Authority authority;
  std::string_view rest;
  if (text.starts_with('[')) {
    const std::size_t close = text.find(']');
    if (close == std::string_view::npos) return std::nullopt;
    authority.host = lowered(text.substr(1, close - 1));
    rest = text.substr(close + 1);
    if (!rest.empty() && rest.front() != ':') return std::nullopt;
  } else {
    const std::size_t colon = std::min(text.find(':'), text.size());
    authority.host = lowered(text.substr(0, colon));
    rest = text.substr(colon);
    if (authority.host.find_first_of("[]") != std::string::npos) return std::nullopt;
  }
  if (rest.size() <= 1) return authority;  // "host:" counts as no port
  std::uint16_t port = 0;
  const char* const end = rest.data() + rest.size();
  const auto read = std::from_chars(rest.data() + 1, end, port);
  if (read.ec != std::errc{} || read.ptr != end) return std::nullopt;
  authority.port = port;
  return authority;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty() || text.size() > longestAddress || !hasOnlyAllowedCharacters(text)) return std::nullopt;
  URL url;
  url.text_ = text;
  std::string_view rest = text.substr(0, text.find('#'));
  if (const std::size_t length = schemeLength(rest)) {
    url.scheme_ = lowered(rest.substr(0, length));
    rest.remove_prefix(length + 1);
  }
  if (const std::size_t mark = rest.find('?'); mark != std::string_view::npos) {
    url.query_ = rest.substr(mark + 1);
    rest = rest.substr(0, mark);
  }
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    if (const std::size_t at = rest.substr(0, slash).rfind('@'); at != std::string_view::npos) {
      url.userInfoStart_ = static_cast<std::size_t>(rest.data() - text.data());
      url.userInfoLength_ = at;
    }
    const std::optional<Authority> authority = readAuthority(rest.substr(0, slash));
    if (!authority) return std::nullopt;
    url.host_ = authority->host;
    url.port_ = authority->port;
    rest.remove_prefix(slash);
  }
  url.path_ = rest;
  return url;
}

URL URL::fileURL(std::string_view path) {
  static constexpr std::string_view kept = "/-_.~!$&'()*+,;=:@";
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string absolute(path);
  if (!path.starts_with('/')) {
    std::error_code error;
    absolute = (std::filesystem::current_path(error) / path).string();
    if (error) absolute = "/" + std::string(path);  // the folder is gone, and so is the file
  }
  URL url;
  url.scheme_ = "file";
  for (const char c : absolute) {
    if (isLetter(c) || isDigit(c) || kept.find(c) != std::string_view::npos) {
      url.path_ += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url.path_ += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  url.text_ = "file://" + url.path_;
  return url;
}

URL URL::appendingPathComponent(std::string_view name) const {
  if (!isFileURL()) return *this;
  std::string whole = path();
  if (!whole.ends_with('/')) whole += '/';
  while (name.starts_with('/')) name.remove_prefix(1);
  return fileURL(whole.append(name));
}

std::uint16_t URL::effectivePort() const {
  if (port_) return *port_;
  return scheme_ == "https" ? 443 : scheme_ == "http" ? 80 : 0;
}

URL URL::withoutUserInfo() const {
  if (userInfoStart_ == 0) return *this;
  URL result = *this;
  result.text_.erase(userInfoStart_, userInfoLength_ + 1);
  result.userInfoStart_ = result.userInfoLength_ = 0;
  return result;
}

std::string URL::path() const { return unescaped(path_); }

std::string URL::lastPathComponent() const {
  std::string_view path = path_;
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  const std::size_t slash = path.rfind('/');
  return unescaped(slash == std::string_view::npos || path == "/" ? path : path.substr(slash + 1));
}

bool URL::hasSameOrigin(const URL& other) const {
  return scheme_ == other.scheme_ && host_ == other.host_ && effectivePort() == other.effectivePort();
}

std::optional<URL> URL::resolving(std::string_view reference) const {
  if (schemeLength(reference)) return parse(reference);
  if (reference.starts_with("//")) return parse(scheme_ + ":" + std::string(reference));
  const std::string_view whole = text_;
  const std::size_t authority = whole.find("//");
  const std::size_t pathStart = authority == std::string_view::npos
                                    ? scheme_.size() + (scheme_.empty() ? 0 : 1)
                                    : std::min(whole.find_first_of("/?#", authority + 2), whole.size());
  const std::string base(whole.substr(0, pathStart));
  const std::size_t pathEnd = std::min(reference.find_first_of("?#"), reference.size());
  const std::string_view path = reference.substr(0, pathEnd);
  const std::string_view after = reference.substr(pathEnd);
  if (path.empty()) {
    if (after.starts_with('?')) return parse(base + path_ + std::string(after));
    return parse(base + path_ + (query_.empty() ? "" : "?" + query_) + std::string(after));
  }
  std::string merged;
  if (path.front() == '/') {
    merged = path;
  } else {
    const std::size_t slash = path_.rfind('/');
    merged = (slash == std::string::npos ? "/" : path_.substr(0, slash + 1)) + std::string(path);
  }
  return parse(base + withoutDots(merged) + std::string(after));
}

}  // namespace platform
