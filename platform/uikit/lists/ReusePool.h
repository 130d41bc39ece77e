#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <vector>

#include "platform/runtime/NSObject.h"

namespace platform {

/// Views that left the screen and wait to be shown again, by what they were registered for. Main thread.
template <class Key, class View>
class ReusePool {
 public:
  void put(const Key& key, const Ref<View>& view) {
    std::vector<Ref<View>>& waiting = waiting_[key];
    const bool isThere = std::find(waiting.begin(), waiting.end(), view) != waiting.end();
    if (!isThere && waiting.size() < most) waiting.push_back(view);
  }
  /// One that is ready to be used again, or none.
  Ref<View> take(const Key& key) {
    const auto found = waiting_.find(key);
    if (found == waiting_.end() || found->second.empty()) return nullptr;
    const Ref<View> view = std::move(found->second.back());
    found->second.pop_back();
    view->prepareForReuse();
    return view;
  }

 private:
  static constexpr std::size_t most = 128;
  std::map<Key, std::vector<Ref<View>>> waiting_;
};

}  // namespace platform
