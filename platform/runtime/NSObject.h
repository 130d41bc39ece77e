#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/runtime/Class.h"
#include "platform/runtime/Ref.h"
#include "platform/runtime/Selector.h"

namespace platform {

/// How an associated object is held. `assignWeak` lets it die.
enum class AssociationPolicy { retain, assignWeak };

/// The root of every class of the runtime. Objects are shared (`Ref<T>`), made with `make<T>(...)`.
/// Thread: an object belongs to the thread that uses it; the user interface belongs to the main thread.
class NSObject : public std::enable_shared_from_this<NSObject> {
 public:
  NSObject();
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;
  virtual ~NSObject();

  static Class& cls();
  virtual Class& isa() const { return cls(); }
  Class& classForCoder() const { return isa(); }
  /// The same as isa(), and remembered once the object is made: messages and walks ask all the time.
  Class& knownClass() const {
    const std::uintptr_t known = identity_.load(std::memory_order_acquire);
    if (known & isClass) [[likely]]
      return *reinterpret_cast<Class*>(known - isClass);
    return classBesideAssociations();
  }
  /// Called by make<T>, once the object is a whole T.
  void rememberClass(Class& cls);
  bool isKindOfClass(const Class& other) const { return isa().isSubclassOf(other); }

  /// True when a message of that name would be answered: by a method of the class, or by whatever a subclass forwards
  /// to.
  virtual bool respondsToSelector(SEL selector) const;
  /// The object that gets a message which this one has no method for, or none.
  virtual Ref<NSObject> forwardingTargetForSelector(SEL selector) const;

  /// For people: "<CartScreen: 0x55d0c0a8f2b0>". Stable for the object's life.
  virtual std::string description() const;

  /// Sends a message by name: `perform(sel("checkout:"), sender)`, `perform<std::int64_t>(sel("numberOfRows"))`.
  /// No method (nor forwarding target), or one of another signature, is a fatal programming error.
  template <class R = void, class... Args>
  R perform(SEL selector, const Args&... args);  // in Message.h

  /// This object, shared. Only once it is owned by a Ref (so not inside constructors; use `init...`).
  template <class T>
  Ref<T> self(T*) {
    return std::static_pointer_cast<T>(shared_from_this());
  }

  /// An object attached to this one for its lifetime under a key (any address). None removes it. Main thread.
  void setAssociatedObject(const void* key, Ref<NSObject> value, AssociationPolicy policy);
  Ref<NSObject> associatedObject(const void* key) const;
  /// The same for what is no object: a selector, a number, a weak reference. A value is read as the type it was given;
  /// asked for as another, or where an object stands, there is none. Objects and values share their keys.
  template <class T>
  void setAssociatedValue(const void* key, T value);
  template <class T>
  std::optional<T> associatedValue(const void* key) const;

 private:
  template <class R, class... Args>
  R performForwarded(SEL selector, const Args&... args);
  struct Associations;
  template <class T>
  struct Value;
  static constexpr std::uintptr_t isClass = 1;
  Class& classBesideAssociations() const;
  Associations* associations() const;

  /// With the mark the class; without, what is attached to the object, which then knows the class, or nothing while the
  /// object is being made. One word for both: objects of which a screen has thousands begin with it.
  std::atomic<std::uintptr_t> identity_{0};
};

/// What carries an associated value.
template <class T>
struct NSObject::Value : NSObject {
  explicit Value(T given) : value(std::move(given)) {}
  const T value;
};

template <class T>
void NSObject::setAssociatedValue(const void* key, T value) {
  setAssociatedObject(key, make<Value<T>>(std::move(value)), AssociationPolicy::retain);
}

template <class T>
std::optional<T> NSObject::associatedValue(const void* key) const {
  const auto carrier = as<Value<T>>(associatedObject(key));
  return carrier ? std::optional<T>(carrier->value) : std::nullopt;
}

}  // namespace platform

#include "platform/runtime/Message.h"
