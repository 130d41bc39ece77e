#pragma once

#include "platform/foundation/NSTimer.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

/// Counts the minutes that a pot takes. Two wheels choose how long and how strong, and a note says how much leaf
/// that takes. Start and stop are in the toolbar.
class TimerScreen final : public platform::Object<TimerScreen, platform::UIViewController> {
 public:
  ~TimerScreen() override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  /// What the wheels say, in seconds.
  std::int64_t chosenSeconds() const;
  std::string dose() const;

  static void exportMethods(platform::MethodTable<TimerScreen>& table);

 private:
  void buildViews();
  void buildToolbar();
  void start();
  void stop();
  void tick();
  void showState();
  std::int64_t componentCount(const platform::Ref<platform::UIPickerView>& picker);
  std::int64_t rowCount(const platform::Ref<platform::UIPickerView>& picker, std::int64_t component);
  std::string rowTitle(const platform::Ref<platform::UIPickerView>& picker, std::int64_t row, std::int64_t component);
  void didSelect(const platform::Ref<platform::UIPickerView>& picker, std::int64_t row, std::int64_t component);
  bool isRunning() const { return timer_ && timer_->isValid(); }

  platform::Ref<platform::UIPickerView> wheels_;
  platform::Ref<platform::UILabel> remaining_;
  platform::Ref<platform::UILabel> note_;
  platform::Ref<platform::UIProgressView> bar_;
  platform::Ref<platform::UIActivityIndicatorView> activity_;
  platform::Ref<platform::UIBarButtonItem> start_;
  platform::Ref<platform::UIBarButtonItem> stop_;
  platform::Ref<platform::NSProgress> brew_;
  platform::Ref<platform::NSTimer> timer_;
};

}  // namespace teashop
