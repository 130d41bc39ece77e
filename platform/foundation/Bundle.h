#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/JSONValue.h"

namespace platform {

/// What the application says about itself. Read from the file "Info.json" beside the program when there is one; a host
/// may set it instead. Main thread, except that reading is safe on any thread once the application runs.
class Bundle {
 public:
  static Bundle& main();

  /// The entry "CFBundleIdentifier" when it is a text.
  std::optional<std::string> bundleIdentifier() const;
  /// An entry of the information, or none.
  const JSONValue* objectForInfoDictionaryKey(std::string_view key) const { return info_.find(key); }
  const JSONValue& infoDictionary() const { return info_; }
  /// Replaces the information; anything but an object counts as an empty one.
  void setInfoDictionary(JSONValue info);

  /// The folder of the program.
  const std::filesystem::path& bundlePath() const { return path_; }
  /// Where resources lie: the folder "Resources" beside the program unless the host says otherwise.
  const std::filesystem::path& resourcePath() const { return resources_; }
  void setResourcePath(std::filesystem::path path) { resources_ = std::move(path); }
  /// The path of a resource file, or none when there is no such file.
  std::optional<std::filesystem::path> pathForResource(std::string_view name) const;

 private:
  Bundle();

  std::filesystem::path path_;
  std::filesystem::path resources_;
  JSONValue info_ = JSONValue::object();
};

}  // namespace platform
