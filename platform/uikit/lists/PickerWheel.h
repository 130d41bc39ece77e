#pragma once

#include <map>

#include "platform/uikit/lists/UIScrollView.h"

namespace platform {

class UIPickerView;

/// One wheel of a picker: it scrolls, comes to rest on a row, and keeps views for the rows in sight only. Owned by its
/// picker. Main thread.
class PickerWheel : public Object<PickerWheel, UIScrollView> {
 public:
  void init(UIPickerView& picker, std::int64_t component);
  static void exportMethods(MethodTable<PickerWheel>& table);

  void reload(std::int64_t rows, double rowHeight);
  std::int64_t rows() const { return rows_; }
  std::int64_t selected() const { return selected_; }
  void select(std::int64_t row, bool animated);
  /// A person turns it, or it still turns.
  bool isTurning() const { return isDragging() || isDecelerating() || turnedByHand_; }
  Ref<UIView> viewForRow(std::int64_t row) const;
  /// The picker is going away.
  void forgetPicker() { picker_ = nullptr; }

  void layoutSubviews() override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  Ref<UIView> hitTest(CGPoint point, const Ref<UIEvent>& event) override;

 protected:
  CGPoint restingOffset(CGPoint proposed) override;
  void contentOffsetDidChange() override { setNeedsLayout(); }
  void settle() override;

 private:
  double offsetOf(std::int64_t row) const;
  std::int64_t rowAtMiddle() const;
  Ref<UIView> makeRow(std::int64_t row);
  void bend(UIView& view, std::int64_t row) const;
  void cameToRest();
  void motionEnded(const Ref<NSObject>& wheel);
  void dragEnded(const Ref<NSObject>& wheel, bool decelerates);

  UIPickerView* picker_ = nullptr;
  std::int64_t component_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t selected_ = -1;
  double rowHeight_ = 32;
  bool turnedByHand_ = false;
  bool loading_ = false;
  std::map<std::int64_t, Ref<UIView>> views_;
};

}  // namespace platform
