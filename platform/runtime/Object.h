#pragma once

#include <atomic>

#include "platform/runtime/NSObject.h"

namespace platform {

/// Gives a class its place in the runtime:
///
///     class CartScreen : public Object<CartScreen, UIViewController> {
///      public:
///       void checkout(const Ref<NSObject>& sender);
///       static void exportMethods(MethodTable<CartScreen>& table) { table.add<&CartScreen::checkout>("checkout:"); }
///     };
///
/// `exportMethods` is optional and names only what the class adds or overrides for messages by selector.
template <class Derived, class Base>
class Object : public Base {
 public:
  using Base::Base;
  using Super = Base;

  static Class& cls() {
    Class* const known = known_.load(std::memory_order_acquire);
    return known ? *known : makeClass();
  }
  Class& isa() const override { return cls(); }

 protected:
  /// This object, shared, as its own class.
  Ref<Derived> self() { return std::static_pointer_cast<Derived>(this->shared_from_this()); }
  /// The same without keeping it alive: what closures capture.
  Weak<Derived> weakSelf() { return self(); }

 private:
  [[gnu::noinline, gnu::cold]] static Class& makeClass() {
    static Class* const made = new Class(detail::unqualifiedName(typeid(Derived)), &Base::cls(), &fill);
    known_.store(made, std::memory_order_release);
    return *made;
  }

  static void fill(Class& cls) {
    if constexpr (requires(MethodTable<Derived> & table) { Derived::exportMethods(table); }) {
      // An inherited exportMethods takes the table of the class that wrote it and is not meant for this one.
      MethodTable<Derived> table(cls);
      Derived::exportMethods(table);
    }
  }

  /// None until the class was first asked for. One load instead of the guard of a local variable: every message asks.
  inline static std::atomic<Class*> known_{nullptr};
};

}  // namespace platform
