#include "platform/runtime/Selector.h"

#include <mutex>
#include <unordered_set>

namespace platform {

namespace {

struct Registry {
  std::mutex mutex;
  std::unordered_set<std::string> names;  // node based: addresses stay
};

Registry& registry() {
  static Registry* const shared = new Registry;  // never destroyed: selectors outlive static destructors
  return *shared;
}

}  // namespace

SEL sel(std::string_view name) {
  Registry& all = registry();
  const std::lock_guard lock(all.mutex);
  return SEL(&*all.names.emplace(name).first);
}

const std::string& SEL::name() const {
  static const std::string* const none = new std::string;
  return name_ ? *name_ : *none;
}

const std::string& NSStringFromSelector(SEL selector) { return selector.name(); }

}  // namespace platform
