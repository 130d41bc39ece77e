#pragma once

#include <string_view>
#include <type_traits>

namespace platform {

/// One field of a record: its key and the member that holds it.
template <class Owner, class Value>
struct Field {
  using Member = Value;
  using Type = std::remove_const_t<Value>;
  std::string_view name;
  Value Owner::*member;
};

/// Keys are written as they stand, so they are made of characters that need no escaping.
template <class Owner, class Value>
consteval Field<Owner, Value> field(std::string_view name, Value Owner::*member) {
  if (name.size() > 200) throw "a key has at most 200 characters";
  for (const char c : name) {
    if (c < ' ' || c > '~' || c == '"' || c == '\\') throw "a key may hold printable ASCII without quotes only";
  }
  return {name, member};
}

template <class T>
concept Record = requires {
  T::fields();
};

}  // namespace platform
