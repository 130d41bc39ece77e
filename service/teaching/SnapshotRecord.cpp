#include "service/teaching/SnapshotRecord.h"

#include <algorithm>
#include <array>

namespace service {
namespace {

constexpr std::array<std::string_view, 12> kTypes{
    "TYPE_TEXT",        "TYPE_IMAGE",           "TYPE_WEBVIEW",     "TYPE_RADIO_GROUP",
    "TYPE_INPUT",       "TYPE_TABBAR",          "TYPE_SEARCH",      "TYPE_SEARCH_CANCEL",
    "TYPE_SYSTEM_BACK", "TYPE_BAR_BUTTON_ITEM", "TYPE_PICKER_VIEW", "TYPE_DEFAULT"};
constexpr std::array<std::string_view, 9> kInputTypes{"TYPE_EDIT_TEXT",    "TYPE_BUTTON",  "TYPE_CHECKBOX",
                                                      "TYPE_RADIO",        "TYPE_SELECT",  "TYPE_TOGGLE",
                                                      "TYPE_PROGRESS_BAR", "TYPE_DEFAULT", "TYPE_BAR_BUTTON_ITEM"};

template <class Names>
std::string readName(const JsonObject& fields, std::string_view key, const Names& names) {
  std::string name = fields.string(key);
  if (std::find(names.begin(), names.end(), name) == names.end())
    fields.complain(key, "\"" + name + "\" is not one of its values");
  return name;
}

/// No screen is that large; what is computed from it stays in range.
std::int64_t readPoints(const JsonObject& fields, std::string_view key) {
  return std::clamp<std::int64_t>(fields.integer(key), -1'000'000'000, 1'000'000'000);
}

ElementRecord readElement(const JsonObject& fields) {
  for (const auto* key : {"fragmentId", "destination", "elementDescription"}) fields.string(key);
  fields.boolean("isNavigational");
  return {fields.string("elementId"),
          fields.string("actionName"),
          fields.string("value"),
          readName(fields, "type", kTypes),
          readName(fields, "inputType", kInputTypes),
          readPoints(fields, "x"),
          readPoints(fields, "y"),
          readPoints(fields, "width"),
          readPoints(fields, "height"),
          fields.string("actionId")};
}

std::vector<ElementRecord> readElements(const JsonObject& fields, std::string_view key) {
  std::vector<ElementRecord> elements;
  for (const Json& item : fields.array(key))
    elements.push_back(readElement({item, placeOfItem(fields.placeOf(key), elements.size())}));
  return elements;
}

}  // namespace

bool ElementRecord::holds(const ElementRecord& other) const {
  const std::int64_t middleX = other.x + other.width / 2;
  const std::int64_t middleY = other.y + other.height / 2;
  return middleX >= x && middleX <= x + width && middleY >= y && middleY <= y + height;
}

SnapshotRecord SnapshotRecord::read(const JsonObject& fields) {
  SnapshotRecord record;
  record.viewName = fields.string("viewName");
  for (const auto* key : {"viewHeight", "viewWidth", "index"}) fields.integer(key);
  for (const auto* key : {"viewOrientation", "viewDescription"}) fields.string(key);
  record.elements = readElements(fields, "elements");
  readElements(fields, "inputs");
  record.actionElement = readElement(fields.object("actionElement"));
  const JsonObject scrolls = fields.object("scrollDetails");
  for (const auto& [viewId, value] : scrolls.value().items()) {
    const JsonObject scroll(value, scrolls.placeOf(viewId));
    scroll.integer("index");
    record.scrolls.push_back({viewId, readPoints(scroll, "scrollOffsetX"), readPoints(scroll, "scrollOffsetY")});
  }
  record.screenshotKey = fields.string("screenshotKey");
  return record;
}

}  // namespace service
