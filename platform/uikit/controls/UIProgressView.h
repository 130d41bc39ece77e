#pragma once

#include <optional>

#include "platform/uikit/views/UIView.h"

namespace platform {

class NSProgress;

/// A bar that fills, from 0 to 1, by itself when it observes a progress. Main thread.
class UIProgressView : public Object<UIProgressView, UIView> {
 public:
  ~UIProgressView() override;
  void initWithFrame(CGRect frame) override;

  float progress() const { return progress_; }
  void setProgress(float progress) { setProgress(progress, false); }
  void setProgress(float progress, bool animated);
  virtual Ref<NSProgress> observedProgress() const { return observed_; }
  void setObservedProgress(const Ref<NSProgress>& progress);
  void setProgressTintColor(std::optional<UIColor> color);
  void setTrackTintColor(std::optional<UIColor> color);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void tintColorDidChange() override;

 private:
  Ref<UIView> track_;
  Ref<UIView> filled_;
  Ref<NSProgress> observed_;
  std::uint64_t observer_ = 0;
  std::optional<UIColor> progressTint_;
  std::optional<UIColor> trackTint_;
  float progress_ = 0;
};

}  // namespace platform
