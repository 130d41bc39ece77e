#pragma once

#include <string>

#include "platform/uikit/text/UITextField.h"

namespace teashop {

/// A field of a form, 48 points high, for constraints.
platform::Ref<platform::UITextField> makeFormField(const std::string& placeholder, const std::string& identifier);
/// Something to fill in below its caption.
platform::Ref<platform::UIView> withCaption(const std::string& caption, const platform::Ref<platform::UIView>& control);

}  // namespace teashop
