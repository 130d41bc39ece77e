#pragma once

#include <memory>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

class PickerWheel;

/// Wheels of rows, one row of each in the middle. Data source and delegate are held weakly and asked by selector:
/// numberOfComponentsInPickerView:, pickerView:numberOfRowsInComponent:; pickerView:titleForRow:forComponent:,
/// pickerView:viewForRow:forComponent:reusingView:, pickerView:widthForComponent:, pickerView:rowHeightForComponent:,
/// pickerView:didSelectRow:inComponent:. Only a person's turn tells the delegate of a selection. Main thread.
class UIPickerView : public Object<UIPickerView, UIView> {
 public:
  UIPickerView();
  ~UIPickerView() override;
  void initWithFrame(CGRect frame) override;

  Ref<NSObject> dataSource() const { return dataSource_.lock(); }
  void setDataSource(const Ref<NSObject>& dataSource);
  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate);

  std::int64_t numberOfComponents() const;
  std::int64_t numberOfRowsInComponent(std::int64_t component) const;
  /// -1 for a component that is not there or has no rows.
  virtual std::int64_t selectedRowInComponent(std::int64_t component) const;
  /// Nothing happens for a component or row that is not there.
  virtual void selectRow(std::int64_t row, std::int64_t component, bool animated);
  /// A person turns that wheel, or it has not come to rest.
  bool isTurning(std::int64_t component) const;
  void reloadAllComponents();
  void reloadComponent(std::int64_t component);
  Ref<UIView> viewForRow(std::int64_t row, std::int64_t component) const;

  bool canBecomeFirstResponder() override { return true; }
  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void didMoveToWindow() override;

 private:
  friend class PickerWheel;
  void loadIfNeeded() const;
  void load();
  void turned(std::int64_t component, std::int64_t row);

  Weak<NSObject> dataSource_;
  Weak<NSObject> delegate_;
  std::vector<Ref<PickerWheel>> wheels_;
  Ref<UIView> band_;
  bool loaded_ = false;
};

}  // namespace platform
