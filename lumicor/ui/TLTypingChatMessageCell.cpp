#include "lumicor/ui/TLTypingChatMessageCell.h"

#include <limits>

#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/dispatch/Clock.h"
#include "platform/geometry/CGPath.h"

namespace lumicor {

void TLTypingChatMessageCell::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  makeDots();
  startAnimation();
}

void TLTypingChatMessageCell::makeDots() {
  for (std::int64_t i = 0; i < dotCount; ++i) {
    auto dot = make<CAShapeLayer>();
    dot->setPath(CGPath::oval({0, 0, dotSize, dotSize}));
    dot->setFillColor(UIColor::white());
    dot->setFrame({(dotSize + dotSpacing) * static_cast<double>(i), 0, dotSize, dotSize});
    layer()->addSublayer(dot);
    dotLayers_.push_back(std::move(dot));
  }
}

void TLTypingChatMessageCell::startAnimation() {
  constexpr double rise = 5;        // points
  constexpr double duration = 0.5;  // seconds up, and as many down
  constexpr double stagger = 0.2;   // seconds from one dot to the next
  double delay = 0;
  for (const auto& dot : dotLayers_) {
    auto bob = make<CABasicAnimation>("position.y");
    const double y = dot->position().y;
    bob->setFromValue(y);
    bob->setToValue(y - rise);
    bob->setDuration(duration);
    bob->setAutoreverses(true);
    bob->setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut));
    bob->setRepeatCount(std::numeric_limits<double>::infinity());
    bob->setBeginTime(CACurrentMediaTime() + delay);
    dot->addAnimation(bob, "bobbing");
    delay += stagger;
  }
}

}  // namespace lumicor
