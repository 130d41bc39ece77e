#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// How the chat looks, as the service configures it. Made without JSON it holds the built-in look; read from JSON every
/// key must be there.
struct TLStyles {
  std::string backgroundColor = "#ffffff";
  std::int64_t fontSize = 16;  ///< points, like every size here
  std::string sendFontColor = "#000000";
  std::string receiveFontColor = "#ffffff";
  std::string receiveBubbleColor = "#5f5def";
  std::string sendBubbleColor = "#c2c2c2";
  float fontSpacing = 0;
  std::int64_t fontWeight = 400;  ///< 100 to 900
  double lineHeight = 1.5;
  std::vector<std::string> textDecoration = {};
  std::string fontName = "SF-Pro-Text-Regular.otf";
  std::string inputBackgroundColor = "#ffffff";
  std::string sendButtonBackgroundColor = "#5f5def";
  std::string sendButtonTextColor = "#ffffff";
  std::int64_t inputFontSize = 14;
  std::int64_t sendButtonSize = 12;
  std::string fontURL = "https://assets.lumicor.example/uploads/SF-Pro-Text-Regular.otf";

  static constexpr auto fields() {
    using S = TLStyles;
    return std::tuple{field("backgroundColor", &S::backgroundColor),
                      field("fontSize", &S::fontSize),
                      field("sendFontColor", &S::sendFontColor),
                      field("receiveFontColor", &S::receiveFontColor),
                      field("receiveBubbleColor", &S::receiveBubbleColor),
                      field("sendBubbleColor", &S::sendBubbleColor),
                      field("fontSpacing", &S::fontSpacing),
                      field("fontWeight", &S::fontWeight),
                      field("lineHeight", &S::lineHeight),
                      field("textDecoration", &S::textDecoration),
                      field("fontName", &S::fontName),
                      field("inputBackgroundColor", &S::inputBackgroundColor),
                      field("sendButtonBackgroundColor", &S::sendButtonBackgroundColor),
                      field("sendButtonTextColor", &S::sendButtonTextColor),
                      field("inputFontSize", &S::inputFontSize),
                      field("sendButtonSize", &S::sendButtonSize),
                      field("fontURL", &S::fontURL)};
  }
  friend bool operator==(const TLStyles&, const TLStyles&) = default;
};

}  // namespace lumicor
