#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "platform/runtime/ObjectPool.h"

namespace platform {

/// Shared ownership of an object of the runtime. Parents own children through it.
template <class T>
using Ref = std::shared_ptr<T>;

/// A reference that does not keep its object alive: delegates, targets, data sources, parents.
template <class T>
using Weak = std::weak_ptr<T>;

namespace detail {

/// The object alone. Classes of which there are thousands ask for the pool (`usesObjectPool`). Objects are told what
/// they were made as (`rememberClass`, `madeAs<T>`): only here the whole class is certain.
template <class T, class... Args>
Ref<T> allocate(Args&&... args) {
  Ref<T> object;
  if constexpr (requires { T::usesObjectPool; }) {
    object = std::allocate_shared<T>(PoolAllocator<T>(), std::forward<Args>(args)...);
  } else {
    object = std::make_shared<T>(std::forward<Args>(args)...);
  }
  if constexpr (requires { object->rememberClass(T::cls()); }) object->rememberClass(T::cls());
  if constexpr (requires { object->template madeAs<T>(); }) object->template madeAs<T>();
  return object;
}

}  // namespace detail

/// Makes an object. When the class has an `init(...)` that takes the arguments, the object is made first and then
/// initialised through it, so that an exchanged initialiser is reached and `self()` works inside; otherwise the
/// arguments go to the constructor.
template <class T, class... Args>
Ref<T> make(Args&&... args) {
  if constexpr (requires(T & object) { object.init(std::forward<Args>(args)...); }) {
    Ref<T> object = detail::allocate<T>();
    object->init(std::forward<Args>(args)...);
    return object;
  } else {
    return detail::allocate<T>(std::forward<Args>(args)...);
  }
}

/// The object as a T, or none when it is none or of another class. No message is sent.
template <class T, class U>
Ref<T> as(const Ref<U>& object) {
  return std::dynamic_pointer_cast<T>(object);
}

}  // namespace platform
