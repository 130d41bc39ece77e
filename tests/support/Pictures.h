#pragma once

#include <string>

#include "platform/graphics/UIImage.h"

namespace platform::test {

/// Compares a picture with "pictures/<name>.png" beside the calling source. Letters are drawn a little differently from
/// one machine to the next: a test fails when sizes differ, or when more than one pixel in 500 is off by more than a
/// tenth. The picture that failed is left as "<name>.actual.png" in the working directory.
/// With LUMICOR_UPDATE_PICTURES set in the environment the picture is stored as the new reference instead.
void expectPicture(const UIImage& image, const std::string& name, const char* sourceFile = __builtin_FILE());

}  // namespace platform::test
