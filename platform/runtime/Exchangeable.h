#pragma once

#include "platform/runtime/Message.h"
#include "platform/runtime/Object.h"
#include "platform/runtime/OperationCall.h"

namespace platform {

/// One overridable operation whose implementation can be exchanged at run time.
///
/// The class declares the operation as a virtual member whose body is `method.call(*this, args...)`, and the platform's
/// own behaviour as a second member. A call that nobody exchanged is the virtual call plus one predictable branch; a
/// subclass overrides in plain C++, and its call of the base reaches an exchanged implementation, as does a message by
/// selector.
///
///     void UIViewController::viewDidAppear(bool animated) { viewDidAppearMethod.call(*this, animated); }
///
/// Declared once for each operation as `inline static Exchangeable<&C::operation, &C::platformOperation>
/// xMethod{"x:"};` and registered in exportMethods with `table.owner()` (see `addTo`).
template <auto operation, auto implementation>
class Exchangeable;

template <class C, class R, class... Args, R (C::*operation)(Args...), R (C::*implementation)(Args...)>
class Exchangeable<operation, implementation> {
  using M = detail::Member<C, R, Args...>;
  using Typed = detail::TypedImp<detail::Canonical<R>, detail::Canonical<Args>...>;

 public:
  /// Registers the operation with its class; called from exportMethods.
  static void addTo(Class& cls, std::string_view name) {
    cls.addMethod(sel(name), M::signature(), original(), reinterpret_cast<Imp>(&M::template call<operation>));
    method_ = cls.ownMethod(sel(name));
  }

  /// Runs the implementation that is in force.
  static R call(C& self, Args... args) {
    if (method_ && method_->isIntercepted()) [[unlikely]]
      return exchanged(self, args...);
    return (self.*implementation)(args...);
  }

 private:
  static Imp original() { return reinterpret_cast<Imp>(&M::template call<implementation>); }
  [[gnu::noinline]] static R exchanged(C& self, Args... args) {
    if (!method_->isSpecialised()) return run(method_->imp(), self, args...);
    const detail::OperationCall underWay(self, *method_);
    return run(underWay.imp(), self, args...);
  }
  static R run(Imp found, C& self, Args... args) {
    const auto imp = reinterpret_cast<Typed>(found);
    if constexpr (detail::IsObjectRef<std::remove_cvref_t<R>>::value) {
      return detail::argument<R>(imp(&self, args...), "a caller of its operation");
    } else {
      return imp(&self, args...);
    }
  }
  inline static Method* method_ = nullptr;
};

}  // namespace platform
