#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// An address, checked once when it is made. A value; any thread.
class URL {
 public:
  /// None for text that forms no address: nothing at all, blanks, control characters, characters outside ASCII or those
  /// that must be escaped (<>"{}|\^`), a broken % escape, a port that is no number below 65536, more than 16 KiB.
  /// Text without a scheme forms a relative address, which no session can load.
  static std::optional<URL> parse(std::string_view text);
  /// The address of a file on this machine. A relative path means what it does now, in the process's folder.
  static URL fileURL(std::string_view path);

  const std::string& absoluteString() const { return text_; }
  /// In lower case; empty for a relative address.
  const std::string& scheme() const { return scheme_; }
  /// In lower case, without brackets round an IPv6 address; empty when there is none.
  const std::string& host() const { return host_; }
  std::optional<std::uint16_t> port() const { return port_; }
  /// The port, or the scheme's own one (80, 443), or 0.
  std::uint16_t effectivePort() const;
  /// Unescaped: for a file address this is the file's path. Empty when there is none.
  std::string path() const;
  /// As written, after the "?".
  const std::string& query() const { return query_; }
  /// A name and perhaps a password, as written before the "@" of the host. A session sends them to the server.
  std::string_view userInfo() const { return std::string_view(text_).substr(userInfoStart_, userInfoLength_); }
  URL withoutUserInfo() const;
  /// This file address and one more name below it. Anything but a file address stays as it is.
  URL appendingPathComponent(std::string_view name) const;
  /// The last part of the path, unescaped.
  std::string lastPathComponent() const;
  bool isFileURL() const { return scheme_ == "file"; }
  bool isHTTP() const { return (scheme_ == "http" || scheme_ == "https") && !host_.empty(); }
  bool hasSameOrigin(const URL& other) const;

  /// What a reference (a "Location" header) means when read at this address.
  std::optional<URL> resolving(std::string_view reference) const;

  friend bool operator==(const URL& a, const URL& b) { return a.text_ == b.text_; }

 private:
  URL() = default;

  std::string text_;
  std::string scheme_;
  std::string host_;
  std::string path_;
  std::string query_;
  std::optional<std::uint16_t> port_;
  std::size_t userInfoStart_ = 0;
  std::size_t userInfoLength_ = 0;
};

}  // namespace platform
