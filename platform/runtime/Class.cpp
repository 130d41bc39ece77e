#include "platform/runtime/Class.h"

namespace platform {

namespace {

/// Guards the link between a look-up and a later addition: a class that gains a method makes every cache stale.
std::atomic<unsigned> generation{1};

}  // namespace

Class::Class(std::string name, Class* superclass, Export exportMethods)
    : name_(std::move(name)), superclass_(superclass) {
  if (exportMethods) exportMethods(*this);
}

bool Class::isSubclassOf(const Class& other) const {
  for (const Class* at = this; at; at = at->superclass_) {
    if (at == &other) return true;
  }
  return false;
}

Method* Class::ownMethod(SEL selector) const {
  const std::lock_guard lock(mutex_);
  const auto found = methods_.find(selector);
  return found == methods_.end() ? nullptr : found->second.get();
}

Method* Class::lookUp(SEL selector) const {
  for (const Class* at = this; at; at = at->superclass_) {
    if (Method* const method = at->ownMethod(selector)) return method;
  }
  return nullptr;
}

Method* Class::method(SEL selector) const {
  if (!selector) return nullptr;
  // A direct-mapped cache of found methods. Methods are never removed, and one is never shadowed once it was sent: an
  // addition on a subclass bumps the generation, which is mixed into the key.
  const auto address = reinterpret_cast<std::uintptr_t>(&selector.name());
  const std::uintptr_t stamp = generation.load(std::memory_order_acquire);
  const void* const key = reinterpret_cast<const void*>(address ^ (stamp << 48));
  CacheEntry& entry = cache_[(address >> 5) % cacheSize];
  Method* const cached = entry.method.load(std::memory_order_acquire);
  if (entry.key.load(std::memory_order_acquire) == key && cached && cached->name() == selector) return cached;
  Method* const found = lookUp(selector);
  if (found) {
    entry.key.store(nullptr, std::memory_order_release);
    entry.method.store(found, std::memory_order_release);
    entry.key.store(key, std::memory_order_release);
  }
  return found;
}

bool Class::addMethod(SEL selector, Signature signature, Imp imp, Imp send) {
  const std::lock_guard lock(mutex_);
  const bool added =
      methods_.try_emplace(selector, std::make_unique<Method>(selector, *this, signature, imp, send)).second;
  if (added) generation.fetch_add(1, std::memory_order_acq_rel);
  return added;
}

const std::string& NSStringFromClass(const Class& cls) { return cls.name(); }

Method* class_getInstanceMethod(Class& cls, SEL selector) { return cls.method(selector); }

std::string detail::unqualifiedName(const std::type_info& type) {
  std::string name = readableTypeName(type.name());
  int depth = 0;
  for (std::size_t i = name.size(); i-- > 0;) {
    if (name[i] == '>') ++depth;
    if (name[i] == '<') --depth;
    if (depth == 0 && i > 0 && name[i] == ':' && name[i - 1] == ':') return name.substr(i + 1);
  }
  return name;
}

}  // namespace platform
