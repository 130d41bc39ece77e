#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/runtime/Method.h"

namespace platform {

/// A class as the runtime knows it: its name, its superclass and the methods it exports.
/// Made on first use of `T::cls()`, kept for the process. Thread: any; methods are added on the main thread.
class Class {
 public:
  using Export = void (*)(Class&);
  /// Name is what `NSStringFromClass` tells. `exportMethods` fills the method table.
  Class(std::string name, Class* superclass, Export exportMethods);
  Class(const Class&) = delete;
  Class& operator=(const Class&) = delete;

  const std::string& name() const { return name_; }
  Class* superclass() const { return superclass_; }
  bool isSubclassOf(const Class& other) const;

  /// The method of this class or the nearest superclass that has one, or none. Remembered either way: asking again
  /// takes no lock. Safe from any thread.
  Method* method(SEL selector) const {
    const CacheEntry& entry = cache_[selector.hash() / cacheLine % cacheSize];
    Method* const found = entry.found.load(std::memory_order_acquire);
    if (found && found->name() == selector) [[likely]]
      return found;
    if (entry.absent.load(std::memory_order_acquire) == selector) return nullptr;
    return lookUp(selector);
  }
  /// The method that this very class adds, or none.
  Method* ownMethod(SEL selector) const;
  /// Adds a method; false when this class already has one of that name. `send` may be none (see Method::sendImp).
  /// One that is added to a class already in use, and named like an overridable operation of a superclass, is what
  /// that operation does for objects of this class: a call of it, and a message, reach overrides written in C++ first
  /// and come here where they call their base.
  bool addMethod(SEL selector, Signature signature, Imp imp, Imp send = nullptr);

 private:
  /// What was asked for last among the selectors that fall here, once with a method for an answer and once without.
  /// One word each, so that a reader sees an answer whole or not at all.
  struct CacheEntry {
    std::atomic<Method*> found{nullptr};
    std::atomic<SEL> absent{SEL()};  // no selector has no method
  };
  static constexpr std::size_t cacheSize = 64;
  static constexpr std::size_t cacheLine = 64;  // names are apart by about as much

  Method* lookUp(SEL selector) const;
  Method* inheritedOperation(SEL selector) const;
  void forget(SEL selector);

  std::string name_;
  Class* superclass_;
  std::unordered_map<SEL, std::unique_ptr<Method>> methods_;  // guarded by the lock of all classes
  bool isListed_ = false;                                     // asked by others from now on; likewise guarded
  mutable CacheEntry cache_[cacheSize];
};

/// The class's unqualified name.
const std::string& NSStringFromClass(const Class& cls);

/// The method that an instance of the class answers a selector with, its own or inherited, or none.
Method* class_getInstanceMethod(Class& cls, SEL selector);

namespace detail {
/// "CartScreen" of "shop::(anonymous namespace)::CartScreen", template arguments kept.
std::string unqualifiedName(const std::type_info& type);
}  // namespace detail

}  // namespace platform
