#pragma once

#include "platform/uikit/lists/UIPickerView.h"

namespace platform {

/// The wheels inside a date picker. A class of its own, so that whoever looks for a host's pickers can tell them from
/// the platform's: those are named with an underscore in front. Private to the date picker. Main thread.
class _UIDatePickerView : public Object<_UIDatePickerView, UIPickerView> {};

}  // namespace platform
