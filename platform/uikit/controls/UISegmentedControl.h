#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/controls/UIControl.h"

namespace platform {

class UIImageView;
class UILabel;

/// A row of segments of which one at most is selected; a tap sends valueChanged. Main thread.
class UISegmentedControl : public Object<UISegmentedControl, UIControl> {
 public:
  /// What selectedSegmentIndex is when none is selected.
  static constexpr std::int64_t noSegment = -1;

  using UIView::init;
  void init(const std::vector<std::string>& titles);
  void initWithFrame(CGRect frame) override;

  virtual std::int64_t numberOfSegments() const;
  /// Out of range: at the end.
  void insertSegment(const std::string& title, std::int64_t index, bool animated = false);
  void insertSegment(const Ref<UIImage>& image, std::int64_t index, bool animated = false);
  void removeSegment(std::int64_t index, bool animated = false);
  void removeAllSegments();
  std::optional<std::string> titleForSegment(std::int64_t index) const;
  void setTitle(const std::string& title, std::int64_t index);
  bool isEnabledForSegment(std::int64_t index) const;
  void setEnabled(bool enabled, std::int64_t index);
  using UIControl::setEnabled;
  virtual std::int64_t selectedSegmentIndex() const { return selected_; }
  /// Out of range: none.
  virtual void setSelectedSegmentIndex(std::int64_t index);
  std::optional<UIColor> selectedSegmentTintColor() const { return selectedTint_; }
  void setSelectedSegmentTintColor(std::optional<UIColor> color);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void stateDidChange() override;
  bool beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void cancelTracking(const Ref<UIEvent>& event) override;

 private:
  struct Segment {
    Ref<UILabel> label;
    Ref<UIImageView> picture;
    Ref<UIView> divider;
    bool enabled = true;
  };
  void insert(Segment segment, std::int64_t index);
  std::int64_t segmentAt(CGPoint point) const;
  CGRect segmentRect(std::int64_t index) const;
  void showState(bool animated);

  std::vector<Segment> segments_;
  Ref<UIView> plate_;
  std::optional<UIColor> selectedTint_;
  std::int64_t selected_ = noSegment;
  std::int64_t held_ = noSegment;
};

}  // namespace platform
