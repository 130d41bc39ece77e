#include "lumicor/capture/LumicorPickerViewDelegateProxy.h"

#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "platform/foundation/NSTimer.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/UITextField.h"

namespace lumicor {

namespace {

constexpr double pauseAfterTurning = 3.0;  // seconds

}  // namespace

void LumicorPickerViewDelegateProxy::exportMethods(MethodTable<LumicorPickerViewDelegateProxy>& table) {
  table.add<&LumicorPickerViewDelegateProxy::didSelectRow>("pickerView:didSelectRow:inComponent:");
}

void LumicorPickerViewDelegateProxy::didSelectRow(const Ref<UIPickerView>& pickerView, std::int64_t row,
                                                  std::int64_t component) {
  static const SEL didSelect = sel("pickerView:didSelectRow:inComponent:");
  if (debounceTimer_) debounceTimer_->invalidate();
  const auto run = [proxy = weakSelf(), picker = Weak<UIPickerView>(pickerView), row, component] {
    const auto self = proxy.lock();
    const auto alive = picker.lock();
    if (self && alive) self->registerNow(alive, row, component);
  };
  debounceTimer_ = NSTimer::scheduledTimer(pauseAfterTurning, false, [run](const Ref<NSTimer>&) { run(); });
  lastSelectedRow_ = row;
  lastSelectedComponent_ = component;
  if (isRegistering()) LumicorPendingInputs::add(*this, run);
  forward(didSelect, pickerView, row, component);
}

void LumicorPickerViewDelegateProxy::registerNow(const Ref<UIPickerView>& pickerView, std::int64_t row,
                                                 std::int64_t component) {
  if (lastSelectedRow_ != row || lastSelectedComponent_ != component) return;
  debounceTimer_->invalidate();
  LumicorPendingInputs::forget(*this);
  if (!isRegistering()) return;
  const std::string chosen = std::to_string(row) + "-" + std::to_string(component);
  if (const auto field = parentTextField()) {
    return LumicorTrackingTask::registerUserAction("pickerView-" + chosen, field, chosen);
  }
  LumicorTrackingTask::registerUserAction("pickerView", pickerView, chosen);
}

}  // namespace lumicor
