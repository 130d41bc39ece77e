#pragma once

#include <string>

#include "platform/geometry/CGGeometry.h"
#include "platform/graphics/UIImage.h"

namespace teashop {

/// Pictures that belong together.
struct GallerySection {
  std::string title;
  std::string lead;         ///< a sentence or two about all of them
  bool isSequence = false;  ///< moments of one movement
};

/// One state of what people see of the assistant.
struct GalleryPicture {
  std::string name;  ///< of its file, without the ending
  GallerySection section;
  std::string title;
  std::string caption;                     ///< in plain words; may be empty
  platform::Ref<platform::UIImage> image;  ///< the whole screen
  platform::CGRect focus;                  ///< the part of it that the picture is about, in points
};

}  // namespace teashop
