#include "platform/runtime/Class.h"

#include <mutex>
#include <vector>

namespace platform {

namespace {

/// Every class whose answers may be remembered, and the lock under which methods are added, looked up and remembered.
struct ClassList {
  std::recursive_mutex mutex;  // a class may be made while another exports its methods
  std::vector<Class*> classes;
};

ClassList& classList() {
  static ClassList* const shared = new ClassList;  // never destroyed: messages are sent from static destructors too
  return *shared;
}

}  // namespace

Class::Class(std::string name, Class* superclass, Export exportMethods)
    : name_(std::move(name)), superclass_(superclass) {
  if (exportMethods) exportMethods(*this);
  ClassList& all = classList();
  const std::lock_guard lock(all.mutex);
  all.classes.push_back(this);
  isListed_ = true;
}

bool Class::isSubclassOf(const Class& other) const {
  for (const Class* at = this; at; at = at->superclass_) {
    if (at == &other) return true;
  }
  return false;
}

Method* Class::ownMethod(SEL selector) const {
  const std::lock_guard lock(classList().mutex);
  const auto found = methods_.find(selector);
  return found == methods_.end() ? nullptr : found->second.get();
}

Method* Class::lookUp(SEL selector) const {
  const std::lock_guard lock(classList().mutex);
  CacheEntry& entry = cache_[selector.hash() / cacheLine % cacheSize];
  for (const Class* at = this; at; at = at->superclass_) {
    Method* const method = at->ownMethod(selector);
    if (!method) continue;
    entry.found.store(method, std::memory_order_release);
    return method;
  }
  entry.absent.store(selector, std::memory_order_release);
  return nullptr;
}

/// An answer that a method added here or in a superclass made untrue.
void Class::forget(SEL selector) {
  CacheEntry& entry = cache_[selector.hash() / cacheLine % cacheSize];
  entry.found.store(nullptr, std::memory_order_release);
  entry.absent.store(SEL(), std::memory_order_release);
}

/// The overridable operation of that name which a superclass has, or none.
Method* Class::inheritedOperation(SEL selector) const {
  for (const Class* at = superclass_; at; at = at->superclass_) {
    Method* const own = at->ownMethod(selector);
    if (own && own->isOperation()) return own;
  }
  return nullptr;
}

bool Class::addMethod(SEL selector, Signature signature, Imp imp, Imp send) {
  ClassList& all = classList();
  const std::lock_guard lock(all.mutex);
  const auto [at, added] = methods_.try_emplace(selector);
  if (!added) return false;
  Method* const operation = isListed_ ? inheritedOperation(selector) : nullptr;
  const bool specialises = operation && operation->signature_ == signature;
  if (specialises && !send) send = operation->sendImp_;
  at->second = std::make_unique<Method>(selector, *this, signature, imp, send);
  at->second->wasAddedLater_ = isListed_;
  if (specialises) operation->specialise();
  if (isListed_) {
    for (Class* const cls : all.classes) {
      if (cls->isSubclassOf(*this)) cls->forget(selector);
    }
  }
  return true;
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
