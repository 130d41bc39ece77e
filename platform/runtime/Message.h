#pragma once

// How messages are sent by name and how classes say which of their operations can be. Included by NSObject.h.

#include "platform/runtime/FatalError.h"
#include "platform/runtime/NSObject.h"

namespace platform::detail {

template <class T>
struct ObjectType;
template <class T>
struct ObjectType<std::shared_ptr<T>> {
  using type = T;
};

/// A value on its way into a method that wants a `Wanted`. An object of the wrong class is a fatal programming error.
template <class Wanted, class Given>
decltype(auto) argument(const Given& passed, const char* where) {
  if constexpr (IsObjectRef<Wanted>::value && !std::is_same_v<Wanted, Given>) {
    using T = typename ObjectType<Wanted>::type;
    std::shared_ptr<T> object = std::dynamic_pointer_cast<T>(passed);
    if (passed && !object) {
      fatalError(std::string("an object of class ") + passed->isa().name() + " was passed to " + where +
                 " which takes " + T::cls().name());
    }
    return object;
  } else {
    return (passed);
  }
}

template <class C, class R, class... Args>
struct Member {
  using Object = C;
  using CanonicalResult = Canonical<R>;
  static Signature signature() { return Signature::of<CanonicalResult, Canonical<Args>...>(); }

  /// Calls through the pointer: a virtual member stays virtual.
  template <auto pointer>
  static CanonicalResult call(NSObject* self, Passed<Canonical<Args>>... args) {
    C* const object = static_cast<C*>(self);
    return (object->*pointer)(argument<std::remove_cvref_t<Args>>(args, "a method of its class")...);
  }
};

template <class P>
struct MemberOf;
template <class C, class R, class... Args>
struct MemberOf<R (C::*)(Args...)> : Member<C, R, Args...> {};
template <class C, class R, class... Args>
struct MemberOf<R (C::*)(Args...) const> : Member<C, R, Args...> {};
template <class C, class R, class... Args>
struct MemberOf<R (C::*)(Args...) noexcept> : Member<C, R, Args...> {};
template <class C, class R, class... Args>
struct MemberOf<R (C::*)(Args...) const noexcept> : Member<C, R, Args...> {};

[[noreturn]] void failNoMethod(const NSObject& object, SEL selector);
[[noreturn]] void failWrongSignature(const NSObject& object, SEL selector, Signature sent, const Method& method);

/// The receiver and method of a message, forwarding included. Fatal when there is none.
struct Receiver {
  NSObject* object;
  Ref<NSObject> keeper;
  Method* method;
};
Receiver receiverFor(NSObject& object, SEL selector);

template <class T>
Canonical<T> canonical(const T& value) {
  return value;
}
inline std::string canonical(const char* text) { return text; }
template <class T>
using CanonicalArgument = decltype(canonical(std::declval<const std::decay_t<const T&>&>()));

}  // namespace platform::detail

namespace platform::detail {

template <class R, class... Args>
R send(NSObject& object, const Method& method, SEL selector, const Args&... args) {
  using Result = Canonical<R>;
  constexpr Signature sent = Signature::of<Result, CanonicalArgument<Args>...>();
  if (!(method.signature() == sent)) [[unlikely]]
    failWrongSignature(object, selector, sent, method);
  const auto imp = reinterpret_cast<TypedImp<Result, CanonicalArgument<Args>...>>(method.sendImp());
  if constexpr (std::is_void_v<R>) {
    imp(&object, args...);
  } else if constexpr (IsObjectRef<R>::value) {
    return argument<R>(imp(&object, args...), "a sender that expects");
  } else {
    return imp(&object, args...);
  }
}

}  // namespace platform::detail

namespace platform {

template <class R, class... Args>
R NSObject::perform(SEL selector, const Args&... args) {
  if (const Method* const method = knownClass().method(selector)) [[likely]] {
    return detail::send<R>(*this, *method, selector, args...);
  }
  return performForwarded<R>(selector, args...);
}

/// Apart, so that a message which finds its method at once has nothing to keep until it returns.
template <class R, class... Args>
[[gnu::noinline]] R NSObject::performForwarded(SEL selector, const Args&... args) {
  const detail::Receiver receiver = detail::receiverFor(*this, selector);
  return detail::send<R>(*receiver.object, *receiver.method, selector, args...);
}

/// A method held by whoever calls it often, above all the original that a hook calls on: looked up and checked once,
/// while every call runs the implementation that is in force by then. `F` is what the method takes and gives:
///
///     static const MethodCall<void(bool)> original(UIViewController::cls(), sel("hooked_viewDidAppear:"));
///     original(self, animated);
///
/// No such method, or one of another signature, is a fatal programming error. Threads: as Method.
template <class F>
class MethodCall;

template <class R, class... Args>
class MethodCall<R(Args...)> {
 public:
  MethodCall(Class& cls, SEL selector) : method_(cls.method(selector)) {
    constexpr Signature called = Signature::of<detail::Canonical<R>, detail::Canonical<Args>...>();
    if (!method_) fatalError("class " + cls.name() + " does not answer " + selector.name());
    if (!(method_->signature() == called)) {
      fatalError("method " + selector.name() + " of class " + cls.name() + " is called as " + called.description() +
                 " but is " + method_->signature().description());
    }
  }

  /// `self` is of the class of the method or a subclass.
  R operator()(NSObject& self, const Args&... args) const {
    const auto imp =
        reinterpret_cast<detail::TypedImp<detail::Canonical<R>, detail::Canonical<Args>...>>(method_->imp());
    if constexpr (detail::IsObjectRef<std::remove_cvref_t<R>>::value) {
      return detail::argument<R>(imp(&self, args...), "a caller of its method");
    } else {
      return imp(&self, args...);
    }
  }

 private:
  const Method* method_;
};

/// What a class exports to the runtime, filled in its `static void exportMethods(MethodTable<T>&)`.
template <class T>
class MethodTable {
 public:
  explicit MethodTable(Class& cls) : cls_(cls) {}

  /// The member answers messages of that name: `table.add<&CartScreen::checkout>("checkout:")`.
  template <auto pointer>
  MethodTable& add(std::string_view name) {
    using M = detail::MemberOf<decltype(pointer)>;
    cls_.addMethod(sel(name), M::signature(), reinterpret_cast<Imp>(&M::template call<pointer>));
    return *this;
  }

  Class& owner() const { return cls_; }

 private:
  Class& cls_;
};

/// Adds a method to a class at run time from a plain function `R function(C& self, Args...)`; false when the class
/// itself has one of that name already.
template <auto function>
bool class_addMethod(Class& cls, SEL selector);

namespace detail {
template <class F>
struct FunctionOf;
template <class C, class R, class... Args>
struct FunctionOf<R (*)(C&, Args...)> {
  static Signature signature() { return Signature::of<Canonical<R>, Canonical<Args>...>(); }
  template <auto function>
  static Canonical<R> call(NSObject* self, Passed<Canonical<Args>>... args) {
    return function(*static_cast<C*>(self), argument<std::remove_cvref_t<Args>>(args, "an added method")...);
  }
};
}  // namespace detail

template <auto function>
bool class_addMethod(Class& cls, SEL selector) {
  using F = detail::FunctionOf<decltype(function)>;
  return cls.addMethod(selector, F::signature(), reinterpret_cast<Imp>(&F::template call<function>));
}

}  // namespace platform
