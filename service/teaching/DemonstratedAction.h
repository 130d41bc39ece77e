#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "service/teaching/SnapshotRecord.h"

namespace service {

/// Something else that could have been chosen in the place of what was.
struct Alternative {
  std::string name;  ///< as people read it
  std::string elementId;
};

/// A whole number that the screen showed.
struct ShownNumber {
  std::string elementId;
  std::int64_t number = 0;
  std::int64_t distance = 0;  ///< to the acted-on element, in points
};

/// One action of a demonstration in the terms of the step that repeats it, with what its screen tells about it.
struct DemonstratedAction {
  enum class Kind { Press, Tap, Text, Search, SearchCancel, Picker, Tab, Cell, Back, Adjustment };

  Kind kind = Kind::Tap;
  std::string elementId;
  std::string viewName;
  std::string actionType;
  std::string value;                      ///< of the step; what was typed, the tab, the picker's row and component
  std::string shown;                      ///< what people read for the chosen thing
  std::vector<ScrollPosition> scrolls;    ///< of the lists around the element, by the names that steps use
  std::vector<Alternative> alternatives;  ///< of a cell: the ones on the screen, the chosen one first
  std::vector<ShownNumber> numbers;
  bool isSecret = false;  ///< typed into a field that shows bullets
  std::string doing;      ///< the same for an action and what it brought about by itself; empty when that is not known

  static DemonstratedAction read(const SnapshotRecord& snapshot);

  /// For keeping it: a few lines where a snapshot may have thousands.
  Json json() const;
  static DemonstratedAction fromJson(const Json& json);

  bool isOn(const DemonstratedAction& other) const {
    return elementId == other.elementId && viewName == other.viewName;
  }
};

/// The actions of a whole flow (without its closing snapshot) as they are to be repeated: what was done to one control
/// several times in a row, of which only the last counts, is one action; a repeated press is meant and stays. What an
/// action brought about by itself, as a press of "Save" that leads back, is not repeated beside it. What was typed into
/// a field that ever showed bullets is secret wherever it was typed.
std::vector<DemonstratedAction> foldActions(std::vector<DemonstratedAction> actions);

}  // namespace service
