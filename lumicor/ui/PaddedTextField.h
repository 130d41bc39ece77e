#pragma once

#include "platform/uikit/text/UITextField.h"

namespace lumicor {

using namespace platform;

/// A text field whose text, placeholder and editing text keep a distance from its edges. Main thread.
class PaddedTextField final : public Object<PaddedTextField, UITextField> {
 public:
  UIEdgeInsets textPadding{0, 12, 0, 12};

  CGRect textRect(CGRect bounds) const override { return bounds.insetBy(textPadding); }
  CGRect placeholderRect(CGRect bounds) const override { return bounds.insetBy(textPadding); }
  CGRect editingRect(CGRect bounds) const override { return bounds.insetBy(textPadding); }
};

}  // namespace lumicor
