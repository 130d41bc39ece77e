#pragma once

#include <string>

#include "platform/graphics/UIImage.h"
#include "tools/inspect/Inspection.h"

namespace inspect {

/// What a person looks at to check what the assistant sees: the picture of the screen with every element's frame and
/// number over it, and beside it the list of elements with identifier, kind, value and frame. What lies around the
/// screen is framed with broken lines and listed apart, by letters. The acted-on element is filled. `title` names the
/// screen. Main thread.
platform::Ref<platform::UIImage> annotated(const platform::UIImage& screen, const Inspection& inspection,
                                           const std::string& title);

}  // namespace inspect
