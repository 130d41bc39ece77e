#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "lumicor/screen/LumicorType.h"
#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// One element of a screen, as the service sees it: a value. What it is and where it stands is fixed when it is made;
/// only where it leads and what it holds can change afterwards.
class LumicroElement {
 public:
  LumicroElement(std::string elementId, std::string fragmentId, std::int64_t x, std::int64_t y, std::int64_t width,
                 std::int64_t height, std::string actionName, bool isNavigational, std::string actionId,
                 std::string destination, std::string value, std::string elementDescription, LumicorType type,
                 LumicorInputType inputType)
      : elementId_(taken(elementId)),
        fragmentId_(taken(fragmentId)),
        x_(x),
        y_(y),
        width_(width),
        height_(height),
        actionName_(taken(actionName)),
        isNavigational_(isNavigational),
        actionId_(taken(actionId)),
        destination_(taken(destination)),
        value_(taken(value)),
        elementDescription_(taken(elementDescription)),
        type_(type),
        inputType_(inputType) {}

  /// As it is read from the screen: what only a recorded action knows stays empty.
  LumicroElement(std::string&& elementId, std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height,
                 std::string&& value, LumicorType type, LumicorInputType inputType)
      : elementId_(std::move(elementId)),
        x_(x),
        y_(y),
        width_(width),
        height_(height),
        isNavigational_(false),
        value_(std::move(value)),
        elementDescription_("Default"),
        type_(type),
        inputType_(inputType) {}

  const std::string& elementId() const { return elementId_; }
  const std::string& fragmentId() const { return fragmentId_; }
  /// Points, in the key window's coordinates.
  std::int64_t x() const { return x_; }
  std::int64_t y() const { return y_; }
  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  const std::string& actionName() const { return actionName_; }
  bool isNavigational() const { return isNavigational_; }
  void setNavigational(bool navigational) { isNavigational_ = navigational; }
  const std::string& actionId() const { return actionId_; }
  const std::string& destination() const { return destination_; }
  void setDestination(std::string destination) { destination_ = std::move(destination); }
  const std::string& value() const { return value_; }
  void setValue(std::string value) { value_ = std::move(value); }
  const std::string& elementDescription() const { return elementDescription_; }
  LumicorType type() const { return type_; }
  LumicorInputType inputType() const { return inputType_; }

  static constexpr auto fields() {
    using E = LumicroElement;
    return std::tuple{field("elementId", &E::elementId_),
                      field("fragmentId", &E::fragmentId_),
                      field("x", &E::x_),
                      field("y", &E::y_),
                      field("width", &E::width_),
                      field("height", &E::height_),
                      field("actionName", &E::actionName_),
                      field("isNavigational", &E::isNavigational_),
                      field("actionId", &E::actionId_),
                      field("destination", &E::destination_),
                      field("value", &E::value_),
                      field("elementDescription", &E::elementDescription_),
                      field("type", &E::type_),
                      field("inputType", &E::inputType_)};
  }
  friend bool operator==(const LumicroElement&, const LumicroElement&) = default;

 private:
  /// Most texts of most elements are empty, and an empty one is made faster than moved.
  static std::string taken(std::string& text) { return text.empty() ? std::string() : std::move(text); }

  std::string elementId_;
  std::string fragmentId_;
  std::int64_t x_;
  std::int64_t y_;
  std::int64_t width_;
  std::int64_t height_;
  std::string actionName_;
  bool isNavigational_;
  std::string actionId_;
  std::string destination_;
  std::string value_;
  std::string elementDescription_;
  LumicorType type_;
  LumicorInputType inputType_;
};

}  // namespace lumicor
