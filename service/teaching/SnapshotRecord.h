#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "service/base/Json.h"

namespace service {

/// One element of a screen, as far as a task can be made of it. Geometry in points of the window.
struct ElementRecord {
  std::string elementId;
  std::string actionName;
  std::string value;
  std::string type;
  std::string inputType;
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::string actionId;  ///< the same for all that came of one doing of the person; may be empty or "Default"

  /// Whether the middle of `other` lies in this element.
  bool holds(const ElementRecord& other) const;
};

/// How far a list of the screen was scrolled.
struct ScrollPosition {
  std::string viewId;
  std::int64_t x = 0;
  std::int64_t y = 0;
};

/// The screen at the moment of one action, before the action had its effect.
struct SnapshotRecord {
  /// The name under which the closing snapshot of a demonstration is recorded.
  static constexpr std::string_view kClosingAction = "Recording Stopped";

  std::string viewName;
  std::vector<ElementRecord> elements;
  ElementRecord actionElement;
  std::vector<ScrollPosition> scrolls;
  std::string screenshotKey;

  bool isClosing() const { return actionElement.actionName == kClosingAction; }

  /// Every member that applications send must be there and of its type; throws JsonError.
  static SnapshotRecord read(const JsonObject& fields);
};

}  // namespace service
