#pragma once

#include <string>

#include "lumicor/screen/LumicorType.h"
#include "platform/runtime/Object.h"

namespace platform {
class UIView;
}

namespace lumicor {

using namespace platform;

/// What a view is, how a person operates it, and what it shows or holds.
struct LumicorElementKind {
  LumicorType type = LumicorType::TYPE_DEFAULT;
  LumicorInputType inputType = LumicorInputType::TYPE_DEFAULT;
  std::string value;
};

/// Answers `LumicorUtils::getLumicorElementType` without needing to own the view. Main thread.
LumicorElementKind elementKindOf(UIView& view);

/// True for scroll views of every kind: those that have a scroll position. Main thread.
bool isScrollContainer(const UIView& view);

}  // namespace lumicor
