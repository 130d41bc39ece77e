#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "examples/teashop/Shop.h"

namespace teashop {

/// What a person watching sees when one step was performed.
struct DemoStop {
  std::string title;
  std::string asked;                  ///< what the assistant was to do
  std::function<bool()> isSeen;       ///< whether the screen shows it
  std::function<std::string()> told;  ///< what is read off the screen then
};

/// One request to the assistant and what has to come of it.
struct DemoStory {
  std::string taskId;
  std::string title;
  std::string request;
  std::vector<DemoStop> stops;  ///< one for each step
  std::string outcome;          ///< what the chat says at last
  bool reopensChat = true;
  /// What of the shop's books must hold, in words, and whether it does. None: nothing is on the books.
  std::string kept = {};
  std::function<bool(const Shop& shop)> isKept = {};
  /// What the customer did before. None: nothing.
  std::function<void(Shop& shop)> given = {};
};

/// The first is the story that is told when one is asked for; together they use every kind of step on every kind of
/// target.
const std::vector<DemoStory>& demoStories();

}  // namespace teashop
