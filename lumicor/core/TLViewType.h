#pragma once

#include "platform/foundation/RawValues.h"

namespace lumicor {

/// How the entry point to the assistant is presented.
enum class TLViewType { TYPE_FLOATING, TYPE_EMBED };

}  // namespace lumicor

template <>
struct platform::RawValues<lumicor::TLViewType> {
  using T = lumicor::TLViewType;
  static constexpr std::pair<T, std::string_view> cases[] = {{T::TYPE_FLOATING, "TYPE_FLOATING"},
                                                             {T::TYPE_EMBED, "TYPE_EMBED"}};
};
