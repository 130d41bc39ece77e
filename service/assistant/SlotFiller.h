#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "service/assistant/SampleAligner.h"

namespace service {

/// What a query says for the slots of a task.
struct Filling {
  SlotValues values;                   ///< without the defaults
  std::vector<bool> claimed;           ///< for every token: belongs to a word or slot
  const Slot* outOfRange = nullptr;    ///< a number that the slot does not allow
  const Slot* contradicted = nullptr;  ///< a slot for which the query names several choices
};

/// Takes the values out of an alignment, then looks for the slots that are still empty among the words that nothing has
/// claimed: "to 1 Mill Lane please order tea, two of them" fills address and quantity though no sample has that order.
Filling fillSlots(const PreparedTask& task, const Alignment& alignment, const std::vector<Token>& tokens,
                  std::string_view query);

/// Reads a reply to the question about one slot; nothing when the reply does not answer it.
std::optional<SlotValue> readAnswer(const PreparedTask& task, const Slot& slot, const std::vector<Token>& tokens,
                                    std::string_view reply);

bool isAllowed(const Slot& slot, const SlotValue& value);

}  // namespace service
