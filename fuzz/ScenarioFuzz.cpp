#include "fuzz/Harnesses.h"
#include "tools/play/Scenario.h"

namespace fuzz {

void scenario(std::string_view input) {
  const auto steps = play::readScenario(input);
  expect(steps || !steps.error().empty(), "what cannot be read is told");
}

}  // namespace fuzz
