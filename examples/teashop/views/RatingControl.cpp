#include "examples/teashop/views/RatingControl.h"

#include "examples/teashop/views/Theme.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace teashop {

using namespace platform;

void RatingControl::exportMethods(MethodTable<RatingControl>& table) {
  table.add<&RatingControl::starTapped>("starTapped:");
}

void RatingControl::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i] = make<UIButton>();
    buttons_[i]->setTintColor(theme::amber);
    buttons_[i]->setAccessibilityIdentifier("rate-" + std::to_string(i + 1));
    buttons_[i]->addTarget(self(), sel("starTapped:"), UIControlEvents::touchUpInside);
    addSubview(buttons_[i]);
  }
  showRating();
}

void RatingControl::starTapped(const Ref<NSObject>& sender) {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    if (buttons_[i] == sender) rating_ = static_cast<std::int64_t>(i) + 1;
  }
  showRating();
  sendActionsForControlEvents(UIControlEvents::valueChanged);
}

void RatingControl::layoutSubviews() {
  Super::layoutSubviews();
  const double width = bounds().size.width / stars;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i]->setFrame({static_cast<double>(i) * width, 0, width, bounds().size.height});
  }
}

void RatingControl::showRating() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const bool isFilled = static_cast<std::int64_t>(i) < rating_;
    buttons_[i]->setImage(UISystemSymbol::image(isFilled ? "star.fill" : "star", 26), UIControlState::normal);
  }
}

}  // namespace teashop
