#include "service/teaching/TaskDraft.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>

#include "service/assistant/TokenText.h"
#include "service/teaching/SlotNames.h"

namespace service {
namespace {

using Kind = DemonstratedAction::Kind;

/// As often as a step can be repeated.
constexpr std::int64_t kMostPresses = 200;

std::string literal(std::string_view text) {
  std::string result;
  for (const char c : text) result += (c == '{' || c == '}') ? std::string(2, c) : std::string(1, c);
  return result;
}

bool isSmallNumber(const std::string& text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return !text.empty() && text.size() <= 3 && std::all_of(text.begin(), text.end(), isDigit) &&
         (text.size() == 1 || text.front() != '0');
}

class Draft {
 public:
  Draft(const std::vector<DemonstratedAction>& actions, const DemonstratedAction& closing)
      : actions_(actions), closing_(closing) {}

  Json make(const std::string& id, bool opensChat) {
    noteBeginning();
    for (std::size_t i = 0; i < actions_.size();) i += addFrom(i);
    Json document = {{"id", id},        {"title", ""},     {"samples", Json::array()},         {"slots", slots_},
                     {"steps", steps_}, {"notes", notes_}, {"shouldOpenChatWindow", opensChat}};
    return document;
  }

 private:
  /// Adds what begins at this action, and tells how many actions that were.
  std::size_t addFrom(std::size_t i) {
    const DemonstratedAction& action = actions_[i];
    if (action.kind == Kind::Press && action.actionType == "TYPE_BUTTON") return addPresses(i);
    if (action.isSecret) {
      note("what was typed into \"" + action.elementId + "\" is secret: that step is left out");
      return 1;
    }
    if (action.kind == Kind::Tap && action.actionType == "TYPE_DEFAULT") {
      note("the tap on \"" + action.elementId + "\" is left out: a step operates controls and the cells of lists only");
      return 1;
    }
    Json step = stepFor(action);
    if (action.kind == Kind::Text || action.kind == Kind::Search) step["value"] = typed(action);
    if (action.kind == Kind::Picker) step["value"] = picked(action);
    if (action.kind == Kind::Cell) step["elementId"] = chosen(action);
    if (action.actionType == "TYPE_TOGGLE")
      note("\"" + action.elementId + "\" is a switch: a step touches it, but does not turn it");
    if (action.kind == Kind::Adjustment)
      note("\"" + action.elementId + "\" can be touched by a step, but not set to a value");
    steps_.push_back(std::move(step));
    return 1;
  }

  static Json stepFor(const DemonstratedAction& action) {
    Json scrolls = Json::array();
    for (const ScrollPosition& scroll : action.scrolls)
      scrolls.push_back({{"viewId", literal(scroll.viewId)}, {"offsets", {{"x", scroll.x}, {"y", scroll.y}}}});
    return {{"elementId", literal(action.elementId)},
            {"value", literal(action.value)},
            {"viewName", literal(action.viewName)},
            {"actionType", action.actionType},
            {"scrollDetails", std::move(scrolls)}};
  }

  // ---- What was typed or chosen

  std::string typed(const DemonstratedAction& action) {
    if (tokenise(action.value).empty()) return literal(action.value);
    const std::string key = "typed\n" + action.viewName + "\n" + action.elementId + "\n" + action.value;
    const std::string& name = slotNamed(key, slotNameFor(action.elementId, action.viewName), [&] {
      Json slot = {{"type", "text"}, {"example", action.value}};
      if (isSmallNumber(action.value)) slot.update({{"type", "number"}, {"minimum", 0}, {"maximum", 1'000'000}});
      return slot;
    });
    return "{" + name + "}";
  }

  std::string picked(const DemonstratedAction& action) {
    const std::size_t mark = action.value.find('-');
    if (mark == std::string::npos) {
      note("what was picked with \"" + action.elementId + "\" is not known");
      return "";
    }
    const std::string row = action.value.substr(0, mark);
    const std::string key = "picked\n" + action.viewName + "\n" + action.elementId + "\n" + action.value;
    const std::string& name = slotNamed(key, slotNameFor(action.elementId, action.viewName), [&] {
      const std::string shown = action.shown.empty() ? "row " + row : action.shown;
      return Json{{"type", "one-of"},
                  {"example", shown},
                  {"choices", {{{"value", shown}, {"attributes", {{"position", action.value}}}}}}};
    });
    return "{" + name + ".position}";
  }

  std::string chosen(const DemonstratedAction& action) {
    const std::vector<Alternative>& all = action.alternatives;
    if (tokenise(all.front().name).empty()) return literal(action.elementId);
    // The alternatives share at least one word; what all share is what they are called.
    std::string_view shared = all.size() > 1
                                  ? sharedBeginning(action.elementId, all[1].elementId)
                                  : std::string_view(action.elementId)
                                        .substr(0, action.elementId.size() - ownEnding(action.elementId).size());
    for (const Alternative& other : all) {
      if (other.elementId != action.elementId) shared = sharedBeginning(shared, other.elementId);
    }
    const std::string key = "chosen\n" + action.viewName + "\n" + action.elementId;
    const std::string& name = slotNamed(key, slotNameFor(shared, action.viewName), [&] {
      Json choices = Json::array();
      for (const Alternative& other : all) {
        const bool isChosen = other.elementId == action.elementId;
        if (isChosen || choicesLeft_-- > 0)
          choices.push_back({{"value", other.name}, {"attributes", {{"id", other.elementId}}}});
      }
      return Json{{"type", "one-of"}, {"example", all.front().name}, {"choices", std::move(choices)}};
    });
    return "{" + name + ".id}";
  }

  // ---- Repeated presses

  /// A run of presses that counted a number up on the screen is one step that is repeated as often as is asked for.
  std::size_t addPresses(std::size_t first) {
    std::size_t end = first + 1;
    while (end < actions_.size() && actions_[end].kind == Kind::Press && actions_[end].isOn(actions_[first])) ++end;
    Json step = stepFor(actions_[first]);
    if (const auto counted = countedBy(first, end)) {
      const auto presses = static_cast<std::int64_t>(end - first);
      const std::string key =
          "count\n" + actions_[first].viewName + "\n" + actions_[first].elementId + "\n" + std::to_string(first);
      const std::string& name = slotNamed(key, slotNameFor(counted->elementId, actions_[first].viewName), [&] {
        return Json{{"type", "number"},
                    {"example", std::to_string(counted->number + presses)},
                    {"start", counted->number},
                    {"minimum", counted->number},
                    {"maximum", counted->number + std::max<std::int64_t>(presses, 100)}};
      });
      step["repeat"] =
          counted->number == 0 ? "{" + name + "}" : "{" + name + "-" + std::to_string(counted->number) + "}";
      steps_.push_back(std::move(step));
    } else {
      for (std::size_t i = first; i < end; ++i) steps_.push_back(stepFor(actions_[i]));
    }
    return end - first;
  }

  const DemonstratedAction& at(std::size_t i) const { return i < actions_.size() ? actions_[i] : closing_; }

  static std::optional<std::int64_t> numberOf(const DemonstratedAction& action, const std::string& elementId) {
    for (const ShownNumber& shown : action.numbers) {
      if (shown.elementId == elementId) return shown.number;
    }
    return std::nullopt;
  }

  /// The nearest number that went up by one with each of these presses and stayed there until the screen was left.
  std::optional<ShownNumber> countedBy(std::size_t first, std::size_t end) const {
    if (end - first > static_cast<std::size_t>(kMostPresses)) return std::nullopt;
    std::optional<ShownNumber> nearest;
    for (const ShownNumber& shown : actions_[first].numbers) {
      const bool isNearer = !nearest || shown.distance < nearest->distance;
      if (isNearer && isCounted(shown, first, end)) nearest = shown;
    }
    return nearest;
  }

  bool isCounted(const ShownNumber& shown, std::size_t first, std::size_t end) const {
    if (at(end).viewName != actions_[first].viewName) return false;
    for (std::size_t i = first; i <= actions_.size() && at(i).viewName == actions_[first].viewName; ++i) {
      const auto presses = static_cast<std::int64_t>(std::min(i, end) - first);
      if (numberOf(at(i), shown.elementId) != shown.number + presses) return false;
    }
    return true;
  }

  // ---- Slots and notes

  /// The name of the slot that belongs to a key; one is made, under a name of its own, when there is none yet.
  template <class Make>
  const std::string& slotNamed(const std::string& key, const std::string& wanted, Make make) {
    const auto known = names_.find(key);
    if (known != names_.end()) return known->second;
    std::string name = wanted;
    for (int number = 2; !taken_.insert(name).second; ++number) name = wanted + "_" + std::to_string(number);
    Json slot = make();
    slot["name"] = name;
    slots_.push_back(std::move(slot));
    return names_.emplace(key, name).first->second;
  }

  void note(std::string text) {
    if (std::find(notes_.begin(), notes_.end(), text) == notes_.end()) notes_.push_back(std::move(text));
  }

  void noteBeginning() {
    if (actions_.empty() || actions_.front().kind == Kind::Tab) return;
    note("it begins on \"" + actions_.front().viewName +
         "\" and can be asked for only there; a demonstration that begins with a tab can be asked for anywhere");
  }

  const std::vector<DemonstratedAction>& actions_;
  const DemonstratedAction& closing_;
  Json slots_ = Json::array();
  Json steps_ = Json::array();
  Json notes_ = Json::array();
  std::map<std::string, std::string> names_;
  std::set<std::string> taken_;
  int choicesLeft_ = 5000;  ///< a long flow through long lists must stay a task that can be read
};

}  // namespace

Json draftTask(const std::string& id, const std::vector<DemonstratedAction>& actions, const DemonstratedAction& closing,
               bool opensChat) {
  return Draft(actions, closing).make(id, opensChat);
}

}  // namespace service
