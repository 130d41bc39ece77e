#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"

namespace teashop {

/// What the assistant told the service of one action: on which element of which screen, with a picture of it.
struct CapturedAction {
  std::string doing;  ///< the same for an action and what it brought about by itself
  std::string name;
  std::string elementId;
  std::string value;
  std::string viewName;
  std::string picture;       ///< file name beside the report; empty when there is none
  platform::CGRect element;  ///< in points of the screen
};

/// What went over the wire for one demonstration: what the person did, each thing once.
struct CapturedTask {
  std::string id;
  std::string video;  ///< file name beside the report
  std::vector<CapturedAction> actions;
};

/// The tasks that the exchange with the service holds (http.jsonl), in the order they were registered. Uploaded files
/// are looked for in the folder "media" beside it.
std::vector<CapturedTask> capturedTasks(const std::filesystem::path& folder);

}  // namespace teashop
