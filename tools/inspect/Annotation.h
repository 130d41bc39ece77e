#pragma once

#include <string>

#include "lumicor/screen/LumicorSnapshot.h"
#include "platform/graphics/UIImage.h"

namespace inspect {

/// What a person looks at to check what the assistant sees: the picture of the screen with every element's frame and
/// number over it, and beside it the list of elements with identifier, kind, value and frame. The acted-on element is
/// filled. `title` names the screen. Main thread.
platform::Ref<platform::UIImage> annotated(const platform::UIImage& screen, const lumicor::LumicorSnapshot& snapshot,
                                           const std::string& title);

}  // namespace inspect
