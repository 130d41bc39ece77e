#include "service/teaching/DemonstratedAction.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <set>

#include "service/assistant/TokenText.h"
#include "service/teaching/SlotNames.h"

namespace service {
namespace {

using Kind = DemonstratedAction::Kind;

constexpr std::string_view kCollection = "LumicorCollectionView-";
constexpr std::string_view kPicker = "pickerView-";
constexpr std::size_t kMostAlternatives = 100;
constexpr std::size_t kMostScrolls = 8;
constexpr std::size_t kMostNumbers = 200;

bool isDigits(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return !text.empty() && text.size() <= 9 && std::all_of(text.begin(), text.end(), isDigit);
}

/// "2-0", row and component; a row alone is one of the first component. Empty for anything else.
std::string pickerValue(std::string_view text) {
  const std::size_t mark = text.find('-');
  if (mark == std::string_view::npos) return isDigits(text) ? std::string(text) + "-0" : "";
  return isDigits(text.substr(0, mark)) && isDigits(text.substr(mark + 1)) ? std::string(text) : "";
}

/// A secure field shows nothing but bullets.
bool isBullets(std::string_view text) {
  constexpr std::string_view kBullet = "\u2022";
  constexpr std::string_view kDisc = "\u25CF";
  if (text.empty()) return false;
  while (text.starts_with(kBullet) || text.starts_with(kDisc)) text.remove_prefix(kBullet.size());
  return text.empty();
}

Kind kindOf(const ElementRecord& element) {
  const std::string_view name = element.actionName;
  if (name == "textField" || name == "textView") return Kind::Text;
  if (name == "searchTriggered") return Kind::Search;
  if (name == "searchCancelled") return Kind::SearchCancel;
  if (name == "pickerView" || name.starts_with(kPicker)) return Kind::Picker;
  if (name == "tabbar") return Kind::Tab;
  if (name == "systemBack") return Kind::Back;
  if (name == "tableView" || name == "collectionView" || name.starts_with(kCollection)) return Kind::Cell;
  if (name == "uiBarButtonItem") return Kind::Press;
  if (!name.starts_with("Action on ")) return Kind::Tap;
  const bool isSlider = element.type == "TYPE_INPUT" && element.inputType == "TYPE_DEFAULT";
  const bool isAdjusted = isSlider || element.inputType == "TYPE_SELECT" || element.inputType == "TYPE_RADIO";
  return isAdjusted ? Kind::Adjustment : Kind::Press;
}

/// What decides how an ordinary view is operated. None of the names that an application treats in a way of their own.
std::string ordinaryType(const ElementRecord& element) {
  if (element.type != "TYPE_INPUT" && element.type != "TYPE_RADIO_GROUP") return "TYPE_DEFAULT";
  if (element.inputType == "TYPE_DEFAULT") return element.type;
  // A button is held down while its press is recorded, and reads as a toggle then; only a switch tells on or off.
  const bool isSwitch = element.value.starts_with("true") || element.value.starts_with("false");
  return element.inputType == "TYPE_TOGGLE" && !isSwitch ? "TYPE_BUTTON" : element.inputType;
}

std::string typeOf(Kind kind, const ElementRecord& element) {
  switch (kind) {
    case Kind::Text:
      return "TYPE_EDIT_TEXT";
    case Kind::Search:
      return "TYPE_SEARCH";
    case Kind::SearchCancel:
      return "TYPE_SEARCH_CANCEL";
    case Kind::Picker:
      return "TYPE_PICKER_VIEW";
    case Kind::Tab:
      return "TYPE_TABBAR";
    case Kind::Back:
      return "TYPE_SYSTEM_BACK";
    case Kind::Cell:
      return "TYPE_DEFAULT";
    case Kind::Press:
    case Kind::Tap:
    case Kind::Adjustment:
      break;
  }
  return element.actionName == "uiBarButtonItem" ? "TYPE_BAR_BUTTON_ITEM" : ordinaryType(element);
}

std::string valueOf(Kind kind, const ElementRecord& element) {
  switch (kind) {
    case Kind::Text:
    case Kind::Search:
    case Kind::Tab:
      return element.value;
    case Kind::Picker: {
      const std::string_view name = element.actionName;
      const std::string named = name.starts_with(kPicker) ? pickerValue(name.substr(kPicker.size())) : "";
      return named.empty() ? pickerValue(element.value) : named;
    }
    default:
      return "";
  }
}

/// The item's own name, by which an application brings it into view wherever it is. Only for a collection whose
/// identifier holds no "-", since the application takes such a name apart at them.
std::optional<std::string> itemName(const std::string& actionName) {
  if (!actionName.starts_with(kCollection)) return std::nullopt;
  const auto marks = std::count(actionName.begin(), actionName.end(), '-');
  const std::size_t item = actionName.rfind('-');
  const std::size_t section = actionName.rfind('-', item - 1);
  const bool isWhole = marks == 3 && isDigits(std::string_view(actionName).substr(item + 1)) &&
                       isDigits(std::string_view(actionName).substr(section + 1, item - section - 1));
  return isWhole ? std::optional(actionName) : std::nullopt;
}

std::vector<ScrollPosition> scrollsAround(const SnapshotRecord& snapshot) {
  // An application drops what stands before the first "-".
  const std::string prefix = snapshot.viewName.substr(0, snapshot.viewName.find('-')) + "-";
  const ElementRecord& acted = snapshot.actionElement;
  if (const auto item = itemName(acted.actionName)) return {{prefix + *item, 0, 0}};
  std::set<std::string_view> holders;
  for (const ElementRecord& element : snapshot.elements) {
    // A text view scrolls too, but no step has to put its text in place.
    if (element.type != "TYPE_TEXT" && element.holds(acted)) holders.insert(element.elementId);
  }
  std::vector<ScrollPosition> around;
  for (const ScrollPosition& scroll : snapshot.scrolls) {
    if (around.size() < kMostScrolls && holders.contains(scroll.viewId))
      around.push_back({prefix + scroll.viewId, scroll.x, scroll.y});
  }
  return around;
}

std::string readable(std::string_view identifier) {
  std::string text;
  for (const std::string& word : wordsOfIdentifier(ownEnding(identifier))) text += (text.empty() ? "" : " ") + word;
  return text;
}

/// The first text that stands on a cell, or else what its identifier says.
std::string nameOfCell(const ElementRecord& cell, const std::vector<ElementRecord>& elements) {
  for (const ElementRecord& element : elements) {
    if (element.type == "TYPE_TEXT" && cell.holds(element) && !tokenise(element.value).empty()) return element.value;
  }
  return readable(cell.elementId);
}

/// The cells that look like the chosen one and are called like it.
std::vector<Alternative> alternativesOn(const SnapshotRecord& snapshot) {
  const ElementRecord& acted = snapshot.actionElement;
  const std::string shown = acted.value.empty() ? nameOfCell(acted, snapshot.elements) : acted.value;
  std::vector<Alternative> found{{shown, acted.elementId}};
  std::set<std::string> names{shown};
  for (const ElementRecord& element : snapshot.elements) {
    const bool isAlike = element.elementId != acted.elementId && element.type == acted.type &&
                         element.inputType == acted.inputType && element.width == acted.width &&
                         element.height == acted.height && !sharedBeginning(element.elementId, acted.elementId).empty();
    if (!isAlike || found.size() == kMostAlternatives) continue;
    const std::string name = nameOfCell(element, snapshot.elements);
    if (!tokenise(name).empty() && names.insert(name).second) found.push_back({name, element.elementId});
  }
  return found;
}

/// The only number in a text, when it is a whole one.
std::optional<std::int64_t> onlyNumber(const std::string& text) {
  const std::size_t first = text.find_first_of("0123456789");
  if (first == std::string::npos) return std::nullopt;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
  if (end - first > 6 || text.find_first_of("0123456789", end) != std::string::npos) return std::nullopt;
  if (first > 0 && text[first - 1] == '-') return std::nullopt;
  std::int64_t number = 0;
  std::from_chars(text.data() + first, text.data() + end, number);
  return number;
}

/// The nearest ones. Every press is compared with those of all that follow, while everybody else waits.
std::vector<ShownNumber> numbersOn(const SnapshotRecord& snapshot) {
  const ElementRecord& acted = snapshot.actionElement;
  std::vector<ShownNumber> numbers;
  for (const ElementRecord& element : snapshot.elements) {
    if (element.type != "TYPE_TEXT") continue;
    if (const auto number = onlyNumber(element.value))
      numbers.push_back({element.elementId, *number, std::abs(element.x - acted.x) + std::abs(element.y - acted.y)});
  }
  std::ranges::stable_sort(numbers, {}, &ShownNumber::distance);
  numbers.resize(std::min(numbers.size(), kMostNumbers));
  return numbers;
}

std::string shownFor(Kind kind, const SnapshotRecord& snapshot) {
  if (kind != Kind::Picker) return "";
  for (const ElementRecord& element : snapshot.elements) {
    const bool isField = element.elementId == snapshot.actionElement.elementId && element.type == "TYPE_TEXT";
    if (isField && !tokenise(element.value).empty()) return element.value;
  }
  return "";
}

bool countsOnlyLast(const DemonstratedAction& action) {
  return action.kind == Kind::Text || action.kind == Kind::Search || action.kind == Kind::Picker ||
         action.kind == Kind::Adjustment;
}

bool replaces(const DemonstratedAction& later, const DemonstratedAction& earlier) {
  if (!countsOnlyLast(later) || later.kind != earlier.kind || !later.isOn(earlier)) return false;
  const auto component = [](const DemonstratedAction& action) {
    return action.value.substr(std::min(action.value.find('-'), action.value.size()));
  };
  return later.kind != Kind::Picker || component(later) == component(earlier);
}

}  // namespace

DemonstratedAction DemonstratedAction::read(const SnapshotRecord& snapshot) {
  const ElementRecord& element = snapshot.actionElement;
  DemonstratedAction action;
  action.kind = kindOf(element);
  action.elementId = element.elementId;
  action.viewName = snapshot.viewName;
  action.actionType = typeOf(action.kind, element);
  action.value = valueOf(action.kind, element);
  action.shown = shownFor(action.kind, snapshot);
  if (action.kind != Kind::Back && action.kind != Kind::Tab) action.scrolls = scrollsAround(snapshot);
  if (action.kind == Kind::Cell) action.alternatives = alternativesOn(snapshot);
  action.numbers = numbersOn(snapshot);
  action.isSecret = action.kind == Kind::Text && isBullets(element.value);
  if (element.actionId != "Default") action.doing = element.actionId;
  return action;
}

Json DemonstratedAction::json() const {
  Json json = {{"kind", static_cast<int>(kind)},
               {"elementId", elementId},
               {"viewName", viewName},
               {"type", actionType},
               {"value", value},
               {"shown", shown},
               {"isSecret", isSecret},
               {"doing", doing}};
  for (const char* list : {"scrolls", "alternatives", "numbers"}) json[list] = Json::array();
  for (const ScrollPosition& scroll : scrolls) json["scrolls"].push_back({scroll.viewId, scroll.x, scroll.y});
  for (const Alternative& other : alternatives) json["alternatives"].push_back({other.name, other.elementId});
  for (const ShownNumber& shownNumber : numbers)
    json["numbers"].push_back({shownNumber.elementId, shownNumber.number, shownNumber.distance});
  return json;
}

DemonstratedAction DemonstratedAction::fromJson(const Json& json) {
  DemonstratedAction action{static_cast<Kind>(json.at("kind").get<int>()),
                            json.at("elementId"),
                            json.at("viewName"),
                            json.at("type"),
                            json.at("value"),
                            json.at("shown"),
                            {},
                            {},
                            {},
                            json.at("isSecret"),
                            json.at("doing")};
  for (const Json& scroll : json.at("scrolls")) action.scrolls.push_back({scroll[0], scroll[1], scroll[2]});
  for (const Json& other : json.at("alternatives")) action.alternatives.push_back({other[0], other[1]});
  for (const Json& number : json.at("numbers")) action.numbers.push_back({number[0], number[1], number[2]});
  return action;
}

std::vector<DemonstratedAction> foldActions(std::vector<DemonstratedAction> actions) {
  std::set<std::pair<std::string, std::string>> secrets;
  for (const DemonstratedAction& action : actions) {
    if (action.isSecret) secrets.insert({action.viewName, action.elementId});
  }
  std::vector<DemonstratedAction> folded;
  for (DemonstratedAction& action : actions) {
    action.isSecret = action.kind == Kind::Text && secrets.contains({action.viewName, action.elementId});
    const bool isBroughtAbout = !folded.empty() && !action.doing.empty() && action.doing == folded.back().doing;
    // The number of a tab says more than the press of its button.
    if (isBroughtAbout && action.kind != Kind::Tab) continue;
    if (isBroughtAbout || (!folded.empty() && replaces(action, folded.back())))
      folded.back() = std::move(action);
    else
      folded.push_back(std::move(action));
  }
  return folded;
}

}  // namespace service
