#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include "platform/runtime/Selector.h"

namespace platform {

class NSObject;
class Class;

/// An implementation with its type erased; the real type is detail::TypedImp.
using Imp = void (*)();

namespace detail {

class OperationCall;

template <class T>
struct IsObjectRef : std::false_type {};
template <class T>
struct IsObjectRef<std::shared_ptr<T>> : std::is_base_of<NSObject, T> {};

/// Arguments and results travel as values; every reference to an object travels as `Ref<NSObject>`, whatever its class.
template <class T, class Bare = std::remove_cvref_t<T>>
using Canonical = std::conditional_t<IsObjectRef<Bare>::value, std::shared_ptr<NSObject>, Bare>;

/// How an argument gets to an implementation: in registers where it fits into them, so that a hook can hand its call on
/// by a jump; others by reference.
template <class T>
using Passed = std::conditional_t<std::is_trivially_copyable_v<T> && sizeof(T) <= 2 * sizeof(void*), T, const T&>;

template <class R, class... Args>
using TypedImp = R (*)(NSObject*, Passed<Args>...);

template <class R, class... Args>
struct SignatureTag {
  static const char tag;
};
template <class R, class... Args>
const char SignatureTag<R, Args...>::tag = 0;

std::string readableTypeName(const char* mangled);

}  // namespace detail

/// What a method takes and gives. Two signatures are equal when result and argument types are, object references of any
/// class counting as one type.
class Signature {
 public:
  template <class R, class... Args>
  static constexpr Signature of();

  friend constexpr bool operator==(Signature a, Signature b) { return a.id_ == b.id_; }
  /// For people: "void (Ref<NSObject>, int)".
  std::string description() const;

 private:
  const void* id_ = nullptr;
  std::string (*describe_)() = nullptr;
};

/// One instance method of one class. Lives as long as the process. Looked up by class_getInstanceMethod.
/// Thread: registration and exchange on the main thread; calls on any.
class Method {
 public:
  Method(SEL name, Class& owner, Signature signature, Imp imp, Imp send)
      : name_(name),
        signature_(signature),
        sendImp_(send ? send : imp),
        imp_(imp),
        original_(imp),
        owner_(&owner),
        sendsCurrent_(!send) {}

  SEL name() const { return name_; }
  Class& owner() const { return *owner_; }
  Signature signature() const { return signature_; }
  /// The implementation that the method has now (an exchange changes it).
  Imp imp() const { return imp_; }
  /// What a message by selector calls: for an overridable operation the virtual call, else `imp()`.
  Imp sendImp() const { return sendImp_; }
  bool isExchanged() const { return imp_ != original_; }
  /// Of an overridable operation: false as long as every call of it is the platform's own behaviour.
  bool isIntercepted() const { return isIntercepted_; }
  /// Whether a subclass has an implementation of it of its own, added at run time.
  bool isSpecialised() const { return isSpecialised_; }

 private:
  friend class Class;
  friend class detail::OperationCall;
  friend void method_exchangeImplementations(Method* a, Method* b);
  void setImp(Imp imp) {
    imp_ = imp;
    if (sendsCurrent_) sendImp_ = imp;
    isIntercepted_ = isExchanged() || isSpecialised_;
  }
  bool isOperation() const { return !sendsCurrent_ && !wasAddedLater_; }
  /// A subclass got an implementation of this operation of its own.
  void specialise() { isSpecialised_ = isIntercepted_ = true; }

  SEL name_;
  Signature signature_;
  Imp sendImp_;
  Imp imp_;
  Imp original_;
  Class* owner_;
  bool sendsCurrent_;
  bool wasAddedLater_ = false;  // to a class that was there already
  bool isSpecialised_ = false;
  bool isIntercepted_ = false;
};

/// Swaps the implementations of two methods. Both must be there and of the same signature: anything else is a fatal
/// programming error. Main thread.
void method_exchangeImplementations(Method* a, Method* b);

}  // namespace platform

#include <typeinfo>

namespace platform {

template <class R, class... Args>
constexpr Signature Signature::of() {
  Signature signature;
  signature.id_ = &detail::SignatureTag<R, Args...>::tag;
  signature.describe_ = +[] { return detail::readableTypeName(typeid(R(*)(Args...)).name()); };
  return signature;
}

}  // namespace platform
