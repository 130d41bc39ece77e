#pragma once

#include <string>

#include "platform/declarative/View.h"

namespace lumicor {

using namespace platform;

/// Tells the assistant where a declarative view is, under a label, for as long as it is on the screen. Main thread.
struct LumicorLabelInternal final : declarative::ViewModifier {
  explicit LumicorLabelInternal(std::string text) : label(std::move(text)) {}
  declarative::View body(const declarative::View& content) const override;

  std::string label;
};

/// The view, known to the assistant as `label`, which must be unique on a screen.
declarative::View lumicorLabel(const declarative::View& view, const std::string& label);

}  // namespace lumicor
