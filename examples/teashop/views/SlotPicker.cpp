#include "examples/teashop/views/SlotPicker.h"

#include "examples/teashop/model/DeliveryTime.h"

namespace teashop {

using namespace platform;

namespace {

const std::vector<std::string>& rowsOf(std::int64_t component) {
  return component == 0 ? deliveryTime::timesOfDay() : deliveryTime::handovers();
}

}  // namespace

void SlotPicker::exportMethods(MethodTable<SlotPicker>& table) {
  table.add<&SlotPicker::componentCount>("numberOfComponentsInPickerView:")
      .add<&SlotPicker::rowCount>("pickerView:numberOfRowsInComponent:")
      .add<&SlotPicker::rowTitle>("pickerView:titleForRow:forComponent:")
      .add<&SlotPicker::didSelect>("pickerView:didSelectRow:inComponent:");
}

void SlotPicker::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setDataSource(self());
  setDelegate(self());
}

std::string SlotPicker::slot() const {
  const auto chosen = [this](std::int64_t component) {
    return rowsOf(component)[static_cast<std::size_t>(std::max<std::int64_t>(0, selectedRowInComponent(component)))];
  };
  return chosen(0) + ", " + chosen(1);
}

std::int64_t SlotPicker::componentCount(const Ref<UIPickerView>&) { return 2; }

std::int64_t SlotPicker::rowCount(const Ref<UIPickerView>&, std::int64_t component) {
  return static_cast<std::int64_t>(rowsOf(component).size());
}

std::string SlotPicker::rowTitle(const Ref<UIPickerView>&, std::int64_t row, std::int64_t component) {
  return rowsOf(component)[static_cast<std::size_t>(row)];
}

void SlotPicker::didSelect(const Ref<UIPickerView>&, std::int64_t, std::int64_t) {
  if (onChange_) onChange_(slot());
}

}  // namespace teashop
