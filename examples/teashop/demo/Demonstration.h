#pragma once

#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/demo/DemoHands.h"
#include "examples/teashop/demo/DemoStory.h"

namespace teashop {

/// One thing that a person does to show how a task is done, and what is seen then.
struct DemoAct {
  DemoStop stop;
  std::function<void(DemoHands& hands)> does;
};

/// A task that a person shows once, and what is asked of the assistant afterwards: in other words, and with other
/// values.
struct Demonstration {
  std::string title;                             ///< the name the task is given
  std::vector<std::string> samples;              ///< how it is asked for, with the values that were shown
  std::function<void(DemoHands& hands)> before;  ///< where the person goes first, not recorded
  std::vector<DemoAct> acts;
  std::function<bool(const Shop& shop)> isKept;  ///< what showing it left in the shop's books
  DemoStory replay;                              ///< without the task's id, which the service gives
};

/// Together they come by every kind of thing that can be shown: controls, items of bars, a tapped view, fields, a text
/// view, a search, a picker, tabs, rows, items of a collection, going back.
const std::vector<Demonstration>& demonstrations();

}  // namespace teashop
