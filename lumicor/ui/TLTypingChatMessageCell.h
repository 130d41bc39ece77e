#pragma once

#include <cstdint>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {
class CAShapeLayer;
}

namespace lumicor {

using namespace platform;

/// The dots that bob up and down, one after another, while the assistant works. A view, for all its name. Main thread.
class TLTypingChatMessageCell final : public Object<TLTypingChatMessageCell, UIView> {
 public:
  void initWithFrame(CGRect frame) override;

  const std::vector<Ref<CAShapeLayer>>& dotLayers() const { return dotLayers_; }
  static constexpr std::int64_t dotCount = 3;
  static constexpr double dotSize = 12;    ///< points
  static constexpr double dotSpacing = 8;  ///< points
  static constexpr double width = dotSize * 3 + dotSpacing * 2;

 private:
  void makeDots();
  void startAnimation();
  std::vector<Ref<CAShapeLayer>> dotLayers_;
};

}  // namespace lumicor
