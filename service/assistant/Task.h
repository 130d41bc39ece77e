#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "service/assistant/TextTemplate.h"

namespace service {

enum class SlotType { Number, Text, Choice };

/// One of the values that a slot can have.
struct Choice {
  std::string value;
  std::vector<std::string> synonyms;
  std::map<std::string, std::string> attributes;
};

/// Something that a request says: how many, which one, where to.
struct Slot {
  std::string name;
  SlotType type = SlotType::Text;
  bool isRequired = false;
  std::optional<std::string> defaultValue;
  std::int64_t minimum = 1;  ///< of a number
  std::int64_t maximum = 100;
  std::string question;  ///< asked when it is required and missing
  std::string example;   ///< shown in the sample requests
  std::vector<Choice> choices;

  const Choice* findChoice(const std::string& value) const;
  /// A step may use the slot without asking first whether it has a value.
  bool alwaysHasValue() const { return isRequired || defaultValue.has_value(); }
};

struct ScrollTemplate {
  TextTemplate viewId;
  TextTemplate x;
  TextTemplate y;
};

/// One step, or several alike, before the slots are filled in.
struct StepTemplate {
  TextTemplate elementId;
  TextTemplate value;
  TextTemplate viewName;
  std::string actionType;
  std::vector<ScrollTemplate> scrollDetails;
  std::optional<TextTemplate> repeat;  ///< how often; once when absent
  std::string when;                    ///< the slot that must have a value; empty for always
};

/// Something the service can do for a user: steps in the application, or an answer in words.
struct Task {
  std::string id;
  std::string title;
  std::vector<std::string> samples;
  std::vector<Slot> slots;
  std::vector<StepTemplate> steps;
  std::string answer;  ///< instead of steps
  bool shouldOpenChatWindow = true;

  const Slot* findSlot(const std::string& name) const;
  /// Puts these values into the steps for good and takes their slots away. No sample may mention them.
  void fix(const SlotValues& values);
};

}  // namespace service
