#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/engine/EngineWindow.h"
#include "platform/uikit/application/ScreenDisplay.h"

namespace platform {

/// The application's screen on a desktop (or its headless stand-in): shows what the application's windows draw, frame
/// by frame and only while something changes, and brings it what the person does. Main thread.
class ScreenHost final : public EngineWindowDelegate {
 public:
  explicit ScreenHost(const std::string& title);
  ~ScreenHost() override;
  ScreenHost(const ScreenHost&) = delete;
  ScreenHost& operator=(const ScreenHost&) = delete;

 private:
  void windowTouched(const WindowTouch& touch) override;
  void windowKeyPressed(const WindowKey& key) override;
  void windowScrolled(const WindowScroll& scroll) override;
  void windowClosed() override;

  const Ref<ScreenDisplay> display_ = ScreenDisplay::shared();
  std::unique_ptr<EngineWindow> window_;
  std::uint64_t observer_ = 0;
};

}  // namespace platform
