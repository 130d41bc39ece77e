#include "platform/runtime/NSObject.h"

#include <cstdio>
#include <unordered_map>

namespace platform {

struct NSObject::Associations {
  Class* cls = nullptr;
  struct Entry {
    Ref<NSObject> strong;
    Weak<NSObject> weak;
  };
  std::unordered_map<const void*, Entry> entries;
};

NSObject::NSObject() = default;

NSObject::~NSObject() {
  // Taken out first: what ends with this object finds no associations here any more.
  const std::unique_ptr<const Associations> last(associations());
  identity_.store(0, std::memory_order_relaxed);
}

void NSObject::rememberClass(Class& cls) {
  if (Associations* const attached = associations()) {
    attached->cls = &cls;
  } else {
    identity_.store(reinterpret_cast<std::uintptr_t>(&cls) | isClass, std::memory_order_release);
  }
}

Class& NSObject::classBesideAssociations() const {
  const Associations* const attached = associations();
  return attached && attached->cls ? *attached->cls : isa();
}

NSObject::Associations* NSObject::associations() const {
  const std::uintptr_t known = identity_.load(std::memory_order_acquire);
  return known & isClass ? nullptr : reinterpret_cast<Associations*>(known);
}

Class& NSObject::cls() {
  static Class* const shared = new Class("NSObject", nullptr, nullptr);
  return *shared;
}

bool NSObject::respondsToSelector(SEL selector) const { return knownClass().method(selector) != nullptr; }

Ref<NSObject> NSObject::forwardingTargetForSelector(SEL) const { return nullptr; }

std::string NSObject::description() const {
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  return "<" + isa().name() + ": " + address + ">";
}

void NSObject::setAssociatedObject(const void* key, Ref<NSObject> value, AssociationPolicy policy) {
  Associations* attached = associations();
  if (!value && !attached) return;
  if (!attached) {
    attached = new Associations;
    const std::uintptr_t known = identity_.load(std::memory_order_relaxed);
    if (known & isClass) attached->cls = reinterpret_cast<Class*>(known - isClass);
    identity_.store(reinterpret_cast<std::uintptr_t>(attached), std::memory_order_release);
  }
  Associations::Entry entry;
  entry.weak = value;
  if (policy == AssociationPolicy::retain) entry.strong = std::move(value);
  // The previous object ends last: its end may look at the associations of this one.
  std::swap(attached->entries[key], entry);
}

Ref<NSObject> NSObject::associatedObject(const void* key) const {
  const Associations* const attached = associations();
  if (!attached) return nullptr;
  const auto found = attached->entries.find(key);
  return found == attached->entries.end() ? nullptr : found->second.weak.lock();
}

void detail::failNoMethod(const NSObject& object, SEL selector) {
  fatalError("class " + object.isa().name() + " does not answer " + selector.name());
}

void detail::failWrongSignature(const NSObject& object, SEL selector, Signature sent, const Method& method) {
  fatalError("message " + selector.name() + " to class " + object.isa().name() + " was sent as " + sent.description() +
             " but the method is " + method.signature().description());
}

detail::Receiver detail::receiverFor(NSObject& object, SEL selector) {
  NSObject* at = &object;
  Ref<NSObject> keeper;
  for (int hops = 0; hops < 16; ++hops) {  // proxies in front of proxies, but never a ring without end
    if (Method* const method = at->isa().method(selector)) return {at, keeper, method};
    Ref<NSObject> next = at->forwardingTargetForSelector(selector);
    if (!next || next.get() == at) break;
    keeper = std::move(next);
    at = keeper.get();
  }
  failNoMethod(object, selector);
}

}  // namespace platform
