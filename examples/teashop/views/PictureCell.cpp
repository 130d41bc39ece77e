#include "examples/teashop/views/PictureCell.h"

namespace teashop {

using namespace platform;

void PictureCell::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  picture_ = make<UIImageView>(contentView()->bounds());
  picture_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  picture_->setContentMode(UIViewContentMode::scaleAspectFill);
  picture_->setClipsToBounds(true);
  contentView()->addSubview(picture_);
}

void PictureCell::show(const Ref<UIImage>& picture, const std::string& identifier) {
  picture_->setImage(picture);
  picture_->setAccessibilityIdentifier(identifier);
}

}  // namespace teashop
