#pragma once

#include <string>
#include <utility>
#include <variant>

namespace platform {

/// Why something failed, in one sentence for a log line.
struct Failure {
  std::string description;
};

/// A value, or the sentence why there is none. Asking for the one that is not there is a programming error.
template <class T>
class Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(Failure failure) : content_(std::in_place_index<1>, std::move(failure)) {}

  explicit operator bool() const { return content_.index() == 0; }
  bool hasValue() const { return content_.index() == 0; }
  T& value() { return *std::get_if<0>(&content_); }
  const T& value() const { return *std::get_if<0>(&content_); }
  T& operator*() { return value(); }
  const T& operator*() const { return value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }
  /// The sentence; empty when there is a value.
  const std::string& error() const {
    static const std::string none;
    const Failure* const failure = std::get_if<1>(&content_);
    return failure ? failure->description : none;
  }

 private:
  std::variant<T, Failure> content_;
};

}  // namespace platform
