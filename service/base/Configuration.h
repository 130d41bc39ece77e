#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "service/base/Json.h"
#include "service/base/TeachingLimits.h"

namespace service {

/// What an application receives when it starts, and which keys it may start with. Never changes once loaded.
class Configuration {
 public:
  /// Reads and checks a file. With a style sheet, a file that holds a whole styles record, that stands in the place of
  /// the layout's styles. Throws LoadError, naming the file and the field.
  static Configuration load(const std::filesystem::path& file,
                            const std::optional<std::filesystem::path>& styleSheet = std::nullopt);
  /// The same for a text; throws JsonError.
  static Configuration parse(std::string_view text);

  /// Whether the service serves applications with this key. With no list of keys every non-empty key is accepted.
  bool accepts(const std::string& secretKey) const;

  /// How the host says that applications reach the service; empty when it does not.
  const std::string& publicAddress() const { return publicAddress_; }
  const TeachingLimits& teachingLimits() const { return teachingLimits_; }

  /// Whether "chatHistory" is to be what the user uploaded earlier.
  bool returnsUploadedChat() const { return returnsUploadedChat_; }

  /// The "data" of the reply, its relative addresses completed with `baseAddress` (such as "http://127.0.0.1:8480").
  Json dataFor(std::string_view baseAddress) const;

 private:
  std::set<std::string> acceptedKeys_;
  std::string publicAddress_;
  TeachingLimits teachingLimits_;
  Json data_ = Json::object();
  bool returnsUploadedChat_ = false;
};

}  // namespace service
