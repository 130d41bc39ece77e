#pragma once

#include <cstdint>
#include <optional>

#include "lumicor/capture/LumicorDelegateProxy.h"
#include "platform/uikit/Forward.h"

namespace platform {
class NSTimer;
class UIPickerView;
class UITextField;
}  // namespace platform

namespace lumicor {

/// Hears the wheels of a picker come to rest; several turns in a row are one action. A picker that is a text field's
/// keyboard acts in the field's name. Main thread.
class LumicorPickerViewDelegateProxy final : public Object<LumicorPickerViewDelegateProxy, LumicorDelegateProxy> {
 public:
  using Object::Object;
  static void exportMethods(MethodTable<LumicorPickerViewDelegateProxy>& table);

  void didSelectRow(const Ref<UIPickerView>& pickerView, std::int64_t row, std::int64_t component);

  /// None when it serves no field, or that is gone.
  Ref<UITextField> parentTextField() const { return parentTextField_.lock(); }
  void setParentTextField(const Ref<UITextField>& field) { parentTextField_ = field; }
  const std::optional<std::int64_t>& lastSelectedRow() const { return lastSelectedRow_; }
  const std::optional<std::int64_t>& lastSelectedComponent() const { return lastSelectedComponent_; }

 private:
  void registerNow(const Ref<UIPickerView>& pickerView, std::int64_t row, std::int64_t component);

  Weak<UITextField> parentTextField_;
  Ref<NSTimer> debounceTimer_;
  std::optional<std::int64_t> lastSelectedRow_;
  std::optional<std::int64_t> lastSelectedComponent_;
};

}  // namespace lumicor
