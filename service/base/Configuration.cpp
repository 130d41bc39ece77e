#include "service/base/Configuration.h"

#include "service/base/LoadError.h"
#include "service/base/TextFile.h"

namespace service {
namespace {

void checkStyles(const JsonObject& styles) {
  for (const auto* key :
       {"backgroundColor", "sendFontColor", "receiveFontColor", "receiveBubbleColor", "sendBubbleColor", "fontName",
        "inputBackgroundColor", "sendButtonBackgroundColor", "sendButtonTextColor", "fontURL"})
    styles.string(key);
  for (const auto* key : {"fontSize", "fontWeight", "inputFontSize", "sendButtonSize"}) styles.integer(key);
  for (const auto* key : {"fontSpacing", "lineHeight"}) styles.number(key);
  styles.strings("textDecoration");
}

/// An application refuses a layout in which one field is missing or mistyped, so such a one is not handed out.
void checkLayout(const JsonObject& layout) {
  const std::string viewType = layout.string("viewType");
  if (viewType != "TYPE_FLOATING" && viewType != "TYPE_EMBED")
    layout.complain("viewType", "must be \"TYPE_FLOATING\" or \"TYPE_EMBED\"");
  std::size_t index = 0;
  for (const Json& side : layout.array("margin")) {
    if (!wholeNumber(side)) layout.complain(placeOfItem("margin", index), "must be a whole number");
    ++index;
  }
  for (const auto* key : {"size", "imageSize"}) layout.integer(key);
  for (const auto* key : {"image", "closeButton"}) layout.string(key);
  layout.boolean("isFixed");
  checkStyles(layout.object("styles"));
}

void checkHistory(const JsonObject& data) {
  std::size_t index = 0;
  for (const Json& item : data.array("chatHistory")) {
    const JsonObject message(item, placeOfItem("chatHistory", index++));
    message.string("message");
    message.boolean("isRemote");
    message.integer("timestamp");
  }
}

TeachingLimits readTeachingLimits(const JsonObject& fields) {
  TeachingLimits limits;
  const auto read = [&](const char* key, std::int64_t unit, std::int64_t& limit) {
    constexpr std::int64_t kMost = 1'000'000'000;
    if (!fields.has(key)) return;
    const std::int64_t number = fields.integer(key);
    if (number < 1 || number > kMost) fields.complain(key, "must be from 1 to 1000000000");
    limit = number * unit;
  };
  fields.allowOnly({"fileKilobytes", "keyKilobytes", "addressSeconds", "openAddresses", "demonstrations", "snapshots",
                    "demonstrationHours"});
  read("fileKilobytes", 1024, limits.fileBytes);
  read("keyKilobytes", 1024, limits.keyBytes);
  read("addressSeconds", 1000, limits.addressTime);
  read("openAddresses", 1, limits.openAddresses);
  read("demonstrations", 1, limits.demonstrations);
  read("snapshots", 1, limits.snapshots);
  read("demonstrationHours", 3'600'000, limits.demonstrationTime);
  return limits;
}

void complete(Json& object, const char* key, std::string_view baseAddress) {
  const std::string text = object.at(key).get<std::string>();
  if (text.starts_with('/')) object[key] = std::string(baseAddress) + text;
}

/// What the function makes of the file's text; its complaints name the file.
template <class Read>
auto readJsonFile(const std::filesystem::path& file, Read read) {
  try {
    return read(readTextFile(file));
  } catch (const JsonError& error) {
    throw LoadError(file.string() + ": " + error.what());
  }
}

Json parseStyleSheet(std::string_view text) {
  Json styles = parseJson(text);
  const JsonObject fields(styles, "");
  fields.allowOnly({"backgroundColor", "fontSize", "sendFontColor", "receiveFontColor", "receiveBubbleColor",
                    "sendBubbleColor", "fontSpacing", "fontWeight", "lineHeight", "textDecoration", "fontName",
                    "inputBackgroundColor", "sendButtonBackgroundColor", "sendButtonTextColor", "inputFontSize",
                    "sendButtonSize", "fontURL"});
  checkStyles(fields);
  return styles;
}

}  // namespace

Configuration Configuration::load(const std::filesystem::path& file,
                                  const std::optional<std::filesystem::path>& styleSheet) {
  Configuration result = readJsonFile(file, &Configuration::parse);
  if (!styleSheet) return result;
  Json styles = readJsonFile(*styleSheet, &parseStyleSheet);
  if (!result.data_.contains("layoutData"))
    throw LoadError(file.string() + ": layoutData: is missing, so there is nothing to style");
  result.data_["layoutData"]["styles"] = std::move(styles);
  return result;
}

Configuration Configuration::parse(std::string_view text) {
  const Json document = parseJson(text);
  const JsonObject fields(document, "");
  fields.allowOnly({"acceptedKeys", "publicAddress", "teaching", "layoutData", "showTrackerView", "showTesselLumicor",
                    "tlDefaults", "chatHistory"});
  Configuration result;
  if (fields.has("acceptedKeys")) {
    for (std::string& key : fields.strings("acceptedKeys")) result.acceptedKeys_.insert(std::move(key));
    if (result.acceptedKeys_.empty()) fields.complain("acceptedKeys", "must name a key; leave it out to accept any");
    if (result.acceptedKeys_.contains("")) fields.complain("acceptedKeys", "must not hold an empty key");
  }
  if (fields.has("publicAddress")) {
    result.publicAddress_ = fields.string("publicAddress");
    const bool isAddress =
        result.publicAddress_.starts_with("http://") || result.publicAddress_.starts_with("https://");
    if (!isAddress || result.publicAddress_.ends_with('/'))
      fields.complain("publicAddress", "must begin with http:// or https:// and not end with a slash");
  }
  if (fields.has("teaching")) result.teachingLimits_ = readTeachingLimits(fields.object("teaching"));
  if (fields.has("layoutData")) checkLayout(fields.object("layoutData"));
  for (const auto* key : {"showTrackerView", "showTesselLumicor"})
    if (fields.has(key)) fields.boolean(key);
  if (fields.has("tlDefaults")) {
    const JsonObject defaults = fields.object("tlDefaults");
    for (const auto* key : {"failureMessage", "successMessageTemplate"}) defaults.string(key);
  }
  result.returnsUploadedChat_ = fields.has("chatHistory") && fields.at("chatHistory") == "uploaded";
  if (fields.has("chatHistory") && !result.returnsUploadedChat_) checkHistory(fields);

  result.data_ = document;
  result.data_.erase("acceptedKeys");
  result.data_.erase("publicAddress");
  result.data_.erase("teaching");
  if (result.returnsUploadedChat_) result.data_.erase("chatHistory");
  return result;
}

bool Configuration::accepts(const std::string& secretKey) const {
  return !secretKey.empty() && (acceptedKeys_.empty() || acceptedKeys_.contains(secretKey));
}

Json Configuration::dataFor(std::string_view baseAddress) const {
  Json data = data_;
  if (!data.contains("layoutData")) return data;
  const std::string_view base = publicAddress_.empty() ? baseAddress : publicAddress_;
  Json& layout = data["layoutData"];
  complete(layout, "image", base);
  complete(layout, "closeButton", base);
  complete(layout["styles"], "fontURL", base);
  return data;
}

}  // namespace service
