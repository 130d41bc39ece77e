#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {

/// Why something failed, in one sentence for a log line.
struct Failure {
  std::string description;
};

/// A value, or why there is none: a sentence, or an error of another kind. Asking for the one that is not there is a
/// programming error.
template <class T, class E = Failure>
class Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(E error) : content_(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return content_.index() == 0; }
  bool hasValue() const { return content_.index() == 0; }
  T& value() { return *std::get_if<0>(&content_); }
  const T& value() const { return *std::get_if<0>(&content_); }
  T& operator*() { return value(); }
  const T& operator*() const { return value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }
  /// A sentence is empty when there is a value.
  const auto& error() const {
    const E* const error = std::get_if<1>(&content_);
    if constexpr (std::is_same_v<E, Failure>) {
      static const std::string none;
      return error ? error->description : none;
    } else {
      return *error;
    }
  }

 private:
  std::variant<T, E> content_;
};

}  // namespace platform
