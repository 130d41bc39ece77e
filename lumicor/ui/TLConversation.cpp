#include "lumicor/ui/TLConversation.h"

#include <algorithm>

namespace lumicor {

TLConversation::TLConversation(History history) : history_(std::move(history)), earlier_(history_->size()) {
  // A history comes in order as a rule.
  if (std::ranges::is_sorted(*history_, {}, &TLChatMessage::timestamp)) return;
  auto sorted = std::make_shared<std::vector<TLChatMessage>>(*history_);
  std::ranges::stable_sort(*sorted, {}, &TLChatMessage::timestamp);
  history_ = std::move(sorted);
}

}  // namespace lumicor
