#pragma once

#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/TeashopApplication.h"

namespace teashop {

/// A screen of the shop that can be gone to by name, for tools and for the tour of the demo.
struct NamedScreen {
  std::string name;
  std::string what;  ///< in a few words
  /// Brings it to the front, with something on it to look at.
  std::function<void(TeashopApplication&)> show;
};

/// Every screen, in the order in which a customer meets them.
const std::vector<NamedScreen>& screenCatalogue();

const NamedScreen* screenNamed(const std::string& name);

}  // namespace teashop
