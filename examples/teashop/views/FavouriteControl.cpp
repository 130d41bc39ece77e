#include "examples/teashop/views/FavouriteControl.h"

#include "examples/teashop/views/Theme.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace teashop {

using namespace platform;

void FavouriteControl::exportMethods(MethodTable<FavouriteControl>& table) {
  table.add<&FavouriteControl::turnOver>("turnOver");
}

void FavouriteControl::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  heart_ = make<UIImageView>();
  heart_->setContentMode(UIViewContentMode::center);
  addSubview(heart_);
  addTarget(self(), sel("turnOver"), UIControlEvents::touchUpInside);
  stateDidChange();
}

void FavouriteControl::turnOver() {
  setSelected(!isSelected());
  sendActionsForControlEvents(UIControlEvents::valueChanged);
}

void FavouriteControl::layoutSubviews() {
  Super::layoutSubviews();
  heart_->setFrame(bounds());
}

void FavouriteControl::stateDidChange() {
  if (!heart_) return;
  heart_->setImage(UISystemSymbol::image(isSelected() ? "heart.fill" : "heart", 24));
  heart_->setTintColor(isSelected() ? UIColor(0.76, 0.22, 0.28, 1) : theme::inkSoft);
  heart_->setAlpha(isHighlighted() ? 0.5 : 1);
}

}  // namespace teashop
