#include "service/api/LookChecks.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "service/api/AssetFolder.h"

namespace service {
namespace {

constexpr std::string_view kAssets = "/assets/";

/// Three, six or eight hexadecimal digits; what stands around them does not count.
bool isColour(std::string_view text) {
  const auto isDigit = [](unsigned char c) { return std::isalnum(c) != 0; };
  while (!text.empty() && !isDigit(text.front())) text.remove_prefix(1);
  while (!text.empty() && !isDigit(text.back())) text.remove_suffix(1);
  return (text.size() == 3 || text.size() == 6 || text.size() == 8) &&
         std::ranges::all_of(text, [](unsigned char c) { return std::isxdigit(c) != 0; });
}

class Checks {
 public:
  explicit Checks(const AssetFolder* assets) : assets_(assets) {}

  void colour(const Json& styles, const char* key) {
    const std::string value = styles.at(key).get<std::string>();
    if (!isColour(value)) warn("styles", key, "\"" + value + "\" is no colour like #1f4d3a");
  }
  void size(const Json& object, const char* place, const char* key) {
    if (object.at(key).get<double>() <= 0) warn(place, key, "is not above 0");
  }
  void asset(const Json& object, const char* place, const char* key) {
    const std::string address = object.at(key).get<std::string>();
    if (!address.starts_with(kAssets)) return;
    const std::string_view name = std::string_view(address).substr(kAssets.size());
    if (!assets_ || !assets_->has(name)) warn(place, key, address + " is not among the assets");
  }
  std::vector<std::string> take() { return std::move(warnings_); }

 private:
  void warn(const char* place, const char* key, const std::string& what) {
    const std::string path = *place ? std::string(place) + "." + key : key;
    warnings_.push_back("layoutData." + path + ": " + what);
  }

  const AssetFolder* assets_;
  std::vector<std::string> warnings_;
};

}  // namespace

std::vector<std::string> lookWarnings(const Json& configuration, const AssetFolder* assets) {
  if (!configuration.contains("layoutData")) return {};
  const Json& layout = configuration.at("layoutData");
  const Json& styles = layout.at("styles");
  Checks checks(assets);
  for (const char* key : {"image", "closeButton"}) checks.asset(layout, "", key);
  for (const char* key : {"size", "imageSize"}) checks.size(layout, "", key);
  checks.asset(styles, "styles", "fontURL");
  for (const char* key :
       {"backgroundColor", "sendFontColor", "receiveFontColor", "receiveBubbleColor", "sendBubbleColor",
        "inputBackgroundColor", "sendButtonBackgroundColor", "sendButtonTextColor"})
    checks.colour(styles, key);
  for (const char* key : {"fontSize", "sendButtonSize"}) checks.size(styles, "styles", key);
  return checks.take();
}

}  // namespace service
