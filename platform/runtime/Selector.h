#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

/// The name of a message, interned: two selectors of the same spelling compare equal by address.
/// A default-made selector names nothing. Any thread.
class SEL {
 public:
  constexpr SEL() = default;

  const std::string& name() const;
  explicit operator bool() const { return name_ != nullptr; }
  friend constexpr bool operator==(SEL a, SEL b) { return a.name_ == b.name_; }
  std::size_t hash() const { return std::hash<const void*>{}(name_); }

 private:
  friend SEL sel(std::string_view name);
  explicit SEL(const std::string* name) : name_(name) {}
  const std::string* name_ = nullptr;
};

/// The selector of that spelling (`sel("sendAction:to:forEvent:")`), registered on first use and kept for the process.
/// It takes a lock and a hash look-up: keep the result in a `static const SEL` where the call is frequent.
SEL sel(std::string_view name);

/// The spelling of a selector, empty for none.
const std::string& NSStringFromSelector(SEL selector);

}  // namespace platform

template <>
struct std::hash<platform::SEL> {
  std::size_t operator()(platform::SEL selector) const { return selector.hash(); }
};
