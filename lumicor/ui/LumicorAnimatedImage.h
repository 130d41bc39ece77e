#pragma once

#include <string_view>

#include "platform/graphics/UIImage.h"

namespace lumicor {

using namespace platform;

/// A moving picture of a GIF's frames, each as long as the others and together as long as the file says. Frames that
/// cannot be read, or whose time cannot, are passed over, and those beyond the budget for pictures from an address are
/// left out. None without frames. Any thread.
Ref<UIImage> animatedImageWithGIF(std::string_view data);

/// The picture of bytes that came from an address: a moving one when the file has several frames, otherwise a still
/// one. None for anything else, and for what is beyond the budget. Any thread.
Ref<UIImage> downloadedImage(std::string_view data);

}  // namespace lumicor
