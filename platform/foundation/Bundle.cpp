#include "platform/foundation/Bundle.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <system_error>

namespace platform {

Bundle& Bundle::main() {
  static Bundle* const only = new Bundle;
  return *only;
}

Bundle::Bundle() {
  std::error_code error;
  path_ = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error) path_ = std::filesystem::current_path(error);
  resources_ = path_ / "Resources";
  std::ifstream file(path_ / "Info.json", std::ios::binary);
  if (!file) return;
  const Data bytes(std::istreambuf_iterator<char>(file), {});
  Result<JSONValue> info = JSONValue::parse(bytes);
  if (info && info->asObject()) {
    info_ = std::move(*info);
  } else {
    std::fprintf(stderr, "bundle: Info.json is not a JSON object and was left out. %s\n", info.error().c_str());
  }
}

void Bundle::setInfoDictionary(JSONValue info) { info_ = info.asObject() ? std::move(info) : JSONValue::object(); }

std::optional<std::string> Bundle::bundleIdentifier() const {
  const JSONValue* const entry = info_.find("CFBundleIdentifier");
  if (!entry || !entry->asString()) return std::nullopt;
  return *entry->asString();
}

std::optional<std::filesystem::path> Bundle::pathForResource(std::string_view name) const {
  std::filesystem::path path = resources_ / name;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  return path;
}

}  // namespace platform
