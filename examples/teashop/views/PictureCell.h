#pragma once

#include <string>

#include "platform/uikit/lists/UICollectionViewCell.h"
#include "platform/uikit/views/UIImageView.h"

namespace teashop {

/// A picture that fills its cell.
class PictureCell final : public platform::Object<PictureCell, platform::UICollectionViewCell> {
 public:
  static constexpr const char* reuseIdentifier = "PictureCell";
  void initWithFrame(platform::CGRect frame) override;
  void show(const platform::Ref<platform::UIImage>& picture, const std::string& identifier);

 private:
  platform::Ref<platform::UIImageView> picture_;
};

}  // namespace teashop
